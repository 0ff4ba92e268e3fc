// Internal: the unique-name generator of DameNombreFic for callers that take
// each name their own way. DameNombreFic reserves a name by creating the empty
// file; an error report takes it by publishing its complete work file under
// it, so that a report becomes visible only whole.
//
//   next_unique_name(L"CONTERRW.cdr", L".err", base, [&](const wchar_t* path) {
//     return work.Publish(path);  // std::errc::file_exists: the next number
//   });
#pragma once

#include <functional>
#include <system_error>

namespace korvalen::detail {

// What takes a name: empty when it took path, std::errc::file_exists when an
// entry already has that name (the next number is tried), anything else to
// give up.
using NameTaker = std::function<std::error_code(const wchar_t* path)>;

// The next number of the counter file whose name `take` accepts, as base
// (kUniqueNameChars + 1 characters). Returns 1, or 0 when the counter cannot be
// had, `take` gives up, or no name was accepted; base is then untouched.
int next_unique_name(const wchar_t* counter_file, const wchar_t* extension, wchar_t* base,
                     const NameTaker& take);

}  // namespace korvalen::detail
