// The punch progress dialog: the punching counterpart of the cut progress
// dialog, with six phases (a check box, a counter and a text field showing
// the item being worked on, each) and an activity indicator that starts
// again after 153 letters.
//
//   CDlgPnzPrgrs progress;
//   if (progress.Create(&main_window)) {
//     progress.InitializeButtons(1, 1, 0, 0, 1, 0);
//     progress.AddCounter(0, part_name);  // one more part punched
//     progress.DestroyWindow();
//   }
//
// The dialog is template 14301 of the current language library. Phases, in
// the order of AddCounter's phase index, with their check box, counter field
// and text field: 0 punch parts (14305, 14304, 14303), 1 punch scrap (14308,
// 14307, 14306), 2 minimisation (14311, 14310, 14309), 3 optimisation
// (14314, 14313, 14312), 4 part evacuation (14317, 14316, 14315), 5 forming
// (14320, 14319, 14318). The indicator is field 14302.
#pragma once

#include "korvalen/export.h"
#include "korvalen/platform/framework.h"

class KORVALEN_API CDlgPnzPrgrs : public CDialog {
 public:
  enum { IDD = 14301 };

  CDlgPnzPrgrs() = default;

  // Creates the dialog modeless; on success the indicator and the counters
  // start at 0 and the result is 1, otherwise 0.
  int Create(CWnd* parent);
  BOOL OnInitDialog() override;

  // Each phase's box cleared, enabled when its argument is non-zero; the
  // counters shown as they are, the text fields emptied.
  void InitializeButtons(int punch_parts, int punch_scrap, int minimisation, int optimisation,
                         int evacuation, int forming);

  // The phase's box checked or not; a disabled box always ends unchecked.
  void SetCheckPunchParts(int checked);
  void SetCheckPunchScrap(int checked);
  void SetCheckPunchMinim(int checked);
  void SetCheckPunchOptim(int checked);
  void SetCheckEvacuParts(int checked);
  void SetCheckEmbuticion(int checked);

  // The phase's counter written in its field, in decimal.
  void SetCounterPunchParts();
  void SetCounterPunchScrap();
  void SetCounterPunchMinim();
  void SetCounterPunchOptim();
  void SetCounterEvacuParts();
  void SetCounterEmbuticion();

  // The phase's text field replaced by the text (null: emptied).
  void SetTextPunchParts(const wchar_t* text);
  void SetTextPunchScrap(const wchar_t* text);
  void SetTextPunchMinim(const wchar_t* text);
  void SetTextPunchOptim(const wchar_t* text);
  void SetTextEvacuParts(const wchar_t* text);
  void SetTextEmbuticion(const wchar_t* text);

  // The indicator one letter longer (one again after 153); a phase of 0 to 5
  // counts one more, shows it and shows the text in its text field; any
  // other number only moves the indicator.
  void AddCounter(int phase, const wchar_t* text);

  int m_nStep = 0;          // the indicator's letters, 1 to 153
  int m_nCounters[6] = {};  // in phase order

 private:
  void SetCheck(int phase, int checked);
  void ShowCounter(int phase);
  void SetText(int phase, const wchar_t* text);
};
