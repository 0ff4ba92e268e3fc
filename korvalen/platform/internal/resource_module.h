// Language resource libraries: loading one, reading its string resources
// and its other resources, releasing it. Calls follow the convention of
// error.h.
//
//   HMODULE module = nullptr;
//   if (!platform::load_resource_module(L"UKVORTAN.DLL", module)) {
//     wchar_t text[81];
//     int length = 0;
//     platform::load_string(module, 13051, text, 81, length);  // "uktxtvor"
//     platform::free_resource_module(module);
//   }
//
// Windows loads the library with LoadLibraryW and reads it with LoadStringW
// and FindResourceW. POSIX reads the same file as a PE image (PE32 or
// PE32+) and never executes it; HMODULE is then an opaque handle to the
// image read into memory. Either way a string is found as LoadStringW finds
// it: block id / 16 + 1 of the string tables, in the language the loader
// picks when none is asked for.
#pragma once

#include <cstdint>
#include <span>
#include <system_error>

#include "korvalen/platform/windows_types.h"

namespace korvalen::platform {

// module is null on failure (no such file, no module, a file that is no PE
// image).
std::error_code load_resource_module(const wchar_t* path, HMODULE& module);
std::error_code free_resource_module(HMODULE module);

// LoadStringW: the string into buffer (capacity characters, cut to fit and
// terminated), length its characters; length 0 and an empty buffer when the
// module has no such string. Where wchar_t is UTF-32 a surrogate pair of the
// resource is one character.
std::error_code load_string(HMODULE module, unsigned id, wchar_t* buffer, int capacity,
                            int& length);

// The bytes of the resource of that type and numbered name; empty when none.
// They stay valid while the module is loaded.
std::error_code find_resource(HMODULE module, std::uint32_t type, std::uint32_t name,
                              std::span<const std::uint8_t>& data);

// Each system's implementation, for the portable layer (resource_module.cpp)
// only: paths, modules and buffers are not null, capacities above zero,
// outputs cleared, and an allocation failure may throw.
namespace native {
std::error_code load_resource_module(const wchar_t* path, HMODULE& module);
std::error_code free_resource_module(HMODULE module);
std::error_code load_string(HMODULE module, unsigned id, wchar_t* buffer, int capacity,
                            int& length);
std::error_code find_resource(HMODULE module, std::uint32_t type, std::uint32_t name,
                              std::span<const std::uint8_t>& data);
}  // namespace native

}  // namespace korvalen::platform
