// The printer setup over Win32: PrintDlgW in print-setup mode, preset and
// answered through DEVNAMES and DEVMODEW blocks of global memory.
#include "korvalen/platform/internal/print_setup.h"

#include <windows.h>
// After windows.h.
#include <commdlg.h>

#include <cstring>

namespace korvalen::platform {
namespace {

// The DEVMODEW fields that size a record: its fixed part is 220 bytes.
constexpr std::size_t kFixedSettings = 220;
constexpr std::size_t kDriverExtraAt = 70;

// A DEVNAMES block: the three names after the offsets that find them.
HGLOBAL NamesBlock(const PrinterChoice& choice) {
  const std::size_t header = sizeof(DEVNAMES) / sizeof(wchar_t);
  const std::size_t chars =
      header + choice.driver.size() + choice.device.size() + choice.port.size() + 3;
  HGLOBAL block = GlobalAlloc(GHND, chars * sizeof(wchar_t));
  if (block == nullptr) return nullptr;
  auto* names = static_cast<DEVNAMES*>(GlobalLock(block));
  auto* text = reinterpret_cast<wchar_t*>(names);
  std::size_t at = header;
  for (const auto& [name, offset] : {std::pair{&choice.driver, &names->wDriverOffset},
                                     {&choice.device, &names->wDeviceOffset},
                                     {&choice.port, &names->wOutputOffset}}) {
    *offset = static_cast<WORD>(at);
    std::memcpy(text + at, name->c_str(), (name->size() + 1) * sizeof(wchar_t));
    at += name->size() + 1;
  }
  GlobalUnlock(block);
  return block;
}

HGLOBAL SettingsBlock(const std::vector<std::uint8_t>& settings) {
  if (settings.empty()) return nullptr;
  HGLOBAL block = GlobalAlloc(GHND, settings.size());
  if (block == nullptr) return nullptr;
  std::memcpy(GlobalLock(block), settings.data(), settings.size());
  GlobalUnlock(block);
  return block;
}

}  // namespace

std::size_t printer_settings_size(const std::uint8_t* settings, std::size_t available) {
  if (settings == nullptr || available < kDriverExtraAt + 2) return 0;
  const std::size_t extra = settings[kDriverExtraAt] | (settings[kDriverExtraAt + 1] << 8);
  return kFixedSettings + extra;
}

namespace native {

std::error_code run_print_setup(bool preset, PrinterChoice& choice, bool& confirmed) {
  PRINTDLGW dialog{};
  dialog.lStructSize = sizeof dialog;
  dialog.Flags = PD_PRINTSETUP;
  if (preset) {
    dialog.hDevNames = NamesBlock(choice);
    dialog.hDevMode = SettingsBlock(choice.settings);
  }
  confirmed = PrintDlgW(&dialog) != FALSE;
  if (confirmed && dialog.hDevNames != nullptr) {
    const auto* names = static_cast<const DEVNAMES*>(GlobalLock(dialog.hDevNames));
    const auto* text = reinterpret_cast<const wchar_t*>(names);
    choice.driver = text + names->wDriverOffset;
    choice.device = text + names->wDeviceOffset;
    choice.port = text + names->wOutputOffset;
    GlobalUnlock(dialog.hDevNames);
  }
  if (confirmed) {
    choice.settings.clear();
    if (dialog.hDevMode != nullptr) {
      const auto* settings = static_cast<const std::uint8_t*>(GlobalLock(dialog.hDevMode));
      const std::size_t size =
          printer_settings_size(settings, static_cast<std::size_t>(GlobalSize(dialog.hDevMode)));
      if (size <= GlobalSize(dialog.hDevMode)) choice.settings.assign(settings, settings + size);
      GlobalUnlock(dialog.hDevMode);
    }
  }
  if (dialog.hDevNames != nullptr) GlobalFree(dialog.hDevNames);
  if (dialog.hDevMode != nullptr) GlobalFree(dialog.hDevMode);
  return {};
}

}  // namespace native
}  // namespace korvalen::platform
