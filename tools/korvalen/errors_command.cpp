// korvalen errors [list|show N|clear] [-C DIR] [--json]: the error reports
// the suite's programs left in an installation (".err" files), gathered by
// the library as a supervising program gathers them. list: one line each;
// show N: every field of the N-th; clear: deletes the report files.
#include <cstdio>
#include <string>
#include <vector>

#include "commands.h"
#include "failure.h"
#include "json_output.h"
#include "korvalen/korvalen.h"
#include "text_output.h"
#include "working_directory.h"

namespace korvalen::tool {
namespace {

// The gathered reports, freed when done.
class Reports {
 public:
  Reports() { DameListaErrores(head_, tail_, 0); }
  Reports(const Reports&) = delete;
  Reports& operator=(const Reports&) = delete;
  ~Reports() { BorraListaErrores(head_, tail_); }
  std::vector<const TRegError*> list() const {
    std::vector<const TRegError*> out;
    for (const TRegError* e = head_; e != nullptr; e = e->next) out.push_back(e);
    return out;
  }
  TRegError* head() const { return head_; }

 private:
  TRegError* head_ = nullptr;
  TRegError* tail_ = nullptr;
};

void List() {
  const Reports gathered;
  section()["reports"] = Json::array();
  int number = 0;
  for (const TRegError* e : gathered.list()) {
    ++number;
    wchar_t line[kErrorFileNameChars + kErrorShortTextChars + 32];
    sPrintf(line, L"%4d  %-12s %6d  %s\n", number, e->file_name, e->code, e->text1);
    print(line);
    section()["reports"].push_back({{"number", number},
                                    {"file_name", utf8(e->file_name)},
                                    {"code", e->code},
                                    {"text1", utf8(e->text1)}});
  }
  print(std::to_wstring(number) + L" error reports\n");
}

void Show(int number) {
  const Reports gathered;
  const std::vector<const TRegError*> reports = gathered.list();
  if (number < 1 || number > static_cast<int>(reports.size())) {
    fail(L"report " + std::to_wstring(number),
         L"no such report (there are " + std::to_wstring(reports.size()) + L")");
  }
  const TRegError& e = *reports[static_cast<std::size_t>(number - 1)];
  section()["number"] = number;
  print_field(L"File name", e.file_name);
  print_field(L"Code", std::to_wstring(e.code));
  section()["code"] = e.code;
  const wchar_t* texts[] = {e.text1, e.text2, e.text3, e.text4, e.text5, e.text6, e.text7};
  for (int i = 0; i < 7; ++i) print_field(L"Text" + std::to_wstring(i + 1), texts[i]);
  const long numbers[] = {e.number1, static_cast<long>(e.number2), e.number3};
  for (int i = 0; i < 3; ++i) {
    print_field(L"Number" + std::to_wstring(i + 1), std::to_wstring(numbers[i]));
    section()["number" + std::to_string(i + 1)] = numbers[i];
  }
}

void Clear() {
  const Reports gathered;
  const std::size_t count = gathered.list().size();
  BorrarFicherosDeErrores(gathered.head());
  print(L"deleted " + std::to_wstring(count) + L" error report" + (count == 1 ? L"" : L"s") +
        L"\n");
}

}  // namespace

void add_errors_commands(CLI::App& app) {
  auto* errors = app.add_subcommand(
      "errors", "The error reports (.err files) the suite's programs left; list by default");
  errors->require_subcommand(0, 1);
  static std::string directory;
  static bool json = false;
  static int number = 0;
  add_directory_option(*errors, directory);
  const std::string list_keys = "reports [{number, file_name, code, text1}]";
  add_json_flag(*errors, json, list_keys);
  auto* list = errors->add_subcommand("list", "One line per report: number, file, code, text 1");
  auto* show = errors->add_subcommand("show", "Every field of report N");
  show->add_option("N", number, "Report number, as list gives it")->required();
  auto* clear = errors->add_subcommand("clear", "Delete the report files; says how many");
  for (CLI::App* sub : {list, show, clear}) {
    // -C and --json may also come after the subcommand.
    sub->fallthrough();
    sub->footer("Takes -C DIR (and --json, but for clear) as korvalen errors does.");
  }
  show->footer(
      "Takes -C DIR and --json as korvalen errors does; --json: number, file_name, code, text1 to "
      "text7, number1 to number3");
  errors->callback([show, clear] {
    enter_directory(directory);
    if (json && !clear->parsed()) open_document();
    if (show->parsed()) {
      Show(number);
    } else if (clear->parsed()) {
      Clear();
    } else {
      List();
    }
    close_document();
    std::fflush(stdout);
  });
}

}  // namespace korvalen::tool
