#include "korvalen/ui/cut_progress_dialog.h"

#include "korvalen/ui/internal/builtin_dialogs.h"
#include "korvalen/ui/internal/dialog_edge.h"
#include "korvalen/ui/internal/progress_dialog.h"

namespace {

using korvalen::detail::at_edge;
using korvalen::detail::kCutProgress;
using korvalen::detail::ProgressDialog;

}  // namespace

int CDlgCutPrgrs::Create(CWnd* parent) {
  try {
    if (!CreateFromTemplate(IDD, parent, korvalen::detail::builtin_dialog(IDD))) return 0;
    ProgressDialog(kCutProgress, Window(), m_nStep, m_nCounters).Reset();
    return 1;
  } catch (...) {
    return 0;
  }
}

// The framework's own initialisation; the punch dialog's is the same.
BOOL CDlgCutPrgrs::OnInitDialog() { return CDialog::OnInitDialog(); }

void CDlgCutPrgrs::InitializeButtons(int part_cycles, int mark_contours, int cut_contours,
                                     int lead_cycles, int scrap_line, int destroy_after,
                                     int destroy_before, int check_holes, int move_leads,
                                     int reposition, int break_contours, int head_up_down) {
  const int enabled[] = {part_cycles, mark_contours, cut_contours,   lead_cycles,
                         scrap_line,  destroy_after, destroy_before, check_holes,
                         move_leads,  reposition,    break_contours, head_up_down};
  at_edge([&] {
    ProgressDialog(kCutProgress, Window(), m_nStep, m_nCounters).InitializeButtons(enabled);
  });
}

void CDlgCutPrgrs::SetCheck(int phase, int checked) {
  at_edge([&] {
    ProgressDialog(kCutProgress, Window(), m_nStep, m_nCounters)
        .SetCheck(static_cast<std::size_t>(phase), checked);
  });
}

void CDlgCutPrgrs::ShowCounter(int phase) {
  at_edge([&] {
    ProgressDialog(kCutProgress, Window(), m_nStep, m_nCounters)
        .ShowCounter(static_cast<std::size_t>(phase));
  });
}

void CDlgCutPrgrs::AddCounter(int phase) {
  at_edge([&] {
    ProgressDialog(kCutProgress, Window(), m_nStep, m_nCounters).AddCounter(phase, nullptr);
  });
}

void CDlgCutPrgrs::SetExecCycles(int checked) { SetCheck(0, checked); }
void CDlgCutPrgrs::SetMarkContours(int checked) { SetCheck(1, checked); }
void CDlgCutPrgrs::SetCutContours(int checked) { SetCheck(2, checked); }
void CDlgCutPrgrs::SetLeadCycles(int checked) { SetCheck(3, checked); }
void CDlgCutPrgrs::SetCutScrapLine(int checked) { SetCheck(4, checked); }
void CDlgCutPrgrs::SetDestroyAfter(int checked) { SetCheck(5, checked); }
void CDlgCutPrgrs::SetDestroyBefor(int checked) { SetCheck(6, checked); }
void CDlgCutPrgrs::SetCheckHoles(int checked) { SetCheck(7, checked); }
void CDlgCutPrgrs::SetMoveLeads(int checked) { SetCheck(8, checked); }
void CDlgCutPrgrs::SetReposition(int checked) { SetCheck(9, checked); }
void CDlgCutPrgrs::SetBreakContr(int checked) { SetCheck(10, checked); }
void CDlgCutPrgrs::SetHeadUpDown(int checked) { SetCheck(11, checked); }

void CDlgCutPrgrs::SetCounterPartCycles() { ShowCounter(0); }
void CDlgCutPrgrs::SetCounterMrkContour() { ShowCounter(1); }
void CDlgCutPrgrs::SetCounterCutContour() { ShowCounter(2); }
void CDlgCutPrgrs::SetCounterLeadCycles() { ShowCounter(3); }
void CDlgCutPrgrs::SetCounterScrapLine() { ShowCounter(4); }
void CDlgCutPrgrs::SetCounterScrapAfter() { ShowCounter(5); }
void CDlgCutPrgrs::SetCounterScrapBefor() { ShowCounter(6); }
void CDlgCutPrgrs::SetCounterCheckHoles() { ShowCounter(7); }
void CDlgCutPrgrs::SetCounterMoveLeads() { ShowCounter(8); }
void CDlgCutPrgrs::SetCounterReposition() { ShowCounter(9); }
void CDlgCutPrgrs::SetCounterBreakContr() { ShowCounter(10); }
void CDlgCutPrgrs::SetCounterHeadUpDown() { ShowCounter(11); }

void CDlgCutPrgrs::SetValueCounterPartCycles(int value) { m_nCounters[0] = value; }
void CDlgCutPrgrs::SetValueCounterMrkContour(int value) { m_nCounters[1] = value; }
void CDlgCutPrgrs::SetValueCounterCutContour(int value) { m_nCounters[2] = value; }
void CDlgCutPrgrs::SetValueCounterLeadCycles(int value) { m_nCounters[3] = value; }
void CDlgCutPrgrs::SetValueCounterScrapLine(int value) { m_nCounters[4] = value; }
void CDlgCutPrgrs::SetValueCounterScrapAfter(int value) { m_nCounters[5] = value; }
void CDlgCutPrgrs::SetValueCounterScrapBefor(int value) { m_nCounters[6] = value; }
void CDlgCutPrgrs::SetValueCounterCheckHoles(int value) { m_nCounters[7] = value; }
void CDlgCutPrgrs::SetValueCounterMoveLeads(int value) { m_nCounters[8] = value; }
void CDlgCutPrgrs::SetValueCounterReposition(int value) { m_nCounters[9] = value; }
void CDlgCutPrgrs::SetValueCounterBreakContr(int value) { m_nCounters[10] = value; }
void CDlgCutPrgrs::SetValueCounterHeadUpDown(int value) { m_nCounters[11] = value; }
