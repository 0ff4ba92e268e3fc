#include "korvalen/config/config_reader.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <cwchar>

#include "korvalen/foundation/primitives.h"

namespace {

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

int Length(const wchar_t* text) {
  if (text == nullptr) return 0;
  const std::size_t n = std::wcslen(text);
  return n > INT_MAX - 8 ? INT_MAX - 8 : static_cast<int>(n);
}

int Start(int cursor) { return cursor < 0 ? 0 : cursor; }

int Past(int position) { return position == INT_MAX ? position : position + 1; }

// fgets gives no count, and a NUL byte in the line hides where it stopped. The
// piece is therefore prefilled with line feeds: when a line feed is found, it
// is either the line end that was read or filler behind the terminator, and
// either way the line ended inside the piece. Only a full piece has none.
enum class Piece { kEnded, kFull, kNothing };

Piece ReadPiece(FILE* file, char* bytes, int size) {
  std::memset(bytes, '\n', static_cast<std::size_t>(size));
  if (std::fgets(bytes, size, file) == nullptr) return Piece::kNothing;
  char* const feed = static_cast<char*>(std::memchr(bytes, '\n', static_cast<std::size_t>(size)));
  if (feed == nullptr) return Piece::kFull;
  *feed = '\0';
  return Piece::kEnded;
}

void SkipRestOfLine(FILE* file) {
  char scratch[256];
  while (ReadPiece(file, scratch, static_cast<int>(sizeof scratch)) == Piece::kFull) {
  }
}

// The bytes of the next physical line of the stream as fGets takes them,
// without the line feed. Unlike fGets it always consumes the whole physical
// line, keeping its first 2047 bytes, so a long line never spills into the
// next read. Empty at end of file. It reads the stream itself because after
// fGets a line cut by the conversion, or holding a NUL byte, no longer shows
// whether its line feed was taken.
void ReadPhysicalLine(FILE* file, char (&bytes)[kLineWorkBytes]) {
  bytes[0] = '\0';
  if (file == nullptr) return;
  int used = 0;
  int piece_size = kFirstPieceBytes;
  for (;;) {
    const int room = kLineWorkBytes - used;
    if (room <= 1) {
      SkipRestOfLine(file);
      return;
    }
    const int size = piece_size < room ? piece_size : room;
    const Piece piece = ReadPiece(file, bytes + used, size);
    if (piece == Piece::kNothing) {
      bytes[used] = '\0';
      return;
    }
    if (piece != Piece::kFull) return;
    used += size - 1;
    piece_size *= 4;
  }
}

// The line is converted straight into the caller's buffer: cut to the
// physical line's 1023 characters and to max_length, which is what copying
// it through a 1024-character work line would give. A NUL byte ends it.
void ReadLine(FILE* file, wchar_t* out, int max_length) {
  if (out == nullptr) return;
  char bytes[kLineWorkBytes];
  ReadPhysicalLine(file, bytes);
  const int limit = max_length < 0 ? 0 : std::min(max_length, kLineWorkChars - 1);
  CharToTChar(out, limit + 1, bytes);
}

// A bare word ending at the separator. At most capacity - 1 characters are
// kept (capacity < 0: no bound), but the cursor moves past the whole word.
void ReadWord(const wchar_t* line, int& cursor, wchar_t separator, wchar_t* word, int capacity) {
  const int n = Length(line);
  const int keep = capacity < 0 ? INT_MAX : capacity - 1;
  int i = Start(cursor);
  int kept = 0;
  while (i < n && line[i] == separator) ++i;
  for (; i < n && line[i] != separator; ++i) {
    if (kept < keep) word[kept++] = line[i];
  }
  word[kept] = 0;
  cursor = i;
}

// Characters up to the closing quote (or the end), the cursor one past it.
void ReadQuotedRest(const wchar_t* line, int n, int i, int& cursor, wchar_t* text) {
  int k = 0;
  for (; i < n && line[i] != kQuote; ++i) text[k++] = line[i];
  text[k] = 0;
  cursor = Past(i);
}

void ReadString(const wchar_t* line, int& cursor, wchar_t separator, wchar_t* text) {
  if (text == nullptr) return;
  const int n = Length(line);
  int i = Start(cursor);
  while (i < n && line[i] == separator) ++i;
  if (i < n && line[i] == kQuote) {
    ReadQuotedRest(line, n, i + 1, cursor, text);
    return;
  }
  int k = 0;
  for (; i < n && line[i] != separator; ++i) text[k++] = line[i];
  text[k] = 0;
  cursor = i;
}

wchar_t WideSeparator(char separator) {
  const char narrow[2] = {separator, '\0'};
  wchar_t wide[2] = {0, 0};
  CharToTChar(wide, 2, narrow);
  return wide[0];
}

int IntegerOf(const wchar_t* word) { return aToi(word); }

double RealOf(const wchar_t* word) { return word[0] == L'A' ? korvalen::kRealNotSet : aTof(word); }

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
    ObtenerTipoIndexCfg(line, type, index, cursor);
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
  const int n = Length(line);
  int i = 0;
  while (i < n && line[i] == kBlank) ++i;
  if (i < n) type = line[i];
  cursor = i + 1;
  wchar_t word[kWordChars];
  ReadWord(line, cursor, kBlank, word, kWordChars);
  index = IntegerOf(word);
}

