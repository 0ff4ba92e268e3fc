#include "korvalen/foundation/internal/string_loader.h"

#include <atomic>

namespace korvalen::detail {
namespace {
std::atomic<StringLoader> g_loader{nullptr};
}

void set_string_loader(StringLoader loader) { g_loader.store(loader); }

int load_string(unsigned id, wchar_t* buffer, int capacity) {
  if (buffer == nullptr || capacity <= 0) return 0;
  buffer[0] = 0;
  const StringLoader loader = g_loader.load();
  if (loader == nullptr) return 0;
  const int n = loader(id, buffer, capacity);
  if (n <= 0) buffer[0] = 0;
  return n > 0 ? n : 0;
}

}  // namespace korvalen::detail
