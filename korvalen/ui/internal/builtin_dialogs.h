// The library's own layouts of its dialogs, with the control identifiers of
// the suite's templates and English captions: what a system that builds the
// dialogs itself shows when the language library has no such template.
// Windows always uses the library's template.
//
//   dialog.CreateFromTemplate(14200, parent, korvalen::detail::builtin_dialog(14200));
#pragma once

#include "korvalen/platform/internal/dialog_template.h"

namespace korvalen::detail {

// Null for a template number the library has no layout for.
const platform::DialogTemplate* builtin_dialog(unsigned template_id);

}  // namespace korvalen::detail
