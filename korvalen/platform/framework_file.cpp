#include "korvalen/platform/framework_file.h"

#include <cerrno>
#include <climits>
#include <string>
#include <system_error>
#include <vector>

#include "korvalen/foundation/internal/code_page_text.h"
#include "korvalen/platform/internal/files.h"
#include "korvalen/platform/internal/line_conversion.h"

namespace {

namespace platform = korvalen::platform;

// Binary files are read a block at a time by their readers; a buffer this
// large takes them in few system calls.
constexpr std::size_t kBinaryBuffer = 65536;

// The runtime's sharing flags (_SH_DENYRW ...) have the values of the
// framework's share flags.
constexpr UINT kShareBits = 0x70;
constexpr int kDenyReadWrite = 0x10;
constexpr int kDenyNone = 0x40;

// The stream mode the framework opens a file with: "w" creates or empties,
// "a" (an existing file without modeCreate, or modeNoTruncate) appends,
// "r" reads; '+' where the access asked for needs both directions.
std::wstring StreamMode(UINT flags) {
  std::wstring mode;
  if (flags & CFile::modeCreate) {
    mode = (flags & CFile::modeNoTruncate) ? L"a" : L"w";
  } else {
    mode = (flags & CFile::modeWrite) ? L"a" : L"r";
  }
  if ((mode == L"r" && (flags & CFile::modeReadWrite)) ||
      (mode != L"r" && !(flags & CFile::modeWrite))) {
    mode += L'+';
  }
  mode += (flags & CFile::typeBinary) ? L'b' : L't';
  return mode;
}

// shareCompat is exclusive, as in the framework.
int ShareFlag(UINT flags) {
  const int share = static_cast<int>(flags & kShareBits);
  if (share == 0) return kDenyReadWrite;
  return share > kDenyNone ? kDenyNone : share;
}

int CauseOf(const std::error_code& error) {
  if (error == std::errc::no_such_file_or_directory) return CFileException::fileNotFound;
  if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted ||
      error == std::errc::read_only_file_system || error == std::errc::is_a_directory) {
    return CFileException::accessDenied;
  }
  if (error == std::errc::too_many_files_open ||
      error == std::errc::too_many_files_open_in_system) {
    return CFileException::tooManyOpenFiles;
  }
  if (error == std::errc::not_a_directory || error == std::errc::filename_too_long ||
      error == std::errc::invalid_argument || error == std::errc::too_many_symbolic_link_levels) {
    return CFileException::badPath;
  }
  if (error == std::errc::no_space_on_device) return CFileException::diskFull;
  return CFileException::genericException;
}

int SeekOrigin(UINT from) {
  switch (from) {
    case CFile::begin:
      return SEEK_SET;
    case CFile::current:
      return SEEK_CUR;
    case CFile::end:
      return SEEK_END;
    default:
      return -1;
  }
}

// The bytes of a line up to its line feed (dropped) or the end of the file,
// at most limit of them; false when the file had none left.
bool ReadLineBytes(FILE* stream, std::size_t limit, bool keep_line_feed, std::string& bytes) {
  bytes.clear();
  bool any = false;
  for (int c; bytes.size() < limit && (c = std::getc(stream)) != EOF;) {
    any = true;
    if (c == '\n') {
      if (keep_line_feed) bytes.push_back('\n');
      break;
    }
    bytes.push_back(static_cast<char>(c));
  }
  return any;
}

}  // namespace

CFileException::CFileException(int cause, LONG os_error, const wchar_t* file_name)
    : m_cause(cause), m_lOsError(os_error), m_strFileName(file_name) {}

CFileException::~CFileException() = default;

void CFileException::Delete() {
  if (thrown_) delete this;
}

CFile::~CFile() = default;

CStdioFile::CStdioFile() = default;

CStdioFile::CStdioFile(const wchar_t* file_name, UINT open_flags) {
  CFileException error;
  if (!CStdioFile::Open(file_name, open_flags, &error)) {
    auto* thrown = new CFileException(error.m_cause, error.m_lOsError, error.m_strFileName);
    thrown->thrown_ = true;
    throw thrown;
  }
}

CStdioFile::~CStdioFile() {
  if (m_pStream != nullptr) std::fclose(m_pStream);
}

