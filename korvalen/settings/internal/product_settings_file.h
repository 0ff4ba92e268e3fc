// Internal: the product settings file, "MIRSELPR.CFG" (long records, current
// directory). Several readers take their own records from it: the
// basic-options switch (system_parameters.cpp) and the punching material
// records (punching_materials.cpp).
#pragma once

namespace korvalen::detail {

inline constexpr const wchar_t* kProductSettingsFile = L"MIRSELPR.CFG";

}  // namespace korvalen::detail
