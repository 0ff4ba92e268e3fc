// Where a machine's files are, and the installation switches the suite reads
// from its process file "MIRSELIN.CNI" (current directory):
//
//   Z000 identification switch and Z007 identification text
//   Z035 help setting
//   Z044 to Z052 and Z065: a machine file lives in the shared folder
//        "<active database directory>\FilesCfg\" rather than beside the
//        programs
//
// A machine file holds the names of its program file (C000) and its settings
// file (C001); the settings file names three more (A019, A026, A029):
//
//   wchar_t program[1024], settings[1024], third[1024], fourth[1024], fifth[1024];
//   if (DameNombresFicheros(L"LASER3015.MAQ", program, settings, third, fourth, fifth)) {
//     // names not found stay "xxxxxxxx.xxx"
//   }
//
// The active database directory is the one of "DIRBDACT.SYS"
// (work_order_files.h). Readers never fail: a missing file or record leaves
// the outputs as documented.
#pragma once

#include "korvalen/export.h"

// What DameNombresFicheros gives for a name it does not find.
inline constexpr const wchar_t* kMachineFilePlaceholder = L"xxxxxxxx.xxx";
// The buffers of the machine's file names: a path, cut to 1023 characters.
inline constexpr int kMachineFilePathChars = 1024;

// All ten flags 0, then each set from its yes/no record: flag 1 from Z044,
// 2 Z045, 3 Z046, 4 Z047, 5 Z051, 6 Z048, 7 Z049, 8 Z050, 9 Z052, 10 Z065.
// Flags 5 to 8 cross the record order on purpose: the programs take them so.
KORVALEN_API void FicherosMaquinaEnRed(int& flag1, int& flag2, int& flag3, int& flag4, int& flag5,
                                       int& flag6, int& flag7, int& flag8, int& flag9, int& flag10);

// The five file names of a machine (each buffer kMachineFilePathChars):
//  1. all five are set to the placeholder;
//  2. name1 and name2 from the C000 and C001 records of machine_file;
//  3. with Z046 set, name2 becomes "<dir>\FilesCfg\<name2>" when that file
//     exists (ExisteFicherosOrigen);
//  4. name3, name4 and name5 from the A019, A026 and A029 records of the file
//     name2 names;
//  5. with Z045 set name1, with Z048 name3, with Z050 name4 and with Z051
//     name5 become "<dir>\FilesCfg\<name>", whether that file exists or not.
// Returns 1 when name1 and name2 are both non-empty (the placeholder counts),
// else 0; 0 without doing anything when an output is null.
KORVALEN_API int DameNombresFicheros(const wchar_t* machine_file, wchar_t* name1, wchar_t* name2,
                                     wchar_t* name3, wchar_t* name4, wchar_t* name5);

// 1 when the file exists as named (relative to the current directory), or in
// one of the directories of the PATH environment variable, else 0.
KORVALEN_API int ExisteFicherosOrigen(const wchar_t* file_name);

// flag from Z000, text (81 characters) from Z007; each left as the caller set
// it when its record is absent.
KORVALEN_API void LeerParametrosCNIIdentif(int& flag, wchar_t* text);
// value from Z035, left as it is when the record is absent.
KORVALEN_API void LeerParametrosCNIAyuda(int& value);
