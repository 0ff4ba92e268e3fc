// The input a stdio stream has buffered and not yet delivered, looked at in
// place where the C library allows it. A line reader takes a whole line from
// there without copying it out through fgets first, and falls back to stdio
// when the line is not all there:
//
//   const korvalen::platform::StreamLock lock(file);
//   const std::string_view ahead = korvalen::platform::buffered_input(file);
//   ... use the first n bytes of ahead ...
//   korvalen::platform::consume_buffered_input(file, n);
//
// Taking bytes this way is what getc would do with them: the stream's
// position, end-of-file and error indicators stay as stdio keeps them.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string_view>

namespace korvalen::platform {

// Holds the stream's lock (flockfile, _lock_file) while the buffer is looked
// at. The lock is recursive, so stdio calls on the same stream may be made
// while it is held.
class StreamLock {
 public:
  explicit StreamLock(FILE* file);
  ~StreamLock();
  StreamLock(const StreamLock&) = delete;
  StreamLock& operator=(const StreamLock&) = delete;

 private:
  FILE* file_;
};

// The bytes the next reads would deliver without refilling the buffer; empty
// when there are none, or when the C library keeps its buffer private (the
// Windows runtime does). Call with the stream's lock held.
std::string_view buffered_input(FILE* file);

// Takes the first count bytes of what buffered_input gave, as count getc calls
// would. Call with the stream's lock held, count at most that size.
void consume_buffered_input(FILE* file, std::size_t count);

}  // namespace korvalen::platform
