#include "korvalen/platform/internal/com_error_text.h"

namespace korvalen::platform {

std::wstring com_error_message(const _com_error& error) { return error.ErrorMessage(); }

}  // namespace korvalen::platform
