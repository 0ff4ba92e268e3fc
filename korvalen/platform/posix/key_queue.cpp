// Key presses over POSIX: whatever key queue the GUI backend has handed in.
#include "korvalen/platform/internal/key_queue.h"

#include <atomic>

namespace korvalen::platform {
namespace {

std::atomic<KeyDownSource> g_source{nullptr};

}  // namespace

bool take_key_down(HWND window, unsigned& key) {
  const KeyDownSource source = g_source.load();
  return source != nullptr && source(window, key);
}

void set_key_down_source(KeyDownSource source) { g_source.store(source); }

}  // namespace korvalen::platform
