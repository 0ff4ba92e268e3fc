// The portable part of dialog windows: failures leave no window.
#include "korvalen/platform/internal/dialog_window.h"

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {

std::error_code create_dialog_window(HMODULE resources, unsigned template_id,
                                     const DialogTemplate* builtin, HWND parent,
                                     const std::function<int()>& on_init,
                                     std::unique_ptr<DialogWindow>& window) {
  window.reset();
  const std::error_code error = guarded([&] {
    return native::create_dialog_window(resources, template_id, builtin, parent, on_init, window);
  });
  if (error) window.reset();
  if (!error && window == nullptr) return make_error(std::errc::no_such_file_or_directory);
  return error;
}

}  // namespace korvalen::platform
