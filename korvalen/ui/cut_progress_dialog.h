// The cut progress dialog: a small modeless dialog shown while a cutting
// program is generated, with the twelve phases of the work (a check box and
// a counter each) and an activity indicator that moves on every counted
// step.
//
//   CDlgCutPrgrs progress;
//   if (progress.Create(&main_window)) {
//     progress.InitializeButtons(1, 1, 1, 1, 0, 0, 0, 1, 1, 0, 0, 1);
//     progress.SetCutContours(1);
//     for (...) progress.AddCounter(2);  // one more cut contour
//     progress.DestroyWindow();
//   }
//
// The dialog is template 14200 of the current language library. Phases, in
// the order of AddCounter's phase index, with their check box and counter
// field: 0 part cycles (14200, 14209), 1 mark contours (14201, 14210), 2 cut
// contours (14203, 14211), 3 lead cycles (14204, 14212), 4 scrap line
// (14205, 14213), 5 destroy scrap after (14206, 14214), 6 destroy scrap
// before (14222, 14223), 7 check holes (14207, 14215), 8 move leads (14217,
// 14216), 9 reposition (14221, 14220), 10 break contours (14219, 14218), 11
// head up/down (14225, 14224). The indicator is field 14208.
#pragma once

#include "korvalen/export.h"
#include "korvalen/platform/framework.h"

class KORVALEN_API CDlgCutPrgrs : public CDialog {
 public:
  enum { IDD = 14200 };

  CDlgCutPrgrs() = default;

  // Creates the dialog modeless; on success the indicator and all counters
  // start at 0 and the result is 1; 0 leaves them as they were.
  int Create(CWnd* parent);
  BOOL OnInitDialog() override;

  // Each phase's box cleared, enabled when its argument is non-zero; the
  // counters shown as they are (not reset).
  void InitializeButtons(int part_cycles, int mark_contours, int cut_contours, int lead_cycles,
                         int scrap_line, int destroy_after, int destroy_before, int check_holes,
                         int move_leads, int reposition, int break_contours, int head_up_down);

  // The phase's box checked or not; a disabled box always ends unchecked.
  void SetExecCycles(int checked);
  void SetMarkContours(int checked);
  void SetCutContours(int checked);
  void SetLeadCycles(int checked);
  void SetCutScrapLine(int checked);
  void SetDestroyAfter(int checked);
  void SetDestroyBefor(int checked);
  void SetCheckHoles(int checked);
  void SetMoveLeads(int checked);
  void SetReposition(int checked);
  void SetBreakContr(int checked);
  void SetHeadUpDown(int checked);

  // The phase's counter written in its field, in decimal.
  void SetCounterPartCycles();
  void SetCounterMrkContour();
  void SetCounterCutContour();
  void SetCounterLeadCycles();
  void SetCounterScrapLine();
  void SetCounterScrapAfter();
  void SetCounterScrapBefor();
  void SetCounterCheckHoles();
  void SetCounterMoveLeads();
  void SetCounterReposition();
  void SetCounterBreakContr();
  void SetCounterHeadUpDown();

  // The phase's counter set; shown by the next show or AddCounter.
  void SetValueCounterPartCycles(int value);
  void SetValueCounterMrkContour(int value);
  void SetValueCounterCutContour(int value);
  void SetValueCounterLeadCycles(int value);
  void SetValueCounterScrapLine(int value);
  void SetValueCounterScrapAfter(int value);
  void SetValueCounterScrapBefor(int value);
  void SetValueCounterCheckHoles(int value);
  void SetValueCounterMoveLeads(int value);
  void SetValueCounterReposition(int value);
  void SetValueCounterBreakContr(int value);
  void SetValueCounterHeadUpDown(int value);

  // The indicator one letter longer (one again after 100); a phase of 0 to
  // 11 counts one more and shows it; any other number only moves the
  // indicator.
  void AddCounter(int phase);

  int m_nStep = 0;           // the indicator's letters, 1 to 100
  int m_nCounters[12] = {};  // in phase order

 private:
  void SetCheck(int phase, int checked);
  void ShowCounter(int phase);
};
