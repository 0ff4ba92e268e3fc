#include "korvalen/platform/internal/dialog_template.h"

namespace korvalen::platform {
namespace {

constexpr std::uint32_t kSetFont = 0x40;  // also part of DS_SHELLFONT
constexpr std::uint16_t kExtendedSignature = 0xFFFF;

// A reader that fails, and stays failed, at the first read past the end.
class Reader {
 public:
  explicit Reader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  bool ok() const { return ok_; }

  std::uint16_t Word() {
    if (!Need(2)) return 0;
    const auto value = static_cast<std::uint16_t>(bytes_[at_] | (bytes_[at_ + 1] << 8));
    at_ += 2;
    return value;
  }
  std::uint32_t Dword() {
    const std::uint32_t low = Word();
    return low | (static_cast<std::uint32_t>(Word()) << 16);
  }
  std::int16_t Short() { return static_cast<std::int16_t>(Word()); }
  void Skip(std::size_t count) {
    if (Need(count)) at_ += count;
  }
  // Items start on a DWORD boundary of the template.
  void Align() { Skip((4 - at_ % 4) % 4); }

  // A zero-terminated UTF-16 string, surrogate pairs joined where wchar_t
  // holds a whole character.
  std::wstring String() {
    std::wstring text;
    for (std::uint16_t unit = Word(); ok_ && unit != 0; unit = Word()) {
      char32_t c = unit;
      if constexpr (sizeof(wchar_t) == 4) {
        if (unit >= 0xD800 && unit < 0xDC00 && at_ + 2 <= bytes_.size()) {
          const auto low = static_cast<std::uint16_t>(bytes_[at_] | (bytes_[at_ + 1] << 8));
          if (low >= 0xDC00 && low <= 0xDFFF) {
            c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
            at_ += 2;
          }
        }
      }
      text += static_cast<wchar_t>(c);
    }
    return text;
  }
  // Nothing (0), an ordinal (0xFFFF, then the number) or a string.
  void NameOrOrdinal(std::wstring& name, std::uint16_t& ordinal) {
    name.clear();
    ordinal = 0;
    if (!Need(2)) return;
    const auto first = static_cast<std::uint16_t>(bytes_[at_] | (bytes_[at_ + 1] << 8));
    if (first == 0) {
      at_ += 2;
    } else if (first == 0xFFFF) {
      at_ += 2;
      ordinal = Word();
    } else {
      name = String();
    }
  }

 private:
  bool Need(std::size_t count) {
    if (ok_ && bytes_.size() - at_ >= count) return true;
    ok_ = false;
    return false;
  }

  std::span<const std::uint8_t> bytes_;
  std::size_t at_ = 0;
  bool ok_ = true;
};

}  // namespace

bool parse_dialog_template(std::span<const std::uint8_t> bytes, DialogTemplate& dialog) {
  dialog = DialogTemplate{};
  Reader in(bytes);
  const std::uint16_t version = in.Word();
  const bool extended = version == 1 && in.Word() == kExtendedSignature;
  if (extended) {
    in.Dword();  // help id
    in.Dword();  // extended style
    dialog.style = in.Dword();
  } else {
    in = Reader(bytes);
    dialog.style = in.Dword();
    in.Dword();  // extended style
  }
  const std::uint16_t count = in.Word();
  dialog.x = in.Short();
  dialog.y = in.Short();
  dialog.width = in.Short();
  dialog.height = in.Short();
  std::wstring name;
  std::uint16_t ordinal = 0;
  in.NameOrOrdinal(name, ordinal);  // menu
  in.NameOrOrdinal(name, ordinal);  // window class
  dialog.caption = in.String();
  if ((dialog.style & kSetFont) != 0) {
    dialog.point_size = in.Word();
    if (extended) in.Skip(4);  // weight, italic, character set
    dialog.font = in.String();
  }
  for (std::uint16_t i = 0; i < count && in.ok(); ++i) {
    in.Align();
    DialogControl control;
    if (extended) {
      in.Dword();  // help id
      in.Dword();  // extended style
      control.style = in.Dword();
    } else {
      control.style = in.Dword();
      in.Dword();  // extended style
    }
    control.x = in.Short();
    control.y = in.Short();
    control.width = in.Short();
    control.height = in.Short();
    control.id = extended ? in.Dword() : in.Word();
    in.NameOrOrdinal(control.class_name, ordinal);
    control.kind = ordinal >= 0x80 && ordinal <= 0x85 ? static_cast<ControlKind>(ordinal)
                                                      : ControlKind::kOther;
    in.NameOrOrdinal(control.text, ordinal);
    // Creation data: its size in bytes, counting the size itself in the
    // classic form only.
    const std::uint16_t extra = in.Word();
    in.Skip(extended ? extra : (extra >= 2 ? extra - 2u : 0u));
    if (in.ok()) dialog.controls.push_back(std::move(control));
  }
  return in.ok();
}

}  // namespace korvalen::platform
