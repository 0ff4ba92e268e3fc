// The rewrites of the process file "MIRSELIN.CNI" that the connection
// settings make: every record through a work file, edited where the caller
// says, the lines whose type letter is a blank (empty lines) dropped; then the
// work file takes the process file's place. A process file that does not
// open, or a work file that cannot be made, leaves everything as it was.
//
//   rewrite_process_file<kCfgLineChars>(L"AUXMRSIN.AUX",
//       [&](FILE* out, wchar_t* line, wchar_t type, int index, int cursor) {
//         if (type == L'R' && index == 1) EscribirUnTexto(line, cursor, server);
//         EscribirLineaEnFichero(out, line);
//       });
#pragma once

#include <cstdio>

#include "korvalen/config/internal/record_walk.h"

namespace korvalen::detail {

inline constexpr const wchar_t* kProcessFile = L"MIRSELIN.CNI";

template <int kChars, typename Edit>
void rewrite_process_file(const wchar_t* work_name, Edit edit) {
  rewrite_through(kProcessFile, work_name, [&](FILE* in, FILE* out) {
    walk_lines<kChars>(in, [&](wchar_t* line, wchar_t type, int index, int cursor) {
      edit(out, line, type, index, cursor);
      return true;
    });
  });
}

}  // namespace korvalen::detail
