// korvalen settings [-C DIR] [--machine N]: the product settings ("iVortan.cfg"),
// the product description ("iVortan.prd"), the database connection as the
// suite's programs read it, and with --machine the values the program
// generation and import processes of machine N take from "MIRSELIN.CNI".
// Only reads: nothing in the installation changes.
#include <chrono>
#include <climits>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <sstream>
#include <string>

#include "commands.h"
#include "failure.h"
#include "json_output.h"
#include "korvalen/korvalen.h"
#include "text_output.h"
#include "working_directory.h"

namespace korvalen::tool {
namespace {

namespace fs = std::filesystem;

constexpr int kTextChars = 256;
// What the process readers leave where a machine has no record: a quoted
// text never holds a double quote, and no integer record reads as INT_MIN
// in practice.
constexpr const wchar_t* kNoText = L"\"";
constexpr int kNoNumber = INT_MIN;

void Field(const std::wstring& label, const std::wstring& value) { print_field(label, value, 2); }

// The attribute's value as the document helpers decode it.
std::wstring Attribute(const IXMLDOMNodePtr& node, const wchar_t* name) {
  BSTR value = GetAttributeValue(node, name);
  std::wstring text = value != nullptr ? value : L"";
  SysFreeString(value);
  return text;
}

void ShowProductSettings() {
  static const struct {
    const wchar_t* attribute;
    const wchar_t* label;
  } kAttributes[] = {
      {L"LanID", L"Language"},
      {L"PrdCnn", L"Product connection"},
      {L"SvrType", L"Server type"},
      {L"SvrName", L"Database server"},
      {L"DBName", L"Database name"},
      {L"DBFolder", L"Database folder"},
      {L"UsrName", L"Database user"},
      {L"EntName", L"Entity"},
      {L"DBOffset", L"Database offset"},
      {L"L2DCnnType", L"Companion connection type"},
      {L"L2DLocation", L"Companion location"},
      {L"L2DUseProxy", L"Companion uses a proxy"},
      {L"L2DPServer", L"Proxy server"},
      {L"L2DPPort", L"Proxy port"},
      {L"StyRef", L"Style"},
      {L"USyName", L"Unit system"},
      {L"AsianGrd", L"Asian grid"},
      {L"SysFontT", L"System font"},
  };
  const IXMLDOMNodePtr cfg = GetXMLMainNodeObjectFromFile(L"iVortan.cfg");
  open_section("ivortan_cfg");
  section()["found"] = cfg != nullptr;
  if (cfg == nullptr) {
    print(L"iVortan.cfg (not found or not readable)\n");
  } else {
    print(L"iVortan.cfg\n");
    for (const auto& a : kAttributes) Field(a.label, Attribute(cfg, a.attribute));
  }
  const IXMLDOMNodePtr prd = GetXMLMainNodeObjectFromFile(L"IVORTAN.PRD");
  open_section("ivortan_prd");
  section()["found"] = prd != nullptr;
  if (prd == nullptr) {
    print(L"iVortan.prd (not found or not readable)\n");
  } else {
    print(L"iVortan.prd\n");
    Field(L"Product description", Attribute(prd, L"PrdDsc"));
  }
}

std::wstring Number(int value) { return std::to_wstring(value); }
std::wstring Switch(int value) { return value != 0 ? L"on" : L"off"; }

void ShowConnection() {
  int server_type = 0, companion_type = 0, use_proxy = 0;
  double offset = 0.0;
  wchar_t connection[kTextChars], server[kTextChars], database[kTextChars], folder[kTextChars],
      user[kTextChars], password[kTextChars], entity[kTextChars], location[kTextChars],
      proxy[kTextChars];
  LeerParametrosConexionDB(server_type, connection, server, database, folder, user, password,
                           entity, location, proxy, companion_type, offset, use_proxy);
  std::wostringstream offset_text;
  offset_text << offset;
  print(L"Database connection\n");
  open_section("database_connection");
  Field(L"Connection", connection);
  Field(L"Server type", Number(server_type));
  Field(L"Server", server);
  Field(L"Database", database);
  Field(L"Database folder", folder);
  Field(L"User", user);
  Field(L"Password", password[0] != 0 ? L"(set)" : L"(none)");
  Field(L"Entity", entity);
  Field(L"Offset", offset_text.str());
  Field(L"Companion connection type", Number(companion_type));
  Field(L"Companion location", location);
  Field(L"Uses a proxy", Switch(use_proxy));
  Field(L"Proxy server", proxy);
}

// --- one machine's process values ------------------------------------------------

std::wstring Record(wchar_t type, int index) {
  std::wstring digits = std::to_wstring(index);
  if (digits.size() < 3) digits.insert(0, 3 - digits.size(), L'0');
  return type + digits;
}

// The labelled outputs of one process reader, each preset to "no record".
class Outputs {
 public:
  wchar_t* Text(std::wstring label) { return Add(std::move(label), Kind::kText).text; }
  int& Integer(std::wstring label) { return Add(std::move(label), Kind::kInteger).number; }
  int& Switch(std::wstring label) { return Add(std::move(label), Kind::kSwitch).number; }

