#include "korvalen/ui/internal/builtin_dialogs.h"

#include <span>

#include "korvalen/ui/internal/progress_dialog.h"

namespace korvalen::detail {
namespace {

using platform::ControlKind;
using platform::DialogControl;
using platform::DialogTemplate;

constexpr std::uint32_t kDialogStyle = 0x90C800C0;  // visible popup, caption, system menu, font
constexpr std::uint32_t kChild = 0x50000000;        // child, visible
constexpr std::uint32_t kTabStop = 0x00010000;
constexpr std::int16_t kRowHeight = 14;

DialogControl Control(std::uint32_t id, ControlKind kind, std::uint32_t style, const wchar_t* text,
                      int x, int y, int width, int height) {
  DialogControl c;
  c.id = id;
  c.kind = kind;
  c.style = kChild | style;
  c.text = text;
  c.x = static_cast<std::int16_t>(x);
  c.y = static_cast<std::int16_t>(y);
  c.width = static_cast<std::int16_t>(width);
  c.height = static_cast<std::int16_t>(height);
  return c;
}

// One row per phase, [box] [counter] and, where the phase has one, [text];
// the indicator under them.
DialogTemplate Progress(const ProgressLayout& layout, const wchar_t* caption,
                        std::span<const wchar_t* const> phase_names) {
  const bool texts = layout.phases[0].text != 0;
  DialogTemplate d;
  d.style = kDialogStyle;
  d.caption = caption;
  d.font = L"MS Shell Dlg";
  d.point_size = 8;
  d.width = texts ? 330 : 220;
  int y = 7;
  for (std::size_t i = 0; i < layout.phases.size(); ++i, y += kRowHeight) {
    const PhaseControls& p = layout.phases[i];
    d.controls.push_back(Control(p.check, ControlKind::kButton,
                                 platform::kStyleAutoCheckBox | kTabStop, phase_names[i], 7, y, 140,
                                 10));
    d.controls.push_back(Control(p.counter, ControlKind::kEdit,
                                 platform::kStyleEditReadOnly | platform::kStyleEditRight, L"", 152,
                                 y - 1, 50, 12));
    if (texts) {
      d.controls.push_back(Control(p.text, ControlKind::kEdit, platform::kStyleEditReadOnly, L"",
                                   208, y - 1, 115, 12));
    }
  }
  d.controls.push_back(Control(layout.indicator, ControlKind::kEdit, platform::kStyleEditReadOnly,
                               L"", 7, y + 4, d.width - 14, 12));
  d.height = static_cast<std::int16_t>(y + 23);
  return d;
}

constexpr const wchar_t* kCutNames[] = {
    L"Part cycles", L"Mark contours",       L"Cut contours",         L"Lead cycles",
    L"Scrap line",  L"Destroy scrap after", L"Destroy scrap before", L"Check holes",
    L"Move leads",  L"Reposition",          L"Break contours",       L"Head up/down",
};
constexpr const wchar_t* kPunchNames[] = {
    L"Punch parts",      L"Punch scrap",    L"Minimise punches",
    L"Optimise punches", L"Evacuate parts", L"Forming",
};

}  // namespace

const platform::DialogTemplate* builtin_dialog(unsigned template_id) {
  static const DialogTemplate cut = Progress(kCutProgress, L"Cutting program", kCutNames);
  static const DialogTemplate punch = Progress(kPunchProgress, L"Punching program", kPunchNames);
  if (template_id == kCutProgress.dialog) return &cut;
  if (template_id == kPunchProgress.dialog) return &punch;
  return nullptr;
}

}  // namespace korvalen::detail
