// Where a field reader or writer starts on its record line: at the cursor,
// or at the line's start when the caller passes a negative cursor.
#pragma once

namespace korvalen::detail {

inline int cursor_start(int cursor) { return cursor < 0 ? 0 : cursor; }

}  // namespace korvalen::detail
