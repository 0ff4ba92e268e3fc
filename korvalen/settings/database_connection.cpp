#include "korvalen/settings/database_connection.h"

#include <string>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/config_writer.h"
#include "korvalen/config/internal/record_walk.h"
#include "korvalen/foundation/file_system.h"
#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/internal/file_exists.h"
#include "korvalen/foundation/number_functions.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/platform/internal/bounded_copy.h"
#include "korvalen/settings/internal/long_text_field.h"
#include "korvalen/settings/internal/process_file_rewrite.h"
#include "korvalen/settings/internal/settings_document.h"
#include "korvalen/settings/product_settings.h"

namespace {

using korvalen::detail::or_empty;
using korvalen::detail::SettingsDocument;

constexpr const wchar_t* kSettingsFile = L"iVortan.cfg";
constexpr const wchar_t* kConnectionWork = L"AUXCNII.CFG";
constexpr int kTextChars = 256;

bool IsLocal(const std::wstring& server) { return server == L"." || server == L"(local)"; }

// "\\server\name", as "\\%s\%s" formats it.
std::wstring OnServer(const std::wstring& server, const std::wstring& name) {
  return L"\\\\" + server + L"\\" + name;
}

// The folder as a program on another machine reaches it.
std::wstring NetworkFolder(const std::wstring& server, const std::wstring& folder,
                           const std::wstring& local_folder) {
  if (folder.empty()) return IsLocal(server) ? local_folder : OnServer(server, L"Database$");
  const bool drive_path = folder.size() >= 2 && folder[1] == L':';
  // This test takes "(local)" in any case.
  const bool local = server == L"." || StriCmp(server.c_str(), L"(local)") == 0;
  if (drive_path || folder[0] == L'\\' || local) return folder;
  return OnServer(server, folder);
}

// One text of a record, at most a record long.
std::wstring ReadText(wchar_t* line, int& cursor) {
  wchar_t text[korvalen::kCfgLongLineChars + 1];
  LeerUnTexto(line, cursor, text);
  return text;
}

void Put(wchar_t* out, const std::wstring& value) {
  korvalen::platform::copy_cut(out, kTextChars, value);
}

}  // namespace

void CrearConexionPredefinida(int language, const wchar_t* server, const wchar_t* database,
                              const wchar_t* folder, int units) {
  try {
    mkDir(L"PrdfCnn");
    const std::wstring name = or_empty(database);
    const std::wstring path =
        korvalen::detail::CurrentDirectoryFile(L"PrdfCnn", L"") + L"\\" + name + L".cnn";
    SettingsDocument cnn;
    if (cnn.Create(path.c_str(), L"CNN",
                   {{L"stp", L"1020"},
                    {L"svr", or_empty(server)},
                    {L"db", name},
                    {L"dbfld", or_empty(folder)},
                    {L"ent", L"ment"},
                    {L"l2dtyp", L"0"},
                    {L"l2dloc", L""},
                    {L"l2dupx", L"0"},
                    {L"l2dpsv", L""},
                    {L"l2dppt", L""}})) {
      cnn.Save();
    }
    SettingsDocument cfg;
    if (cfg.Load(kSettingsFile)) {
      if (cfg.Set(L"PrdCnn", name) && cfg.Set(L"DBName", name)) cfg.Save();
    } else if (!korvalen::detail::file_exists(kSettingsFile)) {
      CrearIVortanCfgBasico(language, server, name.c_str(), folder, units, 0, 0, L"", L"");
    }
  } catch (...) {
  }
}

void LeerOffsetDB(double& offset) {
  try {
    offset = 0.0;
    SettingsDocument cfg;
    std::wstring value;
    if (cfg.Load(kSettingsFile) && cfg.Get(L"DBOffset", value)) offset = aToi(value.c_str());
  } catch (...) {
  }
}

