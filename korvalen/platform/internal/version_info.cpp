// The portable part of version resources: the walk through their blocks.
#include "korvalen/platform/internal/version_info.h"

#include <cwctype>
#include <string>

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {
namespace {

std::uint16_t Word(std::span<const std::uint8_t> bytes, std::size_t at) {
  return static_cast<std::uint16_t>(bytes[at] | (bytes[at + 1] << 8));
}

std::size_t Aligned(std::size_t at) { return (at + 3) & ~std::size_t{3}; }

// One block: wLength, wValueLength, wType, the key, then (aligned) the value
// and the children.
struct Block {
  std::size_t end = 0;
  std::u16string key;
  std::span<const std::uint8_t> value;
  std::size_t children = 0;
};

bool ReadBlock(std::span<const std::uint8_t> bytes, std::size_t at, std::size_t limit,
               Block& block) {
  if (at + 6 > limit) return false;
  const std::size_t length = Word(bytes, at);
  const std::size_t value_length = Word(bytes, at + 2);
  const bool text = Word(bytes, at + 4) == 1;
  if (length < 6 || at + length > limit) return false;
  block.end = at + length;
  block.key.clear();
  std::size_t p = at + 6;
  for (; p + 2 <= block.end && Word(bytes, p) != 0; p += 2) {
    block.key += static_cast<char16_t>(Word(bytes, p));
  }
  if (p + 2 > block.end) return false;
  p = Aligned(p + 2);
  const std::size_t value_bytes = text ? value_length * 2 : value_length;
  if (p > block.end || block.end - p < value_bytes) {
    block.value = {};
    block.children = block.end;
    return true;
  }
  block.value = bytes.subspan(p, value_bytes);
  block.children = Aligned(p + value_bytes);
  return true;
}

bool SameKey(const std::u16string& key, std::wstring_view name) {
  if (key.size() != name.size()) return false;
  for (std::size_t i = 0; i < key.size(); ++i) {
    if (std::towupper(static_cast<wint_t>(key[i])) != std::towupper(static_cast<wint_t>(name[i]))) {
      return false;
    }
  }
  return true;
}

}  // namespace

bool find_version_value(std::span<const std::uint8_t> resource, const wchar_t* path,
                        std::span<const std::uint8_t>& value) {
  value = {};
  Block block;
  if (path == nullptr || !ReadBlock(resource, 0, resource.size(), block)) return false;
  // Each name of the path is a child of the block before; a fixed number of
  // steps, each inside its parent, so nothing can go round.
  std::wstring_view rest(path);
  while (!rest.empty()) {
    if (rest.front() == L'\\') {
      rest.remove_prefix(1);
      continue;
    }
    const std::size_t slash = rest.find(L'\\');
    const std::wstring_view name = rest.substr(0, slash);
    rest = slash == std::wstring_view::npos ? std::wstring_view() : rest.substr(slash);
    Block child;
    bool found = false;
    for (std::size_t at = block.children; at < block.end && !found; at = Aligned(child.end)) {
      if (!ReadBlock(resource, at, block.end, child)) return false;
      found = SameKey(child.key, name);
    }
    if (!found) return false;
    block = child;
  }
  value = block.value;
  return true;
}

std::error_code read_version_resource(const wchar_t* file, std::vector<std::uint8_t>& resource) {
  resource.clear();
  if (file == nullptr || *file == 0) return make_error(std::errc::invalid_argument);
  const std::error_code error =
      guarded([&] { return native::read_version_resource(file, resource); });
  if (error) resource.clear();
  return error;
}

}  // namespace korvalen::platform
