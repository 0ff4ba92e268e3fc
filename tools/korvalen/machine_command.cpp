// korvalen machine [-C DIR]: the machine settings of an installation as the
// suite's programs read them: the launch parameters of the machine
// configuration ("CFGSMACH.CFG"), the mosaic settings with their list of
// mosaics ("MOSAICOS.CFG") and the punching material records of the product
// settings ("MIRSELPR.CFG"). Nothing is written.
#include <cstdio>
#include <string>

#include "commands.h"
#include "json_output.h"
#include "korvalen/korvalen.h"
#include "text_output.h"
#include "working_directory.h"

namespace korvalen::tool {
namespace {

constexpr int kOptionFileChars = 81;
constexpr int kMaterialChars = 501;

void Heading(const wchar_t* file, const wchar_t* missing) {
  print(std::wstring(file) + (installation_has(file) ? L"" : missing) + L"\n");
  open_section(json_key(file));
  section()["found"] = installation_has(file);
}

std::wstring Number(int value) { return std::to_wstring(value); }
std::wstring Switch(int value) { return value != 0 ? L"on" : L"off"; }
std::wstring Text(const wchar_t* text) { return text[0] != 0 ? text : L"(none)"; }

// Reals as the files hold them; an unset one is chosen by the program.
std::wstring Real(double value) {
  if (value == kRealNotSet) return L"automatic";
  wchar_t text[64];
  sPrintf(text, L"%1.3f", value);
  return text;
}

void ShowMachineParameters() {
  int launch = 0, launch_switch = 0, selector = 0;
  LONG first = 0, second = 0;
  wchar_t files[5][kOptionFileChars];
  ReadCfgsMachParameters(launch, launch_switch, first, second, files[0], files[1], files[2],
                         files[3], files[4], selector);
  Heading(L"CFGSMACH.CFG", L" (not found: defaults)");
  print_field(L"Launch value", Number(launch), 2);
  print_field(L"Keep dimensions", Switch(launch_switch), 2);
  print_field(L"Dimensions", Number(first) + L" x " + Number(second), 2);
  print_field(L"Default option file", Text(files[0]), 2);
  // A005 to A008 serve the selector values 0, 2, 1 and 3.
  const int file_of_selector[] = {1, 3, 2, 4};
  for (int value = 0; value < 4; ++value) {
    print_field(L"Option file " + Number(value), Text(files[file_of_selector[value]]), 2);
  }
  const bool listed = selector >= 0 && selector < 4;
  print_field(L"Option file in use",
              Text(files[listed ? file_of_selector[selector] : 0]) + L" (selector " +
                  Number(selector) + L")",
              2);
}

void ShowMosaics() {
  TipoRegMosaico settings;
  int error = 0;
  const int a000 = LeerCfgMosaicos(settings, error);
  Heading(L"MOSAICOS.CFG", L" (not found)");
  print_field(L"Main switch (A000)", Switch(a000), 2);
  const struct {
    int index;
    int value;
  } switches[] = {{1, settings.a001},  {2, settings.a002}, {3, settings.a003}, {4, settings.a004},
                  {6, settings.a006},  {7, settings.a007}, {8, settings.a008}, {9, settings.a009},
                  {10, settings.a010}, {13, settings.a013}};
  std::wstring on;
  for (const auto& s : switches) {
    if (s.value != 0)
      on +=
          (on.empty() ? L"A" : L" A") + std::wstring(s.index < 10 ? L"00" : L"0") + Number(s.index);
  }
  print_field(L"Switches on", on.empty() ? L"(none)" : on, 2);
  print_field(L"Value (A005)", Number(settings.a005), 2);
  print_field(L"Real (A011)", Real(settings.a011), 2);
  print_field(L"Text (A012)", Text(settings.a012), 2);
  print_field(L"Mosaics", Number(settings.entry_count), 2);
  int number = 0;
  section()["mosaic_list"] = Json::array();
  for (const TRegMosaico* e = settings.entries; e != nullptr; e = e->next) {
    wchar_t line[160];
    sPrintf(line, L"  %4d  %-10s  %s\n", ++number, e->code, e->name);
    print(line);
    section()["mosaic_list"].push_back({{"code", utf8(e->code)}, {"name", utf8(e->name)}});
  }
  TRegMosaico* last = nullptr;
  LiberarLista(reinterpret_cast<void**>(&settings.entries), reinterpret_cast<void**>(&last));
}

void ShowPunchingMaterial() {
  int a348 = 0, a349 = 0, a350 = 0, a380 = 0, a381 = 0, a365 = 0, a382 = 0, a238 = 0, a239 = 0;
  double reals[5] = {};
  wchar_t material[kMaterialChars] = L"";
  LeerDatosCfgPnzMat(a348, a349, a350, a380, a381, a365, a382, reals, a238, a239, material);
  Heading(L"MIRSELPR.CFG", L" (not found)");
  print_field(L"Punching material (A362)", Text(material), 2);
  print_field(L"A238 A239", Number(a238) + L" " + Number(a239), 2);
  std::wstring values;
  for (double r : reals) values += (values.empty() ? L"" : L" ") + Real(r);
  print_field(L"A338 to A342", values, 2);
  print_field(L"A348 A349 A350", Number(a348) + L" " + Number(a349) + L" " + Number(a350), 2);
  print_field(L"A365", Number(a365), 2);
  print_field(L"A380 A381 A382", Number(a380) + L" " + Number(a381) + L" " + Number(a382), 2);
}

}  // namespace

void add_machine_commands(CLI::App& app) {
  auto* machine = app.add_subcommand(
      "machine", "Show the machine parameter set, the mosaics and the punching material settings");
  static std::string directory;
  static bool json = false;
  add_directory_option(*machine, directory);
  add_json_flag(*machine, json,
                "cfgsmach_cfg {found, launch_value, ...}, mosaicos_cfg {found, main_switch_a000, "
                "..., mosaic_list [{code, name}]}, mirselpr_cfg {found, punching_material_a362, "
                "...}; each key the label in snake_case, values as shown");
  machine->callback([] {
    enter_directory(directory);
    if (json) open_document();
    ShowMachineParameters();
    ShowMosaics();
    ShowPunchingMaterial();
    close_document();
    std::fflush(stdout);
  });
}

}  // namespace korvalen::tool
