// The platform's message box: a modal box without owner window, as the
// debugging traces and the error messages of the library show them.
//
//   korvalen::platform::show_message_box(L"count = 3", L"Trace", platform::kMessageBoxOk);
//
// Windows shows MessageBoxW. Other systems have no dialogs here yet: the
// caption and the text go to standard error as one "caption: text" line (the
// text may span several lines), and the box counts as answered with OK.
#pragma once

namespace korvalen::platform {

// Styles and answers with the values of the Windows API.
inline constexpr unsigned kMessageBoxOk = 0x00000000;
inline constexpr unsigned kMessageBoxIconExclamation = 0x00000030;
inline constexpr int kMessageBoxAnswerOk = 1;

// Returns the button chosen, or 0 when no box could be shown.
int show_message_box(const wchar_t* text, const wchar_t* caption, unsigned style);

}  // namespace korvalen::platform
