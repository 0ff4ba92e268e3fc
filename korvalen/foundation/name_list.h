// TRegListaNombre: the record-list node holding one name, the common currency
// of the suite's name lists (last work orders, catalogues, import lists).
#pragma once

#include "korvalen/export.h"

constexpr int kNameListChars = 256;  // at most 255 characters and the terminator

struct TRegListaNombre {
  TRegListaNombre* next;
  TRegListaNombre* previous;
  wchar_t name[kNameListChars];
};
