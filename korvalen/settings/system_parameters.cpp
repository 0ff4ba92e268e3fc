#include "korvalen/settings/system_parameters.h"

#include <cstdio>
#include <initializer_list>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/internal/record_walk.h"
#include "korvalen/foundation/file_names.h"
#include "korvalen/foundation/file_system.h"
#include "korvalen/foundation/formatted_output.h"
#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/internal/whole_file.h"
#include "korvalen/foundation/number_functions.h"
#include "korvalen/foundation/streams.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/settings/internal/product_settings_file.h"

namespace {

using korvalen::detail::or_empty;

constexpr const wchar_t* kParamFile = L"param.sys";
constexpr const wchar_t* kPackagingFile = L"PEQUENO.SYS";
constexpr const wchar_t* kVersionFile = L"SERVPACK.DTS";

constexpr int kParamValueChars = 256;
constexpr int kLanguageFallback = 3;
constexpr int kVersionLines = 6;

void SetText(wchar_t* out, const wchar_t* text) {
  if (out != nullptr) StrCpy(out, text);
}

// The double-byte code pages: Japanese, simplified Chinese, Korean, traditional Chinese.
constexpr const wchar_t* kDoubleByteCodePages[] = {L"932", L"936", L"949", L"950"};

// The value line after a header; false when the file ended instead.
bool ReadValue(FILE* f, wchar_t* value) {
  LeerLineaDeFichero(f, value, kParamValueChars);
  return value[0] != 0 || !std::feof(f);
}

bool IsDoubleByteCodePage(const wchar_t* value) {
  for (const wchar_t* code : kDoubleByteCodePages) {
    if (StrCmp(value, code) == 0) return true;
  }
  return false;
}

}  // namespace

int LeerDatosParamSys(int& language, wchar_t* server_name, wchar_t* database_files_dir,
                      wchar_t* shared_server_dir, int& international_units, int& code_page_switch1,
                      int& code_page_switch2, wchar_t* company, wchar_t* project_title,
                      int& wos_title, wchar_t* database_backup, wchar_t* style) {
  // How a section's value is taken: a text as it stands, the language number,
  // a switch that only the exact value "0" turns off, or the code page, which
  // sets both switches.
  enum class Kind { kText, kLanguage, kSwitch, kCodePage };
  struct Section {
    const wchar_t* header;
    Kind kind;
    wchar_t* text;  // kText
    const wchar_t* text_default;
    int* number;  // kLanguage, kSwitch
  };
  const Section sections[] = {
      {L"[Language]", Kind::kLanguage, nullptr, nullptr, &language},
      {L"[Company]", Kind::kText, company, L"", nullptr},
      {L"[Project title]", Kind::kText, project_title, L"", nullptr},
      {L"[WOS title]", Kind::kSwitch, nullptr, nullptr, &wos_title},
      {L"[Server name]", Kind::kText, server_name, L"(local)", nullptr},
      {L"[Database files directory]", Kind::kText, database_files_dir, L"", nullptr},
      {L"[Shared server directory]", Kind::kText, shared_server_dir, L"", nullptr},
      {L"[International units]", Kind::kSwitch, nullptr, nullptr, &international_units},
      {L"[Database file backup]", Kind::kText, database_backup, L"", nullptr},
      {L"[Style]", Kind::kText, style, L"", nullptr},
      {L"[System CodePage]", Kind::kCodePage, nullptr, nullptr, nullptr},
  };

  language = kLanguageFallback;
  wos_title = 1;
  international_units = 1;
  code_page_switch1 = 0;
  code_page_switch2 = 0;
  for (const Section& section : sections) {
    if (section.kind == Kind::kText) SetText(section.text, section.text_default);
  }

  FILE* f = fOpen(kParamFile, L"rt");
  if (f == nullptr) return 0;
  wchar_t line[kParamValueChars + 1];
  wchar_t value[kParamValueChars + 1];
  while (!std::feof(f)) {
    LeerLineaDeFichero(f, line, kParamValueChars);
    const Section* section = nullptr;
    for (const Section& candidate : sections) {
      if (StriCmp(line, candidate.header) == 0) {
        section = &candidate;
        break;
      }
    }
    if (section == nullptr || !ReadValue(f, value)) continue;
    switch (section->kind) {
      case Kind::kText:
        SetText(section->text, value);
        break;
      case Kind::kLanguage:
        *section->number = aToi(value);
        if (*section->number < 1) *section->number = kLanguageFallback;
        break;
      case Kind::kSwitch:
        if (StrCmp(value, L"0") == 0) *section->number = 0;
        break;
      case Kind::kCodePage:
        if (IsDoubleByteCodePage(value)) {
          code_page_switch1 = 1;
          code_page_switch2 = 1;
        }
        break;
    }
  }
  std::fclose(f);
  return 1;
}

void LeerSiOpcBasicas(int& basic_options) {
  korvalen::detail::for_each_record<korvalen::kCfgLongLineChars>(
      korvalen::detail::kProductSettingsFile,
      [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type != L'A' || index != 302) return true;
        LeerSIoNO(line, cursor, basic_options);
        return false;
      });
}

void CrearDirectoriosDB(const wchar_t* directory) {
  if (directory == nullptr) return;
  mkDir(directory);
  for (const wchar_t* sub : {L"General", L"Products", L"Nestings"}) {
    wchar_t name[korvalen::kFullNameChars];
    DameNombreCompleto(directory, sub, L"", name);
    mkDir(name);
  }
}

void LeerPequeno(int& first_value, wchar_t* box_file, int& second_value) {
  first_value = 0;
  SetText(box_file, L"CAJPEQU.CAJ");
  second_value = 1;
  if (Access(kPackagingFile, 0) != 0) return;
  korvalen::detail::for_each_record<korvalen::kCfgLineChars>(
      kPackagingFile, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type != L'A') return true;
        if (index == 0) {
          LeerUnEntero(line, cursor, first_value);
        } else if (index == 1) {
          if (box_file != nullptr) LeerUnTexto(line, cursor, box_file);
        } else if (index == 2) {
          LeerUnEntero(line, cursor, second_value);
        }
        return true;
      });
}

void EscribirPequeno(int first_value, const wchar_t* box_file, int second_value) {
  korvalen::detail::write_whole_file(kPackagingFile, [&](FILE* f) {
    fPrintf(f, L"A000 %d ;\n", first_value);
    fPrintf(f, L"A001 \"%s\" ;\n", or_empty(box_file));
    fPrintf(f, L"A002 %d ;\n", second_value);
  });
}

void DameVersionYServicePack(int& version, int& sub_version, int& service_pack,
                             int& second_sub_version, int& second_service_pack,
                             int& third_sub_version, int& third_service_pack) {
  sub_version = 0;
  service_pack = 0;
  if (Access(kVersionFile, 0) != 0) return;
  FILE* f = fOpen(kVersionFile, L"rt");
  if (f == nullptr) return;
  int l[kVersionLines];
  for (int& value : l) {
    wchar_t line[korvalen::kCfgLineChars + 1];
    LeerLineaDeFichero(f, line, korvalen::kCfgLineChars);
    value = aToi(line);
  }
  std::fclose(f);
  version = l[0] / 100;
  sub_version = (l[0] % 100) / 10;
  service_pack = l[1];
  second_sub_version = (l[2] % 100) / 10;
  second_service_pack = l[3];
  third_sub_version = (l[4] % 100) / 10;
  third_service_pack = l[5];
}
