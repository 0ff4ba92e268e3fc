#include "korvalen/foundation/string_functions.h"

#include <cwchar>

#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/platform/internal/text_case.h"

using korvalen::detail::or_empty;
using korvalen::detail::WideArg;
using korvalen::detail::WorkCopy;

namespace {

thread_local WorkCopy t_chr_copy;
thread_local WorkCopy t_rchr_copy;
thread_local WorkCopy t_str_copy;
thread_local wchar_t* t_token_next = nullptr;

}  // namespace

void StrCpy(wchar_t* destination, const wchar_t* source) {
  if (destination == nullptr) return;
  if (source == nullptr) source = L"";
  while ((*destination++ = *source++) != 0) {
  }
}
void StrCpy(wchar_t* destination, const char* source) {
  WideArg s(source);
  StrCpy(destination, s.get());
}

wchar_t* StrnCpy(wchar_t* destination, const wchar_t* source, std::size_t count) {
  if (destination == nullptr || source == nullptr) return destination;
  return std::wcsncpy(destination, source, count);
}
wchar_t* StrnCpy(wchar_t* destination, const char* source, std::size_t count) {
  WideArg s(source);
  return StrnCpy(destination, s.get(), count);
}

wchar_t* StrCat(wchar_t* destination, const wchar_t* source) {
  if (destination == nullptr || source == nullptr) return destination;
  return std::wcscat(destination, source);
}
wchar_t* StrCat(wchar_t* destination, const char* source) {
  WideArg s(source);
  return StrCat(destination, s.get());
}

wchar_t* StrnCat(wchar_t* destination, const wchar_t* source, std::size_t count) {
  if (destination == nullptr || source == nullptr) return destination;
  return std::wcsncat(destination, source, count);
}
wchar_t* StrnCat(wchar_t* destination, const char* source, std::size_t count) {
  WideArg s(source);
  return StrnCat(destination, s.get(), count);
}

int StrCmp(const wchar_t* a, const wchar_t* b) {
  if (a == nullptr) a = L"";
  if (b == nullptr) b = L"";
  for (;; ++a, ++b) {
    // Code units compare as unsigned values, whatever the locale.
    const auto x = static_cast<unsigned long>(*a);
    const auto y = static_cast<unsigned long>(*b);
    if (x != y) return x < y ? -1 : 1;
    if (x == 0) return 0;
  }
}
int StrCmp(const char* a, const wchar_t* b) { return StrCmp(WideArg(a).get(), b); }
int StrCmp(const wchar_t* a, const char* b) { return StrCmp(a, WideArg(b).get()); }
int StrCmp(const char* a, const char* b) { return StrCmp(WideArg(a).get(), WideArg(b).get()); }

int StriCmp(const wchar_t* a, const wchar_t* b) {
  return korvalen::platform::compare_no_case(or_empty(a), or_empty(b));
}
int StriCmp(const char* a, const wchar_t* b) { return StriCmp(WideArg(a).get(), b); }
int StriCmp(const wchar_t* a, const char* b) { return StriCmp(a, WideArg(b).get()); }
int StriCmp(const char* a, const char* b) { return StriCmp(WideArg(a).get(), WideArg(b).get()); }

int StrnCmp(const wchar_t* a, const wchar_t* b, std::size_t count) {
  return std::wcsncmp(or_empty(a), or_empty(b), count);
}
int StrnCmp(const char* a, const wchar_t* b, std::size_t count) {
  return StrnCmp(WideArg(a).get(), b, count);
}
int StrnCmp(const wchar_t* a, const char* b, std::size_t count) {
  return StrnCmp(a, WideArg(b).get(), count);
}
int StrnCmp(const char* a, const char* b, std::size_t count) {
  return StrnCmp(WideArg(a).get(), WideArg(b).get(), count);
}

int StrLen(const wchar_t* text) {
  int n = 0;
  if (text != nullptr) {
    while (text[n] != 0) ++n;
  }
  return n;
}
int StrLen(const char* text) { return StrLen(WideArg(text).get()); }

wchar_t* StrChr(const wchar_t* text, wchar_t c) {
  return text != nullptr ? const_cast<wchar_t*>(std::wcschr(text, c)) : nullptr;
}
wchar_t* StrChr(const char* text, wchar_t c) { return StrChr(t_chr_copy.from(text), c); }

wchar_t* StrrChr(const wchar_t* text, wchar_t c) {
  return text != nullptr ? const_cast<wchar_t*>(std::wcsrchr(text, c)) : nullptr;
}
wchar_t* StrrChr(const char* text, wchar_t c) { return StrrChr(t_rchr_copy.from(text), c); }

wchar_t* StrStr(const wchar_t* text, const wchar_t* search) {
  if (text == nullptr || search == nullptr) return nullptr;
  return const_cast<wchar_t*>(std::wcsstr(text, search));
}
wchar_t* StrStr(const char* text, const wchar_t* search) {
  return StrStr(t_str_copy.from(text), search);
}
wchar_t* StrStr(const wchar_t* text, const char* search) {
  return StrStr(text, WideArg(search).get());
}
wchar_t* StrStr(const char* text, const char* search) {
  return StrStr(t_str_copy.from(text), WideArg(search).get());
}

std::size_t StrCspn(const wchar_t* text, const wchar_t* set) {
  if (text == nullptr) return 0;
  return std::wcscspn(text, or_empty(set));
}
std::size_t StrCspn(const char* text, const wchar_t* set) {
  return StrCspn(WideArg(text).get(), set);
}
std::size_t StrCspn(const wchar_t* text, const char* set) {
  return StrCspn(text, WideArg(set).get());
}
std::size_t StrCspn(const char* text, const char* set) {
  return StrCspn(WideArg(text).get(), WideArg(set).get());
}

wchar_t* StrTok(wchar_t* text, const wchar_t* delimiters) {
  if (delimiters == nullptr) delimiters = L"";
  wchar_t* p = text != nullptr ? text : t_token_next;
  if (p == nullptr) return nullptr;
  p += std::wcsspn(p, delimiters);
  if (*p == 0) {
    t_token_next = nullptr;
    return nullptr;
  }
  wchar_t* token = p;
  p += std::wcscspn(p, delimiters);
  if (*p != 0) {
    *p = 0;
    t_token_next = p + 1;
  } else {
    t_token_next = nullptr;
  }
  return token;
}
wchar_t* StrTok(wchar_t* text, const char* delimiters) {
  return StrTok(text, WideArg(delimiters).get());
}

wchar_t* StrUpr(wchar_t* text) {
  for (wchar_t* p = text; p != nullptr && *p != 0; ++p) *p = korvalen::platform::to_upper(*p);
  return text;
}

wchar_t* StrLwr(wchar_t* text) {
  for (wchar_t* p = text; p != nullptr && *p != 0; ++p) *p = korvalen::platform::to_lower(*p);
  return text;
}

wchar_t* StrRev(wchar_t* text) {
  if (text == nullptr) return text;
  for (int i = 0, j = StrLen(text) - 1; i < j; ++i, --j) {
    const wchar_t c = text[i];
    text[i] = text[j];
    text[j] = c;
  }
  return text;
}
