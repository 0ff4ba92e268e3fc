#include "korvalen/datafiles/units_and_messages.h"

#include <cstdio>
#include <cstdlib>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/internal/record_walk.h"
#include "korvalen/datafiles/internal/message_resources.h"
#include "korvalen/foundation/string_resources.h"

namespace {

constexpr int kNarrowMagnitudes[] = {10, 18};

void SetUnitDefaults(TRegUnidades& u) {
  u.leading = 1;
  for (int i = 0; i < kUnitMagnitudes; ++i) {
    u.base_factor[i] = 1.0;
    u.unit_label[i][0] = 0;
    u.first_small_integer[i] = 3;
    u.second_small_integer[i] = 3;
    u.conversion_factor[i] = 1.0;
  }
  for (int magnitude : kNarrowMagnitudes) u.first_small_integer[magnitude - 1] = 2;
}

// Both blocks come from malloc, so that one release serves either.
template <typename T>
bool Allocate(T*& p) {
  p = static_cast<T*>(std::malloc(sizeof(T)));
  return p != nullptr;
}

}  // namespace

bool DamePunUnidades(TRegUnidades*& p) {
  if (!Allocate(p)) return false;
  SetUnitDefaults(*p);
  return true;
}

void LeerPunUnidades(TRegUnidades*& p, int mode) {
  if (p == nullptr) return;
  const wchar_t wanted = mode == 1 ? L'K' : L'L';
  korvalen::detail::for_each_record<korvalen::kCfgLineChars>(
      L"UNIDADES.CFG", [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type == wanted && index >= 1 && index <= kUnitMagnitudes) {
          LeerUnReal(line, cursor, p->conversion_factor[index - 1]);
        }
        return true;
      });
}

void LiberaPunUnidades(TRegUnidades*& p) { std::free(p); }

bool DamePunMensDFFab(TRegMensDFFab*& p) { return Allocate(p); }

void LeerMensajesDefFab(TRegMensDFFab* p) {
  if (p == nullptr) return;
  korvalen::detail::fill_default_messages(
      *p, [](unsigned id, wchar_t* buffer) { LoadStr(id, buffer); });
}

void LiberaPunMensDFFab(TRegMensDFFab*& p) { std::free(p); }
