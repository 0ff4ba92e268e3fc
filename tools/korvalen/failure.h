// How a command of the tool fails: one line on standard error naming what
// failed and why, then the exit status (1: the work failed; 2: the command
// line was wrong). Every command reports through here.
//
//   if (f == nullptr) fail_errno(L"UNIDADES.CFG");  // "korvalen: UNIDADES.CFG: no such file ..."
//   fail(L"report 7", L"no such report");
#pragma once

#include <string>

namespace korvalen::tool {

inline constexpr int kWorkFailed = 1;
inline constexpr int kBadCommandLine = 2;

// Prints "korvalen: SUBJECT: CAUSE" and ends the command with the status.
[[noreturn]] void fail(const std::wstring& subject, const std::wstring& cause,
                       int status = kWorkFailed);
// The same with the cause errno gives, or the fallback when it gives none.
[[noreturn]] void fail_errno(const std::wstring& subject,
                             const std::wstring& fallback = L"cannot be opened");

}  // namespace korvalen::tool
