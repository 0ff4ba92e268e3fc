// korvalen catalog machines|importers|exporters [-C DIR]: the entries an
// installation has installed, then those of the catalogue it could install,
// each with its maker.
// korvalen catalog install|remove KIND NAME... [-C DIR]: rewrites the
// installed file from the catalogue; a name the catalogue lacks is refused,
// and then nothing is written.
// korvalen catalog formats IMP|EXP|LST|CFG [--language N] [-C DIR]: the
// formats of a kind that the installation offers in a language (by default
// its own, else English), each with its second text.
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "command_line.h"
#include "commands.h"
#include "failure.h"
#include "json_output.h"
#include "korvalen/korvalen.h"
#include "text_output.h"
#include "working_directory.h"

namespace korvalen::tool {
namespace {

struct Kind {
  const wchar_t* title;
  const wchar_t* catalog;
  const wchar_t* installed;
  decltype(&DameLasListasDeMaquinas) lists;
  decltype(&ActualizaMaquinasInstal) install;
};

const std::map<std::string, Kind> kKinds = {
    {"machines",
     {L"Machines", L"LISTPOST.ALL", L"LISTPOST.CFG", DameLasListasDeMaquinas,
      ActualizaMaquinasInstal}},
    {"importers",
     {L"Importers", L"LISTIMPO.ALL", L"LISTIMPO.CFG", DameLasListasDeImportadores,
      ActualizaImportadoresInstal}},
    {"exporters",
     {L"Exporters", L"LISTEXPO.ALL", L"LISTEXPO.CFG", DameLasListasDeExportadores,
      ActualizaExportadoresInstal}},
};

template <typename Map>
std::vector<std::string> Keys(const Map& map) {
  std::vector<std::string> names;
  for (const auto& [name, value] : map) names.push_back(name);
  return names;
}

void Free(TRegListaNombre*& first, TRegListaNombre*& last) {
  LiberarLista(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last));
}

// A name list owned here.
struct Names {
  TRegListaNombre* first = nullptr;
  TRegListaNombre* last = nullptr;
  Names() = default;
  Names(const Names&) = delete;
  Names& operator=(const Names&) = delete;
  ~Names() { Free(first, last); }
  std::vector<std::wstring> list() const {
    std::vector<std::wstring> out;
    for (const TRegListaNombre* n = first; n != nullptr; n = n->next) out.emplace_back(n->name);
    return out;
  }
  void add(const std::wstring& name) {
    TRegListaNombre node{};
    name.copy(node.name, kNameListChars - 1);
    InsertarRegistro(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last), last, &node,
                     static_cast<int>(sizeof node));
  }
};

// The entry names of a catalogue file.
std::vector<std::wstring> EntryNames(const wchar_t* file) {
  TRegListaMaqFic* first = nullptr;
  TRegListaMaqFic* last = nullptr;
  DameListaMaqDeFichero(file, first, last);
  std::vector<std::wstring> names;
  for (const TRegListaMaqFic* e = first; e != nullptr; e = e->next) names.emplace_back(e->name);
  LiberarLista(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last));
  return names;
}

bool Contains(const std::vector<std::wstring>& names, const std::wstring& name) {
  for (const std::wstring& n : names) {
    if (n == name) return true;
  }
  return false;
}

// The heading with the count, then each name beside the node of the second
// list at its place; in a JSON document, section()[key] holds them as
// {name, second_key}.
void Rows(const std::wstring& heading, const Names& names, const Names& second, const char* key,
          const char* second_key) {
  const std::vector<std::wstring> n = names.list();
  const std::vector<std::wstring> m = second.list();
  print(heading + L": " + std::to_wstring(n.size()) + L"\n");
  section()[key] = Json::array();
  for (std::size_t i = 0; i < n.size(); ++i) {
    section()[key].push_back(
        {{"name", utf8(n[i])}, {second_key, i < m.size() ? utf8(m[i]) : std::string()}});
    std::wstring row = L"  " + n[i];
    if (row.size() < 24) row.append(24 - row.size(), L' ');
    print(row + L" " + (i < m.size() ? m[i] : std::wstring()) + L"\n");
  }
}

std::wstring FileNote(const wchar_t* file) {
  return installation_has(file) ? file : std::wstring(file) + L", no such file";
}

void Section(const std::string& key, const std::wstring& heading, const wchar_t* file,
             const Names& names, const Names& makers) {
  open_section(key);
  section()["file"] = utf8(file);
  section()["found"] = installation_has(file);
  Rows(heading + L" (" + FileNote(file) + L")", names, makers, "entries", "maker");
}

void Show(const Kind& kind) {
  Names available, installed, available_makers, installed_makers;
  kind.lists(available.first, available.last, installed.first, installed.last,
             available_makers.first, available_makers.last, installed_makers.first,
             installed_makers.last);
  Section("installed", std::wstring(kind.title) + L" installed", kind.installed, installed,
          installed_makers);
  Section("available", std::wstring(kind.title) + L" available", kind.catalog, available,
          available_makers);
  std::fflush(stdout);
}

