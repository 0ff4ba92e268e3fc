#include "korvalen/foundation/internal/current_resources.h"

#include <atomic>

#include "korvalen/platform/internal/resource_module.h"

namespace korvalen::detail {
namespace {

std::atomic<HMODULE> g_current{nullptr};

}  // namespace

void set_current_resources(HMODULE module) { g_current.store(module); }

HMODULE current_resources() { return g_current.load(); }

int load_string(unsigned id, wchar_t* buffer, int capacity) {
  if (buffer == nullptr || capacity <= 0) return 0;
  buffer[0] = 0;
  int length = 0;
  const HMODULE module = current_resources();
  if (module == nullptr) return 0;
  platform::load_string(module, id, buffer, capacity, length);
  return length;
}

}  // namespace korvalen::detail
