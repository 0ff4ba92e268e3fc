// Wide printf with the Windows conventions on glibc. glibc follows ISO C ("%s"
// is 8-bit, converted through the C locale, which refuses every byte from
// 0x80); the suite's formats follow Windows ("%s" is wide in a wide format, "%S"
// is 8-bit text in the ANSI code page, "%I64d" is 64-bit). A format without
// 8-bit text is rewritten and handed to vswprintf whole. Any other format is
// walked directive by directive: 8-bit text is converted with the library's code
// page here (and padded as Windows pads it, with '0' too), every other directive
// goes to swprintf with its own argument. As on Windows, a conversion letter it
// does not know is printed as it stands. "%n" never writes through its pointer:
// the walk takes the argument and prints nothing.
#include "korvalen/platform/internal/format.h"

#include <climits>
#include <cstdint>
#include <cwchar>
#include <cwctype>
#include <string>
#include <string_view>

#include "korvalen/platform/internal/text_codec.h"

namespace korvalen::platform {
namespace {

// A fixed buffer for the usual short formats, the heap only for long ones.
template <std::size_t N>
struct SmallBuffer {
  wchar_t data[N];
  std::size_t size = 0;
  std::wstring spill;
  bool spilled = false;
  void push_back(wchar_t c) {
    if (!spilled && size < N) {
      data[size++] = c;
      return;
    }
    if (!spilled) {
      spill.assign(data, size);
      spilled = true;
    }
    spill.push_back(c);
  }
  const wchar_t* c_str() const { return spilled ? spill.c_str() : data; }
};

// Width and precision: a number, '*' (taken from the arguments) or absent.
constexpr int kAbsent = -1;
constexpr int kStar = -2;

// A directive's flags as bits, by their place in kFlagLetters.
constexpr wchar_t kFlagLetters[] = L"-+ #0";
constexpr unsigned kLeft = 1u << 0;
constexpr unsigned kZero = 1u << 4;

// What a directive takes from the arguments. The integers come first and the
// texts together: write_glibc tells them by range.
enum class Arg {
  integer,  // int, and the char and short promoted to it
  long_integer,
  long_long,
  intmax,
  size,  // size_t and ptrdiff_t, of one width
  real,
  long_real,
  pointer,
  wide_char,
  wide_text,
  ansi_char,
  ansi_text,
  count,    // %n
  percent,  // "%%"
  unknown,  // a conversion Windows does not know, or the format's end
};

// A length prefix as Windows spells it (with the ISO ones glibc knows), the
// integer it stands for and glibc's spelling of that. "h", "l" and "w" also
// choose the width of text, "L" that of a real.
struct Size {
  const wchar_t* windows;
  Arg integer;
  const wchar_t* glibc;
};
constexpr Size kSizes[] = {
    // Longest first where one spelling starts another.
    {L"I64", Arg::long_long, L"ll"}, {L"I32", Arg::integer, L""},   {L"I", Arg::size, L"z"},
    {L"hh", Arg::integer, L"hh"},    {L"h", Arg::integer, L"h"},    {L"ll", Arg::long_long, L"ll"},
    {L"l", Arg::long_integer, L"l"}, {L"L", Arg::long_long, L"ll"}, {L"w", Arg::integer, L""},
    {L"j", Arg::intmax, L"j"},       {L"z", Arg::size, L"z"},       {L"t", Arg::size, L"t"},
    {L"", Arg::integer, L""}};  // none: matches anything, so last

// One "%[flags][width][.precision][size]conversion", '%' not included.
struct Directive {
  unsigned flags = 0;
  int width = kAbsent;
  int precision = kAbsent;
  const Size* size = nullptr;
  wchar_t conversion = 0;
  Arg arg = Arg::unknown;
  const wchar_t* end = nullptr;  // past the directive
};

bool is_one_of(wchar_t c, const wchar_t* set) { return c != 0 && std::wcschr(set, c) != nullptr; }

int parse_number(const wchar_t*& p) {
  if (*p == L'*') {
    ++p;
    return kStar;
  }
  if (*p < L'0' || *p > L'9') return kAbsent;
  long long value = 0;
  for (; *p >= L'0' && *p <= L'9'; ++p) {
    value = value * 10 + (*p - L'0');
    if (value > INT_MAX) value = INT_MAX;  // too wide for any buffer anyway
  }
  return static_cast<int>(value);
}

Arg argument_of(const Size& size, wchar_t c) {
  const std::wstring_view spelling = size.windows;
  if (c == L'%') return Arg::percent;
  if (is_one_of(c, L"diouxX")) return size.integer;
  if (is_one_of(c, L"aAeEfFgG")) return spelling == L"L" ? Arg::long_real : Arg::real;
  if (c == L'p') return Arg::pointer;
  if (c == L'n') return Arg::count;
  if (!is_one_of(c, L"cCsS")) return Arg::unknown;
  // Upper case is the other width than the format's: 8-bit in a wide format.
  const bool upper = c == L'C' || c == L'S';
  const bool ansi = spelling == L"h" || (upper && spelling != L"l" && spelling != L"w");
  const bool one = c == L'c' || c == L'C';
  return ansi ? (one ? Arg::ansi_char : Arg::ansi_text) : (one ? Arg::wide_char : Arg::wide_text);
}

// The directive starting after a '%'.
Directive parse(const wchar_t* p) {
  Directive d;
  for (; is_one_of(*p, kFlagLetters); ++p) {
    d.flags |= 1u << (std::wcschr(kFlagLetters, *p) - kFlagLetters);
  }
  d.width = parse_number(p);
  if (*p == L'.') {
    ++p;
    d.precision = parse_number(p);
    if (d.precision == kAbsent) d.precision = 0;  // "%.s" is "%.0s"
  }
  for (const Size& size : kSizes) {
    const std::size_t n = std::wcslen(size.windows);
    if (std::wcsncmp(p, size.windows, n) == 0) {
      d.size = &size;
      p += n;
      break;
    }
  }
  d.conversion = *p;
  if (*p != 0) ++p;
  d.end = p;
  d.arg = argument_of(*d.size, d.conversion);
  return d;
}

// The directive in glibc's spelling ('*' stays '*'): wide text is "%ls", a
// 64-bit integer "%lld", and so on.
template <typename Out>
void write_glibc(const Directive& d, Out& out) {
  const auto text = [&out](const wchar_t* s) {
    while (*s != 0) out.push_back(*s++);
  };
  const auto number = [&out](int value) {
    if (value == kStar) return out.push_back(L'*');
    wchar_t digits[10];
    int n = 0;
    do digits[n++] = static_cast<wchar_t>(L'0' + value % 10);
    while ((value /= 10) != 0);
    while (n > 0) out.push_back(digits[--n]);
  };
  out.push_back(L'%');
  for (unsigned i = 0; kFlagLetters[i] != 0; ++i) {
    if ((d.flags & (1u << i)) != 0) out.push_back(kFlagLetters[i]);
  }
  if (d.width != kAbsent) number(d.width);
  if (d.precision != kAbsent) {
    out.push_back(L'.');
    number(d.precision);
  }
  wchar_t conversion = d.conversion;
  if (d.arg <= Arg::size) {
    text(d.size->glibc);
  } else if (d.arg == Arg::long_real) {
    text(L"L");
  } else if (d.arg >= Arg::wide_char && d.arg <= Arg::ansi_text) {
    text(L"l");
    conversion = static_cast<wchar_t>(std::towlower(conversion));
  }
  out.push_back(conversion);
}

// Rewrites the whole format for vswprintf; false when a directive needs the
// walk: 8-bit text, %n, or one Windows does not know (it prints the letter).
template <typename Out>
bool translate(const wchar_t* format, Out& out) {
  for (const wchar_t* p = format; *p != 0;) {
    if (*p != L'%') {
      out.push_back(*p++);
      continue;
    }
    const Directive d = parse(p + 1);
    if (d.arg == Arg::ansi_char || d.arg == Arg::ansi_text || d.arg == Arg::count ||
        d.arg == Arg::unknown) {
      return false;
    }
    write_glibc(d, out);
    p = d.end;
  }
  out.push_back(0);
  return true;
}

// The caller's buffer as the walk fills it; every step fails when it does not
// fit, keeping the place for the terminator.
struct Output {
  wchar_t* buffer;
  std::size_t capacity;
  std::size_t length = 0;

