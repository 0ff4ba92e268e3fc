// The mosaic settings of "MOSAICOS.CFG" (long records, current directory):
// switches, an integer, a real and a text as A records, then the named mosaic
// entries, each written as three Z records:
//
//   Z000 "<name, up to 80 characters>"
//   Z001 "<code, up to 10 characters>"
//   Z999
//
//   TipoRegMosaico settings;
//   int error = 0;
//   const int a000 = LeerCfgMosaicos(settings, error);
//   for (TRegMosaico* e = settings.entries; e != nullptr; e = e->next) { ... }
//   settings.a011 = 2.5;
//   EscribirCfgMosaicos(settings);   // frees settings.entries: read again to use them
//
// The switches' meanings are the calling program's; they are stored and
// written back as they are.
#pragma once

#include "korvalen/export.h"

inline constexpr int kMosaicNameChars = 81;  // 80 and the terminator
inline constexpr int kMosaicCodeChars = 11;  // 10 and the terminator
inline constexpr int kMosaicTextChars = 20;  // 19 and the terminator

// One mosaic entry: a double record of the record lists (record_list.h).
struct TRegMosaico {
  TRegMosaico* next;
  TRegMosaico* previous;
  wchar_t name[kMosaicNameChars];  // Z000
  wchar_t code[kMosaicCodeChars];  // Z001
};

// Each field is named after its record; the spares have none and are cleared
// on reading.
struct TipoRegMosaico {
  int a004;
  int a002;
  int a003;
  int a001;
  int spare_integer;
  int a006;
  int a007;
  int a008;
  int a009;
  int a010;
  int a013;
  int a005;
  double spare_real;
  double a011;
  wchar_t a012[kMosaicTextChars];
  TRegMosaico* entries;  // head of the entry list, in file order
  int entry_count;
};

// Clears settings (an entry list it held is not freed), then reads the file
// while error is 0: A001-A004, A006-A010 and A013 switches, A005 an integer,
// A011 a real, A012 a text (cut to 19 characters); Z000 and Z001 fill the
// pending entry (cut to 80 and 10 characters), Z999 appends it and empties
// it; a pending entry without its Z999 is dropped. Returns the A000 switch;
// 0 when the file does not open, or when error is or becomes non-zero (no
// memory for an entry: error := 1), the entry list then freed and empty.
KORVALEN_API int LeerCfgMosaicos(TipoRegMosaico& settings, int& error);

// Rewrites the file through "AUXMOSAICOS.CFG": the A records edited in place
// (A000 and those past A013 copied as they are), other lines copied, the Z
// records and blank lines dropped, then every entry of the list as its three Z
// records. Without the file the work file gets the entries alone. The work
// file then replaces the file; when it cannot be created the file is removed
// all the same. Either way the entry list is freed: entries 0, count 0.
KORVALEN_API void EscribirCfgMosaicos(TipoRegMosaico& settings);
