#include "korvalen/settings/settings_rewrites.h"

#include <cstdio>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/config_writer.h"
#include "korvalen/config/internal/record_walk.h"
#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/settings/internal/long_text_field.h"

namespace {

using korvalen::detail::or_empty;

constexpr const wchar_t* kIdentificationFile = L"MIRSELID.CFG";
constexpr const wchar_t* kIdentificationWork = L"AUXMRSID.CFG";
constexpr const wchar_t* kProcessFile = L"MIRSELIN.CNI";
constexpr const wchar_t* kProcessWork = L"AUXMRSIN.AUX";

}  // namespace

void LeerCfgMirselId(int& flag, wchar_t* text) {
  korvalen::detail::for_each_record<korvalen::kCfgLongLineChars>(
      kIdentificationFile, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type == L'A' && index == 2) {
          LeerSIoNO(line, cursor, flag);
        } else if (type == L'A' && index == 3 && text != nullptr) {
          LeerUnTexto(line, cursor, text);
        }
        return true;
      });
}

void EscribirCfgMirselId(int flag, const wchar_t* text) {
  text = or_empty(text);
  korvalen::detail::rewrite_through(
      kIdentificationFile, kIdentificationWork, [&](FILE* in, FILE* out) {
        korvalen::detail::for_each_line<korvalen::kCfgLongLineChars>(
            in, [&](wchar_t* line, wchar_t type, int index, int cursor) {
              if (type == L'A' && index == 2) {
                EscribirSIoNO(line, cursor, flag);
              } else if (type == L'A' && index == 3) {
                korvalen::detail::write_long_text_field(out, line, cursor, text);
                return;
              }
              EscribirLineaEnFichero(out, line);
            });
      });
}

void ActualizaMirselinCNI(int& number_a000, const wchar_t* server_r001,
                          const wchar_t* database_folder_r005_r008, const wchar_t* /*unused_text*/,
                          int& switch_r000, const wchar_t* text_a001, const wchar_t* text_a002,
                          const wchar_t* text_a005, int& /*unused_number*/) {
  try {
    // Kept from the suite's own order: the process file goes even when no
    // work file can be made to take its place.
    korvalen::detail::rewrite_records<korvalen::kCfgLineChars>(
        kProcessFile, kProcessWork,
        [&](wchar_t* line, wchar_t type, int index, int cursor) {
          if (type == L'A' && index == 0) {
            EscribirUnEntero(line, cursor, number_a000);
          } else if (type == L'A' && index == 1) {
            EscribirUnTexto(line, cursor, text_a001);
          } else if (type == L'A' && index == 2) {
            EscribirUnTexto(line, cursor, text_a002);
          } else if (type == L'A' && index == 5) {
            EscribirUnTexto(line, cursor, text_a005);
          } else if (type == L'R' && index == 0) {
            EscribirSIoNO(line, cursor, switch_r000);
          } else if (type == L'R' && index == 1) {
            EscribirUnTexto(line, cursor, server_r001);
          } else if (type == L'R' && (index == 5 || index == 8)) {
            EscribirUnTexto(line, cursor, database_folder_r005_r008);
          }
        },
        [](FILE*) {}, korvalen::detail::WithoutWorkFile::kLoseFile);
  } catch (...) {
    // Nothing more is done; what was written stays.
  }
}
