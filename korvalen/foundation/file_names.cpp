#include "korvalen/foundation/file_names.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "korvalen/foundation/file_system.h"
#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/internal/typed_list.h"
#include "korvalen/foundation/internal/whole_file.h"
#include "korvalen/foundation/streams.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/platform/internal/bounded_copy.h"
#include "korvalen/platform/internal/com_startup.h"
#include "korvalen/platform/internal/directory_search.h"
#include "korvalen/platform/internal/files.h"

using korvalen::kDirectoryChars;
using korvalen::kFullNameChars;
namespace platform = korvalen::platform;

namespace {

constexpr wchar_t kForbidden[] = L"*?\\/:\"><|";
constexpr int kCopyBlockBytes = 2048;
// Room for the program's full name before its directory is measured.
constexpr int kProgramNameChars = 1024;
constexpr const wchar_t* kDatabaseParts[] = {L"General", L"Nestings", L"Products"};

std::wstring Text(const wchar_t* text) { return korvalen::detail::or_empty(text); }

void Clear(wchar_t* text) {
  if (text != nullptr) text[0] = 0;
}

bool IsForbidden(wchar_t c) {
  for (const wchar_t* p = kForbidden; *p != 0; ++p) {
    if (*p == c) return true;
  }
  return false;
}

bool IsSeparator(wchar_t c) { return c == L'\\' || c == L'/'; }

std::wstring Join(const std::wstring& directory, const std::wstring& name) {
  return directory + L"\\" + name;
}

// --- walking directories ---------------------------------------------------

struct Entry {
  std::wstring name;
  bool directory;  // a real directory, to be entered
  bool link;       // a link of either kind: removed as it is, never entered
};

// The entries of a directory, "." and ".." left out, gathered before anything
// is deleted so that deleting never disturbs the search. False when the
// directory cannot be listed.
bool ListEntries(const std::wstring& directory, std::vector<Entry>& entries) {
  entries.clear();
  platform::SearchHandle search = platform::kNoSearch;
  platform::DirectoryEntry found;
  std::error_code error = platform::find_first(Join(directory, L"*").c_str(), search, found);
  if (error) return false;
  for (; !error; error = platform::find_next(search, found)) {
    const std::wstring name = found.name;
    if (name == L"." || name == L"..") continue;
    entries.push_back({name, found.is_directory() && !found.is_link(), found.is_link()});
  }
  platform::find_close(search);
  return true;
}

bool IsLink(const std::wstring& name) {
  platform::DirectoryEntry entry;
  return !platform::entry_status(name.c_str(), entry) && entry.is_link();
}

void RemoveEntry(const std::wstring& directory, const Entry& entry) {
  const std::wstring name = Join(directory, entry.name);
  if (entry.link) {
    platform::remove_link(name.c_str());
  } else {
    Remove(name.c_str());
  }
}

// Deletes the files (and links) of a directory; its subdirectories stay.
void RemoveFilesOf(const std::wstring& directory) {
  std::vector<Entry> entries;
  if (!ListEntries(directory, entries)) return;
  for (const Entry& e : entries) {
    if (!e.directory) RemoveEntry(directory, e);
  }
}

int DatabasePartOf(const std::wstring& name) {
  for (int i = 0; i < 3; ++i) {
    if (StriCmp(name.c_str(), kDatabaseParts[i]) == 0) return i;
  }
  return -1;
}

// Exactly the three parts, each holding files and subdirectories of files.
bool HasDatabaseShape(const std::wstring& directory) {
  std::vector<Entry> top;
  if (!ListEntries(directory, top)) return false;
  bool seen[3] = {false, false, false};
  std::vector<Entry> level1;
  std::vector<Entry> level2;
  for (const Entry& part : top) {
    if (!part.directory) continue;
    const int which = DatabasePartOf(part.name);
    if (which < 0 || seen[which]) return false;
    seen[which] = true;
    const std::wstring part_path = Join(directory, part.name);
    if (!ListEntries(part_path, level1)) return false;
    for (const Entry& sub : level1) {
      if (!sub.directory) continue;
      if (!ListEntries(Join(part_path, sub.name), level2)) return false;
      for (const Entry& inner : level2) {
        if (inner.directory) return false;
      }
    }
  }
  return seen[0] && seen[1] && seen[2];
}

int EmptyDatabaseDirectory(const std::wstring& directory) {
  int found = 0;
  std::vector<Entry> entries;
  for (const wchar_t* part : kDatabaseParts) {
    const std::wstring part_path = Join(directory, part);
    // A link in place of a part is not followed; it goes with the files below.
    if (IsLink(part_path) || !ListEntries(part_path, entries)) continue;
    ++found;
    for (const Entry& e : entries) {
      if (e.directory) {
        const std::wstring sub = Join(part_path, e.name);
        RemoveFilesOf(sub);
        rmDir(sub.c_str());
      } else {
        RemoveEntry(part_path, e);
      }
    }
    rmDir(part_path.c_str());
  }
  bool directory_left = false;
  if (ListEntries(directory, entries)) {
    for (const Entry& e : entries) {
      if (e.directory) {
        directory_left = true;
      } else {
        RemoveEntry(directory, e);
      }
    }
  }
  return found == 3 && !directory_left ? 1 : 0;
}

}  // namespace

// --- names ------------------------------------------------------------------

void DameNombreCompleto(const wchar_t* directory, const wchar_t* name, const wchar_t* extension,
                        wchar_t* result) {
  if (result == nullptr) return;
  try {
    std::wstring full = Text(directory);
    if (!full.empty() && full.back() != L'\\') full += L'\\';
    full += Text(name);
    full += Text(extension);
    platform::copy_cut(result, kFullNameChars, full);
  } catch (...) {
    Clear(result);
  }
}

