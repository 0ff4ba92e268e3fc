// Internal: the loop every settings-file reader and rewriter of the library
// runs, in one place. Reading a file means: open it in text mode, and while the
// end-of-file indicator is not set, take the next line with LeerLineaDeCfg (or
// LeerLineaLargaDeCfg), skip empty lines and comments, and dispatch on the
// record's type letter and index.
//
//   korvalen::detail::for_each_record<korvalen::kCfgLineChars>(
//       L"PEQUENO.SYS", [&](wchar_t* line, wchar_t type, int index, int& cursor) {
//         if (type == L'A' && index == 0) LeerUnEntero(line, cursor, value);
//         return true;  // false stops the walk
//       });
#pragma once

#include <cstdio>
#include <memory>
#include <type_traits>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/config_writer.h"
#include "korvalen/foundation/internal/whole_file.h"
#include "korvalen/foundation/streams.h"

namespace korvalen::detail {

// Reads the next line with the record reader of that line limit.
template <int kChars>
void read_record_line(FILE* in, wchar_t* line, wchar_t& type, int& index, int& cursor) {
  static_assert(kChars == kCfgLineChars || kChars == kCfgLongLineChars);
  if constexpr (kChars == kCfgLineChars) {
    LeerLineaDeCfg(in, line, type, index, cursor);
  } else {
    LeerLineaLargaDeCfg(in, line, type, index, cursor);
  }
}

// The loop itself: visit(line, type, index, cursor) for every line whose
// type is not ' ' (empty lines and the end of the file); false stops it.
template <int kChars, typename Visit>
void walk_lines(FILE* in, Visit visit) {
  wchar_t line[kChars + 1];
  wchar_t type = L' ';
  int index = 0;
  int cursor = 0;
  while (!std::feof(in)) {
    read_record_line<kChars>(in, line, type, index, cursor);
    if (type != L' ' && !visit(line, type, index, cursor)) break;
  }
}

// Every line of an open file that is neither empty nor blanks only, comments
// included, as rewrites copy them: visit(line, type, index, cursor).
template <int kChars, typename Visit>
void for_each_line(FILE* in, Visit visit) {
  walk_lines<kChars>(in, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
    const wchar_t* p = line;
    while (*p == L' ') ++p;
    if (*p != 0) visit(line, type, index, cursor);
    return true;
  });
}

// Every record of a settings file, in file order; comments and empty lines are
// skipped. visit(line, type, index, cursor) returns false to stop. Returns
// false when the file does not open.
template <int kChars, typename Visit>
bool for_each_record(const wchar_t* file_name, Visit visit) {
  FILE* in = fOpen(file_name, L"rt");
  if (in == nullptr) return false;
  walk_lines<kChars>(in, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
    return type == L'#' || visit(line, type, index, cursor);
  });
  std::fclose(in);
  return true;
}

// What a rewrite does with the file when its work file cannot be created.
enum class WithoutWorkFile {
  kKeepFile,
  // As give_up_target (foundation/internal/whole_file.h): the file is lost.
  kLoseFile,
};

// The rewrite of a settings file through its work file: pass(in, out) reads
// the file from its start and writes what replaces it into the work file
// work_name, held by this writer alone, which then takes the file's place in
// one step. Returns false when the file does not open; when a write is lost
// the file stays as it is, and when the work file cannot be had, as
// `without` says. A work file that another writer holds all along is that
// writer's: the file is then never lost for it.
template <typename Pass>
bool rewrite_through(const wchar_t* file_name, const wchar_t* work_name, Pass pass,
                     WithoutWorkFile without = WithoutWorkFile::kKeepFile) {
  FILE* in = fOpen(file_name, L"rt");
  if (in == nullptr) return false;
  std::unique_ptr<FILE, int (*)(FILE*)> reading(in, std::fclose);
  WorkFile out(work_name);
  if (out.stream() == nullptr) {
    reading.reset();
    if (without == WithoutWorkFile::kLoseFile) give_up_target(out, file_name, work_name);
    return true;
  }
  pass(in, out.stream());
  // Windows replaces no file that is open for reading.
  reading.reset();
  out.Replace(file_name);
  return true;
}

// Whether the edit keeps its line: an edit returning nothing keeps them all.
template <typename Edit>
bool edit_keeps_line(Edit& edit, wchar_t* line, wchar_t type, int index, int cursor) {
  if constexpr (std::is_void_v<std::invoke_result_t<Edit&, wchar_t*, wchar_t, int, int>>) {
    edit(line, type, index, cursor);
    return true;
  } else {
    return edit(line, type, index, cursor);
  }
}

// An in-place rewrite: edit(line, type, index, cursor) may change each line of
// the file (as for_each_line gives them, so blank lines are dropped) before
// it is written to the work file, or return false to leave the line out;
// append(out) then writes what follows the file's own lines, and the rest is
// as rewrite_through.
template <int kChars, typename Edit, typename Append>
bool rewrite_records(const wchar_t* file_name, const wchar_t* work_name, Edit edit, Append append,
                     WithoutWorkFile without = WithoutWorkFile::kKeepFile) {
  return rewrite_through(
      file_name, work_name,
      [&](FILE* in, FILE* out) {
        for_each_line<kChars>(in, [&](wchar_t* line, wchar_t type, int index, int cursor) {
          if (edit_keeps_line(edit, line, type, index, cursor)) EscribirLineaEnFichero(out, line);
        });
        append(out);
      },
      without);
}

template <int kChars, typename Edit>
bool rewrite_records(const wchar_t* file_name, const wchar_t* work_name, Edit edit) {
  return rewrite_records<kChars>(file_name, work_name, edit, [](FILE*) {});
}

}  // namespace korvalen::detail
