// The unit table (defaults, the K/L factors of "UNIDADES.CFG") and the table
// of default messages (which resource goes where, the fixed texts, the
// 40-character entries).
#include "korvalen/datafiles/units_and_messages.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>

#include "korvalen/datafiles/internal/message_resources.h"
#include "temp_dir_test.h"

namespace {

class UnitTable : public korvalen::testing::TempDirTest {};

struct Units {
  TRegUnidades* p = nullptr;
  Units() { EXPECT_TRUE(DamePunUnidades(p)); }
  ~Units() { LiberaPunUnidades(p); }
};

TEST_F(UnitTable, DefaultsWithoutFile) {
  Units u;
  ASSERT_NE(u.p, nullptr);
  LeerPunUnidades(u.p, 1);
  EXPECT_EQ(u.p->leading, 1);
  for (int k = 1; k <= kUnitMagnitudes; ++k) {
    EXPECT_EQ(u.p->base_factor[k - 1], 1.0) << k;
    EXPECT_STREQ(u.p->unit_label[k - 1], L"") << k;
    EXPECT_EQ(u.p->first_small_integer[k - 1], k == 10 || k == 18 ? 2 : 3) << k;
    EXPECT_EQ(u.p->second_small_integer[k - 1], 3) << k;
    EXPECT_EQ(u.p->conversion_factor[k - 1], 1.0) << k;
  }
}

// Mode 1 reads the K records, any other mode the L records; records of
// magnitudes outside 1 to 18, or of other letters, change nothing.
TEST_F(UnitTable, ModeSelectsTheLetter) {
  korvalen::testing::WriteBytes(
      "UNIDADES.CFG",
      "# units of the workshop\r\nK005 25.4 ;\r\nL005 1.0 ;\r\nK000 7.0 ;\r\n"
      "K019 7.0 ;\r\nk006 7.0 ;\r\nM003 5 ;\r\nK001 2.5 ;\r\n\r\nK001 3.5 ;\r\n" +
          std::string(5000, 'K') + "\r\nK018 0.001 ;\r\nL018 1000 ;\r\n");
  // Magnitudes not listed stay 1.0; the later record wins.
  const std::map<int, double> k = {{5, 25.4}, {1, 3.5}, {18, 0.001}};
  const std::map<int, double> l = {{5, 1.0}, {18, 1000.0}};
  for (int mode : {1, 2, 0, -3}) {
    Units u;
    LeerPunUnidades(u.p, mode);
    const std::map<int, double>& factors = mode == 1 ? k : l;
    for (int m = 1; m <= kUnitMagnitudes; ++m) {
      const auto it = factors.find(m);
      EXPECT_DOUBLE_EQ(u.p->conversion_factor[m - 1], it != factors.end() ? it->second : 1.0)
          << "mode " << mode << " magnitude " << m;
      EXPECT_EQ(u.p->base_factor[m - 1], 1.0);
    }
  }
}

// The resource of each entry (0: none); 32 and 51 are "X", 33 and 52 "Y";
// 8 and 9 carry the suffix " (%)", even when their resource is missing.
constexpr unsigned kResources[kDefaultMessageCount] = {
    13270, 13271, 13272, 13273, 13274, 13275, 13276, 13277, 13278, 13279, 13280,  // 0-10
    13272, 13281, 13282, 13283, 13284, 13288, 13289, 13290, 13291, 13292, 13293,  // 11-21
    13294, 0,     0,     0,     0,     0,     0,     0,     0,     13362, 0,      // 22-32
    0,     0,     0,     0,     0,     0,     0,     0,     0,     0,     13285,  // 33-43
    13286, 13287, 0,     0,     0,     13280, 13277, 0,     0,     13295, 13276,  // 44-54
};

TEST(DefaultMessages, EveryEntryFromItsResourceOrFixed) {
  // The library's loader finds no language module here; the other names each
  // resource it is asked for.
  for (const bool named : {false, true}) {
    TRegMensDFFab* p = nullptr;
    ASSERT_TRUE(DamePunMensDFFab(p));
    std::memset(p, 0x41, sizeof *p);  // what a fresh block may hold
    if (named) {
      korvalen::detail::fill_default_messages(*p, [](unsigned id, wchar_t* buffer) {
        const std::wstring text = L"R" + std::to_wstring(id);
        buffer[text.copy(buffer, text.size())] = 0;
      });
    } else {
      LeerMensajesDefFab(p);
    }
    for (int i = 0; i < kDefaultMessageCount; ++i) {
      std::wstring expected = i == 32 || i == 51 ? L"X" : i == 33 || i == 52 ? L"Y" : L"";
      if (named && kResources[i] != 0) expected = L"R" + std::to_wstring(kResources[i]);
      if (i == 8 || i == 9) expected += L" (%)";
      EXPECT_EQ(std::wstring(p->text[i]), expected) << i << (named ? " named" : "");
    }
    LiberaPunMensDFFab(p);
  }
}

TEST(DefaultMessages, LongResourcesAreCutToTheEntry) {
  const struct {
    int resource_chars;
    std::wstring entry_0, entry_8;
  } cases[] = {
      {36, std::wstring(36, L'm'), std::wstring(36, L'm') + L" (%)"},
      {37, std::wstring(37, L'm'), std::wstring(37, L'm') + L" (%"},
      {40, std::wstring(40, L'm'), std::wstring(40, L'm')},
      {1024, std::wstring(40, L'm'), std::wstring(40, L'm')},
  };
  for (const auto& c : cases) {
    TRegMensDFFab table;
    const int n = c.resource_chars;
    korvalen::detail::fill_default_messages(table, [n](unsigned, wchar_t* buffer) {
      for (int k = 0; k < n; ++k) buffer[k] = L'm';
      buffer[n] = 0;
    });
    EXPECT_EQ(std::wstring(table.text[0]), c.entry_0) << n;
    EXPECT_EQ(std::wstring(table.text[8]), c.entry_8) << n;
    EXPECT_STREQ(table.text[32], L"X");
  }
}

}  // namespace
