// Dialog windows over Win32: modeless dialogs from the resource module's
// templates, driven through their controls.
#include "korvalen/platform/internal/dialog_window.h"

#include <windows.h>

namespace korvalen::platform::native {
namespace {

class Win32Dialog final : public DialogWindow {
 public:
  explicit Win32Dialog(const std::function<int()>& on_init) : on_init_(on_init) {}
  ~Win32Dialog() override {
    if (window_ != nullptr) DestroyWindow(window_);
  }

  HWND handle() const override { return window_; }
  void check(int id, bool checked) override {
    CheckDlgButton(window_, id, checked ? BST_CHECKED : BST_UNCHECKED);
  }
  bool checked(int id) const override { return IsDlgButtonChecked(window_, id) == BST_CHECKED; }
  void enable(int id, bool enabled) override {
    if (HWND control = GetDlgItem(window_, id)) EnableWindow(control, enabled ? TRUE : FALSE);
  }
  bool enabled(int id) const override {
    HWND control = GetDlgItem(window_, id);
    return control != nullptr && IsWindowEnabled(control) != FALSE;
  }
  void replace_text(int id, const wchar_t* text) override {
    SendDlgItemMessageW(window_, id, EM_SETSEL, 0, -1);
    SendDlgItemMessageW(window_, id, EM_SCROLLCARET, 0, 0);
    SendDlgItemMessageW(window_, id, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(text));
  }
  std::wstring text(int id) const override {
    HWND control = GetDlgItem(window_, id);
    if (control == nullptr) return {};
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(control)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        GetDlgItemTextW(window_, id, text.data(), static_cast<int>(text.size()))));
    return text;
  }
  void refresh() override { UpdateWindow(window_); }

  bool Create(HMODULE resources, unsigned template_id, HWND parent) {
    if (CreateDialogParamW(resources, MAKEINTRESOURCEW(template_id), parent, &Procedure,
                           reinterpret_cast<LPARAM>(this)) != nullptr) {
      return true;
    }
    window_ = nullptr;  // a dialog that failed in its initialisation is gone
    return false;
  }

 private:
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM, LPARAM parameter) {
    if (message != WM_INITDIALOG) return FALSE;
    auto* self = reinterpret_cast<Win32Dialog*>(parameter);
    // Known from here on, so that the initialisation may reach the controls.
    self->window_ = window;
    return self->on_init_ ? self->on_init_() : TRUE;
  }

  std::function<int()> on_init_;
  HWND window_ = nullptr;
};

}  // namespace

std::error_code create_dialog_window(HMODULE resources, unsigned template_id,
                                     const DialogTemplate* /*builtin*/, HWND parent,
                                     const std::function<int()>& on_init,
                                     std::unique_ptr<DialogWindow>& window) {
  // Without a library there is no template: the program's own are not the suite's.
  if (resources == nullptr) return std::make_error_code(std::errc::no_such_file_or_directory);
  auto dialog = std::make_unique<Win32Dialog>(on_init);
  if (!dialog->Create(resources, template_id, parent)) {
    return std::error_code(static_cast<int>(GetLastError()), std::system_category());
  }
  window = std::move(dialog);
  return {};
}

}  // namespace korvalen::platform::native