  void Show() const {
    for (const Output& o : outputs_) {
      if (o.kind == Kind::kText ? StrCmp(o.text, kNoText) == 0 : o.number == kNoNumber) {
        Field(o.label, L"(no record)");
      } else {
        Field(o.label, o.kind == Kind::kText     ? std::wstring(o.text)
                       : o.kind == Kind::kSwitch ? tool::Switch(o.number)
                                                 : tool::Number(o.number));
      }
    }
  }

 private:
  enum class Kind { kText, kInteger, kSwitch };
  struct Output {
    std::wstring label;
    Kind kind;
    wchar_t text[kTextChars];
    int number;
  };
  Output& Add(std::wstring label, Kind kind) {
    outputs_.push_back({std::move(label), kind, {}, kNoNumber});
    StrCpy(outputs_.back().text, kNoText);
    return outputs_.back();
  }
  std::deque<Output> outputs_;  // what it hands out stays in place as it grows
};

// The outputs both readers begin with, in their order.
struct LeadingOutputs {
  int& z024;
  wchar_t* z006;
  wchar_t* z007;
  int& z018;
  int& z021;
  int& z022;
};

LeadingOutputs AddLeading(Outputs& o) {
  return {o.Integer(L"Z024"), o.Text(L"Z006"),   o.Text(L"Z007"),
          o.Switch(L"Z018"),  o.Switch(L"Z021"), o.Switch(L"Z022")};
}

// The machine's texts of one type, at 100 + m, 200 + m, ...
template <std::size_t kCount>
void AddMachineTexts(Outputs& o, wchar_t type, int m, wchar_t* (&texts)[kCount]) {
  for (std::size_t i = 0; i < kCount; ++i) {
    texts[i] = o.Text(Record(type, 100 * static_cast<int>(i + 1) + m));
  }
}

void ShowGeneration(int machine, int m) {
  Outputs o;
  int units_flag = 0;
  const LeadingOutputs s = AddLeading(o);
  wchar_t* a[3];
  for (int i = 0; i < 3; ++i) a[i] = o.Text(Record(L'A', 100 + i) + L" (header, if Z000 ON)");
  wchar_t* k[8];
  AddMachineTexts(o, L'K', m, k);
  wchar_t* l[3];
  AddMachineTexts(o, L'L', m, l);
  int& z027 = o.Integer(L"Z027");
  int& z029 = o.Switch(L"Z029");
  int& z068 = o.Integer(L"Z068");
  LeerMirselPrcCNIGenPieAux(nullptr, machine, s.z024, s.z006, s.z007, s.z018, s.z021, s.z022, a[0],
                            a[1], a[2], k[0], k[1], k[2], k[3], k[4], k[5], k[6], k[7], l[0], l[1],
                            l[2], z027, units_flag, z029, z068);
  print(L"  Program generation\n");
  open_section("machine_generation");
  o.Show();
}

void ShowImport(int machine, int m) {
  Outputs o;
  int units_flag = 0;
  const LeadingOutputs s = AddLeading(o);
  // Without a record below 100 (m of 100 or more) the reader has none to give.
  wchar_t* i0 = o.Text(m < 100 ? Record(L'I', m) : std::wstring(L"I (below 100)"));
  wchar_t* i[5];
  AddMachineTexts(o, L'I', m, i);
  wchar_t* k[3];
  AddMachineTexts(o, L'K', m, k);
  wchar_t* l[3];
  AddMachineTexts(o, L'L', m, l);
  wchar_t* n1 = o.Text(Record(L'N', 100 + m));
  int& z028 = o.Switch(L"Z028");
  int& z041 = o.Switch(L"Z041");
  int& z034 = o.Switch(L"Z034");
  wchar_t* company = o.Text(L"Company (A001)");
  int& z066 = o.Switch(L"Z066");
  LeerMirselPrcCNIImport(nullptr, machine, s.z024, s.z006, s.z007, s.z018, s.z021, s.z022, i0, i[0],
                         i[1], i[2], i[3], i[4], k[0], k[1], k[2], l[0], l[1], l[2], n1, z028, z041,
                         units_flag, z034, company, z066);
  print(L"  Import\n");
  open_section("machine_import");
  o.Show();
}

// The readers take the machine number from the product settings; to read as
// machine N they run on a copy of the process file in an empty directory of
// their own, which is removed afterwards.
void ShowMachine(int machine) {
  const int m = machine > 200 ? machine - 180 : machine;
  print(L"MIRSELIN.CNI, machine " + std::to_wstring(machine) + L" (its records: hundreds + " +
        std::to_wstring(m) + L")\n");
  if (!installation_has(L"MIRSELIN.CNI")) {
    print(L"  (not found)\n");
    return;
  }
  std::error_code error;
  const fs::path installation = fs::current_path(error);
  const fs::path scratch =
      fs::temp_directory_path(error) /
      ("korvalen-machine-" +
       std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
  if (error || !fs::create_directory(scratch, error)) {
    fail(scratch.wstring(), L"cannot make this scratch directory");
  }
  CopiarFichero(L"MIRSELIN.CNI", (scratch / "MIRSELIN.CNI").wstring().c_str());
  fs::current_path(scratch, error);
  if (error) {
    print_error(scratch.wstring() + L": cannot enter this scratch directory");
  } else {
    ShowGeneration(machine, m);
    ShowImport(machine, m);
    fs::current_path(installation, error);
  }
  fs::remove_all(scratch, error);
}

}  // namespace

void add_settings_commands(CLI::App& app) {
  auto* settings = app.add_subcommand(
      "settings",
      "Show the product settings, the database connection and, with --machine, the process "
      "values of a machine");
  static std::string directory;
  static int machine = 0;
  static bool json = false;
  add_directory_option(*settings, directory);
  add_json_flag(*settings, json,
                "ivortan_cfg {found, language, ...}, ivortan_prd {found, product_description}, "
                "database_connection {connection, server, ...}, with --machine machine_generation "
                "and machine_import {z024, ...}; keys are the labels in snake_case");
  auto* machine_option = settings->add_option("--machine", machine,
                                              "Machine number whose MIRSELIN.CNI values to show");
  settings->callback([machine_option] {
    enter_directory(directory);
    if (json) open_document();
    ShowProductSettings();
    ShowConnection();
    if (machine_option->count() > 0) ShowMachine(machine);
    close_document();
    std::fflush(stdout);
  });
}

}  // namespace korvalen::tool
