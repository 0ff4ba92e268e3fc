// Minimal stand-ins of the windowing framework's classes that the exported
// interface derives from or passes around, with only the members the library
// uses. Pulls in the Windows types of the interface.
#pragma once

#include "korvalen/platform/windows_types.h"
