// Stand-ins of the windowing framework's dialog classes, with the members
// the library's dialogs and their callers use: modeless creation from a
// template of the current language library, the controls read back by
// identifier, and the printer setup dialog.
//
//   CDlgCutPrgrs progress;            // a CDialog
//   if (progress.Create(&main_window)) {
//     progress.AddCounter(0);
//     CString text;
//     progress.GetDlgItemText(14208, text);  // "I"
//     progress.DestroyWindow();
//   }
//
// On Windows the dialog is a real Win32 dialog (m_hWnd its handle). On Linux
// it is a GTK dialog when a display and the toolkit are there, otherwise a
// headless one that keeps the controls' state for reading back.
#pragma once

#include "korvalen/export.h"
#include "korvalen/platform/framework.h"
#include "korvalen/platform/framework_window.h"

namespace korvalen::platform {
class DialogWindow;
struct DialogTemplate;
struct PrinterChoice;
}  // namespace korvalen::platform

// The answers of modal dialogs.
#ifndef IDOK
#define IDOK 1
#define IDCANCEL 2
#endif

class KORVALEN_API CDialog : public CWnd {
 public:
  CDialog() = default;
  CDialog(const CDialog&) = delete;
  CDialog& operator=(const CDialog&) = delete;
  ~CDialog() override;

  // The framework's initialisation: TRUE, the focus left to the dialog.
  virtual BOOL OnInitDialog();

  // Creates the dialog modeless from the template of the current language
  // library, child of parent (may be null); FALSE when it cannot be made.
  BOOL Create(UINT template_id, CWnd* parent = nullptr);
  BOOL DestroyWindow();

  // The control's text (its length), its check state (1 checked, 0 not) and
  // whether it is enabled; nothing, 0 and FALSE before Create.
  int GetDlgItemText(int id, CString& text) const;
  UINT IsDlgButtonChecked(int id) const;
  BOOL IsDlgItemEnabled(int id) const;

 protected:
  // Create, with a layout of the library's own for systems that draw the
  // dialog themselves, should the language library lack the template.
  BOOL CreateFromTemplate(UINT template_id, CWnd* parent,
                          const korvalen::platform::DialogTemplate* builtin);
  korvalen::platform::DialogWindow* Window() const { return window_; }

 private:
  korvalen::platform::DialogWindow* window_ = nullptr;
};

// The system's print dialog; the print-setup kind chooses a printer and its
// settings only. Windows: PrintDlgW. Linux: the GTK print dialog when there
// is a display, else it answers IDCANCEL.
class KORVALEN_API CPrintDialog : public CDialog {
 public:
  explicit CPrintDialog(BOOL print_setup_only, DWORD flags = 0, CWnd* parent = nullptr);
  ~CPrintDialog() override;

  // IDOK when the user chose a printer, else IDCANCEL; the choice is then
  // the dialog's until the next run.
  virtual INT_PTR DoModal();
  CString GetDriverName() const;
  CString GetDeviceName() const;
  CString GetPortName() const;
  // The chosen settings (owned by the dialog); null when there are none.
  LPDEVMODEW GetDevMode() const;

 protected:
  // All of the choice, the settings with their size (never null).
  const korvalen::platform::PrinterChoice* Choice() const { return choice_; }

 private:
  korvalen::platform::PrinterChoice* choice_;
};
