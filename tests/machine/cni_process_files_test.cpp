// The process-file readers on a process file with the records of several
// machines: which machine's records each machine number reads, the header
// texts and their switch, the last record winning, and what a missing file
// or missing settings leave as the caller set it.
#include "korvalen/machine/cni_process_files.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <filesystem>
#include <map>
#include <optional>
#include <sstream>
#include <string>

#include "temp_dir_test.h"

namespace {

using korvalen::testing::WriteBytes;

// The outputs a call left other than the caller's placeholders, by record (K1
// is the machine's first K text), numbers in decimal.
using Values = std::map<std::wstring, std::wstring>;

// "Z024=3;K1=PPLASER.EXE" as Values.
Values V(const std::wstring& list) {
  Values values;
  std::wstringstream in(list);
  for (std::wstring item; std::getline(in, item, L';');) {
    const std::size_t eq = item.find(L'=');
    values[item.substr(0, eq)] = item.substr(eq + 1);
  }
  return values;
}

// a with the values of b over its own.
Values operator+(Values a, const Values& b) {
  for (const auto& [name, value] : b) a.insert_or_assign(name, value);
  return a;
}

constexpr const wchar_t* kCallerText = L"(caller)";

// The names of the text outputs, then of the numbers.
Values Changed(const wchar_t* const* names, wchar_t (*texts)[81], const int* numbers, int count) {
  Values changed;
  for (int i = 0; i < 16; ++i) {
    if (std::wcscmp(texts[i], kCallerText) != 0) changed[names[i]] = texts[i];
  }
  for (int i = 16; i < count; ++i) {
    if (numbers[i - 16] != -1) changed[names[i]] = std::to_wstring(numbers[i - 16]);
  }
  return changed;
}

Values Generation(int machine, bool with_z068) {
  static const wchar_t* const kNames[] = {
      L"Z006", L"Z007", L"A100", L"A101", L"A102", L"K1",   L"K2",  L"K3",      L"K4",
      L"K5",   L"K6",   L"K7",   L"K8",   L"L1",   L"L2",   L"L3",  L"machine", L"Z024",
      L"Z018", L"Z021", L"Z022", L"Z027", L"flag", L"Z029", L"Z068"};
  wchar_t t[16][81];
  for (auto& text : t) std::wcscpy(text, kCallerText);
  int n[9] = {machine, -1, -1, -1, -1, -1, -1, -1, -1};
  if (with_z068) {
    LeerMirselPrcCNIGenPieAux(nullptr, n[0], n[1], t[0], t[1], n[2], n[3], n[4], t[2], t[3], t[4],
                              t[5], t[6], t[7], t[8], t[9], t[10], t[11], t[12], t[13], t[14],
                              t[15], n[5], n[6], n[7], n[8]);
  } else {
    LeerMirselPrcCNIGenPie(nullptr, n[0], n[1], t[0], t[1], n[2], n[3], n[4], t[2], t[3], t[4],
                           t[5], t[6], t[7], t[8], t[9], t[10], t[11], t[12], t[13], t[14], t[15],
                           n[5], n[6], n[7]);
  }
  return Changed(kNames, t, n, 25);
}

Values Import(int machine) {
  static const wchar_t* const kNames[] = {
      L"Z006", L"Z007", L"I0",   L"I1",   L"I2",   L"I3",   L"I4",      L"I5",      L"K1",
      L"K2",   L"K3",   L"L1",   L"L2",   L"L3",   L"N1",   L"company", L"machine", L"Z024",
      L"Z018", L"Z021", L"Z022", L"Z028", L"Z041", L"flag", L"Z034",    L"Z066"};
  wchar_t t[16][81];
  for (auto& text : t) std::wcscpy(text, kCallerText);
  int n[10] = {machine, -1, -1, -1, -1, -1, -1, -1, -1, -1};
  LeerMirselPrcCNIImport(nullptr, n[0], n[1], t[0], t[1], n[2], n[3], n[4], t[2], t[3], t[4], t[5],
                         t[6], t[7], t[8], t[9], t[10], t[11], t[12], t[13], t[14], n[5], n[6],
                         n[7], n[8], t[15], n[9]);
  return Changed(kNames, t, n, 26);
}

const std::string kProcessFile =
    "# Process settings of the machines of Planta 2\r\n"
    "A000 3 ;\r\nA001 \"Talleres Ebro Metal S.L.\" ;\r\n"
    "A100 \"Talleres Ebro Metal S.L.\" ;\r\nA101 \"Planta 2\" ;\r\nA102 \"Tel. 976 414 200\" ;\r\n"
    "Z006 \"D:\\Korvalen\\CNC\" ;\r\nZ007 \"D:\\Korvalen\\Importar\" ;\r\nZ018 ON ;\r\n"
    "Z021 OFF ;\r\nZ022 ON ;\r\nZ024 3 ;\r\nZ027 12 ;\r\nZ028 ON ;\r\nZ029 OFF ;\r\n"
    "Z034 ON ;\r\nZ041 OFF ;\r\nZ066 ON ;\r\nZ068 40 ;\r\n"
    "# 5: laser 3030\r\n"
    "I005 \"LASER 3030\" ;\r\nI105 \"IMPLAS.EXE\" ;\r\nI205 \".LST\" ;\r\nI305 \"Laser\" ;\r\n"
    "I405 \".DXF\" ;\r\nI505 \"D:\\Korvalen\\Importar\\Laser\" ;\r\n"
    "K105 \"PPLASER.EXE\" ;\r\nK205 \"D:\\Korvalen\\CNC\\Laser\" ;\r\nK305 \".LST\" ;\r\n"
    "K405 \"LASER 3030\" ;\r\nK505 \"%\" ;\r\nK605 \"M30\" ;\r\nK705 \"CORTE.INI\" ;\r\n"
    "K805 \"Tablas\\Laser\" ;\r\nL105 \"N10\" ;\r\nL205 \"5\" ;\r\nL305 \"G71\" ;\r\n"
    "N105 \"Chapas\\Laser\" ;\r\n"
    "# 6: punching\r\n"
    "I006 \"PUNZ 1250\" ;\r\nK106 \"PPPUNZ.EXE\" ;\r\nL106 \"N1\" ;\r\nN106 \"Chapas\" ;\r\n"
    "# 205: plasma\r\n"
    "I025 \"PLASMA 6020\" ;\r\nK125 \"PPPLASMA.EXE\" ;\r\nK225 \"D:\\Korvalen\\CNC\\Plasma\" ;\r\n"
    "L125 \"N5\" ;\r\nN125 \"Chapas\\Plasma\" ;\r\n";

// What both readers give, what each gives besides, per machine.
const Values kBoth =
    V(L"Z006=D:\\Korvalen\\CNC;Z007=D:\\Korvalen\\Importar;Z018=1;Z021=0;Z022=1;Z024=3;flag=0");
const Values kGeneration = kBoth + V(L"Z027=12;Z029=0;Z068=40");
const Values kImport = kBoth + V(L"Z028=1;Z034=1;Z041=0;Z066=1;company=Talleres Ebro Metal S.L.");
const Values kHeaders = V(L"A100=Talleres Ebro Metal S.L.;A101=Planta 2;A102=Tel. 976 414 200");
const Values kNoHeaders = V(L"A100=;A101=;A102=");
const Values kLaser =
    V(L"machine=5;K1=PPLASER.EXE;K2=D:\\Korvalen\\CNC\\Laser;K3=.LST;L1=N10;L2=5;L3=G71");
const Values kLaserGeneration = V(L"K4=LASER 3030;K5=%;K6=M30;K7=CORTE.INI;K8=Tablas\\Laser");
const Values kLaserImport =
    V(L"I0=LASER 3030;I1=IMPLAS.EXE;I2=.LST;I3=Laser;I4=.DXF;I5=D:\\Korvalen\\Importar\\Laser;"
      L"N1=Chapas\\Laser");
const Values kPlasma = V(L"machine=205;K1=PPPLASMA.EXE;K2=D:\\Korvalen\\CNC\\Plasma;L1=N5");
const Values kPlasmaImport = V(L"I0=PLASMA 6020;N1=Chapas\\Plasma");
const Values kPunching = V(L"machine=6;K1=PPPUNZ.EXE;L1=N1");
const Values kPunchingImport = V(L"I0=PUNZ 1250;N1=Chapas");

class CniProcessFiles : public korvalen::testing::TempDirTest {};

TEST_F(CniProcessFiles, EachMachineReadsItsOwnRecords) {
  const std::string z000_on = kProcessFile + "Z000 ON ;\r\n";
  const struct {
    const char* what;
    std::optional<int> settings_machine;  // LanID; none: no settings document
    int caller_machine;
    std::optional<std::string> file;  // none: no process file
    Values generation, import;
  } cases[] = {
      {"machine 5", 5, 0, z000_on, kGeneration + kHeaders + kLaser + kLaserGeneration,
       kImport + kLaser + kLaserImport},
      // m = 25: K205 is machine 5's; the records it lacks keep the caller's values.
      {"machine 205", 205, 0, z000_on, kGeneration + kHeaders + kPlasma,
       kImport + kPlasma + kPlasmaImport},
      // The last record wins, also the switch of the headers.
      {"Z000 off at last", 6, 0,
       "Z000 ON ;\r\n" + kProcessFile + "Z000 OFF ;\r\nZ024 4 ;\r\nK106 \"PPPUNZ2.EXE\" ;\r\n",
       kGeneration + kNoHeaders + kPunching + V(L"Z024=4;K1=PPPUNZ2.EXE"),
       kImport + kPunching + kPunchingImport + V(L"Z024=4;K1=PPPUNZ2.EXE")},
      {"no Z000", 6, 0, kProcessFile, kGeneration + kNoHeaders + kPunching,
       kImport + kPunching + kPunchingImport},
      // Without settings the caller's machine number stands and the flag stays 1.
      {"no settings", std::nullopt, 205, z000_on, kGeneration + kHeaders + kPlasma + V(L"flag=1"),
       kImport + kPlasma + kPlasmaImport + V(L"flag=1")},
      {"no process file", 5, 0, std::nullopt, kNoHeaders + V(L"machine=5;flag=0"),
       V(L"machine=5;flag=0")},
  };
  for (const auto& c : cases) {
    std::filesystem::remove("iVortan.cfg");
    std::filesystem::remove("MIRSELIN.CNI");
    if (c.settings_machine) {
      WriteBytes("iVortan.cfg",
                 "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<LNKCFGPAR LanID=\"" +
                     std::to_string(*c.settings_machine) +
                     "\" USyName=\"MET\" StyRef=\"Classic\"/>\r\n");
    }
    if (c.file) WriteBytes("MIRSELIN.CNI", *c.file);
    Values generation = Generation(c.caller_machine, true);
    EXPECT_EQ(generation, c.generation) << c.what;
    generation.erase(L"Z068");
    EXPECT_EQ(Generation(c.caller_machine, false), generation) << c.what;
    EXPECT_EQ(Import(c.caller_machine), c.import) << c.what;
  }
}

}  // namespace
