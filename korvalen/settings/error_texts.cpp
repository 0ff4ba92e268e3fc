#include "korvalen/settings/error_texts.h"

#include <string>

#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/internal/current_resources.h"
#include "korvalen/foundation/internal/number_formatting.h"
#include "korvalen/foundation/number_functions.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/platform/internal/com_error_text.h"
#include "korvalen/platform/internal/message_box.h"

namespace {

namespace platform = korvalen::platform;
using korvalen::detail::kWorkChars;

constexpr int kFirstErrorText = 25000;
constexpr unsigned kLowSpaceTexts[] = {24565, 24566, 24567, 24568};

void Show(const std::wstring& text, const wchar_t* caption, unsigned style) {
  int answer = 0;
  // A box that cannot be shown leaves the caller to carry on.
  (void)platform::show_message_box(text.c_str(), caption, style, answer);
}

}  // namespace

int ConvertirTextoError(wchar_t* text, int& number) {
  number = 0;
  if (text == nullptr || StrLen(text) != 5) return 0;
  number = aToi(text);
  wchar_t resource[kWorkChars];
  if (number >= kFirstErrorText &&
      korvalen::detail::load_string(static_cast<unsigned>(number), resource, kWorkChars) > 0) {
    StrCpy(text, resource);
    return 1;
  }
  number = 0;
  return 0;
}

void TratarErrorCom(_com_error* error) {
  if (error == nullptr) return;
  try {
    std::wstring message = platform::com_error_message(*error);
    // Room for the language's text that may take the message's place.
    message.resize(message.size() > kWorkChars ? message.size() : kWorkChars);
    int number = 0;
    ConvertirTextoError(message.data(), number);
    Show(message.c_str(), L"SYSTEM COM ERROR", platform::kMessageBoxOk);
  } catch (...) {
  }
  delete error;
}

void TratarMensajePocoEspacioBD(double free_megabytes) {
  try {
    std::wstring text;
    for (const unsigned id : kLowSpaceTexts) {
      wchar_t line[kWorkChars];
      korvalen::detail::load_string(id, line, kWorkChars);
      if (!text.empty()) text += L'\n';
      text += line;
    }
    wchar_t megabytes[64];
    korvalen::detail::format_fixed(megabytes, 64, free_megabytes, 2);
    text += L":";
    text += megabytes;
    text += L" MB.";
    Show(text, L"Warning", platform::kMessageBoxOk | platform::kMessageBoxIconExclamation);
  } catch (...) {
  }
}
