// The system's printer setup dialog: a printer chosen with its driver's
// settings. Calls follow the convention of error.h.
//
//   platform::PrinterChoice choice;  // or one read back from a printer file
//   bool confirmed = false;
//   if (!platform::run_print_setup(false, choice, confirmed) && confirmed) keep(choice);
//
// Windows runs PrintDlgW in print-setup mode, preset through DEVNAMES and
// DEVMODEW blocks; the settings are the DEVMODEW record with its driver's
// extra bytes. POSIX runs the GTK print dialog when the toolkit's module is
// there, and its settings are the toolkit's own, opaque to the library;
// without it (no display) the dialog counts as cancelled.
#pragma once

#include <cstdint>
#include <string>
#include <system_error>
#include <vector>

namespace korvalen::platform {

struct PrinterChoice {
  std::wstring driver;
  std::wstring device;
  std::wstring port;
  std::vector<std::uint8_t> settings;  // empty: none
};

// The dialog starts on the choice when preset, else on the system's default
// printer. On confirmation the choice becomes the user's; otherwise it is
// left alone.
std::error_code run_print_setup(bool preset, PrinterChoice& choice, bool& confirmed);

// The size of a settings record given by its own header: its fixed part and
// the driver's extra bytes (Windows records); on systems whose settings are
// opaque, all the bytes.
std::size_t printer_settings_size(const std::uint8_t* settings, std::size_t available);

namespace native {
std::error_code run_print_setup(bool preset, PrinterChoice& choice, bool& confirmed);
}  // namespace native

}  // namespace korvalen::platform
