// Internal to the Windows layer: the moments when Windows refuses a file
// operation because another program is at that file. A file held open
// without sharing, or one being replaced or deleted, cannot be opened,
// created, replaced or deleted until that program is done, which takes
// moments; the calls that meet this retry for a while instead of failing.
#pragma once

#include <windows.h>

namespace korvalen::platform::win32 {

// 200 pauses of 5 ms: a second.
inline constexpr int kBusyAttempts = 200;
inline constexpr DWORD kBusyPauseMilliseconds = 5;

inline bool is_busy(DWORD error) {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION ||
         error == ERROR_ACCESS_DENIED;
}

// Calls attempt() until it returns true, pausing between calls while
// still_busy() says the refusal may pass, at most `attempts` times. Returns
// attempt()'s last result.
template <typename Attempt, typename StillBusy>
bool retry_while_busy(Attempt attempt, StillBusy still_busy, int attempts = kBusyAttempts) {
  for (int i = 1;; ++i) {
    if (attempt()) return true;
    if (i >= attempts || !still_busy()) return false;
    Sleep(kBusyPauseMilliseconds);
  }
}

// MoveFileExW, retried while the refusal is that of a busy file; false, with
// the last error, when it fails.
inline bool move_file_while_busy(const wchar_t* from, const wchar_t* to, DWORD flags,
                                 DWORD& error) {
  return retry_while_busy(
      [&] {
        if (MoveFileExW(from, to, flags)) return true;
        error = GetLastError();
        return false;
      },
      [&] { return is_busy(error); });
}

}  // namespace korvalen::platform::win32
