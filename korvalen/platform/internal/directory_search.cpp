// The portable part of directory walking: argument checks, failure values,
// and the C runtime's find record.
#include "korvalen/platform/internal/directory_search.h"

#include <cwchar>

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {
namespace {

std::error_code invalid() { return make_error(std::errc::invalid_argument); }

}  // namespace

std::error_code find_first(const wchar_t* pattern, SearchHandle& handle, DirectoryEntry& entry) {
  handle = kNoSearch;
  entry = DirectoryEntry{};
  if (pattern == nullptr) return invalid();
  const std::error_code error = guarded([&] { return native::find_first(pattern, handle, entry); });
  if (error) handle = kNoSearch;
  return error;
}

std::error_code find_next(SearchHandle handle, DirectoryEntry& entry) {
  if (handle == kNoSearch) return invalid();
  entry = DirectoryEntry{};
  return guarded([&] { return native::find_next(handle, entry); });
}

std::error_code find_close(SearchHandle handle) {
  if (handle == kNoSearch) return invalid();
  return guarded([&] { return native::find_close(handle); });
}

void to_find_data(const DirectoryEntry& entry, _wfinddata64i32_t& data) {
  data.attrib = entry.attributes;
  data.time_create = entry.created;
  data.time_access = entry.accessed;
  data.time_write = entry.written;
  // The record's size is 32 bits wide, as the runtime's "64i32" search has it.
  data.size = static_cast<decltype(data.size)>(entry.size);
  static_assert(sizeof(data.name) / sizeof(data.name[0]) == kEntryNameChars);
  std::wmemcpy(data.name, entry.name, kEntryNameChars);
}

std::error_code entry_status(const wchar_t* name, DirectoryEntry& entry) {
  entry = DirectoryEntry{};
  if (name == nullptr || *name == 0) return invalid();
  return guarded([&] { return native::entry_status(name, entry); });
}

std::error_code remove_link(const wchar_t* name) {
  if (name == nullptr || *name == 0) return invalid();
  return guarded([&] { return native::remove_link(name); });
}

}  // namespace korvalen::platform