BOOL CStdioFile::Open(const wchar_t* file_name, UINT open_flags, CFileException* error) {
  if (m_pStream != nullptr) {
    std::fclose(m_pStream);
    m_pStream = nullptr;
  }
  const auto failed = [&](const std::error_code& cause) {
    if (error != nullptr) {
      error->m_cause = CauseOf(cause);
      error->m_lOsError = cause.value();
      error->m_strFileName = file_name;
    }
    return FALSE;
  };
  try {
    // Without modeCreate the file must exist, also when it is appended to.
    if (!(open_flags & modeCreate) && (open_flags & modeWrite)) {
      if (const std::error_code cause = platform::access_file(file_name, 0)) return failed(cause);
    }
    FILE* stream = nullptr;
    const std::wstring mode = StreamMode(open_flags);
    if (const std::error_code cause =
            platform::open_file(file_name, mode.c_str(), ShareFlag(open_flags), stream)) {
      return failed(cause);
    }
    binary_ = (open_flags & typeBinary) != 0;
    if (binary_) {
      // C libraries take a size only with a buffer to go with it.
      if (!buffer_) buffer_.reset(new char[kBinaryBuffer]);
      std::setvbuf(stream, buffer_.get(), _IOFBF, kBinaryBuffer);
    }
    // An appending file stands at its end, where its writes go, so that its
    // position says whether anything is there.
    if (mode[0] == L'a') std::fseek(stream, 0, SEEK_END);
    m_pStream = stream;
    file_name_ = file_name;
    return TRUE;
  } catch (...) {
    return failed(std::make_error_code(std::errc::not_enough_memory));
  }
}

void CStdioFile::Fail(int cause) const {
  auto* thrown = new CFileException(cause, errno, file_name_);
  thrown->thrown_ = true;
  if (m_pStream != nullptr) std::clearerr(m_pStream);
  throw thrown;
}

UINT CStdioFile::Read(void* buffer, UINT count) {
  if (m_pStream == nullptr || (buffer == nullptr && count > 0))
    Fail(CFileException::genericException);
  if (count == 0) return 0;
  const std::size_t read = std::fread(buffer, 1, count, m_pStream);
  if (read < count && std::ferror(m_pStream)) Fail(CFileException::genericException);
  return static_cast<UINT>(read);
}

void CStdioFile::Write(const void* buffer, UINT count) {
  if (m_pStream == nullptr || (buffer == nullptr && count > 0))
    Fail(CFileException::genericException);
  if (count == 0) return;
  if (std::fwrite(buffer, 1, count, m_pStream) != count) Fail(CFileException::genericException);
}

LONG CStdioFile::Seek(LONG offset, UINT from) {
  const int origin = SeekOrigin(from);
  if (m_pStream == nullptr || origin < 0 || std::fseek(m_pStream, offset, origin) != 0) {
    Fail(CFileException::badSeek);
  }
  const long at = std::ftell(m_pStream);
  if (at < 0 || at > LONG_MAX) Fail(CFileException::badSeek);
  return static_cast<LONG>(at);
}

DWORD CStdioFile::GetLength() const {
  if (m_pStream == nullptr) return 0;
  const long at = std::ftell(m_pStream);
  if (at < 0 || std::fseek(m_pStream, 0, SEEK_END) != 0) Fail(CFileException::badSeek);
  const long length = std::ftell(m_pStream);
  if (length < 0 || std::fseek(m_pStream, at, SEEK_SET) != 0) Fail(CFileException::badSeek);
  return static_cast<DWORD>(length);
}

DWORD CStdioFile::GetPosition() const {
  if (m_pStream == nullptr) return 0;
  const long at = std::ftell(m_pStream);
  if (at < 0) Fail(CFileException::badSeek);
  return static_cast<DWORD>(at);
}

void CStdioFile::Flush() {
  if (m_pStream != nullptr && std::fflush(m_pStream) != 0) Fail(CFileException::genericException);
}

void CStdioFile::Close() {
  if (m_pStream == nullptr) return;
  FILE* stream = m_pStream;
  m_pStream = nullptr;
  if (std::fclose(stream) != 0) Fail(CFileException::genericException);
}

BOOL CStdioFile::ReadString(CString& line) {
  line.Empty();
  if (m_pStream == nullptr) Fail(CFileException::genericException);
  std::string bytes;
  const bool any = ReadLineBytes(m_pStream, bytes.max_size(), false, bytes);
  if (std::ferror(m_pStream)) Fail(CFileException::genericException);
  if (!any) return FALSE;
  std::vector<wchar_t> wide(bytes.size() + 1);
  platform::line_to_wide(bytes.data(), bytes.size(), wide.data(), static_cast<int>(wide.size()));
  line = wide.data();
  return TRUE;
}

wchar_t* CStdioFile::ReadString(wchar_t* buffer, UINT max_count) {
  if (m_pStream == nullptr) Fail(CFileException::genericException);
  if (buffer == nullptr || max_count == 0) return nullptr;
  const int capacity = max_count > INT_MAX ? INT_MAX : static_cast<int>(max_count);
  std::string bytes;
  const bool any = ReadLineBytes(m_pStream, static_cast<std::size_t>(capacity) - 1, true, bytes);
  if (std::ferror(m_pStream)) Fail(CFileException::genericException);
  if (!any && capacity > 1) return nullptr;
  platform::line_to_wide(bytes.data(), bytes.size(), buffer, capacity);
  return buffer;
}

void CStdioFile::WriteString(const wchar_t* text) {
  if (m_pStream == nullptr) Fail(CFileException::genericException);
  const korvalen::detail::CodePageText<char> bytes(text);
  if (std::fputs(bytes.get(), m_pStream) == EOF) Fail(CFileException::genericException);
}
