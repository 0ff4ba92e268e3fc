#include "korvalen/platform/object_linking.h"

namespace korvalen::platform {

void initialize_object_linking() {}

}  // namespace korvalen::platform
