#include "korvalen/drawing/utf16_file.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "korvalen/foundation/internal/code_page_text.h"
#include "korvalen/platform/internal/stream_buffer.h"

namespace {

namespace platform = korvalen::platform;
using korvalen::detail::CodePageText;

// The size of the reads that fill the accumulator.
constexpr UINT kBlock = 4096;
constexpr unsigned char kMark[2] = {0xFF, 0xFE};
constexpr unsigned char kBigEndianMark[2] = {0xFE, 0xFF};

bool IsLineEnd(char16_t unit) { return unit == 13 || unit == 10; }

char16_t UnitAt(const unsigned char* bytes, bool big_endian) {
  return static_cast<char16_t>(big_endian ? (bytes[0] << 8) | bytes[1]
                                          : bytes[0] | (bytes[1] << 8));
}

// Characters of a UTF-16 line, appended to a CString a run at a time.
class LineBuilder {
 public:
  explicit LineBuilder(CString& line) : line_(line) {}
  ~LineBuilder() { flush(); }
  LineBuilder(const LineBuilder&) = delete;
  LineBuilder& operator=(const LineBuilder&) = delete;

  void add(char16_t unit) {
    if (used_ == kRun) flush();
    run_[used_++] = static_cast<wchar_t>(unit);
  }

 private:
  static constexpr int kRun = 256;
  void flush() {
    line_.Append(run_, used_);
    used_ = 0;
  }
  CString& line_;
  wchar_t run_[kRun];
  int used_ = 0;
};

// The UTF-16LE units of a text, written a block at a time. Where wchar_t has
// 32 bits a character above U+FFFF becomes its surrogate pair; a value that
// is no character at all, U+FFFD.
class UnitWriter {
 public:
  explicit UnitWriter(CFile& file) : file_(file) {}
  UnitWriter(const UnitWriter&) = delete;
  UnitWriter& operator=(const UnitWriter&) = delete;

  void add(wchar_t c) {
    const auto value = static_cast<std::uint32_t>(c);
    if (value <= 0xFFFF) {
      put(value);
    } else if (value <= 0x10FFFF) {
      put(0xD800 + ((value - 0x10000) >> 10));
      put(0xDC00 + ((value - 0x10000) & 0x3FF));
    } else {
      put(0xFFFD);
    }
  }
  void flush() {
    if (used_ > 0) file_.Write(bytes_, used_);
    used_ = 0;
  }

 private:
  void put(std::uint32_t unit) {
    if (used_ + 2 > sizeof bytes_) flush();
    bytes_[used_++] = static_cast<unsigned char>(unit & 0xFF);
    bytes_[used_++] = static_cast<unsigned char>(unit >> 8);
  }
  CFile& file_;
  unsigned char bytes_[kBlock];
  UINT used_ = 0;
};

}  // namespace

CUTF16File::CUTF16File() = default;

CUTF16File::CUTF16File(const wchar_t* file_name, UINT open_flags)
    : CStdioFile(file_name, open_flags) {
  DetectByteOrder(TRUE, open_flags);
}

CUTF16File::~CUTF16File() { accumulator_.clear(); }

BOOL CUTF16File::Open(const wchar_t* file_name, UINT open_flags, CFileException* error) {
  const BOOL opened = CStdioFile::Open(file_name, open_flags, error);
  DetectByteOrder(opened, open_flags);
  return opened;
}

void CUTF16File::DetectByteOrder(BOOL opened, UINT open_flags) {
  // A file opened for writing only is never read.
  if (open_flags & modeWrite) return;
  if (GetLength() < 2) return;
  if (opened == TRUE) {
    unsigned char mark[2] = {0, 0};
    const UINT read = CStdioFile::Read(mark, 2);
    position_ += read;
    if (read == 2 && std::equal(mark, mark + 2, kMark)) {
      unicode_ = 1;
      big_endian_ = 0;
    } else if (read == 2 && std::equal(mark, mark + 2, kBigEndianMark)) {
      unicode_ = 1;
      big_endian_ = 1;
    }
    if (unicode_ == 0) {
      // An 8-bit file is read from its first byte.
      position_ = 0;
      CStdioFile::Seek(0, begin);
    }
  }
  accumulator_.clear();
}

BOOL CUTF16File::IsUnicodeFile() const { return unicode_; }

BOOL CUTF16File::ReadString(CString& line) {
  if (unicode_ != 1) return CStdioFile::ReadString(line);
  return ReadUnicodeString(line);
}

wchar_t* CUTF16File::ReadString(wchar_t* buffer, UINT max_count) {
  if (unicode_ != 1) return CStdioFile::ReadString(buffer, max_count);
  return ReadUnicodeString(buffer, max_count);
}

int CUTF16File::LoadAccumulator() {
  unsigned char block[kBlock];
  const UINT read = CStdioFile::Read(block, kBlock);
  if (read < 2) return read == 0 ? 1 : 0;
  const bool big_endian = big_endian_ == 1;
  for (UINT i = 0; i + 1 < read; i += 2) accumulator_.push_back(UnitAt(block + i, big_endian));
  return 0;
}

wchar_t CUTF16File::TakeUnit() {
  const char16_t unit = accumulator_.front();
  accumulator_.pop_front();
  return static_cast<wchar_t>(unit);
}