int NomFicheroTieneCaracterNoPermitido(const wchar_t* name) {
  if (name == nullptr) return 0;
  for (; *name != 0; ++name) {
    if (IsForbidden(*name)) return 1;
  }
  return 0;
}

void SustituirCaracteresNoPermitidoPor(wchar_t* name, wchar_t character) {
  if (name == nullptr) return;
  for (; *name != 0; ++name) {
    if (IsForbidden(*name)) *name = character;
  }
}

int EstaEnListaNombre(TRegListaNombre* list, const wchar_t* name) {
  if (name == nullptr) return 0;
  for (const TRegListaNombre* record : korvalen::detail::each(list)) {
    if (StriCmp(record->name, name) == 0) return 1;
  }
  return 0;
}

void DameOtroNombre(TRegListaParNombre* pairs, const wchar_t* name, wchar_t* result, int direction,
                    int keep_if_missing) {
  if (result == nullptr) return;
  try {
    // Built apart first: the result may be the name's own buffer.
    std::wstring other;
    bool matched = false;
    if (name != nullptr) {
      for (const TRegListaParNombre* pair : korvalen::detail::each(pairs)) {
        const wchar_t* compared = direction != 0 ? pair->first : pair->second;
        if (StrCmp(compared, name) == 0) {
          other = direction != 0 ? pair->second : pair->first;
          matched = true;
          break;
        }
      }
    }
    if (!matched && keep_if_missing != 0) other = Text(name);
    platform::copy_cut(result, kNameListChars, other);
  } catch (...) {
    Clear(result);
  }
}

void ModifNomDatos(const wchar_t* name, wchar_t* result, const wchar_t* base_directory) {
  if (result == nullptr) return;
  try {
    const std::wstring whole = Text(name);
    if (whole.empty()) {
      Clear(result);
      return;
    }
    std::wstring bucket;
    if (whole.size() == 1) {
      bucket = L"0";
    } else if (whole.size() == 2) {
      bucket = whole.substr(0, 1);
    } else {
      bucket = whole.substr(0, whole.size() - 2);
    }
    const std::wstring base = Text(base_directory);
    if (!base.empty()) mkDir(Join(base, bucket).c_str());
    platform::copy_cut(result, kFullNameChars, Join(bucket, whole));
  } catch (...) {
    Clear(result);
  }
}

// --- directories --------------------------------------------------------------

void DameDirectorioActual(wchar_t* result) {
  if (result == nullptr) return;
  if (GetCwd(result, kDirectoryChars) == nullptr) {
    Clear(result);
    return;
  }
  const int length = StrLen(result);
  if (length > 0 && IsSeparator(result[length - 1])) result[length - 1] = 0;
}

void CambiarDirectorio(const wchar_t* directory) {
  if (directory == nullptr) return;
  if (StrLen(directory) == 2) {
    // "C:" alone is the drive's current directory; its root is meant.
    const wchar_t root[] = {directory[0], directory[1], L'\\', 0};
    chDir(root);
    return;
  }
  chDir(directory);
}

void DameDirectorioDeApp(wchar_t* result) {
  if (result == nullptr) return;
  Clear(result);
  wchar_t program[kProgramNameChars];
  if (platform::executable_path(program, kProgramNameChars)) return;
  int end = StrLen(program);
  while (end > 0 && !IsSeparator(program[end - 1])) --end;
  if (end == 0 || end >= kDirectoryChars) return;
  StrnCpy(result, program, static_cast<std::size_t>(end));
  // The Windows separator on every system, so that names built on the
  // directory read the same everywhere (the platform takes '\\' as '/').
  result[end - 1] = L'\\';
  result[end] = 0;
}

void CambiarDirectorioDeApp() {
  // A thread whose COM apartment is set up otherwise keeps it.
  (void)platform::start_com();
  wchar_t directory[kDirectoryChars];
  DameDirectorioDeApp(directory);
  if (directory[0] != 0) chDir(directory);
}

// --- files --------------------------------------------------------------------

void CopiarFichero(const wchar_t* source, const wchar_t* destination) {
  if (source == nullptr || destination == nullptr || *source == 0 || *destination == 0) return;
  // The same file under another case would be truncated before it is read.
  if (StriCmp(source, destination) == 0) return;
  FILE* in = fOpen(source, L"rb");
  if (in == nullptr) return;
  char* block = static_cast<char*>(std::malloc(kCopyBlockBytes));
  if (block == nullptr) {
    std::fclose(in);
    return;
  }
  korvalen::detail::write_whole_file(
      destination,
      [&](FILE* out) {
        std::size_t n = 0;
        while ((n = std::fread(block, 1, kCopyBlockBytes, in)) > 0) {
          if (std::fwrite(block, 1, n, out) != n) return false;
        }
        // A source that could not be read to its end copies nothing.
        return std::ferror(in) == 0;
      },
      korvalen::platform::WorkContent::kBinary);
  std::free(block);
  std::fclose(in);
}

int VaciarDirectorio(const wchar_t* directory) {
  // An empty name would put the root of the drive in its place.
  if (directory == nullptr || *directory == 0) return 0;
  try {
    return EmptyDatabaseDirectory(directory);
  } catch (...) {
    return 0;
  }
}

void BorrarDirectorio(const wchar_t* directory) {
  // Recursive and irreversible, so guarded three times: never a drive root,
  // only the shape of a database directory, and only once it is empty.
  if (directory == nullptr || StrLen(directory) <= 3) return;
  try {
    if (!HasDatabaseShape(directory)) return;
    if (EmptyDatabaseDirectory(directory) != 1) return;
    rmDir(directory);
  } catch (...) {
  }
}
