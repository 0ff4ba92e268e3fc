// Everything an application of the suite needs: include this one header and
// link korvalen::korvalen (CMake) or `pkg-config --libs korvalen`.
#pragma once

#include "korvalen/config/config_reader.h"
#include "korvalen/config/config_writer.h"
#include "korvalen/foundation/primitives.h"