// Installs (or removes) the names; fails the command, with nothing written,
// when the catalogue lacks one of them.
void Change(const Kind& kind, const std::vector<std::string>& arguments, bool install) {
  const std::vector<std::wstring> catalog = EntryNames(kind.catalog);
  std::vector<std::wstring> names;
  bool known = true;
  for (const std::string& argument : arguments) {
    names.push_back(argument_text(argument));
    if (!Contains(catalog, names.back())) {
      print_error(std::wstring(kind.catalog) + L": no entry \"" + names.back() + L"\"");
      known = false;
    }
  }
  if (!known) fail(kind.installed, L"left as it is");
  const std::vector<std::wstring> installed = EntryNames(kind.installed);
  Names chosen;
  for (const std::wstring& name : installed) {
    if (!Contains(catalog, name)) {
      print(L"dropped: " + name + L" (installed, but not in " + kind.catalog + L")\n");
    } else if (install || !Contains(names, name)) {
      chosen.add(name);
    }
  }
  for (const std::wstring& name : names) {
    const bool was = Contains(installed, name);
    if (install && !was) chosen.add(name);
    print((install ? (was ? L"already installed: " : L"installed: ")
                   : (was ? L"removed: " : L"not installed: ")) +
          name + L"\n");
  }
  kind.install(chosen.first);
  std::fflush(stdout);
}

struct Formats {
  const wchar_t* title;
  const wchar_t* installed;  // whose entries follow, if any
};

const std::map<std::string, Formats> kFormats = {
    {"IMP", {L"Import formats", L"LISTIMPO.CFG"}},
    {"EXP", {L"Export formats", L"LISTEXPO.CFG"}},
    {"LST", {L"List formats", nullptr}},
    {"CFG", {L"Configuration formats", nullptr}},
};

void ShowFormats(const std::string& kind, int language) {
  const Formats& formats = kFormats.at(kind);
  wchar_t file[32];
  DameFicheroDeIdioma(L"LSIMPEXP", language, file);
  std::wstring heading = std::wstring(formats.title) + L" of language " +
                         std::to_wstring(language) + L" (" + FileNote(file);
  if (formats.installed != nullptr) heading += L"; then " + FileNote(formats.installed);
  Names names, texts;
  DameListasImpExpDeDirActual(language, argument_text(kind).c_str(), names.first, names.last,
                              texts.first, texts.last);
  section()["language"] = language;
  section()["file"] = utf8(file);
  section()["found"] = installation_has(file);
  Rows(heading + L")", names, texts, "formats", "text");
  std::fflush(stdout);
}

}  // namespace

void add_catalog_commands(CLI::App& app) {
  auto* catalog = app.add_subcommand(
      "catalog", "Machines, importers and exporters: installed, available, install, remove");
  catalog->require_subcommand(1);
  static std::string directory;
  static std::string kind;
  static std::vector<std::string> names;
  static bool json = false;
  for (const auto& [name, k] : kKinds) {
    auto* show = catalog->add_subcommand(name, "Show the installed and the available " + name);
    add_directory_option(*show, directory);
    add_json_flag(*show, json,
                  "installed and available, each {file, found, entries [{name, maker}]}");
    show->callback([&k = k] {
      enter_directory(directory);
      if (json) open_document();
      Show(k);
      close_document();
    });
  }
  static int language = 0;
  auto* formats = catalog->add_subcommand(
      "formats", "Show the import, export, list or configuration formats of a language");
  formats->add_option("KIND", kind, "IMP, EXP, LST or CFG")
      ->required()
      ->check(CLI::IsMember(Keys(kFormats)));
  formats->add_option("--language", language,
                      "Language number (default: the installation's, else 3)");
  add_directory_option(*formats, directory);
  add_json_flag(*formats, json, "language, file, found, formats [{name, text}]");
  formats->callback([formats] {
    enter_directory(directory);
    if (json) open_document();
    int chosen = 3;
    if (formats->count("--language") > 0) {
      chosen = language;
    } else {
      LeerElIdioma(chosen);
    }
    ShowFormats(kind, chosen);
    close_document();
  });
  for (const bool install : {true, false}) {
    auto* change = catalog->add_subcommand(install ? "install" : "remove",
                                           install ? "Add catalogue entries to the installed ones"
                                                   : "Remove entries from the installed ones");
    change->add_option("KIND", kind, "machines, importers or exporters")
        ->required()
        ->check(CLI::IsMember(Keys(kKinds)));
    change->add_option("NAME", names, "Entry names, as the catalogue spells them")->required();
    add_directory_option(*change, directory);
    change->callback([install] {
      enter_directory(directory);
      Change(kKinds.at(kind), names, install);
    });
  }
}

}  // namespace korvalen::tool
