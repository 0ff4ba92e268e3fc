#include "korvalen/config/config_reader.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <cwchar>
#include <string_view>

#include "korvalen/config/internal/cursor.h"
#include "korvalen/foundation/internal/number_parsing.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/platform/internal/line_conversion.h"
#include "korvalen/platform/internal/stream_buffer.h"
#include "korvalen/platform/internal/text_codec.h"

namespace {

using korvalen::detail::cursor_start;

constexpr wchar_t kBlank = L' ';
constexpr wchar_t kQuote = L'"';

// One physical line in wide characters, with its terminator: longer lines
// are cut to 1023 characters.
constexpr int kLineWorkChars = 1024;
// The bytes taken from the stream for it: as many as fGets takes for a
// 1024-character line, which is enough for 1023 characters in any code page.
constexpr int kLineWorkBytes = 2048;
// Words converted to a value, with their terminator.
constexpr int kWordChars = 80;
// A first read this small keeps the usual short record cheap.
constexpr int kFirstPieceBytes = 128;

int Past(int position) { return position == INT_MAX ? position : position + 1; }

// Whether line[start] may be read, that is the cursor is not past the
// terminator. Only the characters before the cursor are looked at: the
// readers find the end of the line by its terminator, so none of them needs
// the whole length.
bool Readable(const wchar_t* line, int start) {
  if (line == nullptr) return false;
  // A short prefix costs less to look at in place than a library call. Each
  // character is read only once the ones before it have been seen not to end
  // the line.
  if (start <= 16) {
    const wchar_t* p = line;
    const wchar_t* const end = line + start;
    for (; end - p >= 4; p += 4) {
      if (p[0] == 0 || p[1] == 0 || p[2] == 0 || p[3] == 0) return false;
    }
    for (; p < end; ++p) {
      if (*p == 0) return false;
    }
    return true;
  }
  return wcsnlen(line, static_cast<std::size_t>(start)) == static_cast<std::size_t>(start);
}

// fgets gives no count, and a NUL byte in the line hides where it stopped. The
// last byte of the piece tells: fgets writes its terminator there only when it
// filled the piece, so a non-zero byte left there means the line ended inside
// the piece (at its line feed or at the end of the file). A full piece ended
// only when its last character is the line feed, since fgets stops at the
// first one. The line feed is replaced by the terminator; length is then the
// length of the text up to its first NUL.
enum class Piece { kEnded, kFull, kNothing };

Piece ReadPiece(FILE* file, char* bytes, int size, std::size_t& length) {
  bytes[size - 1] = '\n';
  if (std::fgets(bytes, size, file) == nullptr) return Piece::kNothing;
  if (bytes[size - 1] != '\0') {
    // Behind a NUL byte the line feed is out of the text's reach anyway.
    length = std::strlen(bytes);
    if (length > 0 && bytes[length - 1] == '\n') bytes[--length] = '\0';
    return Piece::kEnded;
  }
  if (bytes[size - 2] != '\n') return Piece::kFull;
  bytes[size - 2] = '\0';
  length = std::strlen(bytes);
  return Piece::kEnded;
}

void SkipRestOfLine(FILE* file) {
  char scratch[256];
  std::size_t length = 0;
  while (ReadPiece(file, scratch, static_cast<int>(sizeof scratch), length) == Piece::kFull) {
  }
}

// The bytes of the next physical line of the stream as fGets takes them,
// without the line feed, and the length of their text. Unlike fGets it
// always consumes the whole physical line, keeping its first 2047 bytes, so a
// long line never spills into the next read. Empty at end of file. It reads
// the stream itself because after fGets a line cut by the conversion, or
// holding a NUL byte, no longer shows whether its line feed was taken.
std::size_t ReadPhysicalLine(FILE* file, char (&bytes)[kLineWorkBytes]) {
  bytes[0] = '\0';
  if (file == nullptr) return 0;
  int used = 0;
  int piece_size = kFirstPieceBytes;
  for (;;) {
    const int room = kLineWorkBytes - used;
    if (room <= 1) {
      SkipRestOfLine(file);
      return std::strlen(bytes);
    }
    const int size = piece_size < room ? piece_size : room;
    std::size_t length = 0;
    const Piece piece = ReadPiece(file, bytes + used, size, length);
    if (piece == Piece::kNothing) bytes[used] = '\0';
    // A NUL byte in an earlier piece ends the text there.
    if (piece != Piece::kFull) return used == 0 ? length : std::strlen(bytes);
    used += size - 1;
    piece_size *= 4;
  }
}

// The usual line lies whole in the stream's buffer and is converted from
// there, giving what ReadPhysicalLine gives for it. false, with nothing
// taken, when its line feed is not among the bytes the work line would keep
// or the buffer cannot be looked at: the line is then read through stdio.
bool ReadBufferedLine(FILE* file, wchar_t* out, int capacity) {
  const std::string_view ahead = korvalen::platform::buffered_input(file);
  if (ahead.empty()) return false;
  const std::size_t scan = std::min(ahead.size(), std::size_t{kLineWorkBytes - 1});
  const auto* end = static_cast<const char*>(std::memchr(ahead.data(), '\n', scan));
  if (end == nullptr) return false;
  const auto line = static_cast<std::size_t>(end - ahead.data());
  korvalen::platform::line_to_wide(ahead.data(), line, out, capacity);
  korvalen::platform::consume_buffered_input(file, line + 1);
  return true;
}

// The line is converted straight into the caller's buffer: cut to the
// physical line's 1023 characters and to max_length, which is what copying
// it through a 1024-character work line would give. A NUL byte ends it.
void ReadLine(FILE* file, wchar_t* out, int max_length) {
  if (out == nullptr) return;
  const int capacity = (max_length < 0 ? 0 : std::min(max_length, kLineWorkChars - 1)) + 1;
  if (file == nullptr) {
    out[0] = 0;
    return;
  }
  const korvalen::platform::StreamLock lock(file);
  if (ReadBufferedLine(file, out, capacity)) return;
  char bytes[kLineWorkBytes];
  const std::size_t length = ReadPhysicalLine(file, bytes);
  korvalen::platform::line_to_wide(bytes, length, out, capacity);
}

// Where the next bare word lies: line[begin, end). Without a readable start
// (a cursor past the end of the line) the word is empty at start and the
// line is not looked at.
struct Word {
  int begin;
  int end;
  int length() const { return end - begin; }
};

// The blank is the separator of nearly every reader, and a blank or the
// terminator ends a word: one test for both.
bool EndsBlankWord(wchar_t c) { return (c & ~static_cast<wchar_t>(kBlank)) == 0; }

Word FindBlankWord(const wchar_t* line, int start, bool readable) {
  if (!readable) return {start, start};
  const wchar_t* begin = line + start;
  while (*begin == kBlank) ++begin;
  const wchar_t* end = begin;
  while (!EndsBlankWord(*end)) ++end;
  return {static_cast<int>(begin - line), static_cast<int>(end - line)};
}

Word FindWord(const wchar_t* line, int start, bool readable, wchar_t separator) {
  if (separator == kBlank) return FindBlankWord(line, start, readable);
  if (!readable) return {start, start};
  int i = start;
  if (separator != 0) {
    while (line[i] == separator) ++i;
  }
  const int begin = i;
  for (wchar_t c; (c = line[i]) != 0 && c != separator; ++i) {
  }
  return {begin, i};
}

// Copies at most capacity - 1 characters of the word (capacity < 0: all).
void CopyWord(const wchar_t* line, Word w, wchar_t* out, int capacity) {
  int n = w.length();
  if (capacity >= 0 && n > capacity - 1) n = capacity - 1;
  if (n > 0) std::wmemcpy(out, line + w.begin, static_cast<std::size_t>(n));
  out[n] = 0;
}

Word NextWord(const wchar_t* line, int& cursor, wchar_t separator) {
  const int start = cursor_start(cursor);
  const Word w = FindWord(line, start, Readable(line, start), separator);
  cursor = w.end;
  return w;
}

// A word read as a number passes through an 80-character buffer, so it is cut
// to 79 characters. A shorter blank-separated word is read where it stands:
// the number ends at its end anyway, at the blank or terminator behind it,
// unless the word starts with a control character that the number readers
// skip as a blank.
template <typename Convert>
auto ConvertWord(const wchar_t* line, Word w, bool in_place, Convert convert) {
  if (w.length() == 0) return convert(L"");
  const wchar_t first = line[w.begin];
  if (in_place && w.length() < kWordChars && (first < L'\t' || first > L'\r')) {
    return convert(line + w.begin);
  }
  wchar_t word[kWordChars];
  CopyWord(line, w, word, kWordChars);
  return convert(static_cast<const wchar_t*>(word));
}

// Characters from i up to the closing quote (or the end), the cursor one past
// it. readable: line[i] may be read.
void ReadQuotedRest(const wchar_t* line, int i, bool readable, int& cursor, wchar_t* text) {
  wchar_t* out = text;
  if (readable) {
    const wchar_t* p = line + i;
    for (wchar_t c; (c = *p) != 0 && c != kQuote; ++p) *out++ = c;
    i = static_cast<int>(p - line);
  }
  *out = 0;
  cursor = Past(i);
}

void ReadString(const wchar_t* line, int& cursor, wchar_t separator, wchar_t* text) {
  if (text == nullptr) return;
  int i = cursor_start(cursor);
  if (!Readable(line, i)) {
    text[0] = 0;
    cursor = i;
    return;
  }
  if (separator != 0) {
    while (line[i] == separator) ++i;
  }
  if (line[i] == kQuote) {
    ReadQuotedRest(line, i + 1, true, cursor, text);
    return;
  }
  int k = 0;
  for (wchar_t c; (c = line[i]) != 0 && c != separator; ++i) text[k++] = c;
  text[k] = 0;
  cursor = i;
}

wchar_t WideSeparator(char separator) {
  const char narrow[2] = {separator, '\0'};
  wchar_t wide[2] = {0, 0};
  korvalen::platform::ansi_to_wide(narrow, wide, 2);
  return wide[0];
}

int IntegerOf(const wchar_t* word) { return korvalen::detail::parse_int(word); }

double RealOf(const wchar_t* word) {
  return word[0] == L'A' ? korvalen::kRealNotSet : korvalen::detail::parse_double(word, nullptr);
}

// A number that fills its blank-separated word is read where it stands, and
// the parse tells where the word ends. Anything else (a longer word, one the
// number stops inside, or one parse leaves to the conversion by giving no end)
// is found as a word first and converted as such.
template <typename Parse, typename Convert>
auto BlankNumber(const wchar_t* line, int start, bool readable, int& cursor, Parse parse,
                 Convert convert) {
  if (readable) {
    const wchar_t* begin = line + start;
    while (*begin == kBlank) ++begin;
    const wchar_t* end = nullptr;
    const auto value = parse(begin, &end);
    if (end != nullptr && EndsBlankWord(*end) && end - begin < kWordChars) {
      cursor = static_cast<int>(end - line);
      return value;
    }
  }
  const Word w = FindBlankWord(line, start, readable);
  cursor = w.end;
  return ConvertWord(line, w, true, convert);
}

int BlankInteger(const wchar_t* line, int start, bool readable, int& cursor) {
  return BlankNumber(line, start, readable, cursor, korvalen::detail::parse_int_digits, IntegerOf);
}

// The not-set mark and the control characters that the number parse would
// skip as blanks are left to the conversion.
double RealInPlace(const wchar_t* word, const wchar_t** end) {
  if (*word == L'A' || (*word >= L'\t' && *word <= L'\r')) return 0.0;
  return korvalen::detail::parse_double(word, end);
}

int IntegerField(const wchar_t* line, int& cursor, wchar_t separator) {
  if (separator == kBlank) {
    const int start = cursor_start(cursor);
    return BlankInteger(line, start, Readable(line, start), cursor);
  }
  const Word w = NextWord(line, cursor, separator);
  return ConvertWord(line, w, false, IntegerOf);
}

// Case folding can only make equal two words of the same length, and among
// ASCII characters only the letters fold; anything else is left to StriCmp.
bool IsOn(const wchar_t* line, Word w) {
  if (w.length() != 2) return false;
  const wchar_t a = line[w.begin];
  const wchar_t b = line[w.begin + 1];
  const auto ascii = [](wchar_t c) { return static_cast<unsigned long>(c) < 0x80; };
  if (ascii(a) && ascii(b)) return (a | 0x20) == L'o' && (b | 0x20) == L'n';
  const wchar_t word[3] = {a, b, 0};
  return StriCmp(word, L"ON") == 0;
}

void ReadHead(const wchar_t* line, wchar_t& type, int& index, int& cursor) {
  if (line == nullptr) {
    index = 0;
    cursor = 1;
    return;
  }
  int i = 0;
  while (line[i] == kBlank) ++i;
  const bool inside = line[i] != 0;
  if (inside) type = line[i];
  index = BlankInteger(line, i + 1, inside, cursor);
}

void ReadRecordLine(FILE* file, wchar_t* line, int limit, wchar_t& type, int& index, int& cursor) {
  if (line == nullptr) {
    type = kBlank;
    return;
  }
  ReadLine(file, line, limit);
  if (line[0] == 0) {
    type = kBlank;
  } else if (line[0] == L'#') {
    type = L'#';
  } else {
    ReadHead(line, type, index, cursor);
  }
}

}  // namespace

