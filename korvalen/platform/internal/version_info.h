// Version resources of module files: the whole resource read from a file,
// and a value found in it by its path, as VerQueryValueW finds it. The
// resource is untrusted: every length is checked against its bytes. Calls
// that can fail follow the convention of error.h.
//
//   std::vector<std::uint8_t> resource;
//   std::span<const std::uint8_t> value;
//   if (!platform::read_version_resource(L"SHDOCVW.DLL", resource) &&
//       platform::find_version_value(resource, L"\\VarFileInfo\\Translation", value)) { ... }
//
// Windows reads the resource with GetFileVersionInfoW, which looks for the
// file where the system loader would. POSIX reads it from the file as a PE
// image (the current directory's, found without regard to case).
#pragma once

#include <cstdint>
#include <span>
#include <system_error>
#include <vector>

namespace korvalen::platform {

// resource is empty when the file has none.
std::error_code read_version_resource(const wchar_t* file, std::vector<std::uint8_t>& resource);

// The value of the block that path names (the keys from the root, each
// after a backslash, compared without regard to case); for a text, its
// UTF-16LE units with the terminator. False when there is no such block.
bool find_version_value(std::span<const std::uint8_t> resource, const wchar_t* path,
                        std::span<const std::uint8_t>& value);

// The user's default language identifier (0x0409 where the system has none).
std::uint16_t user_default_language();

namespace native {
std::error_code read_version_resource(const wchar_t* file, std::vector<std::uint8_t>& resource);
}  // namespace native

}  // namespace korvalen::platform
