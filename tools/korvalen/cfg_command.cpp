// korvalen cfg dump FILE: every record of a settings file as the readers see it.
// korvalen cfg get FILE CODE [FIELD]: the fields of the first record CODE.
// korvalen cfg set FILE CODE FIELD VALUE: changes that one field in place.
#include <cerrno>
#include <cstdio>
#include <cwchar>
#include <cwctype>
#include <string>

#include "command_line.h"
#include "commands.h"
#include "failure.h"
#include "json_output.h"
#include "korvalen/korvalen.h"
#include "settings_edit.h"
#include "settings_records.h"
#include "text_output.h"
#include "working_directory.h"

namespace korvalen::tool {
namespace {

struct Options {
  std::string directory;
  std::string file;
  std::string code;
  int field = 0;
  std::string value;
  bool comments = false;
  bool json = false;
};

FILE* OpenSettings(const std::wstring& name) {
  errno = 0;
  FILE* f = fOpen(name.c_str(), L"rt");
  if (f == nullptr) fail_errno(name);
  return f;
}

Json FieldList(const Fields& fields) {
  Json list = Json::array();
  for (const RecordField& f : fields) list.push_back(utf8(shown(f)));
  return list;
}

void Dump(const Options& o) {
  const std::wstring name = argument_text(o.file);
  FILE* f = OpenSettings(name);
  int records = 0;
  section()["file"] = utf8(name);
  section()["records"] = Json::array();
  for_each_settings_line(
      f, [&](int number, const wchar_t* line, wchar_t type, int index, int cursor) {
        if (type == L' ') return;
        // Every reader passes over type '#', a comment also where blanks stand
        // before its mark, and a blank line after one, which keeps the type.
        if (type == L'#') {
          if (o.comments) print(L"     " + std::wstring(line) + L"\n");
          return;
        }
        const Fields fields = record_fields(line, cursor);
        wchar_t head[32];
        sPrintf(head, L"%4d  %s", number, record_code(type, index).c_str());
        std::wstring text = head;
        for (const RecordField& field : fields) text += L"  " + shown(field);
        print(text + L"\n");
        if (json_wanted()) {
          section()["records"].push_back({{"line", number},
                                          {"code", utf8(record_code(type, index))},
                                          {"fields", FieldList(fields)}});
        }
        ++records;
      });
  std::fclose(f);
  print(std::to_wstring(records) + L" records\n");
}

void Get(const Options& o, bool field_given) {
  const std::wstring name = argument_text(o.file);
  wchar_t type = 0;
  int index = 0;
  if (!parse_record_code(o.code, type, index)) {
    fail(argument_text(o.code), L"not a record code (a letter and three digits, as A001)",
         kBadCommandLine);
  }
  FILE* f = OpenSettings(name);
  bool found = false;
  Fields fields;
  int found_at = 0;
  for_each_settings_line(f, [&](int number, const wchar_t* line, wchar_t t, int i, int cursor) {
    if (found || !is_record(line, t, i, type, index)) return;
    fields = record_fields(line, cursor);
    found = true;
    found_at = number;
  });
  std::fclose(f);
  const std::wstring code = record_code(type, index);
  if (!found) fail(name, L"no record " + code);
  if (field_given && (o.field < 1 || o.field > static_cast<int>(fields.size()))) {
    fail(name, L"record " + code + L" has no field " + std::to_wstring(o.field) + L" (it has " +
                   std::to_wstring(fields.size()) + L")");
  }
  section()["file"] = utf8(name);
  section()["code"] = utf8(code);
  section()["line"] = found_at;
  if (field_given) {
    const RecordField& chosen = fields[static_cast<std::size_t>(o.field - 1)];
    print(chosen.text + L"\n");
    section()["field"] = o.field;
    section()["value"] = utf8(chosen.text);
    section()["quoted"] = chosen.quoted;
    return;
  }
  for (std::size_t i = 0; i < fields.size(); ++i) {
    print(std::to_wstring(i + 1) + L"  " + shown(fields[i]) + L"\n");
  }
  section()["fields"] = FieldList(fields);
}

// The subcommand's common options: -C, and --json where it reads.
CLI::App* Command(CLI::App& cfg, const char* name, const char* help, Options& o, const char* keys) {
  auto* command = cfg.add_subcommand(name, help);
  add_directory_option(*command, o.directory);
  if (keys != nullptr) add_json_flag(*command, o.json, keys);
  command->add_option("FILE", o.file, "Settings file (inside -C DIR when relative)")->required();
  return command;
}

void Run(const Options& o, void (*work)(const Options&)) {
  enter_directory(o.directory);
  if (o.json) open_document();
  work(o);
  close_document();
  std::fflush(stdout);
}

}  // namespace

void add_cfg_commands(CLI::App& app) {
  auto* cfg = app.add_subcommand("cfg", "Settings files of config records");
  cfg->require_subcommand(1);
  static Options o;

  auto* dump = Command(*cfg, "dump",
                       "Print each record: line, type letter and index, then its fields "
                       "(numbered from 1, the ';' terminator last)",
                       o, "file, records [{line, code, fields}]");
  dump->add_flag("--comments", o.comments, "Also print comment lines");
  dump->callback([] { Run(o, Dump); });

  auto* get = Command(*cfg, "get", "Print the fields of the first record CODE, or field FIELD", o,
                      "file, code, line, fields; with FIELD: field, value, quoted");
  get->add_option("CODE", o.code, "Record code: type letter and index, as A001")->required();
  auto* field = get->add_option("FIELD", o.field, "Field number, from 1, as cfg dump shows it");
  get->callback([field] {
    static bool given = false;
    given = field->count() > 0;
    Run(o, [](const Options& options) { Get(options, given); });
  });

  auto* set = Command(*cfg, "set",
                      "Change field FIELD of the first record CODE in place; the rest of the file "
                      "stays as it is. A quoted field takes VALUE as text; a number, a real or "
                      "ON/OFF must get one",
                      o, nullptr);
  set->add_option("CODE", o.code, "Record code: type letter and index, as A001")->required();
  set->add_option("FIELD", o.field, "Field number, from 1, as cfg dump shows it")->required();
  set->add_option("VALUE", o.value, "The new value")->required();
  set->callback([] {
    enter_directory(o.directory);
    wchar_t type = 0;
    int index = 0;
    if (!parse_record_code(o.code, type, index)) {
      fail(argument_text(o.code), L"not a record code (a letter and three digits, as A001)",
           kBadCommandLine);
    }
    set_record_field(argument_text(o.file), type, index, o.field, argument_text(o.value));
  });
}

}  // namespace korvalen::tool
