// A Windows command line taken apart as CommandLineToArgvW does.
#include "korvalen/platform/posix/command_line.h"

namespace korvalen::platform::posix {
namespace {

bool is_blank(wchar_t c) { return c == L' ' || c == L'\t'; }

const wchar_t* skip_blanks(const wchar_t* s) {
  while (is_blank(*s)) ++s;
  return s;
}

}  // namespace

std::vector<std::wstring> split_command_line(const wchar_t* line) {
  const wchar_t* s = skip_blanks(line);
  std::vector<std::wstring> args(1);
  if (*s == L'"') {
    for (++s; *s != 0 && *s != L'"'; ++s) args[0] += *s;
    if (*s == L'"') ++s;
  } else {
    for (; *s != 0 && !is_blank(*s); ++s) args[0] += *s;
  }
  s = skip_blanks(s);
  if (*s == 0) return args;

  std::wstring arg;
  int quotes = 0;  // odd: inside a quoted part
  std::size_t backslashes = 0;
  while (*s != 0) {
    if (is_blank(*s) && quotes == 0) {
      arg.append(backslashes, L'\\');
      args.push_back(std::move(arg));
      arg.clear();
      backslashes = 0;
      s = skip_blanks(s);
      if (*s == 0) return args;
      continue;
    }
    if (*s == L'\\') {
      ++backslashes;
      ++s;
      continue;
    }
    if (*s != L'"') {
      arg.append(backslashes, L'\\');
      backslashes = 0;
      arg += *s++;
      continue;
    }
    arg.append(backslashes / 2, L'\\');
    if (backslashes % 2 == 0) {
      ++quotes;
    } else {
      arg += L'"';
    }
    backslashes = 0;
    for (++s; *s == L'"'; ++s) {
      if (++quotes == 3) {
        arg += L'"';
        quotes = 0;
      }
    }
    if (quotes == 2) quotes = 0;
  }
  arg.append(backslashes, L'\\');
  args.push_back(std::move(arg));
  return args;
}

}  // namespace korvalen::platform::posix
