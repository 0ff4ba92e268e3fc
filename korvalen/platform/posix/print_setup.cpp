// The printer setup over POSIX: the GTK print dialog through the module,
// whose settings bytes the library keeps without looking into them.
#include "korvalen/platform/internal/print_setup.h"

#include <cstring>

#include "korvalen/platform/internal/utf8.h"
#include "korvalen/platform/posix/gtk_module.h"

namespace korvalen::platform {

std::size_t printer_settings_size(const std::uint8_t* /*settings*/, std::size_t available) {
  return available;
}

namespace native {

std::error_code run_print_setup(bool preset, PrinterChoice& choice, bool& confirmed) {
  const KorvalenGtkApi* gtk = gtk_module();
  if (gtk == nullptr) return {};  // no display: as cancelled
  KorvalenGtkPrinter printer{};
  if (preset) {
    const auto put = [](char* to, const std::wstring& from) {
      const std::string text = to_utf8(from);
      std::strncpy(to, text.c_str(), 255);
    };
    put(printer.driver, choice.driver);
    put(printer.device, choice.device);
    put(printer.port, choice.port);
    printer.settings = choice.settings.data();
    printer.settings_size = static_cast<std::uint32_t>(choice.settings.size());
  }
  unsigned char* given = printer.settings;
  confirmed = gtk->choose_printer(&printer) != 0;
  if (!confirmed) return {};
  choice.driver = from_utf8(printer.driver);
  choice.device = from_utf8(printer.device);
  choice.port = from_utf8(printer.port);
  if (printer.settings != given) {
    choice.settings.assign(printer.settings, printer.settings + printer.settings_size);
    gtk->free_bytes(printer.settings);
  }
  return {};
}

}  // namespace native
}  // namespace korvalen::platform
