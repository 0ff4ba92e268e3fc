// The list of serial configurations, one per control: nodes whose payload
// belongs to the transfer programs, copied as it stands.
//
//   TDtsCfgCom* first = nullptr;
//   TDtsCfgCom* last = nullptr;
//   int error = 0;
//   CopiarListaDtsCom(source, first, last, error);
//   LiberarLista((void**)&first, (void**)&last);
#pragma once

#include "korvalen/export.h"
#include "korvalen/platform/windows_types.h"

inline constexpr int kComConfigurationWords = 447;

// A double record: 1796 bytes on 32-bit Windows; with 64-bit links 1808.
struct TDtsCfgCom {
  TDtsCfgCom* next;
  TDtsCfgCom* previous;
  DWORD payload[kComConfigurationWords];
};

// Appends a copy of every node of source, in order, to head/tail. When a copy
// cannot be made, error becomes 1 and the copying stops; the copies made stay.
KORVALEN_API void CopiarListaDtsCom(TDtsCfgCom* source, TDtsCfgCom*& head, TDtsCfgCom*& tail,
                                    int& error);
