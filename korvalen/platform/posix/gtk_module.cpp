#include "korvalen/platform/posix/gtk_module.h"

#include <dlfcn.h>

#include <cstdlib>
#include <mutex>
#include <set>
#include <string>

#include "korvalen/platform/internal/key_queue.h"

namespace korvalen::platform {
namespace {

constexpr const char* kModuleName = "libkorvalen-gtk.so.1";

std::mutex g_mutex;
std::set<void*> g_dialogs;  // the module's dialogs the library has handed out
const KorvalenGtkApi* g_api = nullptr;

bool Set(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != 0;
}

// Beside the file this library was loaded from.
std::string ModulePath() {
  if (const char* path = std::getenv("KORVALEN_GTK_MODULE"); path != nullptr && *path != 0) {
    return path;
  }
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&gtk_module), &info) == 0 || info.dli_fname == nullptr) {
    return kModuleName;
  }
  std::string path = info.dli_fname;
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? kModuleName : path.substr(0, slash + 1) + kModuleName;
}

bool TakeKey(HWND window, unsigned& key) {
  void* dialog = gtk_dialog_of(window);
  return dialog != nullptr && g_api->take_key_down(dialog, &key) != 0;
}

const KorvalenGtkApi* Load() {
  if (!display_named()) return nullptr;
  // Kept loaded for the life of the process: a toolkit cannot be unloaded.
  void* module = dlopen(ModulePath().c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) return nullptr;
  const auto entry = reinterpret_cast<KorvalenGtkEntry>(dlsym(module, kKorvalenGtkEntryName));
  const KorvalenGtkApi* api = entry != nullptr ? entry(kKorvalenGtkVersion) : nullptr;
  if (api == nullptr || api->start() == 0) return nullptr;
  g_api = api;
  set_key_down_source(&TakeKey);
  return api;
}

}  // namespace

bool display_named() { return Set("DISPLAY") || Set("WAYLAND_DISPLAY"); }

const KorvalenGtkApi* gtk_module() {
  static const KorvalenGtkApi* const api = Load();
  return api;
}

void* gtk_dialog_of(HWND window) {
  const std::lock_guard lock(g_mutex);
  void* dialog = reinterpret_cast<void*>(window);
  return g_dialogs.count(dialog) != 0 ? dialog : nullptr;
}

void forget_gtk_dialog(HWND window) {
  const std::lock_guard lock(g_mutex);
  g_dialogs.erase(reinterpret_cast<void*>(window));
}

HWND remember_gtk_dialog(void* dialog) {
  const std::lock_guard lock(g_mutex);
  g_dialogs.insert(dialog);
  return reinterpret_cast<HWND>(dialog);
}

}  // namespace korvalen::platform
