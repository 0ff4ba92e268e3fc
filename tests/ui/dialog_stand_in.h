// A user stand-in for the system's dialogs under Wine: once a dialog of this
// process is on screen, it types a name into the file name field (when one is
// given) and presses the button.
//
//   AnswerNextDialog cancel(IDCANCEL, nullptr);
//   SeleccionarUnDirectorio(L"Parts", folder);
//   EXPECT_TRUE(cancel.answered());
#pragma once

#include <windows.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace korvalen::testing {

class AnswerNextDialog {
 public:
  AnswerNextDialog(int button, const wchar_t* name)
      : thread_([this, button, name] {
          for (int i = 0; i < 500 && !answered_; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            HWND dialog = FindWindowW(L"#32770", nullptr);
            DWORD process = 0;
            // Only a dialog on screen takes the press: the print setup drops
            // a command that comes before it is shown.
            if (dialog == nullptr || GetWindowThreadProcessId(dialog, &process) == 0 ||
                process != GetCurrentProcessId() || !IsWindowVisible(dialog)) {
              continue;
            }
            if (name != nullptr && !SetDlgItemTextW(dialog, 1148, name)) {
              SetDlgItemTextW(dialog, 1152, name);
            }
            PostMessageW(dialog, WM_COMMAND, button, 0);
            answered_ = true;
          }
        }) {}
  ~AnswerNextDialog() { Wait(); }
  bool answered() {
    Wait();
    return answered_;
  }

 private:
  void Wait() {
    if (thread_.joinable()) thread_.join();
  }
  std::atomic<bool> answered_{false};
  std::thread thread_;  // after the flag it sets
};

}  // namespace korvalen::testing