void LeerUnStr(const wchar_t* line, int& cursor, wchar_t* word) {
  if (word != nullptr) ReadWord(line, cursor, kBlank, word, -1);
}

void LeerUnStrSep(const wchar_t* line, int& cursor, char separator, wchar_t* word) {
  if (word != nullptr) ReadWord(line, cursor, WideSeparator(separator), word, -1);
}

void LeerUnChar(const wchar_t* line, int& cursor, wchar_t& value) {
  wchar_t word[kWordChars];
  ReadWord(line, cursor, kBlank, word, kWordChars);
  value = word[0] == 0 ? kBlank : word[0];
}

void LeerUnTexto(const wchar_t* line, int& cursor, wchar_t* text) {
  if (text == nullptr) return;
  const int n = Length(line);
  int i = Start(cursor);
  while (i < n && line[i] != kQuote) ++i;
  ReadQuotedRest(line, n, Past(i), cursor, text);
}

void LeerUnString(const wchar_t* line, int& cursor, wchar_t* text) {
  ReadString(line, cursor, kBlank, text);
}

void LeerUnStringSep(const wchar_t* line, int& cursor, char separator, wchar_t* text) {
  ReadString(line, cursor, WideSeparator(separator), text);
}

void LeerSIoNO(const wchar_t* line, int& cursor, int& value) {
  wchar_t word[kWordChars];
  ReadWord(line, cursor, kBlank, word, kWordChars);
  value = StriCmp(word, L"ON") == 0 ? 1 : 0;
}

void LeerSIoNOInt(const wchar_t* line, int& cursor, int& value) {
  wchar_t word[kWordChars];
  ReadWord(line, cursor, kBlank, word, kWordChars);
  value = IntegerOf(word) != 0 ? 1 : 0;
}

void LeerUnShort(const wchar_t* line, int& cursor, short& value) {
  wchar_t word[kWordChars];
  ReadWord(line, cursor, kBlank, word, kWordChars);
  value = static_cast<short>(IntegerOf(word));
}

void LeerUnEntero(const wchar_t* line, int& cursor, int& value) {
  wchar_t word[kWordChars];
  ReadWord(line, cursor, kBlank, word, kWordChars);
  value = IntegerOf(word);
}

void LeerUnEnteroSep(const wchar_t* line, int& cursor, char separator, int& value) {
  wchar_t word[kWordChars];
  ReadWord(line, cursor, WideSeparator(separator), word, kWordChars);
  value = IntegerOf(word);
}

void LeerUnLong(const wchar_t* line, int& cursor, LONG& value) {
  wchar_t word[kWordChars];
  ReadWord(line, cursor, kBlank, word, kWordChars);
  value = aTol(word);
}

void LeerUnReal(const wchar_t* line, int& cursor, double& value) {
  wchar_t word[kWordChars];
  ReadWord(line, cursor, kBlank, word, kWordChars);
  value = RealOf(word);
}
