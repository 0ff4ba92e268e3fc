#include "korvalen/foundation/streams.h"

#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/internal/files.h"
#include "korvalen/platform/internal/text_codec.h"

using korvalen::detail::kLineBytes;
using korvalen::detail::kWorkChars;
using korvalen::detail::WideArg;
namespace platform = korvalen::platform;

namespace {

// The stream, or null with errno set as the runtime sets it.
FILE* open_stream(const wchar_t* name, const wchar_t* mode, int share_flag) {
  FILE* file = nullptr;
  korvalen::platform::to_runtime_result(platform::open_file(name, mode, share_flag, file));
  return file;
}

}  // namespace

FILE* fOpen(const wchar_t* name, const wchar_t* mode) { return open_stream(name, mode, -1); }
FILE* fOpen(const char* name, const wchar_t* mode) { return fOpen(WideArg(name).get(), mode); }
FILE* fOpen(const wchar_t* name, const char* mode) { return fOpen(name, WideArg(mode).get()); }
FILE* fOpen(const char* name, const char* mode) {
  return fOpen(WideArg(name).get(), WideArg(mode).get());
}

FILE* fsOpen(const wchar_t* name, const wchar_t* mode, int share_flag) {
  return open_stream(name, mode, share_flag);
}
FILE* fsOpen(const char* name, const wchar_t* mode, int share_flag) {
  return fsOpen(WideArg(name).get(), mode, share_flag);
}
FILE* fsOpen(const wchar_t* name, const char* mode, int share_flag) {
  return fsOpen(name, WideArg(mode).get(), share_flag);
}
FILE* fsOpen(const char* name, const char* mode, int share_flag) {
  return fsOpen(WideArg(name).get(), WideArg(mode).get(), share_flag);
}

wchar_t* fGets(wchar_t* buffer, int capacity, FILE* stream) {
  if (buffer == nullptr || capacity <= 0 || stream == nullptr) return nullptr;
  char bytes[kLineBytes];
  const int limit = capacity > kWorkChars ? kLineBytes : 2 * capacity;
  if (std::fgets(bytes, limit, stream) == nullptr) return nullptr;
  platform::ansi_to_wide(bytes, buffer, capacity);
  return buffer;
}

int fPuts(const wchar_t* line, FILE* stream) {
  if (stream == nullptr) return EOF;
  char bytes[kLineBytes];
  platform::wide_to_ansi(line, bytes, kLineBytes);
  return std::fputs(bytes, stream);
}
int fPuts(const char* line, FILE* stream) {
  if (stream == nullptr || line == nullptr) return EOF;
  return std::fputs(line, stream);
}
