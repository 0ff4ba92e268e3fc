// Directory entries that must not be followed: telling a symbolic link (on
// Windows any reparse point, junctions included) apart from what it points to,
// and removing the link itself. The recursive deletions use them so that they
// never reach outside the tree they were given.
#pragma once

namespace korvalen::platform {

// True when the entry itself is a link; false when it is not or is missing.
bool is_link(const wchar_t* name);
// Removes the link, never its target: 0, or -1 on failure.
int remove_link(const wchar_t* name);

}  // namespace korvalen::platform