  template <typename T>
  bool print(const wchar_t* directive, T value) {
    const int n = std::swprintf(buffer + length, capacity - length, directive, value);
    if (n < 0) return false;
    length += static_cast<std::size_t>(n);
    return true;
  }
  bool put(wchar_t c) {
    if (length + 1 >= capacity) return false;
    buffer[length++] = c;
    return true;
  }
  // 8-bit text in the code page, padded as Windows pads it: with '0' too.
  bool put_ansi(const char* text, std::size_t count, const Directive& d) {
    const std::size_t width = d.width > 0 ? static_cast<std::size_t>(d.width) : 0;
    const std::size_t pad = width > count ? width - count : 0;
    if (count + pad >= capacity - length) return false;
    const bool left = (d.flags & kLeft) != 0;
    const wchar_t fill = (d.flags & kZero) != 0 && !left ? L'0' : L' ';
    wchar_t* p = buffer + length + (left ? 0 : pad);
    std::wmemset(left ? p + count : buffer + length, fill, pad);
    for (std::size_t i = 0; i < count; ++i) {
      p[i] = ansi_char_to_wide(static_cast<unsigned char>(text[i]));
    }
    length += count + pad;
    return true;
  }
};

// A width or precision given as '*' is the next int argument; a negative
// width means left alignment and a negative precision none.
void take_stars(Directive& d, va_list* args) {
  if (d.width == kStar) {
    const int width = va_arg(*args, int);
    if (width < 0) d.flags |= kLeft;
    d.width = width >= 0 ? width : width == INT_MIN ? INT_MAX : -width;
  }
  if (d.precision == kStar) {
    const int precision = va_arg(*args, int);
    d.precision = precision >= 0 ? precision : kAbsent;
  }
}

// The bytes of 8-bit text a directive prints: the precision counts bytes, and
// the text may end there unterminated.
std::size_t ansi_length(const char* text, int precision) {
  std::size_t count = 0;
  while ((precision == kAbsent || count < static_cast<std::size_t>(precision)) &&
         text[count] != 0) {
    ++count;
  }
  return count;
}

// Prints one directive with its argument; false when it does not fit or
// fails.
bool print_directive(const Directive& d, va_list* args, Output& out) {
  SmallBuffer<40> directive;  // '%', 5 flags, 2 numbers of 10 digits, '.', size, conversion
  write_glibc(d, directive);
  directive.push_back(0);
  const wchar_t* spec = directive.c_str();
  switch (d.arg) {
    case Arg::integer:
      return out.print(spec, va_arg(*args, int));
    case Arg::long_integer:
      return out.print(spec, va_arg(*args, long));
    case Arg::long_long:
      return out.print(spec, va_arg(*args, long long));
    case Arg::intmax:
      return out.print(spec, va_arg(*args, std::intmax_t));
    case Arg::size:
      return out.print(spec, va_arg(*args, std::size_t));
    case Arg::real:
      return out.print(spec, va_arg(*args, double));
    case Arg::long_real:
      return out.print(spec, va_arg(*args, long double));
    case Arg::pointer:
      return out.print(spec, va_arg(*args, void*));
    case Arg::wide_char:
      return out.print(spec, va_arg(*args, std::wint_t));
    case Arg::wide_text:
      return out.print(spec, va_arg(*args, const wchar_t*));
    case Arg::ansi_char: {
      const char c = static_cast<char>(va_arg(*args, int));
      return out.put_ansi(&c, 1, d);
    }
    case Arg::ansi_text: {
      const char* text = va_arg(*args, const char*);
      if (text == nullptr) text = "(null)";  // as Windows prints it
      return out.put_ansi(text, ansi_length(text, d.precision), d);
    }
    case Arg::count:
      va_arg(*args, void*);
      return true;
    case Arg::percent:
      return out.put(L'%');
    case Arg::unknown:
      return d.conversion == 0 || out.put(d.conversion);
  }
  return false;
}

// Takes the arguments one directive at a time; false when the text does not
// fit or a directive fails.
bool walk(const wchar_t* format, va_list* args, Output& out) {
  for (const wchar_t* p = format; *p != 0;) {
    if (*p != L'%') {
      if (!out.put(*p++)) return false;
      continue;
    }
    Directive d = parse(p + 1);
    p = d.end;
    take_stars(d, args);
    if (!print_directive(d, args, out)) return false;
  }
  return true;
}

}  // namespace

namespace native {

int format_wide(wchar_t* buffer, std::size_t capacity, const wchar_t* format, va_list args) {
  SmallBuffer<512> translated;
  if (translate(format, translated)) {
    const int n = std::vswprintf(buffer, capacity, translated.c_str(), args);
    if (n < 0) buffer[capacity - 1] = 0;
    return n;
  }
  Output out{buffer, capacity};
  va_list own;
  va_copy(own, args);
  const bool done = walk(format, &own, out);
  va_end(own);
  buffer[out.length] = 0;
  return done ? static_cast<int>(out.length) : -1;
}

}  // namespace native

}  // namespace korvalen::platform
