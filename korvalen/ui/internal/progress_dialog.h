// The behaviour the cut and punch progress dialogs share, over the controls
// of a dialog window: phases with a check box, a counter field and
// (punching) a text field each, and an activity indicator of capital letters
// "I" that grows by one on every counted step and starts again at one after
// its limit. The step and the counters are the exported classes' members;
// this works on them in place.
//
//   ProgressDialog dialog(kCutProgress, window, m_nStep, m_nCounters);
//   dialog.AddCounter(2, nullptr);  // one more cut contour
//
// A null window (a dialog not created) keeps the numbers and shows nothing.
#pragma once

#include <span>
#include <string>

#include "korvalen/platform/internal/dialog_window.h"

namespace korvalen::detail {

// The control identifiers of one phase; text 0 when it has no text field.
struct PhaseControls {
  int check;
  int counter;
  int text;
};

struct ProgressLayout {
  unsigned dialog;  // the template
  int indicator;
  int limit;  // the longest indicator
  std::span<const PhaseControls> phases;
};

class ProgressDialog {
 public:
  ProgressDialog(const ProgressLayout& layout, platform::DialogWindow* window, int& step,
                 int* counters)
      : layout_(layout), window_(window), step_(step), counters_(counters) {}

  void Reset() {
    step_ = 0;
    for (std::size_t i = 0; i < layout_.phases.size(); ++i) counters_[i] = 0;
  }

  // Each phase's box cleared and enabled when its entry is non-zero; the
  // counters shown as they are and the text fields emptied.
  void InitializeButtons(const int* enabled) {
    if (window_ == nullptr) return;
    for (std::size_t i = 0; i < layout_.phases.size(); ++i) {
      window_->check(layout_.phases[i].check, false);
      window_->enable(layout_.phases[i].check, enabled[i] != 0);
    }
    for (std::size_t i = 0; i < layout_.phases.size(); ++i) {
      Show(layout_.phases[i].counter, std::to_wstring(counters_[i]).c_str());
      if (layout_.phases[i].text != 0) Show(layout_.phases[i].text, L"");
    }
    window_->refresh();
  }

  // A disabled box stays unchecked whatever is asked.
  void SetCheck(std::size_t phase, int checked) {
    if (window_ == nullptr) return;
    const int box = layout_.phases[phase].check;
    window_->check(box, checked != 0 && window_->enabled(box));
    window_->refresh();
  }

  void ShowCounter(std::size_t phase) {
    Show(layout_.phases[phase].counter, std::to_wstring(counters_[phase]).c_str());
    Refresh();
  }

  void SetCounterValue(std::size_t phase, int value) { counters_[phase] = value; }

  void SetText(std::size_t phase, const wchar_t* text) {
    Show(layout_.phases[phase].text, text != nullptr ? text : L"");
    Refresh();
  }

  // One step: the indicator moves; a phase number out of range counts
  // nothing and sets no text.
  void AddCounter(int phase, const wchar_t* text) {
    if (++step_ > layout_.limit) step_ = 1;
    Show(layout_.indicator, std::wstring(static_cast<std::size_t>(step_), L'I').c_str());
    Refresh();
    if (phase < 0 || static_cast<std::size_t>(phase) >= layout_.phases.size()) return;
    ++counters_[phase];
    ShowCounter(static_cast<std::size_t>(phase));
    if (layout_.phases[phase].text != 0) SetText(static_cast<std::size_t>(phase), text);
  }

 private:
  void Show(int id, const wchar_t* text) {
    if (window_ != nullptr) window_->replace_text(id, text);
  }
  void Refresh() {
    if (window_ != nullptr) window_->refresh();
  }

  const ProgressLayout& layout_;
  platform::DialogWindow* window_;
  int& step_;
  int* counters_;
};

// The two dialogs' templates and controls, in phase order.
inline constexpr PhaseControls kCutPhases[] = {
    {14200, 14209, 0}, {14201, 14210, 0}, {14203, 14211, 0}, {14204, 14212, 0},
    {14205, 14213, 0}, {14206, 14214, 0}, {14222, 14223, 0}, {14207, 14215, 0},
    {14217, 14216, 0}, {14221, 14220, 0}, {14219, 14218, 0}, {14225, 14224, 0},
};
inline constexpr ProgressLayout kCutProgress{14200, 14208, 100, kCutPhases};

inline constexpr PhaseControls kPunchPhases[] = {
    {14305, 14304, 14303}, {14308, 14307, 14306}, {14311, 14310, 14309},
    {14314, 14313, 14312}, {14317, 14316, 14315}, {14320, 14319, 14318},
};
// The punch indicator's limit is its own, not the cut dialog's.
inline constexpr ProgressLayout kPunchProgress{14301, 14302, 153, kPunchPhases};

}  // namespace korvalen::detail
