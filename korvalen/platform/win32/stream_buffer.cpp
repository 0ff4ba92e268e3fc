// The Universal C Runtime keeps its FILE private, so nothing is looked at in
// place and readers go through stdio.
#include "korvalen/platform/internal/stream_buffer.h"

#include <stdio.h>

namespace korvalen::platform {

StreamLock::StreamLock(FILE* file) : file_(file) { _lock_file(file_); }

StreamLock::~StreamLock() { _unlock_file(file_); }

std::string_view buffered_input(FILE* /*file*/) { return {}; }

void consume_buffered_input(FILE* /*file*/, std::size_t /*count*/) {}

}  // namespace korvalen::platform
