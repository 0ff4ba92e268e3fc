// The unit table of the 18 magnitudes, with its conversion factors from
// "UNIDADES.CFG", and the table of 55 default messages from the language
// resources. The library allocates, fills and frees both blocks; an
// application keeps the pointers for its lifetime:
//
//   TRegUnidades* units = nullptr;
//   if (DamePunUnidades(units)) {
//     LeerPunUnidades(units, 1);                       // the K records
//     double inch = units->conversion_factor[5 - 1];   // magnitude 5
//     LiberaPunUnidades(units);
//   }
//
// Magnitude k (1 to 18) is element k - 1 of each array of TRegUnidades.
// "UNIDADES.CFG" holds records K001 to K018 (mode 1) and L001 to L018 (any
// other mode), each with one real field, the factor of that magnitude.
#pragma once

#include <cstdint>

#include "korvalen/export.h"

inline constexpr int kUnitMagnitudes = 18;
inline constexpr int kUnitLabelChars = 11;  // 10 and the terminator
inline constexpr int kDefaultMessageCount = 55;
inline constexpr int kDefaultMessageChars = 41;  // 40 and the terminator

struct TRegUnidades {
  std::int32_t leading;                                  // 1; not read from the file
  double base_factor[kUnitMagnitudes];                   // 1.0
  wchar_t unit_label[kUnitMagnitudes][kUnitLabelChars];  // ""
  std::int32_t first_small_integer[kUnitMagnitudes];     // 3; 2 for magnitudes 10 and 18
  std::int32_t second_small_integer[kUnitMagnitudes];    // 3
  double conversion_factor[kUnitMagnitudes];             // 1.0; from "UNIDADES.CFG"
};

// Entries by index; the repeats and the empty reserved entries keep their
// places: 11 = 2, 49 = 10, 50 = 7, 54 = 6; 32 and 51 are "X", 33 and 52 "Y".
struct TRegMensDFFab {
  wchar_t text[kDefaultMessageCount][kDefaultMessageChars];
};

// Allocates the table with its defaults. false (p null) when out of memory.
KORVALEN_API bool DamePunUnidades(TRegUnidades*& p);
// Reads the conversion factors of the K records (mode 1) or the L records
// (any other mode); a missing file leaves the block as it is.
KORVALEN_API void LeerPunUnidades(TRegUnidades*& p, int mode);
// Frees the block; p keeps its value.
KORVALEN_API void LiberaPunUnidades(TRegUnidades*& p);

// Allocates the message table, unfilled. false (p null) when out of memory.
KORVALEN_API bool DamePunMensDFFab(TRegMensDFFab*& p);
// Fills all 55 entries from the language module's string resources (empty
// when no module is loaded or a string is missing) and the fixed texts.
KORVALEN_API void LeerMensajesDefFab(TRegMensDFFab* p);
KORVALEN_API void LiberaPunMensDFFab(TRegMensDFFab*& p);
