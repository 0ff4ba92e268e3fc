// The checks of `korvalen doctor`, each over the installation in the current
// directory. A check appends what it finds; a finding names the file, the line
// (0 when the problem is the file as a whole), what is wrong and what to do.
//
//   Findings found;
//   check_work_files(found);
//   for (const Finding& f : found) print(f.file + L": " + f.problem + L"\n");
#pragma once

#include <string>
#include <vector>

namespace korvalen::tool {

struct Finding {
  std::wstring file;
  int line = 0;
  std::string check;
  std::wstring problem;
  std::wstring fix;
};
using Findings = std::vector<Finding>;

// One physical line of a file as stored, with its 1-based number.
struct RawLine {
  int number = 0;
  std::string bytes;  // without the line feed and one carriage return before it
};

// The regular files of the current directory, sorted by name.
std::vector<std::wstring> installation_files();
// The lines of a file; a line feed at the very end starts no further line.
std::vector<RawLine> file_lines(const std::wstring& name);
// The 8-bit text of the settings files as the library's readers see it.
std::wstring wide(const std::string& bytes);
std::wstring upper(std::wstring text);
bool ends_with(const std::wstring& text, const std::wstring& tail);
// A rewrite's work file of the suite's own naming ("AUX...", "....AUX"); the
// trace file "AUXCHIVA.DAT" shares the prefix and is none. Upper-case name.
bool is_suite_work_file(const std::wstring& upper_name);

// Record syntax, line limits and ignored records of the settings files.
void check_settings_files(Findings& found);
// Machine, importer and exporter catalogues against their installed subsets.
void check_catalogues(Findings& found);
// The plain state files: line limits and the sheet queue's pairs.
void check_state_files(Findings& found);
void check_param_sys(Findings& found);
void check_languages(Findings& found);
void check_work_files(Findings& found);
void check_error_counter(Findings& found);

}  // namespace korvalen::tool
