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

// Writes the arguments into the records named in them: A000 the number,
// A001, A002 and A005 the texts, R000 the switch ("ON"/"OFF"), R001 the server
// and both R005 and R008 the database folder; texts are cut to fit their
// record. unused_text and unused_number are not used. Whenever "MIRSELIN.CNI"
// opens it is replaced by the work file, even when that could not be created:
// the process file is then gone.
KORVALEN_API void ActualizaMirselinCNI(int& number_a000, const wchar_t* server_r001,
                                       const wchar_t* database_folder_r005_r008,
                                       const wchar_t* unused_text, int& switch_r000,
                                       const wchar_t* text_a001, const wchar_t* text_a002,
                                       const wchar_t* text_a005, int& unused_number);
