// Internal: where LoadStr finds its strings. The language-resource code installs
// a loader when it loads a language module; until then there are no strings.
#pragma once

namespace korvalen::detail {

// Loads string resource id into buffer (capacity in characters, terminated,
// cut to fit); returns its length, 0 when there is no such string.
using StringLoader = int (*)(unsigned id, wchar_t* buffer, int capacity);

void set_string_loader(StringLoader loader);
int load_string(unsigned id, wchar_t* buffer, int capacity);

}  // namespace korvalen::detail
