#include "korvalen/settings/punching_materials.h"

#include "korvalen/config/config_reader.h"
#include "korvalen/config/config_writer.h"
#include "korvalen/config/internal/record_walk.h"
#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/settings/internal/product_settings_file.h"

namespace {

using korvalen::detail::kProductSettingsFile;

constexpr const wchar_t* kPunchingWork = L"AUXLPUNZ.CFG";
constexpr int kFirstReal = 338;
constexpr int kLastReal = 342;
constexpr int kText = 362;
constexpr int kLastRead = 382;

struct IntegerRecord {
  int index;
  int* value;
};

// The integer records with the variables that carry them, in record order.
struct Integers {
  IntegerRecord records[9];

  int* find(int index) const {
    for (const IntegerRecord& r : records) {
      if (r.index == index) return r.value;
    }
    return nullptr;
  }
};

Integers IntegersOf(int& a238, int& a239, int& a348, int& a349, int& a350, int& a365, int& a380,
                    int& a381, int& a382) {
  return {{{238, &a238},
           {239, &a239},
           {348, &a348},
           {349, &a349},
           {350, &a350},
           {365, &a365},
           {380, &a380},
           {381, &a381},
           {382, &a382}}};
}

bool IsReal(int index) { return index >= kFirstReal && index <= kLastReal; }

}  // namespace

void LeerDatosCfgPnzMat(int& a348, int& a349, int& a350, int& a380, int& a381, int& a365, int& a382,
                        double (&a338_a342)[5], int& a238, int& a239, wchar_t* a362) {
  const Integers integers = IntegersOf(a238, a239, a348, a349, a350, a365, a380, a381, a382);
  korvalen::detail::for_each_record<korvalen::kCfgLongLineChars>(
      kProductSettingsFile, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type != L'A') return true;
        if (int* value = integers.find(index)) {
          LeerUnEntero(line, cursor, *value);
        } else if (IsReal(index)) {
          LeerUnReal(line, cursor, a338_a342[index - kFirstReal]);
        } else if (index == kText && a362 != nullptr) {
          LeerUnTexto(line, cursor, a362);
        }
        return index != kLastRead;
      });
}

void EscribirDatosCfgPnzMat(int a348, int a349, int a350, int a380, int a381, int a365, int a382,
                            const double* a338_a342, int a238, int a239, const wchar_t* a362) {
  const Integers integers = IntegersOf(a238, a239, a348, a349, a350, a365, a380, a381, a382);
  korvalen::detail::rewrite_records<korvalen::kCfgLongLineChars>(
      kProductSettingsFile, kPunchingWork, [&](wchar_t* line, wchar_t type, int index, int cursor) {
        if (type != L'A') return;
        if (int* value = integers.find(index)) {
          EscribirUnEntero(line, cursor, *value);
        } else if (IsReal(index) && a338_a342 != nullptr) {
          double value = a338_a342[index - kFirstReal];
          EscribirUnReal(line, cursor, value);
        } else if (index == kText) {
          EscribirUnTexto(line, cursor, korvalen::detail::or_empty(a362));
        }
      });
}
