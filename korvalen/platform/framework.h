// Stand-ins of the windowing framework's classes that the exported interface
// takes, with only the members the library and its callers use. They are the
// library's own on every system.
//
//   CString library;
//   LoadLanguageDllFromFile(7, L"Languages.xml", library);
//   if (!library.IsEmpty()) use(library);  // converts to const wchar_t*
#pragma once

#include <string>

// A wide string of the framework's kind, holding its text by value.
class CString {
 public:
  CString() = default;
  CString(const wchar_t* text) : text_(text != nullptr ? text : L"") {}  // NOLINT: as the framework
  CString& operator=(const wchar_t* text) {
    text_ = text != nullptr ? text : L"";
    return *this;
  }
  CString& operator+=(const wchar_t* text) {
    if (text != nullptr) text_ += text;
    return *this;
  }
  // Appends length characters, zeros included, as the framework's does.
  void Append(const wchar_t* text, int length) {
    if (text != nullptr && length > 0) text_.append(text, static_cast<std::size_t>(length));
  }
  void AppendChar(wchar_t c) { text_.push_back(c); }

  operator const wchar_t*() const { return text_.c_str(); }  // NOLINT: as the framework
  int GetLength() const { return static_cast<int>(text_.size()); }
  bool IsEmpty() const { return text_.empty(); }
  void Empty() { text_.clear(); }

  friend bool operator==(const CString& a, const wchar_t* b) {
    return a.text_ == (b != nullptr ? b : L"");
  }
  friend bool operator==(const CString& a, const CString& b) { return a.text_ == b.text_; }

 private:
  std::wstring text_;
};

// The dialog and file classes, which build on CString.
#include "korvalen/platform/framework_dialog.h"  // IWYU pragma: export
#include "korvalen/platform/framework_file.h"  // IWYU pragma: export
