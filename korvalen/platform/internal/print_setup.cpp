// The portable part of the printer setup: a failed dialog confirms nothing.
#include "korvalen/platform/internal/print_setup.h"

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {

std::error_code run_print_setup(bool preset, PrinterChoice& choice, bool& confirmed) {
  confirmed = false;
  PrinterChoice working = choice;
  const std::error_code error =
      guarded([&] { return native::run_print_setup(preset, working, confirmed); });
  if (error) confirmed = false;
  if (confirmed) choice = std::move(working);
  return error;
}

}  // namespace korvalen::platform
