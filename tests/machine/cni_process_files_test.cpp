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
#include <string>

#include "temp_dir_test.h"

namespace {

using korvalen::testing::WriteBytes;

// The outputs a call left other than the caller's placeholders, by record (K1
// is the machine's first K text), numbers in decimal.
using Values = std::map<std::string, std::wstring>;

constexpr const wchar_t* kCallerText = L"(caller)";
constexpr int kCallerNumber = -1;

Values Changed(const char* const* names, int count, wchar_t (*texts)[81], const int* numbers,
               int first_number) {
  Values changed;
  for (int i = 0; i < count; ++i) {
    if (i < first_number && std::wcscmp(texts[i], kCallerText) != 0) changed[names[i]] = texts[i];
    if (i >= first_number && numbers[i - first_number] != kCallerNumber) {
      changed[names[i]] = std::to_wstring(numbers[i - first_number]);
    }
  }
  return changed;
}

Values Generation(int machine, bool with_z068) {
  static const char* const kNames[] = {"Z006", "Z007", "A100",    "A101", "A102", "K1",   "K2",
                                       "K3",   "K4",   "K5",      "K6",   "K7",   "K8",   "L1",
                                       "L2",   "L3",   "machine", "Z024", "Z018", "Z021", "Z022",
                                       "Z027", "flag", "Z029",    "Z068"};
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
  return Changed(kNames, 25, t, n, 16);
}

Values Import(int machine) {
  static const char* const kNames[] = {"Z006", "Z007",    "I0",      "I1",   "I2",   "I3",   "I4",
                                       "I5",   "K1",      "K2",      "K3",   "L1",   "L2",   "L3",
                                       "N1",   "company", "machine", "Z024", "Z018", "Z021", "Z022",
                                       "Z028", "Z041",    "flag",    "Z034", "Z066"};
  wchar_t t[16][81];
  for (auto& text : t) std::wcscpy(text, kCallerText);
  int n[10] = {machine, -1, -1, -1, -1, -1, -1, -1, -1, -1};
  LeerMirselPrcCNIImport(nullptr, n[0], n[1], t[0], t[1], n[2], n[3], n[4], t[2], t[3], t[4], t[5],
                         t[6], t[7], t[8], t[9], t[10], t[11], t[12], t[13], t[14], n[5], n[6],
                         n[7], n[8], t[15], n[9]);
  return Changed(kNames, 26, t, n, 16);
}

// a with the values of b over its own.
Values operator+(Values a, const Values& b) {
  for (const auto& [name, value] : b) a.insert_or_assign(name, value);
  return a;
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

const Values kGeneration = {{"Z006", L"D:\\Korvalen\\CNC"},
                            {"Z007", L"D:\\Korvalen\\Importar"},
                            {"Z018", L"1"},
                            {"Z021", L"0"},
                            {"Z022", L"1"},
                            {"Z024", L"3"},
                            {"Z027", L"12"},
                            {"Z029", L"0"},
                            {"Z068", L"40"}};
const Values kImport = {{"Z006", L"D:\\Korvalen\\CNC"},
                        {"Z007", L"D:\\Korvalen\\Importar"},
                        {"Z018", L"1"},
                        {"Z021", L"0"},
                        {"Z022", L"1"},
                        {"Z024", L"3"},
                        {"Z028", L"1"},
                        {"Z034", L"1"},
                        {"Z041", L"0"},
                        {"Z066", L"1"},
                        {"company", L"Talleres Ebro Metal S.L."}};
const Values kHeaders = {
    {"A100", L"Talleres Ebro Metal S.L."}, {"A101", L"Planta 2"}, {"A102", L"Tel. 976 414 200"}};
const Values kNoHeaders = {{"A100", L""}, {"A101", L""}, {"A102", L""}};
const Values kMetric = {{"flag", L"0"}};

class CniProcessFiles : public korvalen::testing::TempDirTest {};

TEST_F(CniProcessFiles, EachMachineReadsItsOwnRecords) {
  const struct {
    const char* what;
    std::optional<int> settings_machine;  // LanID; none: no settings document
    int caller_machine;
    std::optional<std::string> file;  // none: no process file
    Values generation, import;
  } cases[] = {
      {"machine 5", 5, 0, kProcessFile + "Z000 ON ;\r\n",
       kGeneration + kHeaders + kMetric +
           Values{{"machine", L"5"},
                  {"K1", L"PPLASER.EXE"},
                  {"K2", L"D:\\Korvalen\\CNC\\Laser"},
                  {"K3", L".LST"},
                  {"K4", L"LASER 3030"},
                  {"K5", L"%"},
                  {"K6", L"M30"},
                  {"K7", L"CORTE.INI"},
                  {"K8", L"Tablas\\Laser"},
                  {"L1", L"N10"},
                  {"L2", L"5"},
                  {"L3", L"G71"}},
       kImport + kMetric +
           Values{{"machine", L"5"},
                  {"I0", L"LASER 3030"},
                  {"I1", L"IMPLAS.EXE"},
                  {"I2", L".LST"},
                  {"I3", L"Laser"},
                  {"I4", L".DXF"},
                  {"I5", L"D:\\Korvalen\\Importar\\Laser"},
                  {"K1", L"PPLASER.EXE"},
                  {"K2", L"D:\\Korvalen\\CNC\\Laser"},
                  {"K3", L".LST"},
                  {"L1", L"N10"},
                  {"L2", L"5"},
                  {"L3", L"G71"},
                  {"N1", L"Chapas\\Laser"}}},
      // m = 25: K205 is machine 5's; the records it lacks keep the caller's values.
      {"machine 205", 205, 0, kProcessFile + "Z000 ON ;\r\n",
       kGeneration + kHeaders + kMetric +
           Values{{"machine", L"205"},
                  {"K1", L"PPPLASMA.EXE"},
                  {"K2", L"D:\\Korvalen\\CNC\\Plasma"},
                  {"L1", L"N5"}},
       kImport + kMetric +
           Values{{"machine", L"205"},
                  {"I0", L"PLASMA 6020"},
                  {"K1", L"PPPLASMA.EXE"},
                  {"K2", L"D:\\Korvalen\\CNC\\Plasma"},
                  {"L1", L"N5"},
                  {"N1", L"Chapas\\Plasma"}}},
      // The last record wins, also the switch of the headers.
      {"Z000 off at last", 6, 0,
       "Z000 ON ;\r\n" + kProcessFile + "Z000 OFF ;\r\nZ024 4 ;\r\nK106 \"PPPUNZ2.EXE\" ;\r\n",
       kGeneration + kNoHeaders + kMetric +
           Values{{"machine", L"6"}, {"Z024", L"4"}, {"K1", L"PPPUNZ2.EXE"}, {"L1", L"N1"}},
       kImport + kMetric +
           Values{{"machine", L"6"},
                  {"Z024", L"4"},
                  {"I0", L"PUNZ 1250"},
                  {"K1", L"PPPUNZ2.EXE"},
                  {"L1", L"N1"},
                  {"N1", L"Chapas"}}},
      {"no Z000", 6, 0, kProcessFile,
       kGeneration + kNoHeaders + kMetric +
           Values{{"machine", L"6"}, {"K1", L"PPPUNZ.EXE"}, {"L1", L"N1"}},
       kImport + kMetric +
           Values{{"machine", L"6"},
                  {"I0", L"PUNZ 1250"},
                  {"K1", L"PPPUNZ.EXE"},
                  {"L1", L"N1"},
                  {"N1", L"Chapas"}}},
      // Without settings the caller's machine number stands and the flag stays 1.
      {"no settings", std::nullopt, 205, kProcessFile + "Z000 ON ;\r\n",
       kGeneration + kHeaders +
           Values{{"machine", L"205"},
                  {"flag", L"1"},
                  {"K1", L"PPPLASMA.EXE"},
                  {"K2", L"D:\\Korvalen\\CNC\\Plasma"},
                  {"L1", L"N5"}},
       kImport + Values{{"machine", L"205"},
                        {"flag", L"1"},
                        {"I0", L"PLASMA 6020"},
                        {"K1", L"PPPLASMA.EXE"},
                        {"K2", L"D:\\Korvalen\\CNC\\Plasma"},
                        {"L1", L"N5"},
                        {"N1", L"Chapas\\Plasma"}}},
      {"no process file", 5, 0, std::nullopt, kNoHeaders + kMetric + Values{{"machine", L"5"}},
       kMetric + Values{{"machine", L"5"}}},
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
    const Values with_z068 = Generation(c.caller_machine, true);
    EXPECT_EQ(with_z068, c.generation) << c.what;
    Values without = with_z068;
    without.erase("Z068");
    EXPECT_EQ(Generation(c.caller_machine, false), without) << c.what;
    EXPECT_EQ(Import(c.caller_machine), c.import) << c.what;
  }
}

}  // namespace
