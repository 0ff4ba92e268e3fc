// The launch parameters of the machine-configuration program, kept as A
// records in "CFGSMACH.CFG" (80-character records, current directory), and
// the identifiers of the options in the machine option files.
//
//   int a000, a001, a009;
//   LONG a002, a003;
//   wchar_t a004[81], a005[81], a006[81], a007[81], a008[81];
//   ReadCfgsMachParameters(a000, a001, a002, a003, a004, a005, a006, a007, a008, a009);
//   WriteCfgsMachParameters(0, 1024, 768);   // switch OFF: the dimensions are stored
//
//   wchar_t id[kCfgOptionIDChars];
//   GetCfgOptionID(3, 2, id);                // "22 9 2"
//
// Records: A000 launch value, A001 launch switch, A002 and A003 the two
// dimensions, A004 the default option file, A005 to A008 the option files of
// selector values 0, 2, 1 and 3 (in that order), A009 the selector.
#pragma once

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

// Longest option identifier ("22 10 6") and its terminator.
inline constexpr int kCfgOptionIDChars = 8;

// Defaults first: 1, 0 (OFF), 800, 600, five empty texts, 0; then every A000
// to A009 record of the file, the last of each winning. The texts are read
// between double quotes (a bare word reads as empty) into buffers of 81
// characters; a null buffer is skipped.
KORVALEN_API void ReadCfgsMachParameters(int& a000, int& a001, LONG& a002, LONG& a003,
                                         wchar_t* a004, wchar_t* a005, wchar_t* a006, wchar_t* a007,
                                         wchar_t* a008, int& a009);

// An existing file is rewritten through "AUXCFGSMACH.CFG": A001 := switch_on,
// and only when switch_on is 0, A002 := a002 and A003 := a003; other lines
// are copied, blank ones dropped; without a work file nothing changes.
// Without the file a new one is created: three comment lines, then
// "A000 1", "A001 ON"/"A001 OFF", "A002 <a002>", "A003 <a003>" and
// "A004 CFGSMACH.OPC" (a bare word, which the reader takes as no text).
KORVALEN_API void WriteCfgsMachParameters(int switch_on, LONG a002, LONG a003);

// The next word of an option record from position on: 0 when it is the
// terminator ";" (state untouched), else state := its integer value and 1.
// A record without a terminator gives 1 and state 0 at its end.
KORVALEN_API int LeerEstadoOpt(const wchar_t* line, int& position, int& state);

// The option identifier of an (option group, item) pair of the machine
// configuration, into id (kCfgOptionIDChars): groups 1 and 2 are "21 n"
// identifiers (item 3 of group 1 and item 4 of group 2 are both "21 6"),
// group 3 "22 9 <item>" (1-7), 4 "19 <item>" (1-4), 5 "22 1 <item>" (1-7),
// 7 "22 10 <item>" (1-6), 8 "22 8 <item>" (1-5). Group 6 and every other pair
// give an empty identifier.
KORVALEN_API void GetCfgOptionID(int group, int item, wchar_t* id);
