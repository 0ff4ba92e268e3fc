#include "korvalen/foundation/directory_iteration.h"

#include "korvalen/foundation/file_system.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/platform/internal/files.h"

namespace {

bool IsFolder(const _wfinddata64i32_t& data) { return (data.attrib & _A_SUBDIR) != 0; }

bool IsFile(const _wfinddata64i32_t& data) { return !IsFolder(data); }

bool IsSubfolder(const _wfinddata64i32_t& data) {
  return IsFolder(data) && StrCmp(data.name, L".") != 0 && StrCmp(data.name, L"..") != 0;
}

void Close(TDtsFile& search) {
  if (search.handle != -1) korvalen::platform::find_close(search.handle);
  search.handle = -1;
}

// A search that fails on the way (no memory) ends like one that ran out.
template <bool (*Wanted)(const _wfinddata64i32_t&)>
int Next(TDtsFile& search) {
  if (search.handle == -1) return 0;
  try {
    while (FindNext(search.handle, &search.data) == 0) {
      if (Wanted(search.data)) return 1;
    }
  } catch (...) {
  }
  Close(search);
  return 0;
}

template <bool (*Wanted)(const _wfinddata64i32_t&)>
int First(const wchar_t* pattern, TDtsFile& search) {
  search.handle = -1;
  try {
    if (pattern != nullptr) search.handle = FindFirst(pattern, &search.data);
  } catch (...) {
    search.handle = -1;
  }
  if (search.handle == -1) return 0;
  if (Wanted(search.data)) return 1;
  return Next<Wanted>(search);
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
