#include "korvalen/settings/product_settings.h"

#include <string>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/config_writer.h"
#include "korvalen/config/internal/record_walk.h"
#include "korvalen/foundation/file_names.h"
#include "korvalen/foundation/file_system.h"
#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/internal/file_exists.h"
#include "korvalen/foundation/number_functions.h"
#include "korvalen/foundation/path_functions.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/platform/internal/bounded_copy.h"
#include "korvalen/settings/internal/process_file_rewrite.h"
#include "korvalen/settings/internal/settings_document.h"
#include "korvalen/settings/settings_rewrites.h"
#include "korvalen/settings/system_parameters.h"

namespace {

using korvalen::detail::CurrentDirectoryFile;
using korvalen::detail::or_empty;
using korvalen::detail::SettingsDocument;

constexpr const wchar_t* kSettingsFile = L"iVortan.cfg";
constexpr const wchar_t* kProductFile = L"IVORTAN.PRD";
constexpr const wchar_t* kParamFile = L"param.sys";
constexpr const wchar_t* kProcessWork = L"AUXMRSIN.AUX";
constexpr int kTextChars = 256;  // the callers' buffers, with the terminator
constexpr int kParamChars = 257;

std::wstring Flag(int value) { return value != 0 ? L"1" : L"0"; }
std::wstring UnitSystem(int units) { return units != 0 ? L"IMP" : L"MET"; }

void Put(wchar_t* out, const std::wstring& value) {
  korvalen::platform::copy_cut(out, kTextChars, value);
}

// The base name of a path: no directory, no extension.
std::wstring BaseName(const wchar_t* path) {
  wchar_t name[korvalen::kFullNameChars];
  SplitPath(path, nullptr, nullptr, name, nullptr);
  return name;
}

}  // namespace

void CrearIVortanCfgBasico(int language, const wchar_t* server, const wchar_t* connection,
                           const wchar_t* folder, int units, int asian_grid, int system_font,
                           const wchar_t* /*text*/, const wchar_t* style) {
  try {
    const std::wstring cnn = or_empty(connection);
    SettingsDocument cfg;
    if (cfg.Create(CurrentDirectoryFile(L"iVortan", L"cfg").c_str(), L"LNKCFGPAR",
                   {{L"LanID", std::to_wstring(language)},
                    {L"PrdCnn", cnn},
                    {L"SvrType", L"1020"},
                    {L"SvrName", or_empty(server)},
                    {L"DBName", cnn},
                    {L"DBFolder", or_empty(folder)},
                    {L"UsrName", L"SYSADM"},
                    {L"EntName", L"ment"},
                    {L"L2DCnnType", L"0"},
                    {L"L2DLocation", L""},
                    {L"L2DUseProxy", L"0"},
                    {L"L2DPServer", L""},
                    {L"L2DPPort", L""},
                    {L"StyRef", or_empty(style)},
                    {L"USyName", UnitSystem(units)},
                    {L"AsianGrd", Flag(asian_grid)},
                    {L"SysFontT", Flag(system_font)}})) {
      cfg.Save();
    }
  } catch (...) {
  }
}

void ActualizaIVortanPrd(const wchar_t* description, const wchar_t* /*second_text*/,
                         const wchar_t* /*third_text*/) {
  try {
    const std::wstring path = CurrentDirectoryFile(L"iVortan", L"prd");
    SettingsDocument prd;
    if (!prd.Load(path.c_str()) && !prd.Create(path.c_str(), L"PRDDATA", {})) return;
    if (prd.Set(L"PrdDsc", or_empty(description))) prd.Save();
  } catch (...) {
  }
}

void ActualizaParametrosConexion(const wchar_t* user, const wchar_t* server,
                                 const wchar_t* database) {
  try {
    SettingsDocument cfg;
    if (!cfg.Load(kSettingsFile)) return;
    if (!cfg.Set(L"UsrName", or_empty(user)) || !cfg.Set(L"SvrName", or_empty(server)) ||
        !cfg.Set(L"DBName", or_empty(database)) || !cfg.Save()) {
      return;
    }
    korvalen::detail::rewrite_process_file<korvalen::kCfgLineChars>(
        kProcessWork, [&](FILE* out, wchar_t* line, wchar_t type, int index, int cursor) {
          if (type == L'R' && index >= 1 && index <= 3) {
            const wchar_t* value = index == 1 ? server : index == 2 ? database : user;
            EscribirUnTexto(line, cursor, or_empty(value));
          }
          EscribirLineaEnFichero(out, line);
        });
  } catch (...) {
  }
}

void ActualizaParametrosLFocus(int units) {
  try {
    SettingsDocument cfg;
    if (cfg.Load(kSettingsFile) && cfg.Set(L"USyName", UnitSystem(units))) cfg.Save();
  } catch (...) {
  }
}

void LeerDatosLFocus(int& language, wchar_t* style, wchar_t* product, int& units,
                     wchar_t* company) {
  try {
    SettingsDocument cfg;
    std::wstring value;
    if (cfg.Load(kSettingsFile)) {
      if (cfg.Get(L"LanID", value)) language = aToi(value.c_str());
      if (cfg.Get(L"USyName", value)) units = value == L"IMP" ? 1 : 0;
      if (cfg.Get(L"StyRef", value)) Put(style, value);
    }
    SettingsDocument prd;
    if (prd.Load(kProductFile) && prd.Get(L"PrdDsc", value)) Put(product, value);
    if (company != nullptr) {
      korvalen::detail::for_each_record<korvalen::kCfgLineChars>(
          korvalen::detail::kProcessFile, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
            if (type == L'A' && index == 1) LeerUnTexto(line, cursor, company);
            return true;
          });
    }
  } catch (...) {
  }
}

void TratamientoFicherosConfiguracion() {
  try {
    int language = 3, international_units = 1, code_page1 = 0, code_page2 = 0, wos_title = 1;
    wchar_t server[kParamChars], files[kParamChars], shared[kParamChars], company[kParamChars],
        title[kParamChars], backup[kParamChars], style[kParamChars];
    if (LeerDatosParamSys(language, server, files, shared, international_units, code_page1,
                          code_page2, company, title, wos_title, backup, style) == 0) {
      return;
    }
    if (!korvalen::detail::file_exists(kSettingsFile)) {
      // "[International units]" on is the metric system.
      const int units = international_units != 0 ? 0 : 1;
      CrearIVortanCfgBasico(language, server, BaseName(backup).c_str(), files, units, code_page1,
                            code_page2, company, style);
      ActualizaMirselinCNI(language, server, files, shared, international_units, company, title,
                           backup, wos_title);
      ActualizaIVortanPrd(title, company, L"");
    }
    Remove(kParamFile);
    mkDir(L"DefPer");
    CopiarFichero(CurrentDirectoryFile(L"iVortan", L"cfg").c_str(),
                  (CurrentDirectoryFile(L"DefPer", L"") + L"\\iVortan.cfg").c_str());
  } catch (...) {
  }
}
