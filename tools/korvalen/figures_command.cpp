// korvalen figures GROUP [-C DIR]: the duct figures of a group, from
// "LISTDUCT.CFG" (groups 0 to 20) or the user's "DUCTUSER.CFG" (100 to 120).
// korvalen favorites [-C DIR]: the user's favourite figures (group 9);
// favorites add N NAME adds figure N, favorites remove N takes it out.
#include <cstdio>
#include <string>

#include "command_line.h"
#include "commands.h"
#include "failure.h"
#include "json_output.h"
#include "korvalen/korvalen.h"
#include "text_output.h"
#include "working_directory.h"

namespace korvalen::tool {
namespace {

constexpr int kFavorites = 9;
constexpr int kUserGroups = 100;
constexpr int kLetters = 'Z' - 'F' + 1;

bool HasLetter(int group) {
  const int g = group >= kUserGroups ? group - kUserGroups : group;
  return g >= 0 && g < kLetters;
}

void ShowGroup(int group, const std::wstring& heading) {
  TRegFig* head = nullptr;
  TRegFig* tail = nullptr;
  LeerFicheroListaFiguras(group, head, tail);
  int count = 0;
  for (const TRegFig* f = head; f != nullptr; f = f->next) ++count;
  print(heading + L": " + std::to_wstring(count) + L"\n");
  section()["group"] = group;
  section()["figures"] = Json::array();
  for (const TRegFig* f = head; f != nullptr; f = f->next) {
    section()["figures"].push_back({{"number", f->number}, {"name", utf8(f->name)}});
    wchar_t line[kFigureNameChars + 32];
    sPrintf(line, L"  %5d  %s\n", f->number, f->name);
    print(line);
  }
  LiberarLista(reinterpret_cast<void**>(&head), reinterpret_cast<void**>(&tail));
  std::fflush(stdout);
}

std::wstring GroupHeading(int group) {
  const bool user = group >= kUserGroups;
  const wchar_t letter = static_cast<wchar_t>(L'F' + (user ? group - kUserGroups : group));
  return std::wstring(L"Group ") + std::to_wstring(group) + L" (" + letter + L" records of " +
         (user ? L"DUCTUSER.CFG" : L"LISTDUCT.CFG") + L")";
}

}  // namespace

void add_figure_commands(CLI::App& app) {
  static std::string directory;
  static bool json = false;
  const std::string keys = "group, figures [{number, name}]";
  auto* figures = app.add_subcommand("figures", "Show the duct figures of a group");
  add_json_flag(*figures, json, keys);
  static int group = 0;
  figures->add_option("GROUP", group, "0 to 20 (LISTDUCT.CFG), 100 to 120 (DUCTUSER.CFG)")
      ->required();
  add_directory_option(*figures, directory);
  figures->callback([] {
    if (!HasLetter(group)) {
      fail(L"group " + std::to_wstring(group), L"has no letter: groups are 0 to 20 and 100 to 120",
           kBadCommandLine);
    }
    enter_directory(directory);
    if (json) open_document();
    ShowGroup(group, GroupHeading(group));
    close_document();
  });

  auto* favorites =
      app.add_subcommand("favorites", "Show, add or remove the favourite duct figures");
  favorites->require_subcommand(0, 1);
  add_directory_option(*favorites, directory);
  add_json_flag(*favorites, json, "(the listing) " + keys);
  static int number = 0;
  static std::string name;
  auto* add = favorites->add_subcommand("add", "Add figure N as a favourite");
  add->add_option("N", number, "Figure number")->required();
  add->add_option("NAME", name, "Figure name")->required();
  auto* remove = favorites->add_subcommand("remove", "Take figure N out of the favourites");
  remove->add_option("N", number, "Figure number")->required();
  remove->add_option("NAME", name, "Figure name (not needed)");
  // -C may also come after add or remove.
  add->fallthrough();
  remove->fallthrough();
  add->footer("Takes -C DIR as korvalen favorites does.");
  remove->footer("Takes -C DIR as korvalen favorites does.");
  favorites->callback([add, remove] {
    if (!enter_directory(directory)) throw CLI::RuntimeError(1);
    const std::wstring figure = L"figure " + std::to_wstring(number);
    const bool favorite = IsFavorite(number, L"") != 0;
    if (add->parsed()) {
      if (!favorite) AddFavorite(number, argument_text(name).c_str());
      print((favorite ? L"a favourite already: " : L"added: ") + figure + L"\n");
    } else if (remove->parsed()) {
      if (favorite) RemoveFavorite(number, L"");
      print((favorite ? L"removed: " : L"not a favourite: ") + figure + L"\n");
    } else {
      if (json) open_document();
      ShowGroup(kFavorites, L"Favourites (O records of LISTDUCT.CFG)");
      close_document();
    }
    std::fflush(stdout);
  });
}

}  // namespace korvalen::tool
