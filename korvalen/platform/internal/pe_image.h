// Windows module files read as data: the language libraries of the suite are
// DLLs whose resources (string tables, dialog templates, version) the library
// reads on every system. Nothing of the file is executed, and the file is
// untrusted: every offset, size and count is checked against its bytes and
// nothing outside them is read.
//
//   PeImage image;
//   if (image.Parse(bytes)) {
//     std::span<const std::uint8_t> block = image.FindResource(kResourceString, id / 16 + 1);
//     std::span<const std::uint8_t> units;  // UTF-16LE
//     if (StringInBlock(block, id % 16, units)) { ... }
//   }
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace korvalen::platform {

// Resource types by number.
inline constexpr std::uint32_t kResourceDialog = 5;
inline constexpr std::uint32_t kResourceString = 6;
inline constexpr std::uint32_t kResourceVersion = 16;

class PeImage {
 public:
  // False when the bytes are no PE32 or PE32+ image with readable headers.
  // The image keeps looking at the bytes: they must outlive it.
  bool Parse(std::span<const std::uint8_t> bytes);

  // The data of the resource of that type and numbered name, in the
  // language the Windows loader picks when none is asked for: neutral, then
  // English, then the first the file has. Empty when there is none or its
  // data lie outside the file.
  std::span<const std::uint8_t> FindResource(std::uint32_t type, std::uint32_t name) const;

  // String id of the string tables (block id / 16 + 1, as StringInBlock
  // reads it): the bytes of its UTF-16LE units; false when there is none.
  // From an index made once by Parse: a library's strings are read one by
  // one, thousands of them.
  bool String(std::uint32_t id, std::span<const std::uint8_t>& units) const;

 private:
  struct Section {
    std::uint32_t address;  // relative virtual address
    std::uint32_t size;     // in memory
    std::uint32_t offset;   // in the file
    std::uint32_t raw_size;
  };
  // The file offset of count bytes at a relative virtual address; false when
  // they are not all in the file.
  bool Locate(std::uint32_t address, std::uint32_t count, std::uint32_t& offset) const;
  // The entry of a resource directory (offset within the resource section)
  // whose numbered name is id; 0 when none. Sets the entry's target.
  bool FindEntry(std::uint32_t directory, std::uint32_t id, std::uint32_t& target) const;
  bool FirstEntry(std::uint32_t directory, std::uint32_t& target) const;
  // The data of the language directory at that offset, in the language the
  // loader picks.
  std::span<const std::uint8_t> DataInLanguage(std::uint32_t languages) const;
  void IndexStringBlocks();

  std::span<const std::uint8_t> bytes_;
  std::vector<Section> sections_;
  std::uint32_t resources_ = 0;       // file offset of the resource directory
  std::uint32_t resources_size_ = 0;  // bytes of it in the file
  struct Block {
    std::uint32_t id;
    std::span<const std::uint8_t> strings[16];  // empty: no such string
  };
  std::vector<Block> string_blocks_;  // sorted by id
};

// String index (0 to 15) of a string-table block: the bytes of its UTF-16LE
// units, without a terminator. False when the block holds no such string
// (or an empty one) or is cut short.
bool StringInBlock(std::span<const std::uint8_t> block, unsigned index,
                   std::span<const std::uint8_t>& units);

}  // namespace korvalen::platform
