// The rules of the file dialog and of the browser-component check, apart
// from any dialog: the dialog's flags, its filter and default extension from
// a comma-separated extension list, the paths of a multiple selection, and
// the version query and its comparison.
//
//   file_dialog_filter(L"dxf,dwg");        // L"*.dxf|*.dxf|*.dwg|*.dwg||"
//   file_dialog_default_extension(L"*");   // L"" (none)
//   version_passes(L"4.71.1712.6");        // true
#pragma once

#include <cstdint>
#include <cwchar>
#include <string>
#include <string_view>

namespace korvalen::detail {

// OPENFILENAME flags, with the Windows values.
inline constexpr unsigned long kOfnOverwritePrompt = 0x00000002;
inline constexpr unsigned long kOfnHideReadOnly = 0x00000004;
inline constexpr unsigned long kOfnAllowMultiSelect = 0x00000200;
inline constexpr unsigned long kOfnPathMustExist = 0x00000800;
inline constexpr unsigned long kOfnFileMustExist = 0x00001000;
inline constexpr unsigned long kOfnExplorer = 0x00080000;
inline constexpr unsigned long kOfnLongNames = 0x00200000;

// The dialog's buffer for a multiple selection, in characters.
inline constexpr int kMultipleSelectionChars = 2048;

inline unsigned long file_dialog_flags(int open, int read_only_shown, int file_must_exist,
                                       int path_must_exist, int multiple) {
  unsigned long flags = kOfnExplorer | kOfnLongNames;
  if (read_only_shown == 0) flags |= kOfnHideReadOnly;
  if (file_must_exist != 0) flags |= kOfnFileMustExist;
  if (path_must_exist != 0) flags |= kOfnPathMustExist;
  if (multiple != 0) flags |= kOfnAllowMultiSelect;
  if (open == 0) flags |= kOfnOverwritePrompt;
  return flags;
}

// "*.e|*.e|" per extension of the list, the description being the pattern
// itself, and a closing "|" when there was any.
inline std::wstring file_dialog_filter(std::wstring_view extensions) {
  std::wstring filter;
  for (std::size_t at = 0; at <= extensions.size();) {
    std::size_t comma = extensions.find(L',', at);
    if (comma == std::wstring_view::npos) comma = extensions.size();
    const std::wstring_view e = extensions.substr(at, comma - at);
    if (!e.empty()) {
      const std::wstring pattern = L"*." + std::wstring(e);
      filter += pattern + L"|" + pattern + L"|";
    }
    at = comma + 1;
  }
  if (!filter.empty()) filter += L"|";
  return filter;
}

// The list itself, as the suite gives it (one extension or several); none
// for "*".
inline std::wstring file_dialog_default_extension(std::wstring_view extensions) {
  return extensions == L"*" ? std::wstring() : std::wstring(extensions);
}

// Where the file version sits: by the first translation entry (its bytes as
// language then code page, each high byte first) when there is one, else by
// the user's language with the Unicode code page.
inline std::wstring version_query(const std::uint8_t* translation, std::uint16_t language) {
  wchar_t query[64];
  if (translation != nullptr) {
    std::swprintf(query, 64, L"\\StringFileInfo\\%02X%02X%02X%02X\\FileVersion", translation[1],
                  translation[0], translation[3], translation[2]);
  } else {
    std::swprintf(query, 64, L"\\StringFileInfo\\%04X04B0\\FileVersion", language);
  }
  return query;
}

// The first four characters compared as text with "4.70": 4.71 and 5.00
// pass, 4.70 does not, nor does 10.0.
inline bool version_passes(std::wstring_view version) {
  return version.substr(0, 4) > std::wstring_view(L"4.70");
}

}  // namespace korvalen::detail
