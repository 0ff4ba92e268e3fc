// In-place updates of two settings files of config records, each rewritten
// through its work file (the records edited field by field, every other line
// copied, blank lines dropped):
//
//   "MIRSELID.CFG" (work file "AUXMRSID.CFG"), long records: A002 a switch,
//                  A003 a text
//   "MIRSELIN.CNI" (work file "AUXMRSIN.AUX"), the process file of the
//                  machines: A000, A001, A002, A005, R000, R001, R005, R008
//
//   int flag = 0;
//   wchar_t text[501];
//   LeerCfgMirselId(flag, text);
//   EscribirCfgMirselId(1, L"Workshop 3");
//
// Records that are not in a file are not added to it.
#pragma once

#include "korvalen/export.h"

// flag from every A002 record, text (501 characters) from every A003; both
// untouched when absent.
KORVALEN_API void LeerCfgMirselId(int& flag, wchar_t* text);
// A002 := flag ("ON"/"OFF"), A003 := text (quoted). A text longer than the
// record's room rebuilds the record at the length it needs. When the work
// file cannot be created the file stays untouched.
KORVALEN_API void EscribirCfgMirselId(int flag, const wchar_t* text);

// A000 := a0, A001 := a1, A002 := a2, A005 := a5, R000 := r0 ("ON"/"OFF"),
// R001 := r1, R005 and R008 := r5r8; texts are cut to fit their record.
// unused1 and unused2 are not used. Whenever "MIRSELIN.CNI" opens it is
// replaced by the work file, even when that could not be created: the
// process file is then gone.
KORVALEN_API void ActualizaMirselinCNI(int& a0, const wchar_t* r1, const wchar_t* r5r8,
                                       const wchar_t* unused1, int& r0, const wchar_t* a1,
                                       const wchar_t* a2, const wchar_t* a5, int& unused2);