void LeerLineaDeFichero(FILE* file, wchar_t* line, int max_length) {
  ReadLine(file, line, max_length);
}

int LeerEnteroDeFichero(FILE* file) {
  wchar_t line[korvalen::kCfgLineChars + 1];
  ReadLine(file, line, korvalen::kCfgLineChars);
  return IntegerOf(line);
}

double LeerRealDeFichero(FILE* file) {
  wchar_t line[korvalen::kCfgLineChars + 1];
  ReadLine(file, line, korvalen::kCfgLineChars);
  return RealOf(line);
}

void LeerLineaDeCfg(FILE* file, wchar_t* line, wchar_t& type, int& index, int& cursor) {
  ReadRecordLine(file, line, korvalen::kCfgLineChars, type, index, cursor);
}

void LeerLineaLargaDeCfg(FILE* file, wchar_t* line, wchar_t& type, int& index, int& cursor) {
  ReadRecordLine(file, line, korvalen::kCfgLongLineChars, type, index, cursor);
}

void ObtenerTipoIndexCfg(const wchar_t* line, wchar_t& type, int& index, int& cursor) {
  ReadHead(line, type, index, cursor);
}

void LeerUnStr(const wchar_t* line, int& cursor, wchar_t* word) {
  if (word != nullptr) CopyWord(line, NextWord(line, cursor, kBlank), word, -1);
}

