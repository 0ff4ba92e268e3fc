// Dialog templates (the RT_DIALOG resources of a language library, classic
// DLGTEMPLATE or DLGTEMPLATEEX) taken apart into their caption, font, size
// and controls, for systems that build the dialog themselves. Positions and
// sizes stay in dialog units. The bytes are untrusted: every count and
// string is checked against them.
//
//   DialogTemplate dialog;
//   if (parse_dialog_template(image.FindResource(kResourceDialog, 14200), dialog)) {
//     for (const DialogControl& c : dialog.controls) { ... c.id, c.kind, c.text ... }
//   }
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace korvalen::platform {

// The predefined window classes, by their atoms; kOther for any class given
// by name.
enum class ControlKind : std::uint16_t {
  kButton = 0x80,
  kEdit = 0x81,
  kStatic = 0x82,
  kListBox = 0x83,
  kScrollBar = 0x84,
  kComboBox = 0x85,
  kOther = 0,
};

// Styles that decide how a control is drawn, with the Windows values.
inline constexpr std::uint32_t kStyleButtonTypeMask = 0x0F;
inline constexpr std::uint32_t kStyleCheckBox = 0x02;
inline constexpr std::uint32_t kStyleAutoCheckBox = 0x03;
inline constexpr std::uint32_t kStyleGroupBox = 0x07;
inline constexpr std::uint32_t kStyleEditReadOnly = 0x0800;
inline constexpr std::uint32_t kStyleEditRight = 0x0002;
inline constexpr std::uint32_t kStyleDisabled = 0x08000000;
inline constexpr std::uint32_t kStyleVisible = 0x10000000;

struct DialogControl {
  std::uint32_t id = 0;
  ControlKind kind = ControlKind::kOther;
  std::wstring class_name;  // for kOther
  std::wstring text;        // empty when the template gives an ordinal
  std::uint32_t style = 0;
  std::int16_t x = 0, y = 0, width = 0, height = 0;
};

struct DialogTemplate {
  std::uint32_t style = 0;
  std::wstring caption;
  std::wstring font;
  std::uint16_t point_size = 0;
  std::int16_t x = 0, y = 0, width = 0, height = 0;
  std::vector<DialogControl> controls;
};

// False when the bytes are no whole template (dialog is then unspecified).
bool parse_dialog_template(std::span<const std::uint8_t> bytes, DialogTemplate& dialog);

}  // namespace korvalen::platform
