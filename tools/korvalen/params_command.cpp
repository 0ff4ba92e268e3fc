// korvalen params [-C DIR]: the installation-wide settings as the suite's
// programs read them at start: "param.sys", "PEQUENO.SYS" and the version in
// "SERVPACK.DTS". Missing files show the defaults the programs then use.
#include <cstdio>
#include <string>

#include "commands.h"
#include "korvalen/korvalen.h"
#include "text_output.h"
#include "working_directory.h"

namespace korvalen::tool {
namespace {

constexpr int kParamChars = 257;

bool Exists(const wchar_t* name) { return Access(name, 0) == 0; }

std::wstring Number(int value) { return std::to_wstring(value); }
std::wstring Switch(int value) { return value != 0 ? L"on" : L"off"; }

void ShowParamSys() {
  int language = 0, units = 0, cp1 = 0, cp2 = 0, wos = 0;
  wchar_t server[kParamChars], files[kParamChars], shared[kParamChars], company[kParamChars],
      title[kParamChars], backup[kParamChars], style[kParamChars];
  const int found = LeerDatosParamSys(language, server, files, shared, units, cp1, cp2, company,
                                      title, wos, backup, style);
  print(found ? L"param.sys\n" : L"param.sys (not found: defaults)\n");
  print_field(L"Language", Number(language));
  print_field(L"Company", company);
  print_field(L"Project title", title);
  print_field(L"WOS title", Switch(wos));
  print_field(L"Server name", server);
  print_field(L"Database files directory", files);
  print_field(L"Shared server directory", shared);
  print_field(L"International units", Switch(units));
  print_field(L"Database file backup", backup);
  print_field(L"Style", style);
  print_field(L"Double-byte code page", cp1 != 0 && cp2 != 0 ? L"yes" : L"no");
}

void ShowPackaging() {
  int first = 0, second = 0;
  wchar_t box[81];
  LeerPequeno(first, box, second);
  print(Exists(L"PEQUENO.SYS") ? L"PEQUENO.SYS\n" : L"PEQUENO.SYS (not found: defaults)\n");
  print_field(L"A000", Number(first));
  print_field(L"Box file (A001)", box);
  print_field(L"A002", Number(second));
}

void ShowVersion() {
  if (!Exists(L"SERVPACK.DTS")) {
    print(L"SERVPACK.DTS (not found)\n");
    return;
  }
  int out[7] = {};
  DameVersionYServicePack(out[0], out[1], out[2], out[3], out[4], out[5], out[6]);
  print(L"SERVPACK.DTS\n");
  print_field(L"Version", Number(out[0]) + L"." + Number(out[1]));
  print_field(L"Service pack", Number(out[2]));
  print_field(L"Further values", Number(out[3]) + L" " + Number(out[4]) + L" " + Number(out[5]) +
                                     L" " + Number(out[6]));
}

}  // namespace

void add_params_commands(CLI::App& app) {
  auto* params =
      app.add_subcommand("params", "Show param.sys, PEQUENO.SYS and the version in SERVPACK.DTS");
  static std::string directory;
  add_directory_option(*params, directory);
  params->callback([] {
    if (!enter_directory(directory)) throw CLI::RuntimeError(1);
    ShowParamSys();
    ShowPackaging();
    ShowVersion();
    std::fflush(stdout);
  });
}

}  // namespace korvalen::tool
