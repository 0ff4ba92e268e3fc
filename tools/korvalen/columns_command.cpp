// korvalen columns TABLE [-C DIR]: the columns of one table of the suite as
// "CFGSTABS.CFG" arranges them, by position: kind, width, unit magnitude and
// heading. Headings that come from the programs themselves show as
// "<text n>"; those of the language module are empty until one is loaded.
#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "commands.h"
#include "json_output.h"
#include "korvalen/korvalen.h"
#include "text_output.h"
#include "working_directory.h"

namespace korvalen::tool {
namespace {

// Stand-ins for the texts each program passes its table's reader.
const wchar_t* const kTexts[] = {L"<text 1>", L"<text 2>",  L"<text 3>", L"<text 4>",
                                 L"<text 5>", L"<text 6>",  L"<text 7>", L"<text 8>",
                                 L"<text 9>", L"<text 10>", L"<text 11>"};

using Reader = void (*)(TRegTWin*&, TRegTWin*&);

// Each table's reader, with all of the file and the stand-in texts.
template <auto Read>
void ThreeTexts(TRegTWin*& first, TRegTWin*& last) {
  Read(0, 1, kTexts[0], kTexts[1], kTexts[2], first, last);
}
template <auto Read>
void ElevenTexts(TRegTWin*& first, TRegTWin*& last) {
  Read(0, 1, kTexts[0], kTexts[1], kTexts[2], kTexts[3], kTexts[4], kTexts[5], kTexts[6], kTexts[7],
       kTexts[8], kTexts[9], kTexts[10], first, last);
}
void PartsWindow(TRegTWin*& first, TRegTWin*& last) {
  LeerFichCfgPieWinTablas(0, 1, kTexts[0], kTexts[1], kTexts[2], kTexts[3], kTexts[4], kTexts[5],
                          kTexts[6], kTexts[7], first, last);
}

const std::map<std::string, Reader> kTables = {
    {"parts", ElevenTexts<LeerFichCfgPieTablas>},
    {"figures", ThreeTexts<LeerFichCfgFigTablas>},
    {"sheets", ThreeTexts<LeerFichCfgChpTablas>},
    {"lists", ElevenTexts<LeerFichCfgLstTablas>},
    {"parts-window", PartsWindow},
    {"sheets-window", ThreeTexts<LeerFichCfgChpWinTablas>},
};

std::vector<std::string> TableNames() {
  std::vector<std::string> names;
  for (const auto& [name, reader] : kTables) names.push_back(name);
  return names;
}

void Show(const std::string& table) {
  TRegTWin* first = nullptr;
  TRegTWin* last = nullptr;
  kTables.at(table)(first, last);
  std::vector<const TRegTWin*> columns;
  for (const TRegTWin* c = first; c != nullptr; c = c->next) columns.push_back(c);
  std::stable_sort(columns.begin(), columns.end(),
                   [](const TRegTWin* a, const TRegTWin* b) { return a->position < b->position; });
  std::wstring heading = L"CFGSTABS.CFG";
  if (!installation_has(L"CFGSTABS.CFG")) heading += L" (not found)";
  print(heading + L", " + std::wstring(table.begin(), table.end()) + L" table: " +
        std::to_wstring(columns.size()) + L" columns\n");
  if (!columns.empty()) print(L"  position  kind  width  unit  heading\n");
  section()["file"] = "CFGSTABS.CFG";
  section()["found"] = installation_has(L"CFGSTABS.CFG");
  section()["table"] = table;
  section()["columns"] = Json::array();
  for (const TRegTWin* c : columns) {
    wchar_t line[kColumnTitleChars + 64];
    sPrintf(line, L"  %8d  %4d  %5d  %4d  %s\n", c->position, c->kind, c->width, c->unit_magnitude,
            c->title);
    section()["columns"].push_back({{"position", c->position},
                                    {"kind", c->kind},
                                    {"width", c->width},
                                    {"unit", c->unit_magnitude},
                                    {"heading", utf8(c->title)}});
    std::wstring text = line;
    // An empty heading leaves blanks at the end of the line.
    while (text.size() > 1 && text[text.size() - 2] == L' ') text.erase(text.size() - 2, 1);
    print(text);
  }
  LiberarLista(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last));
  std::fflush(stdout);
}

}  // namespace

void add_columns_commands(CLI::App& app) {
  auto* columns =
      app.add_subcommand("columns", "Show how a table of the suite lays out its columns");
  static std::string table;
  static std::string directory;
  static bool json = false;
  add_json_flag(*columns, json,
                "file, found, table, columns [{position, kind, width, unit, heading}] in position "
                "order");
  columns
      ->add_option("TABLE", table, "parts, figures, sheets, lists, parts-window or sheets-window")
      ->required()
      ->check(CLI::IsMember(TableNames()));
  add_directory_option(*columns, directory);
  columns->callback([] {
    enter_directory(directory);
    if (json) open_document();
    Show(table);
    close_document();
  });
}

}  // namespace korvalen::tool
