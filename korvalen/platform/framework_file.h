// Stand-ins of the windowing framework's file classes, the ones the exported
// text file class derives from: CFile (the open flags, the seek origins and
// what an open file does), CFileException (why a file could not be opened or
// used) and CStdioFile, a file on a C stream. A CStdioFile opened in text
// mode (typeText, or neither type flag) reads and writes its lines as 8-bit
// text in the code page with CR LF line ends, as the suite's settings files
// are; typeBinary passes bytes unchanged.
//
//   CStdioFile file;
//   CFileException error;
//   if (file.Open(L"UNIDADES.CFG", CFile::modeRead | CFile::shareDenyNone, &error)) {
//     CString line;
//     while (file.ReadString(line)) use(line);  // without the line end
//   }
//
// As the framework's, Open reports a failure by its result and the exception
// it fills in; every other operation, and the opening constructor, throws a
// CFileException* that the catcher releases with Delete():
//
//   try { file.Write(data, size); } catch (CFileException* e) { e->Delete(); }
//
// The share flags take effect on Windows only (shareCompat is exclusive
// there, as in the framework). modeWrite without modeCreate opens an
// existing file for appending, as modeCreate | modeNoTruncate opens any: such
// a file stands at its end once open.
#pragma once

#include <cstdio>
#include <memory>

#include "korvalen/export.h"
#include "korvalen/platform/framework.h"
#include "korvalen/platform/windows_types.h"

class KORVALEN_API CFileException {
 public:
  enum {
    none,
    genericException,
    fileNotFound,
    badPath,
    tooManyOpenFiles,
    accessDenied,
    invalidFile,
    removeCurrentDir,
    directoryFull,
    badSeek,
    hardIO,
    sharingViolation,
    lockViolation,
    diskFull,
    endOfFile
  };

  explicit CFileException(int cause = none, LONG os_error = -1, const wchar_t* file_name = nullptr);
  virtual ~CFileException();

  // Frees an exception that was thrown; one of the caller's own stays.
  void Delete();

  int m_cause;
  LONG m_lOsError;
  CString m_strFileName;

 private:
  friend class CStdioFile;
  bool thrown_ = false;
};

// What every open file does; CStdioFile is the file.
class KORVALEN_API CFile {
 public:
  enum OpenFlags {
    modeRead = 0x0000,
    modeWrite = 0x0001,
    modeReadWrite = 0x0002,
    shareCompat = 0x0000,
    shareExclusive = 0x0010,
    shareDenyWrite = 0x0020,
    shareDenyRead = 0x0030,
    shareDenyNone = 0x0040,
    modeNoInherit = 0x0080,
    modeCreate = 0x1000,
    modeNoTruncate = 0x2000,
    typeText = 0x4000,
    typeBinary = 0x8000
  };
  enum SeekPosition { begin = 0x0, current = 0x1, end = 0x2 };

  CFile(const CFile&) = delete;
  CFile& operator=(const CFile&) = delete;
  virtual ~CFile();

  virtual BOOL Open(const wchar_t* file_name, UINT open_flags, CFileException* error = nullptr) = 0;
  // The bytes read; fewer than count only at the end of the file.
  virtual UINT Read(void* buffer, UINT count) = 0;
  virtual void Write(const void* buffer, UINT count) = 0;
  // The new position.
  virtual LONG Seek(LONG offset, UINT from) = 0;
  virtual DWORD GetLength() const = 0;
  virtual DWORD GetPosition() const = 0;
  virtual void Flush() = 0;
  virtual void Close() = 0;

 protected:
  CFile() = default;
};

class KORVALEN_API CStdioFile : public CFile {
 public:
  CStdioFile();
  CStdioFile(const wchar_t* file_name, UINT open_flags);
  // Closes the file, if open, quietly.
  ~CStdioFile() override;

  // A file already open is closed first.
  BOOL Open(const wchar_t* file_name, UINT open_flags, CFileException* error = nullptr) override;
  UINT Read(void* buffer, UINT count) override;
  void Write(const void* buffer, UINT count) override;
  LONG Seek(LONG offset, UINT from) override;
  // 0 for a file that is not open.
  DWORD GetLength() const override;
  DWORD GetPosition() const override;
  void Flush() override;
  void Close() override;

  // The next line without its line feed; FALSE at the end of the file. A
  // zero byte ends the line's text (the rest of the line is read and
  // dropped).
  virtual BOOL ReadString(CString& line);
  // At most max_count - 1 characters of the line, its line feed kept and the
  // text terminated; null at the end of the file.
  virtual wchar_t* ReadString(wchar_t* buffer, UINT max_count);
  // The text in the code page (a character it cannot hold ends the text).
  virtual void WriteString(const wchar_t* text);

  FILE* m_pStream = nullptr;

 protected:
  // Whether the file was opened with typeBinary.
  bool IsBinary() const { return binary_; }

 private:
  [[noreturn]] void Fail(int cause) const;

  CString file_name_;
  bool binary_ = false;
  // The stream's buffer, which outlives it.
  std::unique_ptr<char[]> buffer_;
};
