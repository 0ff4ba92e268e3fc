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
#include "korvalen/foundation/streams.h"
#include "korvalen/platform/internal/files.h"

namespace korvalen::detail {

inline constexpr const wchar_t* kProcessFile = L"MIRSELIN.CNI";

template <int kChars, typename Edit>
void rewrite_process_file(const wchar_t* work_name, Edit edit) {
  FILE* in = fOpen(kProcessFile, L"rt");
  if (in == nullptr) return;
  FILE* out = fOpen(work_name, L"wt");
  if (out == nullptr) {
    std::fclose(in);
    return;
  }
  walk_lines<kChars>(in, [&](wchar_t* line, wchar_t type, int index, int cursor) {
    edit(out, line, type, index, cursor);
    return true;
  });
  std::fclose(in);
  const bool written = std::fclose(out) == 0;
  if (!written || platform::replace_file(work_name, kProcessFile)) {
    platform::remove_file(work_name);
  }
}

}  // namespace korvalen::detail
