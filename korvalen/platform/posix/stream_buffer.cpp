// The GNU C library's FILE is public: the pending input lies between its read
// pointer and read end, which is what its own getc macro reads. Other C
// libraries give nothing, and readers go through stdio.
#include "korvalen/platform/internal/stream_buffer.h"

#include <stdio.h>

#if defined(__GLIBC__)
#include <sys/single_threaded.h>
#endif

namespace korvalen::platform {
namespace {

bool single_threaded() {
#if defined(__GLIBC__)
  return __libc_single_threaded != 0;
#else
  return false;
#endif
}

}  // namespace

// While the process has a single thread no other one can reach the stream,
// so the lock is only taken once there are more (the flag never goes back).
StreamLock::StreamLock(FILE* file) : file_(single_threaded() ? nullptr : file) {
  if (file_ != nullptr) flockfile(file_);
}

StreamLock::~StreamLock() {
  if (file_ != nullptr) funlockfile(file_);
}

std::string_view buffered_input(FILE* file) {
#if defined(__GLIBC__)
  // A stream with output pending has no valid read window.
  if (file->_IO_write_ptr > file->_IO_write_base) return {};
  return {file->_IO_read_ptr, static_cast<std::size_t>(file->_IO_read_end - file->_IO_read_ptr)};
#else
  (void)file;
  return {};
#endif
}

void consume_buffered_input(FILE* file, std::size_t count) {
#if defined(__GLIBC__)
  file->_IO_read_ptr += count;
#else
  (void)file;
  (void)count;
#endif
}

}  // namespace korvalen::platform
