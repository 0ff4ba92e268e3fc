#include "korvalen/foundation/directory_iteration.h"

#include "korvalen/foundation/string_functions.h"
#include "korvalen/platform/internal/directory_search.h"

namespace {

namespace platform = korvalen::platform;

bool IsFile(const platform::DirectoryEntry& entry) { return !entry.is_directory(); }

bool IsSubfolder(const platform::DirectoryEntry& entry) {
  return entry.is_directory() && StrCmp(entry.name, L".") != 0 && StrCmp(entry.name, L"..") != 0;
}

void Close(TDtsFile& search) {
  if (search.handle != platform::kNoSearch) platform::find_close(search.handle);
  search.handle = platform::kNoSearch;
}

// Takes entries until a wanted one; a search that fails on the way ends like
// one that ran out.
template <bool (*Wanted)(const platform::DirectoryEntry&)>
int TakeWanted(TDtsFile& search, platform::DirectoryEntry& entry, std::error_code found) {
  for (; !found; found = platform::find_next(search.handle, entry)) {
    // The record holds the entry found last, wanted or not, as FindNext
    // leaves it.
    platform::to_find_data(entry, search.data);
    if (Wanted(entry)) return 1;
  }
  Close(search);
  return 0;
}

template <bool (*Wanted)(const platform::DirectoryEntry&)>
int Next(TDtsFile& search) {
  if (search.handle == platform::kNoSearch) return 0;
  platform::DirectoryEntry entry;
  return TakeWanted<Wanted>(search, entry, platform::find_next(search.handle, entry));
}

template <bool (*Wanted)(const platform::DirectoryEntry&)>
int First(const wchar_t* pattern, TDtsFile& search) {
  platform::DirectoryEntry entry;
  platform::SearchHandle handle = platform::kNoSearch;
  const std::error_code found = platform::find_first(pattern, handle, entry);
  search.handle = handle;
  return TakeWanted<Wanted>(search, entry, found);
}

}  // namespace

int DamePrimerFichero(const wchar_t* pattern, TDtsFile& search) {
  return First<IsFile>(pattern, search);
}
int DameSiguienteFichero(TDtsFile& search) { return Next<IsFile>(search); }

int DamePrimerSubdirectorio(const wchar_t* pattern, TDtsFile& search) {
  return First<IsSubfolder>(pattern, search);
}
int DameSiguienteSubdirectorio(TDtsFile& search) { return Next<IsSubfolder>(search); }

LONG DameTallaDeFich(const wchar_t* path) {
  TDtsFile search;
  if (DamePrimerFichero(path, search) == 0) return 0;
  const LONG size = static_cast<LONG>(search.data.size);
  Close(search);
  return size;
}
