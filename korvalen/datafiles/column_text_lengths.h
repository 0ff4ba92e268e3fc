// The longest text each text column of the suite's three table kinds may
// hold, as the size of its buffer (terminator included):
//
//   wchar_t* cell = new wchar_t[DameLngMax(1, 0)];  // 41
//
// What the columns hold is the applications' affair.
#pragma once

#include "korvalen/export.h"

// 0 for a table other than 0, 1 and 2, or a column that table lacks (table 0
// has columns 0 to 14, table 1 0 to 24, table 2 0 to 58).
KORVALEN_API int DameLngMax(int table, int column);
