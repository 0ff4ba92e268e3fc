// Launch parameters of the machine configuration: the new file byte for byte,
// the in-place rewrite with and without the launch switch, and the option
// identifiers and option states of the machine option files.
#include "korvalen/settings/machine_parameters.h"

#include <gtest/gtest.h>

#include <string>

#include "settings_file_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Exists;
using korvalen::testing::ReadBytes;
using korvalen::testing::Records;
using korvalen::testing::WriteBytes;

class MachineParameters : public korvalen::testing::TempDirTest {};

// Every output, the texts joined by '|'.
std::wstring Read() {
  int a000 = -1, a001 = -1, a009 = -1;
  LONG a002 = -1, a003 = -1;
  wchar_t t[5][81] = {L"x", L"x", L"x", L"x", L"x"};
  ReadCfgsMachParameters(a000, a001, a002, a003, t[0], t[1], t[2], t[3], t[4], a009);
  std::wstring out = std::to_wstring(a000) + L" " + std::to_wstring(a001) + L" " +
                     std::to_wstring(a002) + L" " + std::to_wstring(a003);
  for (const wchar_t* text : t) out += L"|" + std::wstring(text);
  return out + L"|" + std::to_wstring(a009);
}

const std::string kHeader = Records(
    "#--------------------------------------------------------------------#|"
    "# CFGSMACH Aplication launch parameters                              #|"
    "#--------------------------------------------------------------------#");

TEST_F(MachineParameters, NewFileThenRewrites) {
  EXPECT_EQ(Read(), L"1 0 800 600||||||0");
  WriteCfgsMachParameters(1, 1024, 768);
  EXPECT_EQ(ReadBytes("CFGSMACH.CFG"),
            kHeader + Records("A000 1|A001 ON|A002 1024|A003 768|A004 CFGSMACH.OPC"));
  // The bare A004 of a new file reads as no text.
  EXPECT_EQ(Read(), L"1 1 1024 768||||||0");
  // Switch ON keeps the dimensions; OFF writes them within the room the
  // records have: "OFF" into "ON" and 12345 into "1024" are cut.
  WriteCfgsMachParameters(1, 1, 2);
  WriteCfgsMachParameters(0, 12345, 5);
  EXPECT_EQ(ReadBytes("CFGSMACH.CFG"),
            kHeader + Records("A000 1|A001 OF|A002 1234|A003 5  |A004 CFGSMACH.OPC"));
  EXPECT_EQ(Read(), L"1 0 1234 5||||||0");
  EXPECT_FALSE(Exists("AUXCFGSMACH.CFG"));
}

TEST_F(MachineParameters, RecordsOfAnExistingFile) {
  const std::string texts = Records(
      "A004 \"M.OPC\" ;|A005 \"L.OPC\" ;|A006 \"P.OPC\" ;|A007 \"Z.OPC\" ;|A008 \"A.OPC\" ;");
  WriteBytes("CFGSMACH.CFG", Records("A009 3 ;||A001 OFF ;|A002 1 ;|A002 900   ;|A003 700   ;") +
                                 texts + Records("A010 5 ;|B001 ON ;|   "));
  EXPECT_EQ(Read(), L"1 0 900 700|M.OPC|L.OPC|P.OPC|Z.OPC|A.OPC|3");
  // A value longer than its room runs over the terminator.
  WriteCfgsMachParameters(0, -40, 1500);
  EXPECT_EQ(ReadBytes("CFGSMACH.CFG"),
            Records("A009 3 ;|A001 OFF ;|A002 -40|A002 -40   ;|A003 1500  ;") + texts +
                Records("A010 5 ;|B001 ON ;"));
}

TEST_F(MachineParameters, OptionIdentifiers) {
  const struct {
    int group, item;
    const wchar_t* id;
  } cases[] = {{1, 1, L"21 1"},   {1, 3, L"21 6"},    {1, 4, L"21 7"},   {2, 1, L"21 3"},
               {2, 4, L"21 6"},   {3, 1, L"22 9 1"},  {3, 7, L"22 9 7"}, {4, 4, L"19 4"},
               {5, 7, L"22 1 7"}, {7, 6, L"22 10 6"}, {8, 5, L"22 8 5"}, {1, 5, L""},
               {3, 8, L""},       {6, 1, L""},        {9, 1, L""},       {4, 0, L""},
               {0, 1, L""},       {8, 6, L""},        {7, 7, L""},       {2, -1, L""}};
  for (const auto& c : cases) {
    wchar_t id[kCfgOptionIDChars + 1] = L"junkjunk";
    GetCfgOptionID(c.group, c.item, id);
    EXPECT_STREQ(id, c.id) << c.group << " " << c.item;
    EXPECT_EQ(id[kCfgOptionIDChars], 0);
  }
}

TEST_F(MachineParameters, OptionStates) {
  wchar_t line[] = L"B005 22 9 1  -3 ;x ;";
  int position = 4, state = 7;
  std::wstring read;
  while (LeerEstadoOpt(line, position, state) == 1) read += std::to_wstring(state) + L",";
  EXPECT_EQ(read, L"22,9,1,-3,0,");  // ";x" is a word like any other
  EXPECT_EQ(position, 20);
  EXPECT_EQ(state, 0);
  wchar_t unterminated[] = L"B005 1";
  position = 4;
  EXPECT_EQ(LeerEstadoOpt(unterminated, position, state), 1);
  EXPECT_EQ(LeerEstadoOpt(unterminated, position, state), 1);  // past the end: 0
  EXPECT_EQ(state, 0);
}

}  // namespace
