// `korvalen settings` and `korvalen migrate` on a copy of the sample
// installation: what settings shows (and that it changes nothing), and what
// migrate does to the installation and says it did, once.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tool_runner.h"

namespace {

namespace fs = std::filesystem;
using korvalen::testing::ReadBytes;
using korvalen::testing::RunTool;
using korvalen::testing::SampleInstallation;
using korvalen::testing::Snapshot;

class ToolSettingsAndMigrate : public korvalen::testing::ToolTest {};

TEST_F(ToolSettingsAndMigrate, SettingsShowsAndChangesNothing) {
  const struct {
    const char* arguments;
    std::vector<const char*> shown;
  } cases[] = {
      {"settings -C installation",
       {"iVortan.cfg\n  Language                    3\n  Product connection          Planta2\n",
        "  Database server             SRVTALLER\\SQLEXPRESS\n",
        "  Unit system                 MET\n  Asian grid                  0\n",
        "iVortan.prd\n  Product description         Corte y punzonado\n",
        "Database connection\n  Connection                  Planta2\n",
        "  Database folder             D:\\Korvalen\\Bases\n  User                        "
        "SYSADM\n"}},
      {"settings -C installation --machine 3",
       {"  A100 (header, if Z000 ON)   Talleres Ebro Metal S.L.\n",
        "  K103                        PPLASER.EXE\n", "  I003                        LASER3015\n",
        "  Company (A001)              Talleres"}},
      // Machine 205 owns the records of 25, and lacks some of them.
      {"settings -C installation --machine 205",
       {"machine 205 (its records: hundreds + 25)", "  K125                        PPPLASMA.EXE\n",
        "  K525                        (no record)\n", "  N125                        D:\\"}},
      {"settings -C empty --machine 3",
       {"iVortan.cfg (not found or not readable)\n", "  Server                      (local)\n",
        "MIRSELIN.CNI, machine 3 (its records: hundreds + 3)\n  (not found)\n"}},
  };
  const auto before = Snapshot("installation");
  for (const auto& c : cases) {
    const auto [status, output] = RunTool(c.arguments);
    EXPECT_EQ(status, 0) << c.arguments;
    for (const char* shown : c.shown) {
      EXPECT_NE(output.find(shown), std::string::npos) << c.arguments << "\n" << output;
    }
  }
  EXPECT_EQ(Snapshot("installation"), before);
  EXPECT_TRUE(fs::is_empty("empty"));
}

// With the documents in place migrate only retires param.sys and makes the
// default copy; without them it makes them, as the sample holds them, from
// param.sys. Either way a second run has nothing left to do.
TEST_F(ToolSettingsAndMigrate, MigrateOnce) {
  const std::string kept = "  created DefPer\n  created DefPer/iVortan.cfg\n";
  const struct {
    std::vector<const char*> removed;
    std::string said;
  } cases[] = {
      {{}, kept + "  deleted param.sys\n3 changes\n"},
      {{"iVortan.cfg", "iVortan.prd"},
       kept + "  created iVortan.cfg\n  created iVortan.prd\n  deleted param.sys\n5 changes\n"},
  };
  for (const auto& c : cases) {
    fs::remove_all("installation");
    fs::copy(SampleInstallation(), "installation", fs::copy_options::recursive);
    for (const char* name : c.removed) fs::remove(fs::path("installation") / name);
    EXPECT_EQ(RunTool("migrate -C installation"), std::make_pair(0, c.said));
    EXPECT_EQ(RunTool("migrate -C installation"),
              std::make_pair(0, std::string("Nothing changed\n")));
    for (const char* name : {"iVortan.cfg", "iVortan.prd", "MIRSELIN.CNI"}) {
      EXPECT_EQ(ReadBytes("installation/" + std::string(name)),
                ReadBytes((SampleInstallation() / name).string()))
          << name;
    }
    EXPECT_EQ(ReadBytes("installation/DefPer/iVortan.cfg"), ReadBytes("installation/iVortan.cfg"));
  }
}

}  // namespace
