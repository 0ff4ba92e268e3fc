#include "korvalen/ui/punch_progress_dialog.h"

#include "korvalen/ui/internal/builtin_dialogs.h"
#include "korvalen/ui/internal/dialog_edge.h"
#include "korvalen/ui/internal/progress_dialog.h"

namespace {

using korvalen::detail::at_edge;
using korvalen::detail::kPunchProgress;
using korvalen::detail::ProgressDialog;

}  // namespace

int CDlgPnzPrgrs::Create(CWnd* parent) {
  try {
    if (!CreateFromTemplate(IDD, parent, korvalen::detail::builtin_dialog(IDD))) return 0;
    ProgressDialog(kPunchProgress, Window(), m_nStep, m_nCounters).Reset();
    return 1;
  } catch (...) {
    return 0;
  }
}

BOOL CDlgPnzPrgrs::OnInitDialog() { return CDialog::OnInitDialog(); }

void CDlgPnzPrgrs::InitializeButtons(int punch_parts, int punch_scrap, int minimisation,
                                     int optimisation, int evacuation, int forming) {
  const int enabled[] = {punch_parts, punch_scrap, minimisation, optimisation, evacuation, forming};
  at_edge([&] {
    ProgressDialog(kPunchProgress, Window(), m_nStep, m_nCounters).InitializeButtons(enabled);
  });
}

void CDlgPnzPrgrs::SetCheck(int phase, int checked) {
  at_edge([&] {
    ProgressDialog(kPunchProgress, Window(), m_nStep, m_nCounters)
        .SetCheck(static_cast<std::size_t>(phase), checked);
  });
}

void CDlgPnzPrgrs::ShowCounter(int phase) {
  at_edge([&] {
    ProgressDialog(kPunchProgress, Window(), m_nStep, m_nCounters)
        .ShowCounter(static_cast<std::size_t>(phase));
  });
}

void CDlgPnzPrgrs::SetText(int phase, const wchar_t* text) {
  at_edge([&] {
    ProgressDialog(kPunchProgress, Window(), m_nStep, m_nCounters)
        .SetText(static_cast<std::size_t>(phase), text);
  });
}

void CDlgPnzPrgrs::AddCounter(int phase, const wchar_t* text) {
  at_edge([&] {
    ProgressDialog(kPunchProgress, Window(), m_nStep, m_nCounters).AddCounter(phase, text);
  });
}

void CDlgPnzPrgrs::SetCheckPunchParts(int checked) { SetCheck(0, checked); }
void CDlgPnzPrgrs::SetCheckPunchScrap(int checked) { SetCheck(1, checked); }
void CDlgPnzPrgrs::SetCheckPunchMinim(int checked) { SetCheck(2, checked); }
void CDlgPnzPrgrs::SetCheckPunchOptim(int checked) { SetCheck(3, checked); }
void CDlgPnzPrgrs::SetCheckEvacuParts(int checked) { SetCheck(4, checked); }
void CDlgPnzPrgrs::SetCheckEmbuticion(int checked) { SetCheck(5, checked); }

void CDlgPnzPrgrs::SetCounterPunchParts() { ShowCounter(0); }
void CDlgPnzPrgrs::SetCounterPunchScrap() { ShowCounter(1); }
void CDlgPnzPrgrs::SetCounterPunchMinim() { ShowCounter(2); }
void CDlgPnzPrgrs::SetCounterPunchOptim() { ShowCounter(3); }
void CDlgPnzPrgrs::SetCounterEvacuParts() { ShowCounter(4); }
void CDlgPnzPrgrs::SetCounterEmbuticion() { ShowCounter(5); }

void CDlgPnzPrgrs::SetTextPunchParts(const wchar_t* text) { SetText(0, text); }
void CDlgPnzPrgrs::SetTextPunchScrap(const wchar_t* text) { SetText(1, text); }
void CDlgPnzPrgrs::SetTextPunchMinim(const wchar_t* text) { SetText(2, text); }
void CDlgPnzPrgrs::SetTextPunchOptim(const wchar_t* text) { SetText(3, text); }
void CDlgPnzPrgrs::SetTextEvacuParts(const wchar_t* text) { SetText(4, text); }
void CDlgPnzPrgrs::SetTextEmbuticion(const wchar_t* text) { SetText(5, text); }
