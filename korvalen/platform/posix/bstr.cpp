// BSTR as Windows lays it out: a 32-bit count of the bytes of the characters,
// then the characters and a terminator; the BSTR points at the characters.
#include "korvalen/platform/bstr.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::size_t kPrefix = sizeof(std::uint32_t);
// The byte count must fit its 32 bits.
constexpr std::size_t kLongest = (UINT32_MAX - sizeof(OLECHAR)) / sizeof(OLECHAR);

std::uint32_t* prefix_of(BSTR text) {
  return reinterpret_cast<std::uint32_t*>(reinterpret_cast<char*>(text) - kPrefix);
}

}  // namespace

extern "C" {

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) {
  if (length > kLongest) return nullptr;
  const std::size_t bytes = static_cast<std::size_t>(length) * sizeof(OLECHAR);
  // The prefix keeps the characters aligned: it is as wide as OLECHAR here.
  static_assert(kPrefix % alignof(OLECHAR) == 0);
  auto* block = static_cast<char*>(std::malloc(kPrefix + bytes + sizeof(OLECHAR)));
  if (block == nullptr) return nullptr;
  const std::uint32_t count = static_cast<std::uint32_t>(bytes);
  std::memcpy(block, &count, kPrefix);
  auto* characters = reinterpret_cast<OLECHAR*>(block + kPrefix);
  if (text != nullptr) {
    std::memcpy(characters, text, bytes);
  } else {
    std::memset(characters, 0, bytes);
  }
  characters[length] = 0;
  return characters;
}

BSTR SysAllocString(const OLECHAR* text) {
  if (text == nullptr) return nullptr;
  std::size_t length = 0;
  while (text[length] != 0) ++length;
  if (length > kLongest) return nullptr;
  return SysAllocStringLen(text, static_cast<UINT>(length));
}

void SysFreeString(BSTR text) {
  if (text != nullptr) std::free(prefix_of(text));
}

UINT SysStringLen(BSTR text) {
  if (text == nullptr) return 0;
  std::uint32_t bytes = 0;
  std::memcpy(&bytes, prefix_of(text), kPrefix);
  return bytes / sizeof(OLECHAR);
}

}  // extern "C"
