// korvalen state [-C DIR]: the work-order state that the suite's programs pass
// to one another. Only reads: the parts-changed marker and the queue of sheets
// to redo are looked at, never consumed, and no missing file is created.
#include <cstdio>
#include <string>
#include <vector>

#include "commands.h"
#include "json_output.h"
#include "korvalen/korvalen.h"
#include "text_output.h"
#include "working_directory.h"

namespace korvalen::tool {
namespace {

constexpr int kNameChars = 40;
constexpr int kDirectoryChars = 256;
constexpr int kKeyChars = 255;

std::wstring OrNone(const wchar_t* text) {
  return text[0] != 0 ? std::wstring(text) : std::wstring(L"(none)");
}

void Field(const wchar_t* label, const std::wstring& value) { print_field(label, value, 0); }

void ShowActiveOrder() {
  if (!installation_has(L"ORDENACT.SYS")) {
    Field(L"Active work order", L"(none: no ORDENACT.SYS)");
    section()["active_work_order"] = nullptr;
    return;
  }
  wchar_t name[kNameChars + 1];
  wchar_t quote[kNameChars + 1];
  DameNombreYQuoteDeOFActiva(name, quote);
  Field(L"Active work order", OrNone(name));
  Field(L"Quote", OrNone(quote));
}

void ShowDatabase() {
  wchar_t dir[kDirectoryChars + 1];
  DameNombreDeDirBDActiva(dir);
  Field(L"Active database directory",
        installation_has(L"DIRBDACT.SYS") ? OrNone(dir) : std::wstring(L"(none: no DIRBDACT.SYS)"));
  if (!installation_has(L"DIRBDACT.SYS")) section()["active_database_directory"] = nullptr;
}

void ShowPartList() {
  wchar_t name[kNameChars + 1];
  Field(L"Part list without order",
        DamePieDeLstPieSinOF(name) ? OrNone(name) : std::wstring(L"(none)"));
}

void ShowPartsChanged() {
  Field(L"Parts changed",
        installation_has(L"CHGPIEZA.SYS") ? L"yes (CHGPIEZA.SYS waits to be seen)" : L"no");
  section()["parts_changed"] = installation_has(L"CHGPIEZA.SYS");
}

void ShowLastOrders() {
  // The reader would create the file when it is missing.
  if (!installation_has(L"LISTOFS.SYS")) {
    Field(L"Last work orders", L"(none: no LISTOFS.SYS)");
    section()["last_work_orders"] = Json::array();
    return;
  }
  TRegListaNombre* first = nullptr;
  TRegListaNombre* last = nullptr;
  LeerFicheroUltimasOFs(L"LISTOFS.SYS", first, last);
  Field(L"Last work orders", L"");
  section()["last_work_orders"] = Json::array();
  int place = 1;
  for (TRegListaNombre* n = first; n != nullptr; n = n->next, ++place) {
    if (n->name[0] == 0) continue;
    wchar_t line[300];
    sPrintf(line, L"  %2d  %s\n", place, n->name);
    print(line);
    section()["last_work_orders"].push_back({{"place", place}, {"name", utf8(n->name)}});
  }
  LiberarLista(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last));
}

// Reads the queue's pairs the way its consumer does (a key of 255 characters
// and a sheet name of 40), without taking any out.
void ShowSheetQueue() {
  FILE* f = installation_has(L"CHGCHAPA.SYS") ? fOpen(L"CHGCHAPA.SYS", L"rt") : nullptr;
  if (f == nullptr) {
    Field(L"Sheets to redo", L"(none: no CHGCHAPA.SYS)");
    section()["sheets_to_redo"] = Json::array();
    section()["empty_pairs"] = 0;
  } else {
    std::vector<std::wstring> pairs;
    Json json_pairs = Json::array();
    int empty_pairs = 0;
    wchar_t key[kKeyChars + 1];
    wchar_t sheet[kKeyChars + 1];
    for (;;) {
      LeerLineaDeFichero(f, key, kKeyChars);
      if (key[0] == 0 && std::feof(f)) break;
      LeerLineaDeFichero(f, sheet, kNameChars);
      if (key[0] == 0 && sheet[0] == 0) {
        ++empty_pairs;
      } else {
        wchar_t line[kKeyChars + kNameChars + 16];
        sPrintf(line, L"  %-24s %s\n", key, sheet);
        pairs.emplace_back(line);
        json_pairs.push_back({{"key", utf8(key)}, {"sheet", utf8(sheet)}});
      }
      if (std::feof(f)) break;
    }
    std::fclose(f);
    wchar_t count[96];
    sPrintf(count, L"%d (and %d empty)", static_cast<int>(pairs.size()), empty_pairs);
    Field(L"Sheets to redo", count);
    for (const std::wstring& p : pairs) print(p);
    section()["sheets_to_redo"] = json_pairs;
    section()["empty_pairs"] = empty_pairs;
  }
  if (installation_has(L"CHGCHAPA.AUX")) {
    Field(L"", L"CHGCHAPA.AUX present: a rewrite is running, or a program stopped in one");
  }
  section()["sheet_queue_rewrite_pending"] = installation_has(L"CHGCHAPA.AUX");
}

void ShowState() {
  ShowActiveOrder();
  ShowDatabase();
  ShowPartList();
  ShowPartsChanged();
  ShowLastOrders();
  ShowSheetQueue();
  std::fflush(stdout);
}

}  // namespace

void add_state_commands(CLI::App& app) {
  auto* state = app.add_subcommand(
      "state", "Show the active work order, database, last work orders and pending changes");
  static std::string directory;
  static bool json = false;
  add_directory_option(*state, directory);
  add_json_flag(*state, json,
                "active_work_order (null without ORDENACT.SYS), quote, active_database_directory, "
                "part_list_without_order, "
                "parts_changed (true/false), last_work_orders [{place, name}], sheets_to_redo "
                "[{key, sheet}], empty_pairs, sheet_queue_rewrite_pending");
  state->callback([] {
    enter_directory(directory);
    if (json) open_document();
    ShowState();
    close_document();
  });
}

}  // namespace korvalen::tool
