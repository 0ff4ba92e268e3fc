// KORVALEN_API marks the names the library exports; everything else is hidden.
#pragma once

#if defined(_WIN32)
#if defined(KORVALEN_BUILDING)
#define KORVALEN_API __declspec(dllexport)
#else
#define KORVALEN_API __declspec(dllimport)
#endif
#else
#define KORVALEN_API __attribute__((visibility("default")))
#endif
