// The C runtime's file calls with Windows semantics over POSIX.
#include "korvalen/platform/internal/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "korvalen/platform/posix/native_path.h"
#include "korvalen/platform/posix/text_stream.h"

namespace korvalen::platform {
namespace {

using posix::native_path;

// Copies wide text into a bounded buffer, always terminated.
void copy_bounded(wchar_t* out, int capacity, const std::wstring& text) {
  if (out == nullptr || capacity <= 0) return;
  const std::size_t n =
      text.size() < static_cast<std::size_t>(capacity - 1) ? text.size() : capacity - 1;
  text.copy(out, n);
  out[n] = 0;
}

struct Mode {
  int flags = 0;
  const char* stdio = "r";
  bool text = true;
  bool valid = false;
};

// "r", "w", "a", with '+', 'b' or 't' and the Windows extras ("c", "n", "N",
// "S", "R", "T", "D", ",ccs=...") that have no meaning here.
Mode parse_mode(const std::wstring& mode) {
  Mode m;
  if (mode.empty()) return m;
  const bool plus = mode.find(L'+') != std::wstring::npos;
  m.text = mode.find(L'b') == std::wstring::npos;
  switch (mode[0]) {
    case L'r':
      m.flags = plus ? O_RDWR : O_RDONLY;
      m.stdio = plus ? "r+" : "r";
      break;
    case L'w':
      m.flags = (plus ? O_RDWR : O_WRONLY) | O_CREAT | O_TRUNC;
      m.stdio = plus ? "w+" : "w";
      break;
    case L'a':
      m.flags = (plus ? O_RDWR : O_WRONLY) | O_CREAT | O_APPEND;
      m.stdio = plus ? "a+" : "a";
      break;
    default:
      return m;
  }
  m.valid = true;
  return m;
}

void fill_find_data(const std::string& dir, const char* entry, _wfinddata64i32_t* data) {
  std::memset(data, 0, sizeof(*data));
  const std::wstring name = posix::from_utf8(entry);
  copy_bounded(data->name, 260, name);
  struct stat st;
  const std::string full = dir.empty() ? std::string(entry) : dir + "/" + entry;
  if (stat(full.c_str(), &st) != 0 && lstat(full.c_str(), &st) != 0) return;
  if (S_ISDIR(st.st_mode)) {
    data->attrib |= _A_SUBDIR;
  } else {
    data->attrib |= _A_ARCH;
    data->size = static_cast<std::uint32_t>(st.st_size);
  }
  if ((st.st_mode & S_IWUSR) == 0) data->attrib |= _A_RDONLY;
  if (!name.empty() && name[0] == L'.' && name != L"." && name != L"..") data->attrib |= _A_HIDDEN;
  data->time_create = st.st_ctime;
  data->time_access = st.st_atime;
  data->time_write = st.st_mtime;
}

// A search lists its matches when it starts, in the order NTFS gives them:
// "." and ".." first, then by name without regard to case. readdir's own
// order is the file system's hash order, so lists built from a search (the
// error list, directory walks) would come out differently on each system.
struct Search {
  std::string dir;
  std::vector<std::string> names;
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

// The entries of dir that match the wildcard mask, in NTFS order; false when
// the directory cannot be read.
bool list_matches(Search& s, const std::wstring& mask) {
  DIR* d = opendir(s.dir.empty() ? "." : s.dir.c_str());
  if (d == nullptr) return false;
  std::vector<std::pair<std::wstring, std::string>> found;
  try {
    while (dirent* e = readdir(d)) {
      std::wstring name = posix::from_utf8(e->d_name);
      if (posix::wildcard_match(mask.c_str(), name.c_str())) found.emplace_back(name, e->d_name);
    }
  } catch (...) {
    closedir(d);
    throw;
  }
  closedir(d);
  std::sort(found.begin(), found.end(), ntfs_order);
  s.names.reserve(found.size());
  for (auto& entry : found) s.names.push_back(std::move(entry.second));
  return true;
}

// Open searches by handle number. A search that reaches its end is released
// at once: callers of FindFirst/FindNext have no close function, and a later
// close of that handle is harmless.
std::mutex g_searches_mutex;
std::unordered_map<intptr_t, Search*> g_searches;
intptr_t g_next_handle = 1;

Search* take_search(intptr_t handle) {
  std::lock_guard<std::mutex> lock(g_searches_mutex);
  auto it = g_searches.find(handle);
  if (it == g_searches.end()) return nullptr;
  Search* s = it->second;
  g_searches.erase(it);
  return s;
}

void release(Search* s) { delete s; }

bool next_match(Search* s, _wfinddata64i32_t* data) {
  if (s->next >= s->names.size()) return false;
  fill_find_data(s->dir, s->names[s->next++].c_str(), data);
  return true;
}

}  // namespace

FILE* open_file(const wchar_t* name, const wchar_t* mode, int /*share_flag*/, int* error) {
  int ignored = 0;
  if (error == nullptr) error = &ignored;
  if (name == nullptr || mode == nullptr || *name == 0) {
    *error = EINVAL;
    return nullptr;
  }
  const Mode m = parse_mode(mode);
  if (!m.valid) {
    *error = EINVAL;
    return nullptr;
  }
  const std::string path = native_path(name);
  const int fd = ::open(path.c_str(), m.flags | O_CLOEXEC, 0666);
  if (fd < 0) {
    *error = errno;
    return nullptr;
  }
  struct stat st;
  if (fstat(fd, &st) == 0 && S_ISDIR(st.st_mode)) {
    ::close(fd);
    *error = EACCES;
    return nullptr;
  }
  FILE* f = m.text ? posix::open_text_stream(fd, m.stdio) : fdopen(fd, m.stdio);
  if (f == nullptr) {
    *error = errno;
    if (!m.text) ::close(fd);
    return nullptr;
  }
  *error = 0;
  return f;
}

int access_file(const wchar_t* name, int mode) {
  if (name == nullptr) return EINVAL;
  // Windows knows existence (0), write (2) and read (4); 1 is not a valid mode.
  if ((mode & ~6) != 0) return EINVAL;
  int how = F_OK;
  if (mode & 2) how |= W_OK;
  if (mode & 4) how |= R_OK;
  return ::access(native_path(name).c_str(), how) == 0 ? 0 : errno;
}

int change_mode(const wchar_t* name, int permission) {
  if (name == nullptr) return -1;
  const std::string path = native_path(name);
  struct stat st;
  if (stat(path.c_str(), &st) != 0) return -1;
  mode_t m = st.st_mode & 07777;
  // Windows has only the read-only attribute: write permission on or off.
  if (permission & _S_IWRITE) {
    m |= S_IWUSR;
  } else {
    m &= ~(S_IWUSR | S_IWGRP | S_IWOTH);
  }
  return ::chmod(path.c_str(), m) == 0 ? 0 : -1;
}

int change_directory(const wchar_t* name) {
  if (name == nullptr) return -1;
  return ::chdir(native_path(name).c_str()) == 0 ? 0 : -1;
}

int make_directory(const wchar_t* name) {
  if (name == nullptr) return -1;
  return ::mkdir(native_path(name).c_str(), 0777) == 0 ? 0 : -1;
}

int remove_directory(const wchar_t* name) {
  if (name == nullptr) return -1;
  return ::rmdir(native_path(name).c_str()) == 0 ? 0 : -1;
}

int remove_file(const wchar_t* name) {
  if (name == nullptr) return -1;
  const std::string path = native_path(name);
  struct stat st;
  // unlink would not refuse a directory on every system; Windows does.
  if (lstat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) {
    errno = EACCES;
    return -1;
  }
  return ::unlink(path.c_str()) == 0 ? 0 : -1;
}

int rename_file(const wchar_t* old_name, const wchar_t* new_name) {
  if (old_name == nullptr || new_name == nullptr) return -1;
  const std::string from = native_path(old_name);
  const std::string to = native_path(new_name);
  struct stat st;
  if (lstat(to.c_str(), &st) == 0) {
    // Windows refuses to rename onto an existing name, except the same entry
    // under another case.
    struct stat src;
    if (lstat(from.c_str(), &src) != 0 || src.st_ino != st.st_ino || src.st_dev != st.st_dev) {
      errno = EACCES;
      return -1;
    }
  }
  return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : -1;
}

int replace_file(const wchar_t* work_name, const wchar_t* target) {
  if (work_name == nullptr || target == nullptr) return -1;
  return ::rename(native_path(work_name).c_str(), native_path(target).c_str()) == 0 ? 0 : -1;
}

wchar_t* current_directory(wchar_t* buffer, int capacity) {
  try {
    if (buffer == nullptr || capacity <= 0) return nullptr;
    std::vector<char> raw(PATH_MAX + 1);
    if (::getcwd(raw.data(), raw.size()) == nullptr) return nullptr;
    const std::wstring cwd = posix::from_utf8(raw.data());
    if (cwd.size() + 1 > static_cast<std::size_t>(capacity)) {
      errno = ERANGE;
      return nullptr;
    }
    copy_bounded(buffer, capacity, cwd);
    return buffer;
  } catch (...) {
    // Only allocation can throw here; it reads as a failed call.
    return nullptr;
  }
}

intptr_t find_first(const wchar_t* pattern, _wfinddata64i32_t* data) {
  try {
    if (pattern == nullptr || data == nullptr) return -1;
    std::string path = native_path(pattern);
    std::string dir;
    std::string mask = path;
    const std::size_t slash = path.rfind('/');
    if (slash != std::string::npos) {
      dir = path.substr(0, slash == 0 ? 1 : slash);
      mask = path.substr(slash + 1);
    }
    auto s = std::make_unique<Search>(Search{dir, {}, 0});
    if (!list_matches(*s, posix::from_utf8(mask.c_str())) || !next_match(s.get(), data)) {
      errno = ENOENT;
      return -1;
    }
    std::lock_guard<std::mutex> lock(g_searches_mutex);
    const intptr_t handle = g_next_handle++;
    g_searches.emplace(handle, s.get());
    s.release();
    return handle;
  } catch (...) {
    // Only allocation can throw here; it reads as a failed call.
    return -1;
  }
}

int find_next(intptr_t handle, _wfinddata64i32_t* data) {
  try {
    if (data == nullptr) return -1;
    // The search is taken out of the table while it is read, so two threads
    // never share a directory stream.
    Search* s = take_search(handle);
    if (s == nullptr) {
      errno = EINVAL;
      return -1;
    }
    if (!next_match(s, data)) {
      release(s);
      errno = ENOENT;
      return -1;
    }
    std::lock_guard<std::mutex> lock(g_searches_mutex);
    g_searches.emplace(handle, s);
    return 0;
  } catch (...) {
    // Only allocation can throw here; it reads as a failed call.
    return -1;
  }
}

int find_close(intptr_t handle) {
  Search* s = take_search(handle);
  if (s == nullptr) return -1;
  release(s);
  return 0;
}

void search_env(const wchar_t* file, const wchar_t* variable, wchar_t* result) {
  try {
    if (result == nullptr) return;
    result[0] = 0;
    if (file == nullptr || *file == 0) return;
    const std::string name = native_path(file);
    struct stat st;
    if (stat(name.c_str(), &st) == 0) {
      if (name[0] == '/') {
        copy_bounded(result, MAX_PATH, posix::from_utf8(name.c_str()));
      } else {
        wchar_t cwd[MAX_PATH];
        if (current_directory(cwd, MAX_PATH) != nullptr) {
          copy_bounded(result, MAX_PATH, std::wstring(cwd) + L"/" + posix::from_utf8(name.c_str()));
        }
      }
      return;
    }
    const char* list =
        variable != nullptr ? std::getenv(posix::to_utf8(variable).c_str()) : nullptr;
    if (list == nullptr) return;
    std::string dirs = list;
    std::size_t pos = 0;
    while (pos <= dirs.size()) {
      std::size_t end = dirs.find_first_of(":;", pos);
      if (end == std::string::npos) end = dirs.size();
      std::string dir = dirs.substr(pos, end - pos);
      if (!dir.empty()) {
        if (dir.back() != '/') dir += '/';
        const std::wstring candidate = posix::from_utf8((dir + name).c_str());
        if (stat(native_path(candidate.c_str()).c_str(), &st) == 0) {
          copy_bounded(result, MAX_PATH, candidate);
          return;
        }
      }
      pos = end + 1;
    }
  } catch (...) {
    // Only allocation can throw here; it reads as a failed call.
    if (result != nullptr) result[0] = 0;
  }
}

void executable_path(wchar_t* buffer, int capacity) {
  try {
    if (buffer == nullptr || capacity <= 0) return;
    buffer[0] = 0;
    std::vector<char> raw(PATH_MAX + 1);
    const ssize_t n = ::readlink("/proc/self/exe", raw.data(), raw.size() - 1);
    if (n <= 0) return;
    raw[static_cast<std::size_t>(n)] = 0;
    copy_bounded(buffer, capacity, posix::from_utf8(raw.data()));
  } catch (...) {
    // Only allocation can throw here; it reads as a failed call.
    if (buffer != nullptr && capacity > 0) buffer[0] = 0;
  }
}

}  // namespace korvalen::platform
