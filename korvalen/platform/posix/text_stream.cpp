#include "korvalen/platform/posix/text_stream.h"

#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>

namespace korvalen::platform::posix {
namespace {

// Settings files are read whole, front to back: chunks this large take them
// in a few system calls.
constexpr std::size_t kChunk = 65536;

struct TextFile {
  int fd = -1;
  bool end = false;         // Ctrl-Z seen: the rest of the file does not exist for the reader
  bool pending_cr = false;  // a CR at the end of the last raw chunk, not yet decided
  // Left uninitialised: they are only read where they were written.
  char raw[kChunk];
  char buffer[kChunk];  // the stream's own buffer
};

ssize_t read_raw(int fd, char* buffer, size_t size) {
  for (;;) {
    const ssize_t n = ::read(fd, buffer, size);
    if (n >= 0 || errno != EINTR) return n;
  }
}

bool write_all(int fd, const char* data, size_t size) {
  while (size > 0) {
    const ssize_t n = ::write(fd, data, size);
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    data += n;
    size -= static_cast<size_t>(n);
  }
  return true;
}

// Copies raw[0, n) to out folding CR LF into LF, up to a Ctrl-Z (which ends
// the input for good). A CR that is the last byte of the chunk is held back
// for the next byte to decide. Returns the bytes written, at most n.
size_t fold_chunk(TextFile* f, size_t n, char* out) {
  const char* p = f->raw;
  const char* const chunk_end = f->raw + n;
  // Ctrl-Z is rare, so it is looked for once per chunk; the CR runs are then
  // copied whole.
  const char* end = static_cast<const char*>(std::memchr(p, 0x1A, n));
  if (end != nullptr) {
    f->end = true;
  } else {
    end = chunk_end;
  }
  char* o = out;
  while (p < end) {
    const auto* cr = static_cast<const char*>(std::memchr(p, '\r', static_cast<size_t>(end - p)));
    if (cr == nullptr) cr = end;
    const auto run = static_cast<size_t>(cr - p);
    std::memcpy(o, p, run);
    o += run;
    if (cr == end) break;
    if (cr + 1 == chunk_end) {
      f->pending_cr = true;
      break;
    }
    // A CR before a LF is dropped; any other CR (one before the Ctrl-Z
    // included) is an ordinary character.
    if (cr[1] != '\n') *o++ = '\r';
    p = cr + 1;
  }
  return static_cast<size_t>(o - out);
}

ssize_t text_read(void* cookie, char* out, size_t size) {
  auto* f = static_cast<TextFile*>(cookie);
  if (f->end || size == 0) return 0;
  size_t produced = 0;
  while (produced == 0) {
    // Each raw byte gives at most one output byte; a held-back CR takes one
    // more place, so read one byte less while one is held.
    size_t want = size < sizeof(f->raw) ? size : sizeof(f->raw);
    if (f->pending_cr && want > 1) --want;
    const ssize_t n = read_raw(f->fd, f->raw, want);
    if (n < 0) return -1;
    if (n == 0) {
      // End of file: a held-back CR is an ordinary character.
      if (f->pending_cr) {
        f->pending_cr = false;
        out[produced++] = '\r';
      }
      return static_cast<ssize_t>(produced);
    }
    if (f->pending_cr) {
      f->pending_cr = false;
      if (f->raw[0] != '\n') {
        out[produced++] = '\r';
        if (produced == size) {
          // No room for more: give the bytes just read back to the file.
          lseek(f->fd, -n, SEEK_CUR);
          break;
        }
      }
    }
    produced += fold_chunk(f, static_cast<size_t>(n), out + produced);
    if (f->end) break;
  }
  return static_cast<ssize_t>(produced);
}

ssize_t text_write(void* cookie, const char* data, size_t size) {
  auto* f = static_cast<TextFile*>(cookie);
  char buffer[8192];
  size_t used = 0;
  for (size_t i = 0; i < size; ++i) {
    if (used + 2 > sizeof(buffer)) {
      if (!write_all(f->fd, buffer, used)) return -1;
      used = 0;
    }
    if (data[i] == '\n') buffer[used++] = '\r';
    buffer[used++] = data[i];
  }
  if (used > 0 && !write_all(f->fd, buffer, used)) return -1;
  return static_cast<ssize_t>(size);
}

int text_seek(void* cookie, off64_t* offset, int whence) {
  auto* f = static_cast<TextFile*>(cookie);
  const off_t at = lseek(f->fd, static_cast<off_t>(*offset), whence);
  if (at < 0) return -1;
  f->pending_cr = false;
  f->end = false;
  *offset = at;
  return 0;
}

int text_close(void* cookie) {
  auto* f = static_cast<TextFile*>(cookie);
  const int result = ::close(f->fd);
  delete f;
  return result;
}

}  // namespace

FILE* open_text_stream(int fd, const char* stdio_mode) {
  auto* f = new (std::nothrow) TextFile;
  if (f == nullptr) {
    ::close(fd);
    errno = ENOMEM;
    return nullptr;
  }
  f->fd = fd;
  cookie_io_functions_t io{text_read, text_write, text_seek, text_close};
  FILE* stream = fopencookie(f, stdio_mode, io);
  if (stream == nullptr) {
    ::close(fd);
    delete f;
    return nullptr;
  }
  // The buffer lives in the cookie, which the stream frees last, on closing.
  setvbuf(stream, f->buffer, _IOFBF, sizeof f->buffer);
  return stream;
}

}  // namespace korvalen::platform::posix
