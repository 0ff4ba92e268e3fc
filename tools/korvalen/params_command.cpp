// korvalen params [-C DIR]: the installation-wide settings as the suite's
// programs read them at start: "param.sys", "PEQUENO.SYS" and the version in
// "SERVPACK.DTS". Missing files show the defaults the programs then use.
#include <cstdio>
#include <string>

#include "commands.h"
#include "json_output.h"
#include "korvalen/korvalen.h"
#include "text_output.h"
#include "working_directory.h"

namespace korvalen::tool {
namespace {

constexpr int kParamChars = 257;

void Field(const wchar_t* label, const std::wstring& value) { print_field(label, value, 2); }

std::wstring Number(int value) { return std::to_wstring(value); }
std::wstring Switch(int value) { return value != 0 ? L"on" : L"off"; }

void ShowParamSys() {
  int language = 0, units = 0, cp1 = 0, cp2 = 0, wos = 0;
  wchar_t server[kParamChars], files[kParamChars], shared[kParamChars], company[kParamChars],
      title[kParamChars], backup[kParamChars], style[kParamChars];
  const int found = LeerDatosParamSys(language, server, files, shared, units, cp1, cp2, company,
                                      title, wos, backup, style);
  print(found ? L"param.sys\n" : L"param.sys (not found: defaults)\n");
  open_section("param_sys");
  section()["found"] = found != 0;
  section()["language"] = language;
  if (!json_wanted()) Field(L"Language", Number(language));
  Field(L"Company", company);
  Field(L"Project title", title);
  Field(L"WOS title", Switch(wos));
  Field(L"Server name", server);
  Field(L"Database files directory", files);
  Field(L"Shared server directory", shared);
  Field(L"International units", Switch(units));
  Field(L"Database file backup", backup);
  Field(L"Style", style);
  Field(L"Double-byte code page", cp1 != 0 && cp2 != 0 ? L"yes" : L"no");
}

void ShowPackaging() {
  int first = 0, second = 0;
  wchar_t box[81];
  LeerPequeno(first, box, second);
  print(installation_has(L"PEQUENO.SYS") ? L"PEQUENO.SYS\n"
                                         : L"PEQUENO.SYS (not found: defaults)\n");
  open_section("pequeno_sys");
  section()["found"] = installation_has(L"PEQUENO.SYS");
  Field(L"A000", Number(first));
  Field(L"Box file (A001)", box);
  Field(L"A002", Number(second));
}

void ShowVersion() {
  open_section("servpack_dts");
  section()["found"] = installation_has(L"SERVPACK.DTS");
  if (!installation_has(L"SERVPACK.DTS")) {
    print(L"SERVPACK.DTS (not found)\n");
    return;
  }
  int out[7] = {};
  DameVersionYServicePack(out[0], out[1], out[2], out[3], out[4], out[5], out[6]);
  section()["values"] = out;
  print(L"SERVPACK.DTS\n");
  Field(L"Version", Number(out[0]) + L"." + Number(out[1]));
  Field(L"Service pack", Number(out[2]));
  Field(L"Further values",
        Number(out[3]) + L" " + Number(out[4]) + L" " + Number(out[5]) + L" " + Number(out[6]));
}

}  // namespace

void add_params_commands(CLI::App& app) {
  auto* params =
      app.add_subcommand("params", "Show param.sys, PEQUENO.SYS and the version in SERVPACK.DTS");
  static std::string directory;
  static bool json = false;
  add_directory_option(*params, directory);
  add_json_flag(*params, json,
                "param_sys {found, language, company, project_title, ...}, pequeno_sys {found, "
                "a000, box_file_a001, a002}, servpack_dts {found, version, service_pack, values}");
  params->callback([] {
    enter_directory(directory);
    if (json) open_document();
    ShowParamSys();
    ShowPackaging();
    ShowVersion();
    close_document();
    std::fflush(stdout);
  });
}

}  // namespace korvalen::tool
