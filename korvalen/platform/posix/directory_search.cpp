// Directory searches over POSIX: readdir with the Windows wildcards, sorted
// as NTFS lists entries, behind handle numbers as the C runtime gives them.
#include "korvalen/platform/internal/directory_search.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "korvalen/platform/internal/bounded_copy.h"
#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/posix/native_path.h"

namespace korvalen::platform {
namespace {

// The attributes Windows would show for what lstat and stat say of an entry:
// a link to a directory is listed as a directory, and a name starting with a
// dot is hidden.
void fill_entry(const std::wstring& name, const std::string& path, DirectoryEntry& entry) {
  copy_cut(entry.name, kEntryNameChars, name);
  struct stat st;
  struct stat link_st;
  const bool have_link = lstat(path.c_str(), &link_st) == 0;
  if (stat(path.c_str(), &st) != 0) {
    if (!have_link) return;
    st = link_st;  // a link pointing nowhere
  }
  if (have_link && S_ISLNK(link_st.st_mode)) entry.attributes |= kAttributeLink;
  if (S_ISDIR(st.st_mode)) {
    entry.attributes |= kAttributeDirectory;
  } else {
    entry.attributes |= kAttributeArchive;
    entry.size = static_cast<std::uint64_t>(st.st_size);
  }
  if ((st.st_mode & S_IWUSR) == 0) entry.attributes |= kAttributeReadOnly;
  if (!name.empty() && name[0] == L'.' && name != L"." && name != L"..") {
    entry.attributes |= kAttributeHidden;
  }
  entry.created = st.st_ctime;
  entry.accessed = st.st_atime;
  entry.written = st.st_mtime;
}

// A search lists its matches when it starts, in the order NTFS gives them:
// "." and ".." first, then by name without regard to case. readdir's own
// order is the file system's hash order, so lists built from a search (the
// error list, directory walks) would come out differently on each system.
struct Search {
  std::string dir;
  std::vector<std::pair<std::wstring, std::string>> names;  // wide and on-disk
  std::size_t next = 0;
};

bool ntfs_order(const std::pair<std::wstring, std::string>& a,
                const std::pair<std::wstring, std::string>& b) {
  const auto dots = [](const std::wstring& n) { return n == L"." ? 0 : n == L".." ? 1 : 2; };
  if (dots(a.first) != dots(b.first)) return dots(a.first) < dots(b.first);
  return std::lexicographical_compare(a.first.begin(), a.first.end(), b.first.begin(),
                                      b.first.end(), [](wchar_t x, wchar_t y) {
                                        return static_cast<std::uint32_t>(posix::name_upper(x)) <
                                               static_cast<std::uint32_t>(posix::name_upper(y));
                                      });
}

// The entries of the search's directory that match the wildcard mask, in NTFS
// order; false when the directory cannot be read.
bool list_matches(Search& s, const std::wstring& mask) {
  DIR* d = opendir(s.dir.empty() ? "." : s.dir.c_str());
  if (d == nullptr) return false;
  try {
    while (dirent* e = readdir(d)) {
      std::wstring name = from_utf8(e->d_name);
      if (posix::wildcard_match(mask.c_str(), name.c_str())) {
        s.names.emplace_back(std::move(name), e->d_name);
      }
    }
  } catch (...) {
    closedir(d);
    throw;
  }
  closedir(d);
  std::sort(s.names.begin(), s.names.end(), ntfs_order);
  return true;
}

bool next_match(Search& s, DirectoryEntry& entry) {
  if (s.next >= s.names.size()) return false;
  const auto& [name, on_disk] = s.names[s.next++];
  fill_entry(name, s.dir.empty() ? on_disk : s.dir + "/" + on_disk, entry);
  return true;
}

// Open searches by handle number. A search that reaches its end is released
// at once: callers of FindFirst/FindNext have no close function, and a later
// close of that handle is harmless.
std::mutex g_searches_mutex;
std::unordered_map<SearchHandle, std::unique_ptr<Search>> g_searches;
SearchHandle g_next_handle = 1;

// The search is taken out of the table while it is read, so two threads never
// share one.
std::unique_ptr<Search> take_search(SearchHandle handle) {
  std::lock_guard<std::mutex> lock(g_searches_mutex);
  const auto it = g_searches.find(handle);
  if (it == g_searches.end()) return nullptr;
  std::unique_ptr<Search> s = std::move(it->second);
  g_searches.erase(it);
  return s;
}

}  // namespace

namespace native {

std::error_code find_first(const wchar_t* pattern, SearchHandle& handle, DirectoryEntry& entry) {
  const std::string path = posix::native_path(pattern);
  auto s = std::make_unique<Search>();
  std::string mask = path;
  const std::size_t slash = path.rfind('/');
  if (slash != std::string::npos) {
    s->dir = path.substr(0, slash == 0 ? 1 : slash);
    mask = path.substr(slash + 1);
  }
  if (!list_matches(*s, from_utf8(mask)) || !next_match(*s, entry)) {
    return make_error(std::errc::no_such_file_or_directory);
  }
  std::lock_guard<std::mutex> lock(g_searches_mutex);
  handle = g_next_handle++;
  g_searches.emplace(handle, std::move(s));
  return {};
}

std::error_code find_next(SearchHandle handle, DirectoryEntry& entry) {
  std::unique_ptr<Search> s = take_search(handle);
  if (s == nullptr) return make_error(std::errc::invalid_argument);
  if (!next_match(*s, entry)) return make_error(std::errc::no_such_file_or_directory);
  std::lock_guard<std::mutex> lock(g_searches_mutex);
  g_searches.emplace(handle, std::move(s));
  return {};
}

std::error_code find_close(SearchHandle handle) {
  return take_search(handle) != nullptr ? std::error_code()
                                        : make_error(std::errc::invalid_argument);
}

std::error_code entry_status(const wchar_t* name, DirectoryEntry& entry) {
  const std::string path = posix::native_path(name);
  struct stat st;
  if (lstat(path.c_str(), &st) != 0) return errno_error();
  const std::string::size_type slash = path.rfind('/');
  fill_entry(from_utf8(slash == std::string::npos ? path : path.substr(slash + 1)), path, entry);
  // The entry itself: a link is not the directory it may point to.
  if (entry.is_link()) {
    entry.attributes &= ~kAttributeDirectory;
    entry.size = 0;
  }
  return {};
}

std::error_code remove_link(const wchar_t* name) {
  const std::string path = posix::native_path(name);
  struct stat st;
  if (lstat(path.c_str(), &st) != 0) return errno_error();
  if (!S_ISLNK(st.st_mode)) return make_error(std::errc::invalid_argument);
  return ::unlink(path.c_str()) == 0 ? std::error_code() : errno_error();
}

}  // namespace native

}  // namespace korvalen::platform
