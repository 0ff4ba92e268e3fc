#include "korvalen/platform/posix/native_path.h"

#include <dirent.h>
#include <sys/stat.h>

#include <cctype>
#include <cstdint>

namespace korvalen::platform::posix {
namespace {

bool exists(const std::string& path) {
  struct stat st;
  return lstat(path.c_str(), &st) == 0;
}

// The entry of directory dir whose name matches component without regard to
// case, or component itself.
std::string match_entry(const std::string& dir, const std::string& component) {
  DIR* d = opendir(dir.empty() ? "." : dir.c_str());
  if (d == nullptr) return component;
  const std::wstring wanted = from_utf8(component);
  std::string found = component;
  while (dirent* e = readdir(d)) {
    if (same_name(from_utf8(e->d_name), wanted)) {
      found = e->d_name;
      break;
    }
  }
  closedir(d);
  return found;
}

}  // namespace

wchar_t name_upper(wchar_t c) {
  if ((c >= L'a' && c <= L'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7)) return c - 0x20;
  if (c == 0xFF) return static_cast<wchar_t>(0x178);
  return c;
}

bool same_name(const std::wstring& a, const std::wstring& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (name_upper(a[i]) != name_upper(b[i])) return false;
  }
  return true;
}

std::string native_path(const wchar_t* name) {
  std::string path = to_utf8(name);
  for (char& c : path) {
    if (c == '\\') c = '/';
  }
  if (path.empty() || exists(path)) return path;

  // Walk the components, keeping what exists and matching the rest.
  std::string resolved;
  std::size_t pos = 0;
  if (path[0] == '/') {
    resolved = "/";
    pos = 1;
  }
  bool parent_exists = true;
  while (pos <= path.size()) {
    std::size_t slash = path.find('/', pos);
    if (slash == std::string::npos) slash = path.size();
    std::string component = path.substr(pos, slash - pos);
    if (!component.empty()) {
      std::string candidate = resolved + component;
      if (parent_exists && component != "." && component != ".." && !exists(candidate)) {
        component = match_entry(resolved, component);
        candidate = resolved + component;
      }
      parent_exists = parent_exists && exists(candidate);
      resolved = candidate;
    }
    if (slash < path.size()) resolved += '/';
    pos = slash + 1;
  }
  return resolved;
}

FolderAndFile folder_and_file(const wchar_t* name) {
  std::string path = to_utf8(name);
  for (char& c : path) {
    if (c == '\\') c = '/';
  }
  const std::size_t slash = path.rfind('/');
  FolderAndFile parts;
  if (slash != std::string::npos) {
    parts.folder =
        slash == 0 ? std::string("/") : native_path(from_utf8(path.substr(0, slash)).c_str()) + "/";
  }
  parts.file = path.substr(slash == std::string::npos ? 0 : slash + 1);
  return parts;
}

// Up to this many ASCII letters, the other spellings of a name are looked up
// one by one (2^letters lookups); beyond, or with other letters, the folder is
// read through. Generated names ("00000042.err") have few letters, and
// reading a folder of thousands of them for every new one would cost far more.
constexpr int kMaxLettersToSpell = 6;

bool other_case_exists(const std::string& folder, const std::string& file) {
  int letters[kMaxLettersToSpell];
  int count = 0;
  for (std::size_t i = 0; i < file.size(); ++i) {
    const unsigned char c = static_cast<unsigned char>(file[i]);
    if (c >= 0x80 || (count == kMaxLettersToSpell && std::isalpha(c))) {
      const std::string spelled = folder + file;
      return native_path(from_utf8(spelled).c_str()) != spelled;
    }
    if (std::isalpha(c)) letters[count++] = static_cast<int>(i);
  }
  for (unsigned mask = 1; mask < (1u << count); ++mask) {
    std::string variant = file;
    for (int b = 0; b < count; ++b) {
      if ((mask & (1u << b)) == 0) continue;
      char& c = variant[static_cast<std::size_t>(letters[b])];
      c = std::isupper(static_cast<unsigned char>(c)) ? static_cast<char>(std::tolower(c))
                                                      : static_cast<char>(std::toupper(c));
    }
    if (exists(folder + variant)) return true;
  }
  return false;
}

bool wildcard_match(const wchar_t* pattern, const wchar_t* name) {
  // Iterative '*' matching with one backtrack point.
  const wchar_t* star = nullptr;
  const wchar_t* resume = nullptr;
  while (*name != 0) {
    if (*pattern == L'*') {
      star = pattern++;
      resume = name;
    } else if (*pattern == L'?' || (*pattern != 0 && name_upper(*pattern) == name_upper(*name))) {
      ++pattern;
      ++name;
    } else if (star != nullptr) {
      pattern = star + 1;
      name = ++resume;
    } else {
      return false;
    }
  }
  // "*.*" and "name.*" also match names without a dot, as on Windows.
  while (*pattern == L'*' || (pattern[0] == L'.' && pattern[1] == L'*')) {
    pattern += *pattern == L'*' ? 1 : 2;
  }
  return *pattern == 0;
}

}  // namespace korvalen::platform::posix
