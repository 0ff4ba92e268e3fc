#include "korvalen/platform/internal/pe_image.h"

#include <algorithm>
#include <cstring>

namespace korvalen::platform {
namespace {

// The layout numbers of the PE format.
constexpr std::uint32_t kDosLfanew = 0x3C;
constexpr std::uint32_t kFileHeaderSize = 20;
constexpr std::uint16_t kPe32 = 0x10B;
constexpr std::uint16_t kPe32Plus = 0x20B;
constexpr std::uint32_t kDirectoryCountAt32 = 92;
constexpr std::uint32_t kDirectoryCountAt64 = 108;
constexpr std::uint32_t kResourceDirectoryIndex = 2;
constexpr std::uint32_t kSectionHeaderSize = 40;
constexpr std::uint32_t kResourceDirectoryHeader = 16;
constexpr std::uint32_t kResourceEntrySize = 8;
constexpr std::uint32_t kSubdirectoryBit = 0x80000000u;
constexpr std::uint32_t kNamedBit = 0x80000000u;
// The languages the loader tries when asked for none: neutral, the process
// and system defaults (which stand for English here), English.
constexpr std::uint32_t kLanguageOrder[] = {0x0000, 0x0400, 0x0800, 0x0409, 0x0009};

bool Read16(std::span<const std::uint8_t> bytes, std::uint64_t at, std::uint16_t& value) {
  if (at > bytes.size() || bytes.size() - at < 2) return false;
  value = static_cast<std::uint16_t>(bytes[at] | (bytes[at + 1] << 8));
  return true;
}

bool Read32(std::span<const std::uint8_t> bytes, std::uint64_t at, std::uint32_t& value) {
  if (at > bytes.size() || bytes.size() - at < 4) return false;
  value = static_cast<std::uint32_t>(bytes[at]) | (static_cast<std::uint32_t>(bytes[at + 1]) << 8) |
          (static_cast<std::uint32_t>(bytes[at + 2]) << 16) |
          (static_cast<std::uint32_t>(bytes[at + 3]) << 24);
  return true;
}

}  // namespace

bool PeImage::Parse(std::span<const std::uint8_t> bytes) {
  bytes_ = bytes;
  sections_.clear();
  string_blocks_.clear();
  resources_ = resources_size_ = 0;
  std::uint32_t pe = 0;
  if (bytes.size() < 64 || bytes[0] != 'M' || bytes[1] != 'Z' || !Read32(bytes, kDosLfanew, pe)) {
    return false;
  }
  if (pe > bytes.size() || bytes.size() - pe < 4 + kFileHeaderSize ||
      std::memcmp(bytes.data() + pe, "PE\0\0", 4) != 0) {
    return false;
  }
  const std::uint64_t file_header = pe + 4ULL;
  std::uint16_t section_count = 0, optional_size = 0, magic = 0;
  if (!Read16(bytes, file_header + 2, section_count) ||
      !Read16(bytes, file_header + 16, optional_size)) {
    return false;
  }
  const std::uint64_t optional = file_header + kFileHeaderSize;
  if (!Read16(bytes, optional, magic) || (magic != kPe32 && magic != kPe32Plus)) return false;
  const std::uint32_t count_at = magic == kPe32 ? kDirectoryCountAt32 : kDirectoryCountAt64;
  std::uint32_t directory_count = 0;
  if (optional_size < count_at + 4 || !Read32(bytes, optional + count_at, directory_count)) {
    return false;
  }
  std::uint32_t resource_address = 0, resource_size = 0;
  const std::uint64_t resource_entry = optional + count_at + 4 + 8ULL * kResourceDirectoryIndex;
  if (directory_count > kResourceDirectoryIndex && resource_entry + 8 <= optional + optional_size) {
    Read32(bytes, resource_entry, resource_address);
    Read32(bytes, resource_entry + 4, resource_size);
  }
  const std::uint64_t headers = optional + optional_size;
  for (std::uint32_t i = 0; i < section_count; ++i) {
    const std::uint64_t at = headers + static_cast<std::uint64_t>(i) * kSectionHeaderSize;
    Section s{};
    if (!Read32(bytes, at + 8, s.size) || !Read32(bytes, at + 12, s.address) ||
        !Read32(bytes, at + 16, s.raw_size) || !Read32(bytes, at + 20, s.offset)) {
      return false;
    }
    sections_.push_back(s);
  }
  if (resource_address != 0 && resource_size != 0) {
    // The directory may be smaller than the size claims: only what the file
    // holds of it counts.
    std::uint32_t offset = 0;
    if (Locate(resource_address, kResourceDirectoryHeader, offset)) {
      resources_ = offset;
      const std::uint64_t in_file = bytes.size() - offset;
      resources_size_ =
          static_cast<std::uint32_t>(resource_size < in_file ? resource_size : in_file);
    }
  }
  IndexStringBlocks();
  return true;
}

bool PeImage::Locate(std::uint32_t address, std::uint32_t count, std::uint32_t& offset) const {
  for (const Section& s : sections_) {
    const std::uint32_t extent = s.size > s.raw_size ? s.size : s.raw_size;
    if (address < s.address || address - s.address >= extent) continue;
    const std::uint64_t within = address - s.address;
    if (within + count > s.raw_size) return false;  // not all of it in the file
    const std::uint64_t at = s.offset + within;
    if (at + count > bytes_.size()) return false;
    offset = static_cast<std::uint32_t>(at);
    return true;
  }
  return false;
}

bool PeImage::FindEntry(std::uint32_t directory, std::uint32_t id, std::uint32_t& target) const {
  std::uint16_t named = 0, numbered = 0;
  const std::uint64_t base = static_cast<std::uint64_t>(resources_) + directory;
  if (directory > resources_size_ || resources_size_ - directory < kResourceDirectoryHeader ||
      !Read16(bytes_, base + 12, named) || !Read16(bytes_, base + 14, numbered)) {
    return false;
  }
  const std::uint32_t total = static_cast<std::uint32_t>(named) + numbered;
  for (std::uint32_t i = 0; i < total; ++i) {
    const std::uint64_t entry = base + kResourceDirectoryHeader + i * kResourceEntrySize;
    if (entry + kResourceEntrySize > static_cast<std::uint64_t>(resources_) + resources_size_) {
      return false;
    }
    std::uint32_t name = 0;
    Read32(bytes_, entry, name);
    if ((name & kNamedBit) == 0 && name == id) return Read32(bytes_, entry + 4, target);
  }
  return false;
}

bool PeImage::FirstEntry(std::uint32_t directory, std::uint32_t& target) const {
  std::uint16_t named = 0, numbered = 0;
  const std::uint64_t base = static_cast<std::uint64_t>(resources_) + directory;
  if (directory > resources_size_ || resources_size_ - directory < kResourceDirectoryHeader + 8 ||
      !Read16(bytes_, base + 12, named) || !Read16(bytes_, base + 14, numbered) ||
      named + numbered == 0) {
    return false;
  }
  return Read32(bytes_, base + kResourceDirectoryHeader + 4, target);
}

std::span<const std::uint8_t> PeImage::DataInLanguage(std::uint32_t languages) const {
  std::uint32_t data = 0;
  bool found = false;
  for (const std::uint32_t language : kLanguageOrder) {
    if ((found = FindEntry(languages, language, data))) break;
  }
  if (!found && !FirstEntry(languages, data)) return {};
  if ((data & kSubdirectoryBit) != 0 || data > resources_size_ || resources_size_ - data < 16) {
    return {};
  }
  std::uint32_t address = 0, size = 0, offset = 0;
  Read32(bytes_, static_cast<std::uint64_t>(resources_) + data, address);
  Read32(bytes_, static_cast<std::uint64_t>(resources_) + data + 4, size);
  if (!Locate(address, size, offset)) return {};
  return bytes_.subspan(offset, size);
}

std::span<const std::uint8_t> PeImage::FindResource(std::uint32_t type, std::uint32_t name) const {
  if (resources_size_ == 0) return {};
  // Three levels, type, name and language, each a directory: the last one's
  // entry leads to the data. Walking a fixed depth, a directory that points
  // back at itself cannot make the walk go round.
  std::uint32_t names = 0, languages = 0;
  if (!FindEntry(0, type, names) || (names & kSubdirectoryBit) == 0) return {};
  names &= ~kSubdirectoryBit;
  if (!FindEntry(names, name, languages) || (languages & kSubdirectoryBit) == 0) return {};
  return DataInLanguage(languages & ~kSubdirectoryBit);
}

void PeImage::IndexStringBlocks() {
  string_blocks_.clear();
  std::uint32_t names = 0;
  if (resources_size_ == 0 || !FindEntry(0, kResourceString, names) ||
      (names & kSubdirectoryBit) == 0) {
    return;
  }
  names &= ~kSubdirectoryBit;
  std::uint16_t named = 0, numbered = 0;
  const std::uint64_t base = static_cast<std::uint64_t>(resources_) + names;
  if (names > resources_size_ || resources_size_ - names < kResourceDirectoryHeader ||
      !Read16(bytes_, base + 12, named) || !Read16(bytes_, base + 14, numbered)) {
    return;
  }
  const std::uint32_t total = static_cast<std::uint32_t>(named) + numbered;
  string_blocks_.reserve(
      total < resources_size_ / kResourceEntrySize ? total : resources_size_ / kResourceEntrySize);
  for (std::uint32_t i = 0; i < total; ++i) {
    const std::uint64_t entry = base + kResourceDirectoryHeader + i * kResourceEntrySize;
    if (entry + kResourceEntrySize > static_cast<std::uint64_t>(resources_) + resources_size_) {
      break;
    }
    std::uint32_t id = 0, languages = 0;
    Read32(bytes_, entry, id);
    Read32(bytes_, entry + 4, languages);
    if ((id & kNamedBit) != 0 || (languages & kSubdirectoryBit) == 0) continue;
    Block& block = string_blocks_.emplace_back();
    block.id = id;
    // The sixteen strings in one pass: each a count of units, then the units.
    const std::span<const std::uint8_t> data = DataInLanguage(languages & ~kSubdirectoryBit);
    std::uint64_t at = 0;
    for (auto& string : block.strings) {
      std::uint16_t length = 0;
      if (!Read16(data, at, length) || data.size() - (at + 2) < 2ULL * length) break;
      if (length > 0) string = data.subspan(static_cast<std::size_t>(at + 2), 2ULL * length);
      at += 2 + 2ULL * length;
    }
  }
  // Of entries with one id the first counts, as a directory search finds it.
  // A linker writes the entries in order; only a damaged file needs sorting.
  const auto by_id = [](const Block& a, const Block& b) { return a.id < b.id; };
  if (!std::is_sorted(string_blocks_.begin(), string_blocks_.end(), by_id)) {
    std::stable_sort(string_blocks_.begin(), string_blocks_.end(), by_id);
  }
  string_blocks_.erase(std::unique(string_blocks_.begin(), string_blocks_.end(),
                                   [](const Block& a, const Block& b) { return a.id == b.id; }),
                       string_blocks_.end());
}

bool PeImage::String(std::uint32_t id, std::span<const std::uint8_t>& units) const {
  const std::uint32_t block = id / 16 + 1;
  const auto it = std::lower_bound(string_blocks_.begin(), string_blocks_.end(), block,
                                   [](const Block& b, std::uint32_t key) { return b.id < key; });
  if (it == string_blocks_.end() || it->id != block) return false;
  units = it->strings[id % 16];
  return !units.empty();
}

bool StringInBlock(std::span<const std::uint8_t> block, unsigned index,
                   std::span<const std::uint8_t>& units) {
  // Sixteen strings, each a count of UTF-16 units and the units.
  std::uint64_t at = 0;
  for (unsigned i = 0; i <= index && i < 16; ++i) {
    std::uint16_t length = 0;
    if (!Read16(block, at, length)) return false;
    at += 2;
    if (block.size() - at < 2ULL * length) return false;
    if (i == index) {
      if (length == 0) return false;
      units = block.subspan(static_cast<std::size_t>(at), 2ULL * length);
      return true;
    }
    at += 2ULL * length;
  }
  return false;
}

}  // namespace korvalen::platform
