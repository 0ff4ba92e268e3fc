// A dialog without a display: nothing is shown, each control's state is kept
// as the calls leave it and read back from there. A control that no call has
// touched yet is enabled, unchecked and empty, as a template's controls
// start; Create succeeds for any template.
#pragma once

#include <map>

#include "korvalen/platform/internal/dialog_window.h"

namespace korvalen::platform {

class HeadlessDialog final : public DialogWindow {
 public:
  HWND handle() const override;
  void check(int id, bool checked) override { controls_[id].checked = checked; }
  bool checked(int id) const override { return find(id).checked; }
  void enable(int id, bool enabled) override { controls_[id].enabled = enabled; }
  bool enabled(int id) const override { return find(id).enabled; }
  void replace_text(int id, const wchar_t* text) override { controls_[id].text = text; }
  std::wstring text(int id) const override { return find(id).text; }
  void refresh() override {}

 private:
  struct Control {
    std::wstring text;
    bool checked = false;
    bool enabled = true;
  };
  const Control& find(int id) const {
    static const Control untouched;
    const auto it = controls_.find(id);
    return it != controls_.end() ? it->second : untouched;
  }
  std::map<int, Control> controls_;
};

}  // namespace korvalen::platform
