#include "korvalen/platform/framework_dialog.h"

#include <memory>
#include <new>
#include <string>

#include "korvalen/foundation/internal/current_resources.h"
#include "korvalen/platform/internal/dialog_window.h"
#include "korvalen/platform/internal/print_setup.h"

namespace platform = korvalen::platform;

CDialog::~CDialog() { DestroyWindow(); }

BOOL CDialog::OnInitDialog() { return TRUE; }

BOOL CDialog::Create(UINT template_id, CWnd* parent) {
  return CreateFromTemplate(template_id, parent, nullptr);
}

BOOL CDialog::CreateFromTemplate(UINT template_id, CWnd* parent,
                                 const platform::DialogTemplate* builtin) {
  try {
    DestroyWindow();
    std::unique_ptr<platform::DialogWindow> window;
    if (platform::create_dialog_window(
            korvalen::detail::current_resources(), template_id, builtin,
            parent != nullptr ? parent->m_hWnd : nullptr, [this] { return OnInitDialog(); },
            window)) {
      return FALSE;
    }
    window_ = window.release();
    m_hWnd = window_->handle();
    return TRUE;
  } catch (...) {
    return FALSE;
  }
}

BOOL CDialog::DestroyWindow() {
  if (window_ == nullptr) return FALSE;
  delete window_;
  window_ = nullptr;
  m_hWnd = nullptr;
  return TRUE;
}

int CDialog::GetDlgItemText(int id, CString& text) const {
  try {
    const std::wstring value = window_ != nullptr ? window_->text(id) : std::wstring();
    text = value.c_str();
    return static_cast<int>(value.size());
  } catch (...) {
    return 0;
  }
}

UINT CDialog::IsDlgButtonChecked(int id) const {
  return window_ != nullptr && window_->checked(id) ? 1 : 0;
}

BOOL CDialog::IsDlgItemEnabled(int id) const {
  return window_ != nullptr && window_->enabled(id) ? TRUE : FALSE;
}

// An empty choice stands in when none could be allocated: a constructor of
// the framework does not fail.
CPrintDialog::CPrintDialog(BOOL /*print_setup_only*/, DWORD /*flags*/, CWnd* /*parent*/)
    : choice_(new (std::nothrow) platform::PrinterChoice) {}

CPrintDialog::~CPrintDialog() { delete choice_; }

INT_PTR CPrintDialog::DoModal() {
  try {
    bool confirmed = false;
    if (choice_ == nullptr || platform::run_print_setup(false, *choice_, confirmed) || !confirmed) {
      return IDCANCEL;
    }
    return IDOK;
  } catch (...) {
    return IDCANCEL;
  }
}

CString CPrintDialog::GetDriverName() const { return choice_ ? choice_->driver.c_str() : L""; }
CString CPrintDialog::GetDeviceName() const { return choice_ ? choice_->device.c_str() : L""; }
CString CPrintDialog::GetPortName() const { return choice_ ? choice_->port.c_str() : L""; }

LPDEVMODEW CPrintDialog::GetDevMode() const {
  if (choice_ == nullptr || choice_->settings.empty()) return nullptr;
  return reinterpret_cast<LPDEVMODEW>(choice_->settings.data());
}
