// File, directory, path, time and formatting primitives.
#include <cstdarg>
#include <cstring>
#include <memory>
#include <new>

#include "korvalen/foundation/primitives.h"
#include "korvalen/foundation/string_resources.h"
#include "korvalen/foundation/wide_arg.h"
#include "korvalen/platform/clock.h"
#include "korvalen/platform/files.h"
#include "korvalen/platform/format.h"
#include "korvalen/platform/path_parts.h"
#include "korvalen/platform/text_codec.h"

using korvalen::detail::kWorkChars;
using korvalen::detail::WideArg;
namespace platform = korvalen::platform;

namespace {

constexpr int kLineBytes = 2048;  // the 8-bit side of a 1024-character line

// Formats and writes, the common body of both fPrintf overloads.
int print_to(FILE* stream, const wchar_t* format, va_list args) {
  wchar_t text[kWorkChars];
  const int length = platform::format_wide(text, kWorkChars, format, args);
  if (length < 1) return length;
  char bytes[kLineBytes];
  platform::wide_to_ansi(text, bytes, kLineBytes);
  if (stream != nullptr) std::fputs(bytes, stream);
  return length;
}

// swprintf without a count: the result goes to the caller's buffer as long as
// it is, but only the characters of the result are ever written there.
int print_unbounded(wchar_t* buffer, const wchar_t* format, va_list args) {
  if (buffer == nullptr) return -1;
  wchar_t small[kWorkChars];
  va_list copy;
  va_copy(copy, args);
  int length = platform::format_wide(small, kWorkChars, format, copy);
  va_end(copy);
  if (length >= 0) {
    std::memcpy(buffer, small, (static_cast<std::size_t>(length) + 1) * sizeof(wchar_t));
    return length;
  }
  for (std::size_t capacity = 16 * kWorkChars; capacity <= (std::size_t{1} << 22); capacity *= 4) {
    std::unique_ptr<wchar_t[]> big(new (std::nothrow) wchar_t[capacity]);
    if (!big) break;
    va_copy(copy, args);
    length = platform::format_wide(big.get(), capacity, format, copy);
    va_end(copy);
    if (length >= 0) {
      std::memcpy(buffer, big.get(), (static_cast<std::size_t>(length) + 1) * sizeof(wchar_t));
      return length;
    }
  }
  buffer[0] = 0;
  return -1;
}

}  // namespace

// --- time -------------------------------------------------------------------

wchar_t* StrDate(wchar_t* buffer) { return buffer != nullptr ? platform::date_text(buffer) : buffer; }
wchar_t* StrTime(wchar_t* buffer) { return buffer != nullptr ? platform::time_text(buffer) : buffer; }

std::size_t StrfTime(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
                     const std::tm* time) {
  return platform::format_time(buffer, capacity, format, time);
}
std::size_t StrfTime(wchar_t* buffer, std::size_t capacity, const char* format,
                     const std::tm* time) {
  return StrfTime(buffer, capacity, WideArg(format).get(), time);
}

std::tm* LocalTime(const long long* time) {
  return time != nullptr ? platform::local_time(*time) : nullptr;
}
std::tm* gmTime(const long long* time) {
  return time != nullptr ? platform::utc_time(*time) : nullptr;
}

// --- environment and formatting ---------------------------------------------