void LeerParametrosConexionDB(int& server_type, wchar_t* connection, wchar_t* server,
                              wchar_t* database, wchar_t* folder, wchar_t* user, wchar_t* password,
                              wchar_t* entity, wchar_t* companion_location, wchar_t* proxy_server,
                              int& companion_type, double& offset, int& use_proxy) {
  try {
    std::wstring texts[15];  // by record index
    texts[1] = L"(local)";
    texts[3] = L"SYSADM";
    texts[11] = L"ment";
    server_type = 0;
    companion_type = 0;
    offset = 0.0;
    use_proxy = 0;
    korvalen::detail::for_each_record<korvalen::kCfgLongLineChars>(
        korvalen::detail::kProcessFile, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
          if (type != L'R') return true;
          switch (index) {
            case 6:
              LeerUnEntero(line, cursor, server_type);
              break;
            case 7:
              LeerUnReal(line, cursor, offset);
              break;
            case 9:
              LeerSIoNO(line, cursor, use_proxy);
              break;
            case 13:
              LeerUnEntero(line, cursor, companion_type);
              break;
            default:
              if (index >= 1 && index <= 14) texts[index] = ReadText(line, cursor);
          }
          return true;
        });
    SettingsDocument cfg;
    if (cfg.Load(kSettingsFile)) {
      std::wstring value;
      const struct {
        const wchar_t* attribute;
        int record;
      } overrides[] = {
          {L"UsrName", 3}, {L"DBName", 2}, {L"DBFolder", 5}, {L"SvrName", 1}, {L"EntName", 11}};
      for (const auto& o : overrides) {
        if (cfg.Get(o.attribute, value)) texts[o.record] = value;
      }
      if (cfg.Get(L"SvrType", value)) server_type = aToi(value.c_str());
    }
    if (texts[1].empty()) texts[1] = L"(local)";
    texts[5] = NetworkFolder(texts[1], texts[5], texts[8]);
    Put(connection, texts[10]);
    Put(server, texts[1]);
    Put(database, texts[2]);
    Put(folder, texts[5]);
    Put(user, texts[3]);
    Put(password, texts[4]);
    Put(entity, texts[11]);
    Put(companion_location, texts[12]);
    Put(proxy_server, texts[14]);
  } catch (...) {
  }
}

void ActualizaParametrosConexionDB(const wchar_t* server, const wchar_t* database,
                                   const wchar_t* folder, const wchar_t* connection) {
  try {
    korvalen::detail::rewrite_process_file<korvalen::kCfgLongLineChars>(
        kConnectionWork, [&](FILE* out, wchar_t* line, wchar_t type, int index, int cursor) {
          if (type == L'R' && index == 5) {
            korvalen::detail::write_long_text_field(out, line, cursor, folder);
            return;
          }
          if (type == L'R' && (index == 1 || index == 2 || index == 10)) {
            const wchar_t* value = index == 1 ? server : index == 2 ? database : connection;
            EscribirUnTexto(line, cursor, or_empty(value));
          }
          EscribirLineaEnFichero(out, line);
        });
    SettingsDocument cfg;
    if (cfg.Load(kSettingsFile) && cfg.Set(L"DBName", or_empty(database)) &&
        cfg.Set(L"SvrName", or_empty(server)) && cfg.Set(L"DBFolder", or_empty(folder))) {
      cfg.Save();
    }
  } catch (...) {
  }
}

int LeerElServidor(wchar_t* server) {
  try {
    SettingsDocument cfg;
    std::wstring value;
    if (!cfg.Load(kSettingsFile) || !cfg.Get(L"SvrName", value)) return 0;
    Put(server, value);
    return 1;
  } catch (...) {
    return 0;
  }
}

int EscribirElServidor(const wchar_t* server) {
  try {
    SettingsDocument cfg;
    return cfg.Load(kSettingsFile) && cfg.Set(L"SvrName", or_empty(server)) && cfg.Save() ? 1 : 0;
  } catch (...) {
    return 0;
  }
}
