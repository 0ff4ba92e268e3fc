// korvalen cfg dump FILE: every record of a settings file as the readers see it.
#include <cstdio>
#include <string>

#include "command_line.h"
#include "commands.h"
#include "korvalen/korvalen.h"
#include "text_output.h"

namespace korvalen::tool {
namespace {

constexpr int kLongRecord = 500;

// Splits the rest of a record into fields the way the field readers take them:
// a field starting with a double quote is a quoted text, anything else a word.
std::wstring describe_fields(const wchar_t* line, int cursor) {
  std::wstring out;
  const int length = StrLen(line);
  wchar_t field[kLongRecord + 1];
  for (;;) {
    while (cursor < length && line[cursor] == L' ') ++cursor;
    if (cursor >= length) break;
    const bool quoted = line[cursor] == L'"';
    LeerUnString(line, cursor, field);
    out += L"  ";
    out += quoted ? L"\"" + std::wstring(field) + L"\"" : std::wstring(field);
  }
  return out;
}

int dump(const std::string& file_name, bool show_comments) {
  FILE* f = fOpen(argument_text(file_name).c_str(), L"rt");
  if (f == nullptr) {
    std::fprintf(stderr, "korvalen: cannot open %s\n", file_name.c_str());
    return 1;
  }
  wchar_t line[kLongRecord + 1];
  wchar_t type = L' ';
  int index = 0;
  int cursor = 0;
  int records = 0;
  for (int number = 1; !std::feof(f); ++number) {
    LeerLineaLargaDeCfg(f, line, type, index, cursor);
    if (type == L' ') continue;
    // Every reader passes over type '#', a comment also where blanks stand
    // before its mark, and a blank line after one, which keeps the type.
    if (type == L'#') {
      if (show_comments) print(L"     " + std::wstring(line) + L"\n");
      continue;
    }
    wchar_t head[32];
    sPrintf(head, L"%4d  %c%03d", number, type, index);
    print(head + describe_fields(line, cursor) + L"\n");
    ++records;
  }
  std::fclose(f);
  std::fprintf(stdout, "%d records\n", records);
  return 0;
}

}  // namespace

void add_cfg_commands(CLI::App& app) {
  auto* cfg = app.add_subcommand("cfg", "Settings files of config records");
  cfg->require_subcommand(1);
  auto* dump_command = cfg->add_subcommand(
      "dump", "Print each record: line, type letter and index, then its fields");
  static std::string file;
  static bool comments = false;
  dump_command->add_option("FILE", file, "Settings file")->required();
  dump_command->add_flag("--comments", comments, "Also print comment lines");
  dump_command->callback([] {
    const int status = dump(file, comments);
    if (status != 0) throw CLI::RuntimeError(status);
  });
}

}  // namespace korvalen::tool
