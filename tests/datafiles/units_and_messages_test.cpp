// The unit table (defaults, the K/L factors of "UNIDADES.CFG") and the table
// of default messages (which resource goes where, the fixed texts, the
// 40-character entries).
#include "korvalen/datafiles/units_and_messages.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <string>

#include "korvalen/datafiles/message_resources.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::WriteBytes;

class UnitTable : public korvalen::testing::TempDirTest {};

struct Units {
  TRegUnidades* p = nullptr;
  Units() { EXPECT_TRUE(DamePunUnidades(p)); }
  ~Units() {
    if (p != nullptr) LiberaPunUnidades(p);
  }
};

TEST_F(UnitTable, DefaultsWithoutFile) {
  Units u;
  ASSERT_NE(u.p, nullptr);
  LeerPunUnidades(u.p, 1);
  EXPECT_EQ(u.p->leading, 1);
  for (int k = 1; k <= kUnitMagnitudes; ++k) {
    const int i = k - 1;
    EXPECT_EQ(u.p->base_factor[i], 1.0) << k;
    EXPECT_STREQ(u.p->unit_label[i], L"") << k;
    EXPECT_EQ(u.p->first_small_integer[i], k == 10 || k == 18 ? 2 : 3) << k;
    EXPECT_EQ(u.p->second_small_integer[i], 3) << k;
    EXPECT_EQ(u.p->conversion_factor[i], 1.0) << k;
  }
}

TEST_F(UnitTable, ModeSelectsTheLetter) {
  WriteBytes("UNIDADES.CFG",
             "# units of the workshop\r\n"
             "K005 25.4 ;\r\n"
             "L005 1.0 ;\r\n"
             "K000 7.0 ;\r\n"  // no magnitude 0
             "K019 7.0 ;\r\n"  // nor 19
             "k006 7.0 ;\r\n"  // letters keep their case
             "K001 2.5 ;\r\n"
             "\r\n"
             "K001 3.5 ;\r\n"  // the later record wins
             "K018 0.001 ;\r\n"
             "L018 1000 ;\r\n"
             "K007 ;\r\n"        // no value: 0
             "L007 A ;\r\n"      // automatic
             "  L 9 12.5e1\r\n"  // blanks, no terminator
             "L002 " +
                 std::string(120, '9') +
                 "\r\n"  // cut at the record limit
                 "M003 5 ;\r\n");
  struct Case {
    int mode;
    std::map<int, double> factors;  // magnitudes not listed stay 1.0
  };
  const Case cases[] = {
      {1, {{5, 25.4}, {1, 3.5}, {18, 0.001}, {7, 0.0}}},
      {2, {{5, 1.0}, {18, 1000.0}, {7, 99999.999}, {9, 125.0}, {2, 1e75}}},
      {0, {{5, 1.0}, {18, 1000.0}, {7, 99999.999}, {9, 125.0}, {2, 1e75}}},
      {-3, {{5, 1.0}, {18, 1000.0}, {7, 99999.999}, {9, 125.0}, {2, 1e75}}},
  };
  for (const Case& c : cases) {
    Units u;
    LeerPunUnidades(u.p, c.mode);
    for (int k = 1; k <= kUnitMagnitudes; ++k) {
      const auto it = c.factors.find(k);
      const double expected = it != c.factors.end() ? it->second : 1.0;
      EXPECT_DOUBLE_EQ(u.p->conversion_factor[k - 1], expected)
          << "mode " << c.mode << " magnitude " << k;
      EXPECT_EQ(u.p->base_factor[k - 1], 1.0);
    }
  }
}

TEST_F(UnitTable, EmptyAndDamagedFiles) {
  struct Case {
    std::string bytes;
    double magnitude5;
    double magnitude6;
  };
  const char with_nul[] = "K005\0 25.4 ;\r\nK006 2.0 ;\r\n";
  const Case cases[] = {
      {"", 1.0, 1.0},
      {std::string(with_nul, sizeof with_nul - 1), 0.0, 2.0},  // the NUL ends the record
      {"K006 2.0 ;", 1.0, 2.0},                                // no line end
      {"K006 2.0 ;\rK005 3.0 ;\r", 1.0, 2.0},                  // carriage returns: one line
      {std::string(5000, 'K') + "\r\nK006 2.0 ;\r\n", 1.0, 2.0},
  };
  for (const Case& c : cases) {
    WriteBytes("UNIDADES.CFG", c.bytes);
    Units u;
    LeerPunUnidades(u.p, 1);
    EXPECT_EQ(u.p->conversion_factor[5 - 1], c.magnitude5) << c.bytes.substr(0, 20);
    EXPECT_EQ(u.p->conversion_factor[6 - 1], c.magnitude6) << c.bytes.substr(0, 20);
  }
}

