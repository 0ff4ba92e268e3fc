#include "korvalen/machine/serial_configurations.h"

#include <cstring>

#include "korvalen/foundation/internal/typed_list.h"

#if defined(_WIN32) && !defined(_WIN64)
static_assert(sizeof(TDtsCfgCom) == 1796);
#endif

void CopiarListaDtsCom(TDtsCfgCom* source, TDtsCfgCom*& head, TDtsCfgCom*& tail, int& error) {
  for (const TDtsCfgCom* node = source; node != nullptr; node = node->next) {
    TDtsCfgCom copy{};
    std::memcpy(copy.payload, node->payload, sizeof copy.payload);
    if (!korvalen::detail::append(head, tail, copy)) {
      error = 1;
      return;
    }
  }
}
