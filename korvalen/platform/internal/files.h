// Files and directories: opening streams, the C runtime's file-system calls
// and directory searches, with Windows semantics on every system.
//
// On POSIX a backslash in a name is a separator, and a name that does not
// exist as spelled resolves to an existing entry that matches it without
// regard to case. Streams opened without 'b' in the mode are text streams:
// CR LF reads as LF, LF writes as CR LF, and Ctrl-Z ends the input.
#pragma once

#include <cstdint>
#include <cstdio>

#include "korvalen/platform/windows_types.h"

namespace korvalen::platform {

// _wfopen_s (share_flag -1) or _wfsopen with a sharing flag; the flag has no
// effect on POSIX. Returns null with *error set (an errno value) on failure.
FILE* open_file(const wchar_t* name, const wchar_t* mode, int share_flag, int* error);

// The C runtime calls; results as on Windows (0 on success, else -1 or an
// errno value where the runtime returns one).
int access_file(const wchar_t* name, int mode);  // 0 or an errno value
int change_mode(const wchar_t* name, int permission);
int change_directory(const wchar_t* name);
int make_directory(const wchar_t* name);
int remove_directory(const wchar_t* name);
int remove_file(const wchar_t* name);
// Fails when the new name exists, as on Windows.
int rename_file(const wchar_t* old_name, const wchar_t* new_name);
// Renames a work file onto a target, replacing it atomically when it exists.
int replace_file(const wchar_t* work_name, const wchar_t* target);
wchar_t* current_directory(wchar_t* buffer, int capacity);

// Directory search with the Windows wildcards '*' and '?', without regard to
// case. find_first returns -1 when nothing matches; find_next returns 0 for a
// further entry and -1 at the end. Close every handle find_first gave with
// find_close, also after the end (on POSIX a search is already released at its
// end, and closing it then is harmless).
intptr_t find_first(const wchar_t* pattern, _wfinddata64i32_t* data);
int find_next(intptr_t handle, _wfinddata64i32_t* data);
int find_close(intptr_t handle);

// _wsearchenv: the full name of file in the current directory or in one of
// the directories listed in the environment variable; empty when not found.
// The result holds at most MAX_PATH characters.
void search_env(const wchar_t* file, const wchar_t* variable, wchar_t* result);

// The program file of the running process (not this library's).
void executable_path(wchar_t* buffer, int capacity);

}  // namespace korvalen::platform
