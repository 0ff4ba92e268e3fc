// The message of a COM error object as wide text: the system's own text of
// its HRESULT on Windows (the object's message is 8-bit or wide depending on
// how the system headers are set), the message the library's object
// carries elsewhere.
#pragma once

#include <string>

#include "korvalen/platform/com_error.h"

namespace korvalen::platform {

std::wstring com_error_message(const _com_error& error);

}  // namespace korvalen::platform