// --- default messages ---------------------------------------------------------------------

// Entries 8 and 9 get their suffix even when their resource is missing.
TEST(DefaultMessages, WithoutLanguageModuleOnlyTheFixedTexts) {
  TRegMensDFFab* p = nullptr;
  ASSERT_TRUE(DamePunMensDFFab(p));
  std::memset(p, 0x41, sizeof *p);  // what a fresh block may hold
  LeerMensajesDefFab(p);
  for (int i = 0; i < kDefaultMessageCount; ++i) {
    const wchar_t* expected = L"";
    if (i == 32 || i == 51) expected = L"X";
    if (i == 33 || i == 52) expected = L"Y";
    if (i == 8 || i == 9) expected = L" (%)";
    EXPECT_STREQ(p->text[i], expected) << i;
  }
  LiberaPunMensDFFab(p);
}

// Which resource each entry shows, and what follows it.
struct Expected {
  unsigned resource;
  const wchar_t* fixed;
};

Expected ExpectedEntry(int i) {
  static const std::map<int, unsigned> resources = {
      {0, 13270},  {1, 13271},  {2, 13272},  {3, 13273},  {4, 13274},  {5, 13275},  {6, 13276},
      {7, 13277},  {8, 13278},  {9, 13279},  {10, 13280}, {11, 13272}, {12, 13281}, {13, 13282},
      {14, 13283}, {15, 13284}, {16, 13288}, {17, 13289}, {18, 13290}, {19, 13291}, {20, 13292},
      {21, 13293}, {22, 13294}, {31, 13362}, {43, 13285}, {44, 13286}, {45, 13287}, {49, 13280},
      {50, 13277}, {53, 13295}, {54, 13276}};
  if (i == 32 || i == 51) return {0, L"X"};
  if (i == 33 || i == 52) return {0, L"Y"};
  const auto it = resources.find(i);
  return {it != resources.end() ? it->second : 0u, L""};
}

TEST(DefaultMessages, EveryEntryFromItsResource) {
  TRegMensDFFab table;
  std::memset(&table, 0x41, sizeof table);
  korvalen::detail::fill_default_messages(table, [](unsigned id, wchar_t* buffer) {
    const std::wstring text = L"R" + std::to_wstring(id);
    text.copy(buffer, text.size());
    buffer[text.size()] = 0;
  });
  for (int i = 0; i < kDefaultMessageCount; ++i) {
    const Expected e = ExpectedEntry(i);
    std::wstring expected = e.resource != 0 ? L"R" + std::to_wstring(e.resource) : e.fixed;
    if (i == 8 || i == 9) expected += L" (%)";
    EXPECT_EQ(std::wstring(table.text[i]), expected) << i;
  }
}

TEST(DefaultMessages, LongResourcesAreCutToTheEntry) {
  struct Case {
    int resource_chars;
    std::wstring entry_0;
    std::wstring entry_8;
  };
  const Case cases[] = {
      {36, std::wstring(36, L'm'), std::wstring(36, L'm') + L" (%)"},
      {37, std::wstring(37, L'm'), std::wstring(37, L'm') + L" (%"},
      {40, std::wstring(40, L'm'), std::wstring(40, L'm')},
      {1024, std::wstring(40, L'm'), std::wstring(40, L'm')},
  };
  for (const Case& c : cases) {
    TRegMensDFFab table;
    const int n = c.resource_chars;
    korvalen::detail::fill_default_messages(table, [n](unsigned, wchar_t* buffer) {
      for (int k = 0; k < n; ++k) buffer[k] = L'm';
      buffer[n] = 0;
    });
    EXPECT_EQ(std::wstring(table.text[0]), c.entry_0) << n;
    EXPECT_EQ(std::wstring(table.text[8]), c.entry_8) << n;
    EXPECT_STREQ(table.text[32], L"X");
    EXPECT_STREQ(table.text[23], L"");
  }
}

}  // namespace
