// Punching material records of the product settings file: the reader's stop
// after A382 against the writer's whole-file rewrite, outputs without records
// left alone, and the records around them untouched.
#include "korvalen/settings/punching_materials.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "korvalen/settings/system_parameters.h"
#include "settings_file_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Exists;
using korvalen::testing::Lines;
using korvalen::testing::ReadBytes;
using korvalen::testing::TextRecord;
using korvalen::testing::WriteBytes;

class PunchingMaterials : public korvalen::testing::TempDirTest {};

// Every output, read over outputs set to -1 and a text "unset".
std::wstring Read() {
  int i[9] = {-1, -1, -1, -1, -1, -1, -1, -1, -1};
  double r[5] = {-1, -1, -1, -1, -1};
  wchar_t text[501] = L"unset";
  LeerDatosCfgPnzMat(i[0], i[1], i[2], i[3], i[4], i[5], i[6], r, i[7], i[8], text);
  std::wstring out;
  for (int v : i) out += std::to_wstring(v) + L" ";
  for (double v : r) out += std::to_wstring(v) + L" ";
  return out + text;
}

const std::string kOthers = Lines({"# product", "A238 1 ;", "A302 ON ;", "A338 1.5 ;", "A343 9 ;",
                                   "A347 9 ;", TextRecord("A362", "Acero")});

TEST_F(PunchingMaterials, ReadingStopsAfterA382WritingDoesNot) {
  EXPECT_EQ(Read(),
            L"-1 -1 -1 -1 -1 -1 -1 -1 -1 -1.000000 -1.000000 -1.000000 -1.000000 "
            L"-1.000000 unset");  // no file
  WriteBytes("MIRSELPR.CFG", kOthers + Lines({"A382 4 ;", "", "A348 5 ;", "A400 7 ;"}));
  EXPECT_EQ(Read(),
            L"-1 -1 -1 -1 -1 -1 4 1 -1 1.500000 -1.000000 -1.000000 -1.000000 "
            L"-1.000000 Acero");

  const double reals[5] = {0.25, 1, 2, 3, 99999.999};
  EscribirDatosCfgPnzMat(348, 349, 350, 380, 381, 365, 382, reals, 238, 239, L"Aluminio 5754");
  EXPECT_EQ(ReadBytes("MIRSELPR.CFG"),
            Lines({"# product", "A238 238", "A302 ON ;", "A338 0.250", "A343 9 ;", "A347 9 ;",
                   TextRecord("A362", "Aluminio 5754"), "A382 382", "A348 348", "A400 7 ;"}));
  EXPECT_FALSE(Exists("AUXLPUNZ.CFG"));
  int basic = 0;
  LeerSiOpcBasicas(basic);
  EXPECT_EQ(basic, 1);
}

TEST_F(PunchingMaterials, RoundTripAndFilesWithoutTheRecords) {
  const std::string records = Lines(
      {"A238 0     ;", "A239 0     ;", "A338 0        ;", "A339 0        ;", "A340 0        ;",
       "A341 0        ;", "A342 0        ;", "A348 0     ;", "A349 0     ;", "A350 0     ;",
       TextRecord("A362", ""), "A365 0     ;", "A380 0     ;", "A381 0     ;", "A382 0     ;"});
  WriteBytes("MIRSELPR.CFG", records);
  const double reals[5] = {0.5, -1.25, 1000, 99999.999, 0};
  EscribirDatosCfgPnzMat(1, 2, 3, 4, 5, 6, 7, reals, 8, 9, nullptr);
  EXPECT_EQ(Read(), L"1 2 3 4 5 6 7 8 9 0.500000 -1.250000 1000.000000 99999.999000 0.000000 ");
  EscribirDatosCfgPnzMat(0, 0, 0, 0, 0, 0, 0, nullptr, 0, 0, L"");
  EXPECT_EQ(Read(), L"0 0 0 0 0 0 0 0 0 0.500000 -1.250000 1000.000000 99999.999000 0.000000 ");

  WriteBytes("MIRSELPR.CFG", Lines({"# product", "A238 1 ;", "", "  ", "A343 1 ;"}));
  EscribirDatosCfgPnzMat(1, 2, 3, 4, 5, 6, 7, reals, 8, 9, L"x");
  EXPECT_EQ(ReadBytes("MIRSELPR.CFG"), Lines({"# product", "A238 8 ;", "A343 1 ;"}));
  std::filesystem::remove("MIRSELPR.CFG");
  EscribirDatosCfgPnzMat(1, 2, 3, 4, 5, 6, 7, reals, 8, 9, L"x");
  EXPECT_FALSE(Exists("MIRSELPR.CFG"));
  EXPECT_FALSE(Exists("AUXLPUNZ.CFG"));
}

}  // namespace
