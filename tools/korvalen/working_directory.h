// The -C DIR option of the commands that read an installation's files by
// their bare names: they run in that directory, and look its files up there.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace korvalen::tool {

// Adds "-C DIR" (default: the current directory) to the command.
void add_directory_option(CLI::App& command, std::string& directory);

// Makes the directory current; when it cannot, fails the command with the
// reason (failure.h). Returns true.
bool enter_directory(const std::string& directory);

// Whether the installation (the current directory, once entered) has the file.
bool installation_has(const wchar_t* name);

}  // namespace korvalen::tool
