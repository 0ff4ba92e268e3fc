// The progress dialogs: their behaviour over a window that records what it
// is told (indicator, counters, check boxes forced off when disabled,
// refresh after every change), then the exported classes on a real dialog:
// headless on Linux without a display, the Win32 dialog from the test
// language library's templates under Wine, read back with the system's own
// calls.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "korvalen/korvalen.h"
#include "korvalen/ui/internal/progress_dialog.h"
#include "process_support.h"
#include "temp_dir_test.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace {

using korvalen::detail::kCutProgress;
using korvalen::detail::kPunchProgress;
using korvalen::detail::ProgressDialog;
using korvalen::detail::ProgressLayout;

// Keeps each control's state and logs "text ID", "refresh" and the like.
class RecordingWindow final : public korvalen::platform::DialogWindow {
 public:
  HWND handle() const override { return nullptr; }
  void check(int id, bool on) override {
    Log("check", id);
    checked_[id] = on;
  }
  bool checked(int id) const override { return checked_.count(id) != 0 && checked_.at(id); }
  void enable(int id, bool on) override {
    Log("enable", id);
    enabled_[id] = on;
  }
  bool enabled(int id) const override { return enabled_.count(id) == 0 || enabled_.at(id); }
  void replace_text(int id, const wchar_t* text) override {
    Log("text", id);
    texts_[id] = text;
  }
  std::wstring text(int id) const override { return texts_.count(id) ? texts_.at(id) : L"?"; }
  void refresh() override { log.push_back("refresh"); }

  std::vector<std::string> log;

 private:
  void Log(const char* what, int id) {
    log.push_back(std::string(what) + " " + std::to_string(id));
  }
  std::map<int, bool> checked_, enabled_;
  std::map<int, std::wstring> texts_;
};

struct Dialog {
  explicit Dialog(const ProgressLayout& layout) : logic(layout, &window, step, counters) {
    logic.Reset();
  }
  RecordingWindow window;
  int step = -1;
  int counters[12] = {7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7};
  ProgressDialog logic;
};

TEST(ProgressLogic, IndicatorWrapsAtEachDialogsOwnLimit) {
  for (const ProgressLayout* layout : {&kCutProgress, &kPunchProgress}) {
    Dialog d(*layout);
    for (int call = 1; call <= layout->limit + 1; ++call) {
      d.logic.AddCounter(0, L"x");
      const std::size_t letters = call <= layout->limit ? static_cast<std::size_t>(call) : 1;
      ASSERT_EQ(d.window.text(layout->indicator), std::wstring(letters, L'I')) << call;
    }
    EXPECT_EQ(d.window.text(layout->phases[0].counter), std::to_wstring(layout->limit + 1));
  }
}

TEST(ProgressLogic, PhaseOutsideTheTableOnlyMovesTheIndicator) {
  for (const ProgressLayout* layout : {&kCutProgress, &kPunchProgress}) {
    for (const int phase : {static_cast<int>(layout->phases.size()), -1}) {
      Dialog d(*layout);
      d.logic.AddCounter(phase, L"text");
      EXPECT_EQ(d.window.log,
                (std::vector<std::string>{"text " + std::to_string(layout->indicator), "refresh"}));
      EXPECT_EQ(d.step, 1);
      for (std::size_t i = 0; i < layout->phases.size(); ++i) EXPECT_EQ(d.counters[i], 0);
    }
  }
}

TEST(ProgressLogic, CountedStepShowsCounterAndPunchText) {
  Dialog cut(kCutProgress);
  cut.logic.SetCounterValue(2, 5);
  EXPECT_EQ(cut.window.text(14211), L"?");  // a stored value is not shown
  cut.logic.AddCounter(2, nullptr);
  EXPECT_EQ(cut.window.text(14211), L"6");
  EXPECT_EQ(cut.window.log,
            (std::vector<std::string>{"text 14208", "refresh", "text 14211", "refresh"}));

  Dialog punch(kPunchProgress);
  punch.logic.AddCounter(4, L"Part 17");
  EXPECT_EQ(punch.window.text(14316), L"1");
  EXPECT_EQ(punch.window.text(14315), L"Part 17");
  EXPECT_EQ(punch.window.log.back(), "refresh");
}

TEST(ProgressLogic, InitializeButtonsClearsEnablesAndShowsCountersUnreset) {
  Dialog punch(kPunchProgress);
  punch.counters[3] = 42;
  for (int phase = 0; phase < 6; ++phase)
    punch.window.check(kPunchProgress.phases[phase].check, true);
  const int enabled[] = {1, 0, 1, 0, 1, 0};
  punch.logic.InitializeButtons(enabled);
  for (int phase = 0; phase < 6; ++phase) {
    const auto& p = kPunchProgress.phases[phase];
    EXPECT_FALSE(punch.window.checked(p.check));
    EXPECT_EQ(punch.window.enabled(p.check), enabled[phase] != 0);
    EXPECT_EQ(punch.window.text(p.counter), phase == 3 ? L"42" : L"0");
    EXPECT_EQ(punch.window.text(p.text), L"");
  }
  EXPECT_EQ(punch.counters[3], 42);
  // A disabled box stays unchecked; an enabled one follows the call.
  for (const auto& [phase, asked, shown] : {std::tuple{1, 1, false}, {0, 1, true}, {0, 0, false}}) {
    punch.logic.SetCheck(phase, asked);
    EXPECT_EQ(punch.window.checked(kPunchProgress.phases[phase].check), shown) << phase;
    EXPECT_EQ(punch.window.log.back(), "refresh");
  }
}

