// Mosaic settings: every record read into its field, the entry list built by
// the Z records (a pending entry without its close dropped, an empty entry
// from a second close), the rewrite byte for byte with the list consumed,
// and a list of 10 000 entries through both.
#include "korvalen/settings/mosaic_settings.h"

#include <gtest/gtest.h>

#include <cstring>
#include <cwchar>
#include <filesystem>
#include <string>
#include <vector>

#include "korvalen/foundation/record_list.h"
#include "settings_file_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Exists;
using korvalen::testing::ReadBytes;
using korvalen::testing::Records;
using korvalen::testing::TextRecord;
using korvalen::testing::WriteBytes;

class MosaicSettings : public korvalen::testing::TempDirTest {};

// The entries as "name/code", after checking the links and the count.
std::vector<std::wstring> Entries(const TipoRegMosaico& s) {
  std::vector<std::wstring> out;
  const TRegMosaico* previous = nullptr;
  for (const TRegMosaico* e = s.entries; e != nullptr; previous = e, e = e->next) {
    EXPECT_EQ(e->previous, previous);
    out.push_back(std::wstring(e->name) + L"/" + e->code);
  }
  EXPECT_EQ(s.entry_count, static_cast<int>(out.size()));
  return out;
}

const std::string kFile =
    Records(
        "# mosaics|A000 ON ;|A001 ON ;|A002 on ;|A003 OFF ;|A004 ON ;|A005 250   ;||A006 ON ;|"
        "A007 OFF ;|A008 ON ;|A009 OFF ;|A010 ON ;|A011 A ;") +
    TextRecord("A012", "twenty characters!!!") +
    Records("|A013 ON ;|A014 7 ;|Z000 \"Rejilla 20x20\" ;|Z001 \"R20\" ;|Z999 ;|Z999|Z000 \"" +
            std::string(90, 'n') + "\"|Z001 " + std::string(12, 'c') + "|Z999|Z000 \"pending\"");

TEST_F(MosaicSettings, EveryRecordAndTheEntries) {
  WriteBytes("MOSAICOS.CFG", kFile);
  TipoRegMosaico s;
  std::memset(&s, 0x5A, sizeof s);
  int error = 0;
  EXPECT_EQ(LeerCfgMosaicos(s, error), 1);
  EXPECT_EQ(error, 0);
  const int switches[] = {s.a001, s.a002, s.a003, s.a004, s.a006,
                          s.a007, s.a008, s.a009, s.a010, s.a013};
  EXPECT_EQ(std::vector<int>(std::begin(switches), std::end(switches)),
            (std::vector<int>{1, 1, 0, 1, 1, 0, 1, 0, 1, 1}));
  EXPECT_EQ(s.a005, 250);
  EXPECT_EQ(s.a011, 99999.999);
  EXPECT_STREQ(s.a012, L"twenty characters!!");
  EXPECT_EQ(s.spare_integer, 0);
  EXPECT_EQ(s.spare_real, 0.0);
  EXPECT_EQ(Entries(s), (std::vector<std::wstring>{L"Rejilla 20x20/R20", L"/",
                                                   std::wstring(80, L'n') + L"/cccccccccc"}));

  s.a001 = 0;
  s.a003 = 5;
  s.a005 = -12345;
  s.a011 = 2.5;
  std::wcscpy(s.a012, L"tall");
  EscribirCfgMosaicos(s);
  EXPECT_EQ(s.entries, nullptr);
  EXPECT_EQ(s.entry_count, 0);
  EXPECT_FALSE(Exists("AUXMOSAICOS.CFG"));
  EXPECT_EQ(ReadBytes("MOSAICOS.CFG"),
            Records("# mosaics|A000 ON ;|A001 OFF;|A002 ON ;|A003 ON  ;|A004 ON ;|A005 -12345;|"
                    "A006 ON ;|A007 OFF ;|A008 ON ;|A009 OFF ;|A010 ON ;|A011 2.5") +
                TextRecord("A012", "tall") +
                Records("|A013 ON ;|A014 7 ;|Z000 \"Rejilla 20x20\"|Z001 \"R20\"|Z999|Z000 \"\"|"
                        "Z001 \"\"|Z999|Z000 \"" +
                        std::string(80, 'n') + "\"|Z001 \"cccccccccc\"|Z999"));
}

TEST_F(MosaicSettings, ErrorFlagMissingFileAndBlockedWorkFile) {
  TipoRegMosaico s;
  int error = 1;
  WriteBytes("MOSAICOS.CFG", kFile);
  EXPECT_EQ(LeerCfgMosaicos(s, error), 0);  // a raised flag reads nothing
  EXPECT_EQ(error, 1);
  EXPECT_EQ(s.a001, 0);
  EXPECT_TRUE(Entries(s).empty());
  // The work file in the way: the settings are removed all the same.
  std::filesystem::create_directory("AUXMOSAICOS.CFG");
  EscribirCfgMosaicos(s);
  EXPECT_TRUE(std::filesystem::is_directory("MOSAICOS.CFG"));
  std::filesystem::remove("MOSAICOS.CFG");
  error = 0;
  EXPECT_EQ(LeerCfgMosaicos(s, error), 0);
  EXPECT_EQ(error, 0);
}

TEST_F(MosaicSettings, TenThousandEntriesWithoutASettingsFile) {
  TipoRegMosaico s{};
  TRegMosaico* last = nullptr;
  for (int i = 0; i < 10000; ++i) {
    TRegMosaico e{};
    std::swprintf(e.name, kMosaicNameChars, L"Mosaico %d", i);
    InsertarRegistro(reinterpret_cast<void**>(&s.entries), reinterpret_cast<void**>(&last), last,
                     &e, sizeof e);
  }
  EscribirCfgMosaicos(s);  // the file gets the entries alone
  const std::string bytes = ReadBytes("MOSAICOS.CFG");
  const std::string first = Records("Z000 \"Mosaico 0\"|Z001 \"\"|Z999");
  EXPECT_EQ(bytes.substr(0, first.size()), first);
  int error = 0;
  EXPECT_EQ(LeerCfgMosaicos(s, error), 0);
  const std::vector<std::wstring> entries = Entries(s);
  ASSERT_EQ(entries.size(), 10000u);
  EXPECT_EQ(entries.back(), L"Mosaico 9999/");
  EscribirCfgMosaicos(s);
  EXPECT_EQ(ReadBytes("MOSAICOS.CFG"), bytes);
}

}  // namespace
