// The named-entry list (records TRegAgjVnt, functions ...AgjVnt): an in-memory
// record list of named entries, each with three integers, a second text and a
// point, all the caller's to interpret. The
// name (at most 40 characters, compared exactly) is the list's key; the list
// allows duplicates and the lookups find the first.
//
//   TRegAgjVnt* first = nullptr;
//   TRegAgjVnt* last = nullptr;
//   MeterEltoXYAgjVnt(1, 2, 3, L"P1", L"left", 10.0, 20.0, first, last);
//   TRegAgjVnt* found = nullptr;
//   DameEltoDeListaAgjVnt(L"P1", first, found);
//   QuitarEltoAgjVnt(L"P1", first, last);
//   LiberarLista((void**)&first, (void**)&last);
#pragma once

#include <cstdint>

#include "korvalen/export.h"

inline constexpr int kAgjVntTextChars = 41;  // 40 and the terminator

struct TRegAgjVnt {
  TRegAgjVnt* next;
  TRegAgjVnt* previous;
  std::int32_t first_integer;
  std::int32_t second_integer;
  std::int32_t third_integer;
  wchar_t name[kAgjVntTextChars];
  wchar_t text[kAgjVntTextChars];
  double x;
  double y;
};

// 1 when a node is named name (case matters), else 0.
KORVALEN_API int NombreEnListaAgjVnt(const wchar_t* name, TRegAgjVnt* list);
// found = the first node named name, or null.
KORVALEN_API void DameEltoDeListaAgjVnt(const wchar_t* name, TRegAgjVnt* list, TRegAgjVnt*& found);
// Append a copy of a node (names and texts cut to 40 characters); the first
// with the integers 0 and the point (0, 0). No duplicate check.
KORVALEN_API void MeterEltoAgjVnt(const wchar_t* name, const wchar_t* text, TRegAgjVnt*& first,
                                  TRegAgjVnt*& last);
KORVALEN_API void MeterEltoXYAgjVnt(int first_integer, int second_integer, int third_integer,
                                    const wchar_t* name, const wchar_t* text, double x, double y,
                                    TRegAgjVnt*& first, TRegAgjVnt*& last);
// Unlinks and frees the first node named name, if there is one.
KORVALEN_API void QuitarEltoAgjVnt(const wchar_t* name, TRegAgjVnt*& first, TRegAgjVnt*& last);
