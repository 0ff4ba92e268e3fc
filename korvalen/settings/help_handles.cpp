#include "korvalen/settings/help_handles.h"

#include <cstdint>
#include <cstdio>
#include <cwchar>

#include "korvalen/foundation/file_system.h"
#include "korvalen/foundation/internal/file_exists.h"
#include "korvalen/foundation/internal/number_file.h"
#include "korvalen/foundation/streams.h"
#include "korvalen/platform/internal/program_windows.h"

namespace {

namespace platform = korvalen::platform;

constexpr const wchar_t* kHelpToClose = L"WINDHELP.SYS";

void Publish(const wchar_t* file, HWND window) {
  try {
    // Window handles are 32-bit values on every Windows.
    korvalen::detail::write_number_file(file,
                                        static_cast<int>(reinterpret_cast<std::intptr_t>(window)));
  } catch (...) {
  }
}

}  // namespace

int CerrarAyuda() {
  try {
    FILE* f = fOpen(kHelpToClose, L"rt");
    if (f == nullptr) return 0;
    wchar_t line[32] = {};
    const bool read = fGets(line, 32, f) != nullptr;
    std::fclose(f);
    const long handle = read ? std::wcstol(line, nullptr, 10) : 0;
    platform::FoundWindow window;
    if (!platform::window_from_handle(handle, window)) {
      platform::post_message(window, platform::kWmClose, 0, 0);
    }
    if (korvalen::detail::file_exists(kHelpToClose)) Remove(kHelpToClose);
    return 1;
  } catch (...) {
    return 0;
  }
}

void PonerHandleAyudaVortanPr(HWND window) { Publish(L"VORTHELP.SYS", window); }
void PonerHandleAyudaDrawNest(HWND window) { Publish(L"DRAWHELP.SYS", window); }
void PonerHandleAyudaProcesos(HWND window) { Publish(L"PROCHELP.SYS", window); }
