#include "korvalen/foundation/file_system.h"

#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/platform/internal/directory_search.h"
#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/internal/files.h"

using korvalen::detail::WideArg;
using korvalen::platform::to_runtime_result;
namespace platform = korvalen::platform;

int Access(const wchar_t* name, int mode) { return platform::access_file(name, mode).value(); }
int Access(const char* name, int mode) { return Access(WideArg(name).get(), mode); }
int chMod(const wchar_t* name, int permission) {
  return to_runtime_result(platform::change_mode(name, permission));
}
int chMod(const char* name, int permission) { return chMod(WideArg(name).get(), permission); }
int chDir(const wchar_t* name) { return to_runtime_result(platform::change_directory(name)); }
int chDir(const char* name) { return chDir(WideArg(name).get()); }
int mkDir(const wchar_t* name) { return to_runtime_result(platform::make_directory(name)); }
int mkDir(const char* name) { return mkDir(WideArg(name).get()); }
int rmDir(const wchar_t* name) { return to_runtime_result(platform::remove_directory(name)); }
int rmDir(const char* name) { return rmDir(WideArg(name).get()); }
int unLink(const wchar_t* name) { return to_runtime_result(platform::remove_file(name)); }
int unLink(const char* name) { return unLink(WideArg(name).get()); }
int Remove(const wchar_t* name) { return to_runtime_result(platform::remove_file(name)); }
int Remove(const char* name) { return Remove(WideArg(name).get()); }
int Rename(const wchar_t* old_name, const wchar_t* new_name) {
  return to_runtime_result(platform::rename_file(old_name, new_name));
}
int Rename(const char* old_name, const wchar_t* new_name) {
  return Rename(WideArg(old_name).get(), new_name);
}
int Rename(const wchar_t* old_name, const char* new_name) {
  return Rename(old_name, WideArg(new_name).get());
}
int Rename(const char* old_name, const char* new_name) {
  return Rename(WideArg(old_name).get(), WideArg(new_name).get());
}

wchar_t* GetCwd(wchar_t* buffer, int capacity) {
  const std::error_code error = platform::current_directory(buffer, capacity);
  to_runtime_result(error);
  return error ? nullptr : buffer;
}

intptr_t FindFirst(const wchar_t* pattern, _wfinddata64i32_t* data) {
  if (data == nullptr) return to_runtime_result(platform::make_error(std::errc::invalid_argument));
  platform::SearchHandle search = platform::kNoSearch;
  platform::DirectoryEntry entry;
  if (const std::error_code error = platform::find_first(pattern, search, entry)) {
    return to_runtime_result(error);
  }
  platform::to_find_data(entry, *data);
  return search;
}
intptr_t FindFirst(const char* pattern, _wfinddata64i32_t* data) {
  return FindFirst(WideArg(pattern).get(), data);
}
int FindNext(intptr_t handle, _wfinddata64i32_t* data) {
  if (data == nullptr) return to_runtime_result(platform::make_error(std::errc::invalid_argument));
  platform::DirectoryEntry entry;
  if (const std::error_code error = platform::find_next(handle, entry)) {
    return to_runtime_result(error);
  }
  platform::to_find_data(entry, *data);
  return 0;
}

void SearchEnv(const wchar_t* file, const wchar_t* variable, wchar_t* result) {
  // Not found leaves the result empty, which is all the runtime reports.
  (void)platform::search_env(file, variable, result);
}
void SearchEnv(const char* file, const wchar_t* variable, wchar_t* result) {
  SearchEnv(WideArg(file).get(), variable, result);
}
void SearchEnv(const wchar_t* file, const char* variable, wchar_t* result) {
  SearchEnv(file, WideArg(variable).get(), result);
}
void SearchEnv(const char* file, const char* variable, wchar_t* result) {
  SearchEnv(WideArg(file).get(), WideArg(variable).get(), result);
}
