// Files and directories: opening streams and the C runtime's file-system
// calls, with the Windows semantics on every system. Calls that can fail
// follow the convention of error.h.
//
// On POSIX a backslash in a name is a separator, and a name that does not
// exist as spelled resolves to an existing entry that matches it without
// regard to case. Streams opened without 'b' in the mode are text streams:
// CR LF reads as LF, LF writes as CR LF, and Ctrl-Z ends the input.
//
//   FILE* file = nullptr;
//   if (!platform::open_file(L"ORDENACT.SYS", L"rt", -1, file)) { ... std::fclose(file); }
#pragma once

#include <cstdio>
#include <system_error>

namespace korvalen::platform {

// _wfopen_s (share_flag -1) or _wfsopen with a sharing flag; the flag has no
// effect on POSIX. file is null on failure.
std::error_code open_file(const wchar_t* name, const wchar_t* mode, int share_flag, FILE*& file);
// open_file without a sharing flag, for a file that other programs replace
// as a whole: Windows refuses for a moment to open a file while another
// program replaces or deletes it, so a refusal is retried for up to a second
// while the file still exists. POSIX never refuses for that reason.
std::error_code open_replaced_file(const wchar_t* name, const wchar_t* mode, FILE*& file);

// The C runtime's calls. access_file fails with the errno value that
// _waccess_s returns.
std::error_code access_file(const wchar_t* name, int mode);
std::error_code change_mode(const wchar_t* name, int permission);
std::error_code change_directory(const wchar_t* name);
std::error_code make_directory(const wchar_t* name);
std::error_code remove_directory(const wchar_t* name);
std::error_code remove_file(const wchar_t* name);
// Fails when the new name exists, as on Windows.
std::error_code rename_file(const wchar_t* old_name, const wchar_t* new_name);
// Renames a work file onto a target in one atomic step, replacing the target
// when it exists. Windows refuses for a moment while another program has the
// target open; that refusal is retried for up to a second.
std::error_code replace_file(const wchar_t* work_name, const wchar_t* target);

// The current directory into buffer (capacity characters); fails with
// std::errc::result_out_of_range when it does not fit, the buffer then
// unchanged.
std::error_code current_directory(wchar_t* buffer, int capacity);
// _wsearchenv: the full name of file in the current directory or in one of
// the directories listed in the environment variable, at most MAX_PATH
// characters; empty, with std::errc::no_such_file_or_directory, when it is
// not found.
std::error_code search_env(const wchar_t* file, const wchar_t* variable, wchar_t* result);
// The program file of the running process (not this library's); empty on
// failure.
std::error_code executable_path(wchar_t* buffer, int capacity);

// Each system's implementation, for the portable layer (files.cpp) only:
// names, modes and buffers are not null, capacities are above zero, and an
// allocation failure may throw.
namespace native {
std::error_code open_file(const wchar_t* name, const wchar_t* mode, int share_flag, FILE*& file);
std::error_code open_replaced_file(const wchar_t* name, const wchar_t* mode, FILE*& file);
std::error_code access_file(const wchar_t* name, int mode);
std::error_code change_mode(const wchar_t* name, int permission);
std::error_code change_directory(const wchar_t* name);
std::error_code make_directory(const wchar_t* name);
std::error_code remove_directory(const wchar_t* name);
std::error_code remove_file(const wchar_t* name);
std::error_code rename_file(const wchar_t* old_name, const wchar_t* new_name);
std::error_code replace_file(const wchar_t* work_name, const wchar_t* target);
std::error_code current_directory(wchar_t* buffer, int capacity);
std::error_code search_env(const wchar_t* file, const wchar_t* variable, wchar_t* result);
std::error_code executable_path(wchar_t* buffer, int capacity);
}  // namespace native

}  // namespace korvalen::platform
