// The platform's message box: a modal box without owner window, as the
// debugging traces and the error messages of the library show them. Follows
// the convention of error.h.
//
//   int answer = 0;
//   platform::show_message_box(L"count = 3", L"Trace", platform::kMessageBoxOk, answer);
//
// Windows shows MessageBoxW. POSIX shows a GTK message dialog when a display
// is there and the toolkit's module loads (gtk_module.h); otherwise the
// caption and the text go to standard error as one "caption: text" line (the
// text may span several lines), and the box counts as answered with OK.
#pragma once

#include <system_error>

namespace korvalen::platform {

// Styles and answers with the values of the Windows API.
inline constexpr unsigned kMessageBoxOk = 0x00000000;
inline constexpr unsigned kMessageBoxIconExclamation = 0x00000030;
inline constexpr int kMessageBoxAnswerOk = 1;

// Shows the box and sets answer to the button chosen; answer is 0 when no
// box could be shown. A null text or caption shows as empty.
std::error_code show_message_box(const wchar_t* text, const wchar_t* caption, unsigned style,
                                 int& answer);

// Each system's implementation, for the portable layer (message_box.cpp)
// only: text and caption are not null, and an allocation failure may throw.
namespace native {
std::error_code show_message_box(const wchar_t* text, const wchar_t* caption, unsigned style,
                                 int& answer);
}  // namespace native

}  // namespace korvalen::platform
