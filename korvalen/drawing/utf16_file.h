// A text file that may be UTF-16. A file that starts with a byte-order mark
// (FF FE little-endian, FE FF big-endian) is read as UTF-16 lines; any other
// file is read as the 8-bit text of CStdioFile. Lines are written as
// UTF-16LE (with the mark FF FE first when writing at the start of the file)
// or as 8-bit text in the code page.
//
//   CUTF16File in;
//   if (in.Open(L"Textos.txt", CFile::modeRead | CFile::typeBinary)) {
//     CString line;
//     while (in.ReadString(line)) use(line);  // either kind of file
//   }
//   CUTF16File out(L"Salida.txt", CFile::modeCreate | CFile::modeWrite | CFile::typeBinary);
//   out.WriteString(L"Corte\r\n", 1);  // FF FE, then the UTF-16LE units
//
// UTF-16 files want typeBinary: in text mode the stream folds byte pairs
// that look like CR LF and ends at a byte 0x1A, inside UTF-16 units too.
// A file opened with modeWrite is never looked at for a mark. The mark found
// stays with the object: later opens only ever set it, never clear it.
//
// UTF-16 lines are read the suite's way, on purpose:
// - ReadString(CString&) returns the line without its line end; a CR LF
//   (or LF CR, CR CR, LF LF) pair ends a line, but after a single CR or LF
//   the next unit is taken as part of the line end and lost.
// - ReadString(buffer, n) keeps the first unit of the line end in the buffer
//   (n - 1 units at most, terminated), and after a pair it goes on one unit
//   beyond it, so the next line's first unit is skipped.
// - Units pass as they are: a surrogate pair is two characters, also where
//   wchar_t has 32 bits (writing turns a character above U+FFFF into its
//   pair); an odd last byte is ignored.
// Writing a text as 8-bit converts it to the code page; a character the code
// page cannot hold ends the text written (std::bad_alloc when memory runs
// out).
#pragma once

#include <cstdint>
#include <deque>

#include "korvalen/export.h"
#include "korvalen/platform/framework.h"
#include "korvalen/platform/windows_types.h"

class KORVALEN_API CUTF16File : public CStdioFile {
 public:
  CUTF16File();
  // Opens the file as CStdioFile does (throwing a CFileException* when it
  // cannot), then looks for the mark as Open does.
  CUTF16File(const wchar_t* file_name, UINT open_flags);
  ~CUTF16File() override;

  BOOL Open(const wchar_t* file_name, UINT open_flags, CFileException* error = nullptr) override;
  // 1 when the file had a byte-order mark.
  BOOL IsUnicodeFile() const;

  BOOL ReadString(CString& line) override;
  wchar_t* ReadString(wchar_t* buffer, UINT max_count) override;
  // unicode 1: UTF-16LE; any other value: 8-bit text.
  virtual void WriteString(const wchar_t* text, int unicode);
  using CStdioFile::WriteString;
  // Also drops what was read ahead.
  LONG Seek(LONG offset, UINT from) override;

 protected:
  BOOL ReadUnicodeString(CString& line);
  wchar_t* ReadUnicodeString(wchar_t* buffer, UINT max_count);
  virtual void WriteANSIString(const char* text);
  virtual void WriteUnicodeString(const wchar_t* text);

 private:
  // Queues the units of the next block of the file.
  int LoadAccumulator();
  void DetectByteOrder(BOOL opened, UINT open_flags);
  wchar_t TakeUnit();
  // A whole line taken straight from the stream's buffer, when the line,
  // its line end and what follows are all there, with the same outcome as
  // the block reads; false (nothing done) otherwise.
  bool TakeBufferedLine(CString* line, wchar_t* buffer, UINT max_count);

  int unicode_ = 0;
  int big_endian_ = 0;
  std::deque<char16_t> accumulator_;
  std::uint32_t position_ = 0;
};
