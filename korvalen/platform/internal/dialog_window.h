// Modeless dialogs made from a dialog template, and their controls addressed
// by identifier: what the progress dialogs show. Calls that can fail follow
// the convention of error.h.
//
//   std::unique_ptr<platform::DialogWindow> window;
//   if (!platform::create_dialog_window(resources, 14200, nullptr, parent, {}, window)) {
//     window->replace_text(14208, L"III");
//     window->refresh();
//   }
//
// Windows creates the dialog with CreateDialogParamW from the template in the
// resource module. POSIX shows it with GTK when the toolkit's module can be
// loaded and a display opened, built from the module's template (read by the
// PE reader) or else from the built-in one; otherwise the dialog is headless:
// nothing is shown, and the controls' state is only kept, to be read back.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <system_error>

#include "korvalen/platform/windows_types.h"

namespace korvalen::platform {

struct DialogTemplate;

// The controls of one dialog. A control the dialog lacks takes nothing and
// reads as empty, unchecked and disabled.
class DialogWindow {
 public:
  virtual ~DialogWindow() = default;

  virtual HWND handle() const = 0;
  virtual void check(int id, bool checked) = 0;
  virtual bool checked(int id) const = 0;
  virtual void enable(int id, bool enabled) = 0;
  virtual bool enabled(int id) const = 0;
  // The field's whole text replaced as an edit field replaces its selection
  // once all of it is selected and scrolled to.
  virtual void replace_text(int id, const wchar_t* text) = 0;
  virtual std::wstring text(int id) const = 0;
  // Repaints what changed now, without waiting for the caller's message loop.
  virtual void refresh() = 0;
};

// Creates the dialog of that template number, a child of parent (may be
// null); on_init runs as the dialog initialises (may be empty). builtin, when
// not null, stands in for a template the module lacks where the system draws
// the dialog itself. window is null on failure (no such template, no module).
std::error_code create_dialog_window(HMODULE resources, unsigned template_id,
                                     const DialogTemplate* builtin, HWND parent,
                                     const std::function<int()>& on_init,
                                     std::unique_ptr<DialogWindow>& window);

// Each system's implementation, for the portable layer (dialog_window.cpp)
// only: window is null on entry, and an allocation failure may throw.
namespace native {
std::error_code create_dialog_window(HMODULE resources, unsigned template_id,
                                     const DialogTemplate* builtin, HWND parent,
                                     const std::function<int()>& on_init,
                                     std::unique_ptr<DialogWindow>& window);
}  // namespace native

}  // namespace korvalen::platform
