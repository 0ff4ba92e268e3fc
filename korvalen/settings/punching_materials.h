// The punching material settings: a fixed set of A records of the product
// settings file "MIRSELPR.CFG" (long records, current directory), read into
// ten integers, five reals and one text and written back in place; every
// other record of the file stays as it is.
//
//   int a348, a349, a350, a380, a381, a365, a382, a238, a239;
//   double a338_a342[5];
//   wchar_t a362[501];
//   /* ...the values the program had... */
//   LeerDatosCfgPnzMat(a348, a349, a350, a380, a381, a365, a382, a338_a342, a238, a239, a362);
//   EscribirDatosCfgPnzMat(a348, a349, a350, a380, a381, a365, a382, a338_a342, a238, a239,
//                          a362);
//
// Records: A238, A239, A348, A349, A350, A365, A380, A381, A382 integers;
// A338 to A342 reals (elements 0 to 4 of the array); A362 a quoted text.
// A343 to A347 are not these settings.
#pragma once

#include "korvalen/export.h"

// Each output whose record the file holds gets its value; the others keep
// theirs (there are no defaults). Reading stops right after A382, which the
// file keeps last among these records: any of them after it is not seen.
// a362 holds 501 characters. A missing file changes nothing.
KORVALEN_API void LeerDatosCfgPnzMat(int& a348, int& a349, int& a350, int& a380, int& a381,
                                     int& a365, int& a382, double (&a338_a342)[5], int& a238,
                                     int& a239, wchar_t* a362);

// Rewrites the file through "AUXLPUNZ.CFG": every one of these records in the
// whole file gets its value in place (the text cut to the record's room),
// other lines are copied, blank lines dropped. Null reals leave A338 to A342
// as they are; a null text writes an empty one. A missing file, or a work
// file that cannot be created, changes nothing.
KORVALEN_API void EscribirDatosCfgPnzMat(int a348, int a349, int a350, int a380, int a381, int a365,
                                         int a382, const double* a338_a342, int a238, int a239,
                                         const wchar_t* a362);
