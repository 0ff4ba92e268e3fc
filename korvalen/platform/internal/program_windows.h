// The main windows of the suite's running programs: finding one by its class
// or by its handle number, asking what it shows, sending (synchronous) or
// posting (asynchronous) it messages, and registering this program's own.
// Calls that can fail follow the convention of error.h.
//
//   platform::FoundWindow window;
//   if (!platform::find_window(L"C_ActualizaMIRSEL", window)) {
//     platform::post_message(window, 1024, 0, 0);
//   }
//
// Windows finds windows with FindWindowW and talks to them with window
// messages. POSIX has no such windows: a program registers its main-window
// class in an instance registry, one lock file and one local socket per class
// in a folder only the user can reach ($XDG_RUNTIME_DIR/korvalen, else
// korvalen-<uid> in the temporary folder, 0700 and the user's own). The lock
// is held while the program lives; a registration whose lock is free was left
// by a program that died, and the lookup that meets it removes it. Requests
// travel through the socket; both ends check that the other runs as the same
// user. A sent request waits for its answer at most kAnswerWaitMs; after one
// goes unanswered, the found window's later requests are only posted.
#pragma once

#include <cstdint>
#include <functional>
#include <system_error>

#include "korvalen/platform/windows_types.h"

namespace korvalen::platform {

// The window messages and show commands the library uses, by their numbers.
inline constexpr unsigned kWmActivate = 0x0006;
inline constexpr unsigned kWmClose = 0x0010;
inline constexpr unsigned kWmSysCommand = 0x0112;
inline constexpr unsigned kWaActive = 1;
inline constexpr unsigned kScRestore = 0xF120;
inline constexpr int kSwMinimize = 6;
inline constexpr int kSwRestore = 9;

inline constexpr int kAnswerWaitMs = 1000;

// A window found. Destroying it lets the program go.
struct FoundWindow {
  FoundWindow() = default;
  ~FoundWindow();
  FoundWindow(const FoundWindow&) = delete;
  FoundWindow& operator=(const FoundWindow&) = delete;

  // Windows: the window. POSIX: the registration's handle number.
  HWND window = nullptr;
  // POSIX: the program's process, the socket to it, and whether a sent
  // request went unanswered.
  unsigned long process_id = 0;
  int connection = -1;
  bool unanswered = false;
};

// The first top-level window of that class (FindWindowW, no title);
// std::errc::no_such_process when there is none. POSIX: the class's live
// registration; std::errc::permission_denied when the registry folder or the
// registration belongs to someone else.
std::error_code find_window(const wchar_t* class_name, FoundWindow& window);
// The window with that handle number (as a program publishes it, "%d").
// Windows takes the number as the handle without looking.
std::error_code window_from_handle(long handle, FoundWindow& window);

// IsWindowVisible, IsIconic, ShowWindow, SendMessageW, PostMessageW and
// SetForegroundWindow. POSIX: a program that leaves a question unanswered
// reads as visible and not minimised, and a message sent to it as answered 0.
bool is_visible(FoundWindow& window);
bool is_minimized(FoundWindow& window);
void show_window(FoundWindow& window, int command);
long send_message(FoundWindow& window, unsigned message, std::uintptr_t wparam,
                  std::intptr_t lparam);
void post_message(FoundWindow& window, unsigned message, std::uintptr_t wparam,
                  std::intptr_t lparam);
void set_foreground(FoundWindow& window);
// The process that owns the window (GetWindowThreadProcessId); 0 when unknown.
unsigned long window_process_id(FoundWindow& window);

// What a registered program is asked, in the terms of a window procedure.
enum class RequestKind { kIsVisible, kIsMinimized, kShow, kMessage, kSetForeground };
struct WindowRequest {
  RequestKind kind;
  int show_command;  // kShow
  unsigned message;  // kMessage, with its parameters
  std::uintptr_t wparam;
  std::intptr_t lparam;
};
// The answer to a question (0 or 1) or a message's result. A program that
// answers WM_CLOSE with 1 closes its window: the registration ends there.
using WindowProcedure = std::function<long(const WindowRequest&)>;

// POSIX: registers the class for this program and answers its requests with
// the procedure, on a thread of the library, one request at a time, until
// unregister_main_window or a WM_CLOSE answered 1; std::errc::device_or_resource_busy
// when a running program holds the class. window is the handle number.
// Windows: the procedure is not used (windows have their own): window is this
// program's top-level window of that class, std::errc::no_such_process when
// it has none.
std::error_code register_main_window(const wchar_t* class_name, WindowProcedure procedure,
                                     HWND& window);
// Ends a registration; from within its own procedure as well. POSIX waits
// for a request being answered at that moment.
void unregister_main_window(HWND window);

// Each system's implementation, for the portable layer (program_windows.cpp)
// only: class names are not null or empty, the found window is empty on
// entry to the lookups, and an allocation failure may throw.
namespace native {
std::error_code find_window(const wchar_t* class_name, FoundWindow& window);
std::error_code window_from_handle(long handle, FoundWindow& window);
bool is_visible(FoundWindow& window);
bool is_minimized(FoundWindow& window);
void show_window(FoundWindow& window, int command);
long send_message(FoundWindow& window, unsigned message, std::uintptr_t wparam,
                  std::intptr_t lparam);
void post_message(FoundWindow& window, unsigned message, std::uintptr_t wparam,
                  std::intptr_t lparam);
void set_foreground(FoundWindow& window);
unsigned long window_process_id(FoundWindow& window);
std::error_code register_main_window(const wchar_t* class_name, WindowProcedure procedure,
                                     HWND& window);
void unregister_main_window(HWND window);
void close_window(FoundWindow& window) noexcept;
}  // namespace native

}  // namespace korvalen::platform