void LeerUnStrSep(const wchar_t* line, int& cursor, char separator, wchar_t* word) {
  if (word != nullptr) CopyWord(line, NextWord(line, cursor, WideSeparator(separator)), word, -1);
}

void LeerUnChar(const wchar_t* line, int& cursor, wchar_t& value) {
  const Word w = NextWord(line, cursor, kBlank);
  value = w.length() == 0 ? kBlank : line[w.begin];
}

void LeerUnTexto(const wchar_t* line, int& cursor, wchar_t* text) {
  if (text == nullptr) return;
  int i = cursor_start(cursor);
  bool quote = false;
  if (Readable(line, i)) {
    while (line[i] != 0 && line[i] != kQuote) ++i;
    quote = line[i] == kQuote;
  }
  ReadQuotedRest(line, Past(i), quote, cursor, text);
}

void LeerUnString(const wchar_t* line, int& cursor, wchar_t* text) {
  ReadString(line, cursor, kBlank, text);
}

void LeerUnStringSep(const wchar_t* line, int& cursor, char separator, wchar_t* text) {
  ReadString(line, cursor, WideSeparator(separator), text);
}

void LeerSIoNO(const wchar_t* line, int& cursor, int& value) {
  value = IsOn(line, NextWord(line, cursor, kBlank)) ? 1 : 0;
}

void LeerSIoNOInt(const wchar_t* line, int& cursor, int& value) {
  value = IntegerField(line, cursor, kBlank) != 0 ? 1 : 0;
}

void LeerUnShort(const wchar_t* line, int& cursor, short& value) {
  value = static_cast<short>(IntegerField(line, cursor, kBlank));
}

void LeerUnEntero(const wchar_t* line, int& cursor, int& value) {
  value = IntegerField(line, cursor, kBlank);
}

void LeerUnEnteroSep(const wchar_t* line, int& cursor, char separator, int& value) {
  value = IntegerField(line, cursor, WideSeparator(separator));
}

void LeerUnLong(const wchar_t* line, int& cursor, LONG& value) {
  value = IntegerField(line, cursor, kBlank);
}

void LeerUnReal(const wchar_t* line, int& cursor, double& value) {
  const int start = cursor_start(cursor);
  value = BlankNumber(line, start, Readable(line, start), cursor, RealInPlace, RealOf);
}
