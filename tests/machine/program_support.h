// Test support for launching and finding the suite's programs: the helper
// program that stands in for them (helper/window_program.cpp, built beside
// this test program), the files through which it reports, and what the tests
// need of the system around it. With process_support and serial_peer, the
// only place of this suite that talks to the operating system.
#pragma once

#include <string>
#include <vector>

#include "korvalen/platform/windows_types.h"

namespace korvalen::testing {

// The helper's command line: its path in quotes, then the options.
std::wstring HelperCommand(const std::string& options);
// The helper's path.
std::string HelperPath();

// The lines of a text file ("" lines included, line ends removed).
std::vector<std::string> FileLines(const std::string& name);
// Waits until the file exists / holds that line; false when the time is up.
bool WaitForFile(const std::string& name, int timeout_ms);
bool WaitForLine(const std::string& name, const std::string& line, int timeout_ms);

// Windows: a window of this test program, to post key-downs to. POSIX: no
// window (null handle).
class OwnWindow {
 public:
  OwnWindow();
  ~OwnWindow();
  OwnWindow(const OwnWindow&) = delete;
  OwnWindow& operator=(const OwnWindow&) = delete;
  HWND handle() const { return handle_; }
  void PostKeyDown(unsigned key);

 private:
  HWND handle_ = nullptr;
};

// POSIX: a process holding a registration's lock file and listening on its
// socket, both made by this user; with `as_user` non-zero it listens as that
// user instead (needs root). The files' names are given. It answers nothing.
class ForeignListener {
 public:
  ForeignListener(const std::string& lock, const std::string& socket, unsigned as_user);
  ~ForeignListener();
  ForeignListener(const ForeignListener&) = delete;
  ForeignListener& operator=(const ForeignListener&) = delete;
  bool listening() const { return listening_; }

 private:
  bool listening_ = false;
  long long process_ = -1;
};
bool RunningAsRoot();

// Makes the folder with only the owner's rights, or with `mode`.
void MakePrivateFolder(const std::string& name, unsigned mode = 0700);

}  // namespace korvalen::testing
