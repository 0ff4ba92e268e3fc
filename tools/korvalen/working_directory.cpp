#include "working_directory.h"

#include "command_line.h"
#include "failure.h"
#include "korvalen/foundation/file_system.h"

namespace korvalen::tool {

void add_directory_option(CLI::App& command, std::string& directory) {
  command.add_option("-C,--directory", directory,
                     "Installation directory holding the files, where a relative FILE is taken "
                     "(default: the current one)");
}

bool enter_directory(const std::string& directory) {
  if (directory.empty() || directory == ".") return true;
  if (chDir(argument_text(directory).c_str()) == 0) return true;
  fail_errno(argument_text(directory));
}

bool installation_has(const wchar_t* name) { return Access(name, 0) == 0; }

}  // namespace korvalen::tool
