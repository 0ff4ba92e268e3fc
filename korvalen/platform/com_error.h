// _com_error: the COM error objects the suite's programs catch and hand to
// TratarErrorCom. On Windows it is the system's own class (comdef.h). Other
// systems have no COM; the library gives a class of the same name and use
// that carries an HRESULT and a message, so that portable code catches and
// reports these errors the same way everywhere.
//
//   try { ... } catch (_com_error& e) { TratarErrorCom(new _com_error(e)); }
#pragma once

#include "korvalen/platform/windows_types.h"

#if defined(_WIN32)
#include <comdef.h>
#else
#include <cwchar>
#include <string>

using HRESULT = LONG;

class _com_error {
 public:
  // The error with its message; an empty message reads as the HRESULT's
  // number ("Unknown error 0x80004005").
  explicit _com_error(HRESULT result, const wchar_t* message = nullptr)
      : result_(result), message_(message != nullptr ? message : L"") {
    if (message_.empty()) {
      wchar_t number[48];
      std::swprintf(number, 48, L"Unknown error 0x%08lX",
                    static_cast<unsigned long>(static_cast<ULONG>(result_)));
      message_ = number;
    }
  }
  HRESULT Error() const { return result_; }
  const wchar_t* ErrorMessage() const { return message_.c_str(); }

 private:
  HRESULT result_;
  std::wstring message_;
};
#endif
