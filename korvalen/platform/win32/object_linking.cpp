#include "korvalen/platform/object_linking.h"

#include <objbase.h>

namespace korvalen::platform {

void initialize_object_linking() {
  // Each call is counted and never balanced: the services stay up for the
  // life of the thread, as the programs expect. An apartment already set up
  // differently is left as it is.
  (void)CoInitialize(nullptr);
}

}  // namespace korvalen::platform
