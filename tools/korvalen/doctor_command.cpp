// korvalen doctor [-C DIR] [--json]: checks a whole installation and reports
// each finding as "FILE:LINE: what is wrong; what to do" (or one JSON
// document). Exit status 0 when nothing was found, 1 when anything was, 2
// for a wrong command line.
#include <algorithm>
#include <cstdio>
#include <cwctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "command_line.h"
#include "commands.h"
#include "doctor_checks.h"
#include "failure.h"
#include "json_output.h"
#include "korvalen/korvalen.h"
#include "text_output.h"
#include "working_directory.h"

namespace korvalen::tool {

namespace fs = std::filesystem;

std::vector<std::wstring> installation_files() {
  std::vector<std::wstring> files;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(".", error)) {
    if (entry.is_regular_file(error)) files.push_back(entry.path().filename().wstring());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<RawLine> file_lines(const std::wstring& name) {
  std::ifstream in(fs::path(name), std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::vector<RawLine> lines;
  std::size_t start = 0;
  while (start < bytes.size()) {
    std::size_t end = bytes.find('\n', start);
    if (end == std::string::npos) end = bytes.size();
    std::string line = bytes.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back({static_cast<int>(lines.size()) + 1, line});
    start = end + 1;
  }
  return lines;
}

std::wstring wide(const std::string& bytes) {
  std::wstring text(bytes.size() + 1, L'\0');
  CharToTChar(text.data(), static_cast<int>(text.size()), bytes.c_str());
  return text.c_str();
}

std::wstring upper(std::wstring text) {
  for (wchar_t& c : text) c = static_cast<wchar_t>(std::towupper(c));
  return text;
}

bool ends_with(const std::wstring& text, const std::wstring& tail) {
  return text.size() >= tail.size() &&
         text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

bool is_suite_work_file(const std::wstring& upper_name) {
  return (upper_name.rfind(L"AUX", 0) == 0 && upper_name != L"AUXCHIVA.DAT") ||
         ends_with(upper_name, L".AUX");
}

namespace {

void report(const Findings& found, bool json) {
  if (json) {
    open_document();
    document()["directory"] = utf8(fs::current_path().wstring());
    Json& findings = document()["findings"] = Json::array();
    for (const Finding& f : found) {
      findings.push_back({{"file", utf8(f.file)},
                          {"line", f.line > 0 ? Json(f.line) : Json()},
                          {"check", f.check},
                          {"problem", utf8(f.problem)},
                          {"fix", utf8(f.fix)}});
    }
    close_document();
    return;
  }
  for (const Finding& f : found) {
    const std::wstring where = f.line > 0 ? f.file + L":" + std::to_wstring(f.line) : f.file;
    print(where + L": " + f.problem + L"; " + f.fix + L"\n");
  }
  if (found.empty()) print(L"No findings\n");
}

}  // namespace

void add_doctor_commands(CLI::App& app) {
  auto* doctor = app.add_subcommand("doctor", "Check a whole installation and say what to fix");
  static std::string directory;
  static bool json = false;
  add_directory_option(*doctor, directory);
  add_json_flag(*doctor, json, "directory, findings (file, line, check, problem, fix)");
  doctor->allow_extras();
  doctor->callback([doctor] {
    if (!doctor->remaining().empty()) {
      fail(L"doctor", L"unexpected argument " + argument_text(doctor->remaining().front()),
           kBadCommandLine);
    }
    if (!enter_directory(directory)) throw CLI::RuntimeError(2);
    Findings found;
    check_settings_files(found);
    check_state_files(found);
    check_catalogues(found);
    check_param_sys(found);
    check_languages(found);
    check_work_files(found);
    check_error_counter(found);
    std::stable_sort(found.begin(), found.end(), [](const Finding& a, const Finding& b) {
      return a.file != b.file ? a.file < b.file : a.line < b.line;
    });
    report(found, json);
    std::fflush(stdout);
    if (!found.empty()) throw CLI::RuntimeError(1);
  });
}

}  // namespace korvalen::tool