// The block reads above would read the 4096 bytes from the line's start,
// take the line and its end, and seek back to just after the pair. When the
// stream's buffer already shows all of that, the same outcome is had by
// taking those bytes from the buffer: the stream ends up where the seek would
// leave it, with nothing read ahead. Anything else (a single line end, a line
// or pair beyond the block or the buffer, a logical position that is not the
// stream's) goes the block way.
bool CUTF16File::TakeBufferedLine(CString* line, wchar_t* buffer, UINT max_count) {
  if (!IsBinary() || m_pStream == nullptr) return false;
  const long start = std::ftell(m_pStream);
  if (start < 0 || static_cast<std::uint32_t>(start) != position_) return false;
  const platform::StreamLock lock(m_pStream);
  std::string_view ahead = platform::buffered_input(m_pStream);
  if (ahead.empty()) {
    // One byte read and given back fills the buffer.
    const int c = std::getc(m_pStream);
    if (c == EOF) return false;
    std::ungetc(c, m_pStream);
    ahead = platform::buffered_input(m_pStream);
  }
  const auto* bytes = reinterpret_cast<const unsigned char*>(ahead.data());
  const std::size_t units = std::min<std::size_t>(ahead.size(), kBlock) / 2;
  // The buffer form stores at most max_count - 1 units, its line end among
  // them.
  const std::size_t limit = line != nullptr ? units : std::min<std::size_t>(units, max_count - 1);
  const bool big_endian = big_endian_ == 1;
  std::size_t end = 0;
  while (end < limit && !IsLineEnd(UnitAt(bytes + 2 * end, big_endian))) ++end;
  if (end == limit || end + 1 >= units || !IsLineEnd(UnitAt(bytes + 2 * end + 2, big_endian))) {
    return false;
  }
  // The line, its end and the unit after it; the buffer form goes one unit
  // further.
  std::size_t taken = 2 * (end + 2);
  if (line != nullptr) {
    LineBuilder text(*line);
    for (std::size_t i = 0; i < end; ++i) text.add(UnitAt(bytes + 2 * i, big_endian));
  } else {
    taken += 2;
    if (taken > ahead.size()) return false;
    for (std::size_t i = 0; i <= end; ++i) buffer[i] = UnitAt(bytes + 2 * i, big_endian);
    buffer[end + 1] = 0;
  }
  platform::consume_buffered_input(m_pStream, taken);
  position_ += static_cast<std::uint32_t>(taken);
  // What the seek would also have done.
  std::clearerr(m_pStream);
  return true;
}

BOOL CUTF16File::ReadUnicodeString(CString& line) {
  line.Empty();
  if (accumulator_.empty() && TakeBufferedLine(&line, nullptr, 0)) return TRUE;
  LoadAccumulator();
  if (accumulator_.empty()) return FALSE;
  {
    LineBuilder text(line);
    for (;;) {
      const wchar_t c = TakeUnit();
      if (IsLineEnd(static_cast<char16_t>(c))) break;
      position_ += 2;
      text.add(static_cast<char16_t>(c));
      if (accumulator_.empty()) {
        LoadAccumulator();
        if (accumulator_.empty()) return TRUE;
      }
    }
  }
  position_ += 2;
  // The unit after the line end is taken whatever it is; only a second line
  // end brings the file back to the logical position. The accumulator is not
  // refilled for it.
  if (!accumulator_.empty() && IsLineEnd(static_cast<char16_t>(TakeUnit()))) {
    position_ += 2;
    Seek(static_cast<LONG>(position_), begin);
  }
  return TRUE;
}

wchar_t* CUTF16File::ReadUnicodeString(wchar_t* buffer, UINT max_count) {
  if (max_count <= 1 || buffer == nullptr) return buffer;
  if (accumulator_.empty() && TakeBufferedLine(nullptr, buffer, max_count)) return buffer;
  LoadAccumulator();
  if (accumulator_.empty()) {
    buffer[0] = 0;
    return nullptr;
  }
  UINT stored = 0;
  while (--max_count != 0) {
    const wchar_t c = TakeUnit();
    position_ += 2;
    buffer[stored++] = c;
    if (IsLineEnd(static_cast<char16_t>(c))) {
      // The line end counts twice here, so a pair brings the file one unit
      // beyond it.
      position_ += 2;
      if (!accumulator_.empty() && IsLineEnd(static_cast<char16_t>(TakeUnit()))) {
        position_ += 2;
        Seek(static_cast<LONG>(position_), begin);
      }
      break;
    }
    if (accumulator_.empty()) {
      LoadAccumulator();
      if (accumulator_.empty()) break;
    }
  }
  buffer[stored] = 0;
  return stored > 0 ? buffer : nullptr;
}

void CUTF16File::WriteString(const wchar_t* text, int unicode) {
  if (unicode == 1) {
    WriteUnicodeString(text);
    return;
  }
  const CodePageText<char> bytes(text);
  WriteANSIString(bytes.get());
}

void CUTF16File::WriteANSIString(const char* text) {
  const CodePageText<wchar_t> wide(text);
  CStdioFile::WriteString(wide.get());
}

void CUTF16File::WriteUnicodeString(const wchar_t* text) {
  if (GetPosition() == 0) Write(kMark, sizeof kMark);
  UnitWriter units(*this);
  for (const wchar_t* c = text != nullptr ? text : L""; *c != 0; ++c) units.add(*c);
  units.flush();
}

LONG CUTF16File::Seek(LONG offset, UINT from) {
  const LONG result = CStdioFile::Seek(offset, from);
  position_ = static_cast<std::uint32_t>(CStdioFile::Seek(0, current));
  accumulator_.clear();
  return result;
}