void SearchEnv(const wchar_t* file, const wchar_t* variable, wchar_t* result) {
  platform::search_env(file, variable, result);
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

int sPrintf(wchar_t* buffer, const wchar_t* format, ...) {
  va_list args;
  va_start(args, format);
  const int length = print_unbounded(buffer, format, args);
  va_end(args);
  return length;
}
int sPrintf(wchar_t* buffer, const char* format, ...) {
  WideArg wide_format(format);
  va_list args;
  va_start(args, format);
  const int length = print_unbounded(buffer, wide_format.get(), args);
  va_end(args);
  return length;
}

// --- streams ----------------------------------------------------------------

FILE* fOpen(const wchar_t* name, const wchar_t* mode) {
  int error = 0;
  return platform::open_file(name, mode, -1, &error);
}
FILE* fOpen(const char* name, const wchar_t* mode) { return fOpen(WideArg(name).get(), mode); }
FILE* fOpen(const wchar_t* name, const char* mode) { return fOpen(name, WideArg(mode).get()); }
FILE* fOpen(const char* name, const char* mode) {
  return fOpen(WideArg(name).get(), WideArg(mode).get());
}

FILE* fsOpen(const wchar_t* name, const wchar_t* mode, int share_flag) {
  int error = 0;
  return platform::open_file(name, mode, share_flag, &error);
}
FILE* fsOpen(const char* name, const wchar_t* mode, int share_flag) {
  return fsOpen(WideArg(name).get(), mode, share_flag);
}
FILE* fsOpen(const wchar_t* name, const char* mode, int share_flag) {
  return fsOpen(name, WideArg(mode).get(), share_flag);
}
FILE* fsOpen(const char* name, const char* mode, int share_flag) {
  return fsOpen(WideArg(name).get(), WideArg(mode).get(), share_flag);
}

wchar_t* fGets(wchar_t* buffer, int capacity, FILE* stream) {
  if (buffer == nullptr || capacity <= 0 || stream == nullptr) return nullptr;
  char bytes[kLineBytes];
  const int limit = capacity > kWorkChars ? kLineBytes : 2 * capacity;
  if (std::fgets(bytes, limit, stream) == nullptr) return nullptr;
  platform::ansi_to_wide(bytes, buffer, capacity);
  return buffer;
}

int fPuts(const wchar_t* line, FILE* stream) {
  if (stream == nullptr) return EOF;
  char bytes[kLineBytes];
  platform::wide_to_ansi(line, bytes, kLineBytes);
  return std::fputs(bytes, stream);
}
int fPuts(const char* line, FILE* stream) {
  if (stream == nullptr || line == nullptr) return EOF;
  return std::fputs(line, stream);
}

int fPrintf(FILE* stream, const wchar_t* format, ...) {
  va_list args;
  va_start(args, format);
  const int length = print_to(stream, format, args);
  va_end(args);
  return length;
}
int fPrintf(FILE* stream, const char* format, ...) {
  WideArg wide_format(format);
  va_list args;
  va_start(args, format);
  const int length = print_to(stream, wide_format.get(), args);
  va_end(args);
  return length;
}

// --- file system --------------------------------------------------------------

int Access(const wchar_t* name, int mode) { return platform::access_file(name, mode); }
int Access(const char* name, int mode) { return Access(WideArg(name).get(), mode); }
int chMod(const wchar_t* name, int permission) { return platform::change_mode(name, permission); }
int chMod(const char* name, int permission) { return chMod(WideArg(name).get(), permission); }
int chDir(const wchar_t* name) { return platform::change_directory(name); }
int chDir(const char* name) { return chDir(WideArg(name).get()); }
int mkDir(const wchar_t* name) { return platform::make_directory(name); }
int mkDir(const char* name) { return mkDir(WideArg(name).get()); }
int rmDir(const wchar_t* name) { return platform::remove_directory(name); }
int rmDir(const char* name) { return rmDir(WideArg(name).get()); }
int unLink(const wchar_t* name) { return platform::remove_file(name); }
int unLink(const char* name) { return unLink(WideArg(name).get()); }
int Remove(const wchar_t* name) { return platform::remove_file(name); }
int Remove(const char* name) { return Remove(WideArg(name).get()); }
int Rename(const wchar_t* old_name, const wchar_t* new_name) {
  return platform::rename_file(old_name, new_name);
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
  return platform::current_directory(buffer, capacity);
}

intptr_t FindFirst(const wchar_t* pattern, _wfinddata64i32_t* data) {
  return platform::find_first(pattern, data);
}
intptr_t FindFirst(const char* pattern, _wfinddata64i32_t* data) {
  return FindFirst(WideArg(pattern).get(), data);
}
int FindNext(intptr_t handle, _wfinddata64i32_t* data) { return platform::find_next(handle, data); }

// --- paths ------------------------------------------------------------------

void MakePath(wchar_t* path, const wchar_t* drive, const wchar_t* dir, const wchar_t* fname,
              const wchar_t* ext) {
  platform::make_path(path, drive, dir, fname, ext);
}
void MakePath(wchar_t* path, const wchar_t* drive, const wchar_t* dir, const char* fname,
              const wchar_t* ext) {
  MakePath(path, drive, dir, WideArg(fname).get(), ext);
}
void MakePath(wchar_t* path, const wchar_t* drive, const wchar_t* dir, const wchar_t* fname,
              const char* ext) {
  MakePath(path, drive, dir, fname, WideArg(ext).get());
}
void MakePath(wchar_t* path, const wchar_t* drive, const wchar_t* dir, const char* fname,
              const char* ext) {
  MakePath(path, drive, dir, WideArg(fname).get(), WideArg(ext).get());
}

void SplitPath(const wchar_t* path, wchar_t* drive, wchar_t* dir, wchar_t* fname, wchar_t* ext) {
  platform::split_path(path, drive, dir, fname, ext);
}
void SplitPath(const char* path, wchar_t* drive, wchar_t* dir, wchar_t* fname, wchar_t* ext) {
  SplitPath(WideArg(path).get(), drive, dir, fname, ext);
}

// --- resources ----------------------------------------------------------------

int LoadStr(UINT id, wchar_t* buffer) {
  return korvalen::detail::load_string(id, buffer, kWorkChars) > 0 ? 1 : 0;
}