// --- the exported classes on the system's dialogs ----------------------------

class ProgressDialogs : public korvalen::testing::TempDirTest {
 protected:
  void SetUp() override {
    TempDirTest::SetUp();
    std::filesystem::copy_file(std::filesystem::path(korvalen::testing::ProgramDirectory()) /
                                   "fixtures" / "dialogs" / "DIALOGS.DLL",
                               "UKVORTAN.DLL");
    library_ = CargaRecursosDeIdioma(3);
    ASSERT_NE(library_, nullptr);
  }
  void TearDown() override {
    LiberaRecursosDeIdioma(library_);
    TempDirTest::TearDown();
  }
  HMODULE library_ = nullptr;
};

// The control as the system shows it: Win32 calls on Windows, the dialog's
// own reading back elsewhere.
std::wstring Text(const CDialog& dialog, int id) {
#if defined(_WIN32)
  wchar_t text[256] = {};
  GetDlgItemTextW(dialog.m_hWnd, id, text, 256);
  return text;
#else
  CString text;
  dialog.GetDlgItemText(id, text);
  return static_cast<const wchar_t*>(text);
#endif
}

bool Checked(const CDialog& dialog, int id) {
#if defined(_WIN32)
  return IsDlgButtonChecked(dialog.m_hWnd, id) == BST_CHECKED;
#else
  return dialog.IsDlgButtonChecked(id) == 1;
#endif
}

TEST_F(ProgressDialogs, CutDialogDrivenThroughItsMembers) {
  CDlgCutPrgrs dialog;
  dialog.m_nStep = 9;
  ASSERT_EQ(dialog.Create(nullptr), 1);
  ASSERT_NE(dialog.m_hWnd, nullptr);
  EXPECT_EQ(dialog.m_nStep, 0);
#if defined(_WIN32)
  wchar_t caption[64] = {};
  GetWindowTextW(dialog.m_hWnd, caption, 64);
  EXPECT_STREQ(caption, L"Generating the cutting program");
#endif
  dialog.InitializeButtons(1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0);
  dialog.SetHeadUpDown(1);
  dialog.SetCutContours(1);
  dialog.SetValueCounterCutContour(5);
  dialog.AddCounter(2);
  dialog.AddCounter(12);
  EXPECT_FALSE(Checked(dialog, 14225));
  EXPECT_TRUE(Checked(dialog, 14203));
  EXPECT_EQ(Text(dialog, 14211), L"6");
  EXPECT_EQ(Text(dialog, 14209), L"0");
  EXPECT_EQ(Text(dialog, 14208), L"II");
  dialog.SetValueCounterHeadUpDown(30);
  dialog.SetCounterHeadUpDown();
  EXPECT_EQ(Text(dialog, 14224), L"30");
  EXPECT_EQ(dialog.m_nCounters[11], 30);
}

TEST_F(ProgressDialogs, PunchDialogDrivenThroughItsMembers) {
  CDlgPnzPrgrs dialog;
  ASSERT_EQ(dialog.Create(nullptr), 1);
  dialog.InitializeButtons(1, 1, 1, 1, 1, 0);
  dialog.SetTextPunchOptim(L"Optimising");
  dialog.AddCounter(4, L"Part 17");
  dialog.AddCounter(6, L"ignored");
  dialog.SetCheckEmbuticion(1);
  dialog.SetCheckEvacuParts(1);
  EXPECT_EQ(Text(dialog, 14316), L"1");
  EXPECT_EQ(Text(dialog, 14315), L"Part 17");
  EXPECT_EQ(Text(dialog, 14312), L"Optimising");
  EXPECT_EQ(Text(dialog, 14302), L"II");
  EXPECT_FALSE(Checked(dialog, 14320));
  EXPECT_TRUE(Checked(dialog, 14317));
  dialog.DestroyWindow();
  EXPECT_EQ(dialog.m_hWnd, nullptr);
}

#if defined(_WIN32)
TEST_F(ProgressDialogs, WithoutTheTemplateCreateFailsAndKeepsTheMembers) {
  LiberaRecursosDeIdioma(library_);
  CDlgCutPrgrs dialog;
  dialog.m_nStep = 9;
  EXPECT_EQ(dialog.Create(nullptr), 0);
  EXPECT_EQ(dialog.m_nStep, 9);
  EXPECT_EQ(dialog.m_hWnd, nullptr);
}
#endif

}  // namespace
