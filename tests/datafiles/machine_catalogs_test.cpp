// The machine, importer and exporter catalogues: entries with their fields
// carried over, the not-installed lists paired by place, the exact bytes of
// the installed files; a machine's file names and the process-file settings.
#include "korvalen/datafiles/machine_catalogs.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "korvalen/datafiles/column_text_lengths.h"
#include "korvalen/datafiles/machine_files.h"
#include "process_support.h"
#include "state_file_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Lines;
using korvalen::testing::NameList;
using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;
using Names = std::vector<std::wstring>;

class MachineCatalogs : public korvalen::testing::TempDirTest {};

std::string Entry(const std::string& maker, const std::string& name, const std::string& code1,
                  const std::string& code2) {
  return Lines({"A000 \"" + maker + "\" ;", "A001 \"" + name + "\" ;", "A002 \"" + code1 + "\" ;",
                "A003 \"" + code2 + "\" ;"});
}

// Cut-short entries, missing records, long texts and foreign records.
TEST_F(MachineCatalogs, EntriesCarryTheirFieldsOver) {
  WriteBytes("LISTPOST.ALL",
             "# machines\r\n" + Entry("Ebro", "LASER3015", "PPLASER", "LST") +
                 // no A000: the maker stays; no A003 yet: no entry
                 "A001 \"LASER4020\" ;\r\nA002 \"PPLASER4\" ;\r\nB003 \"x\" ;\r\nA004 \"x\" ;\r\n"
                 "A003 \"LS4\" ;\r\n"
                 // an entry without its A003 is lost; texts are cut to their buffers
                 "A001 \"LOST\" ;\r\nA000 \"" +
                 std::string(80, 'm') + "\" ;\r\nA001 \"P\" ;\r\nA002 \"" + std::string(20, 'c') +
                 "\" ;\r\nA003 \"" + std::string(13, 'd') + "\" ;\r\nA003 \"again\" ;\r\n");
  korvalen::testing::OwnedList<TRegListaMaqFic> list;
  list.first = reinterpret_cast<TRegListaMaqFic*>(1);
  DameListaMaqDeFichero(L"LISTPOST.ALL", list.first, list.last);
  Names rows;
  for (const TRegListaMaqFic* e = list.first; e != nullptr; e = e->next) {
    rows.push_back(std::wstring(e->maker) + L"|" + e->name + L"|" + e->first_code + L"|" +
                   e->second_code);
  }
  // The record line is cut at 80 characters, the maker with it.
  const std::wstring m(74, L'm');
  const std::wstring c(12, L'c');
  EXPECT_EQ(rows,
            (Names{L"Ebro|LASER3015|PPLASER|LST", L"Ebro|LASER4020|PPLASER4|LS4",
                   m + L"|P|" + c + L"|" + std::wstring(12, L'd'), m + L"|P|" + c + L"|again"}));
  EXPECT_EQ(list.last->previous->next, list.last);
  korvalen::testing::OwnedList<TRegListaMaqFic> none;
  DameListaMaqDeFichero(L"NONE.ALL", none.first, none.last);
  EXPECT_EQ(none.first, nullptr);
}

TEST_F(MachineCatalogs, MakersWithoutRepeats) {
  WriteBytes("LISTPOST.ALL", Entry("Ebro", "A", "a", "a") + Entry("Ebro", "B", "b", "b") +
                                 Entry("Jalon", "C", "c", "c") + Entry("Ebro", "D", "d", "d"));
  NameList all, makers;
  ObtenerListaFabricantes(L"LISTPOST.ALL", all.first, all.last, makers.first, makers.last);
  EXPECT_EQ(all.Names(), (Names{L"Ebro", L"Ebro", L"Jalon", L"Ebro"}));
  EXPECT_EQ(makers.Names(), (Names{L"Ebro", L"Jalon"}));
}

struct CatalogKind {
  const char* catalog;
  const char* installed;
  decltype(&DameLasListasDeMaquinas) lists;
  decltype(&ActualizaMaquinasInstal) install;
};
constexpr CatalogKind kKinds[] = {
    {"LISTPOST.ALL", "LISTPOST.CFG", DameLasListasDeMaquinas, ActualizaMaquinasInstal},
    {"LISTIMPO.ALL", "LISTIMPO.CFG", DameLasListasDeImportadores, ActualizaImportadoresInstal},
    {"LISTEXPO.ALL", "LISTEXPO.CFG", DameLasListasDeExportadores, ActualizaExportadoresInstal},
};

// The four lists, one after the other, each closed by "|".
Names ListsOf(const CatalogKind& kind) {
  NameList l[4];
  kind.lists(l[0].first, l[0].last, l[1].first, l[1].last, l[2].first, l[2].last, l[3].first,
             l[3].last);
  Names all;
  for (const NameList& list : l) {
    for (const std::wstring& name : list.Names()) all.push_back(name);
    all.push_back(L"|");
  }
  return all;
}

// The second entry lacks its A000: names and makers pair by place, wrongly,
// and W1 stays available because the makers end before it.
TEST_F(MachineCatalogs, InstalledEntriesLeaveTheAvailableOnes) {
  const std::string catalog = Entry("Ebro", "L1", "a", "b") +
                              Lines({"A001 \"L2\" ;", "A002 \"c\" ;", "A003 \"d\" ;"}) +
                              Entry("Jalon", "P1", "e", "f") + Entry("Moncayo", "W1", "g", "h");
  for (const CatalogKind& kind : kKinds) {
    WriteBytes(kind.catalog, catalog);
    EXPECT_EQ(ListsOf(kind), (Names{L"L1", L"L2", L"P1", L"W1", L"|", L"|", L"Ebro", L"Jalon",
                                    L"Moncayo", L"|", L"|"}))
        << kind.catalog;
    WriteBytes(kind.installed, Entry("Jalon", "P1", "e", "f") + Entry("Other", "L2", "c", "d") +
                                   Entry("Moncayo", "W1", "g", "h"));
    EXPECT_EQ(ListsOf(kind), (Names{L"L1", L"W1", L"|", L"P1", L"L2", L"W1", L"|", L"Ebro", L"|",
                                    L"Jalon", L"Other", L"Moncayo", L"|"}))
        << kind.catalog;
  }
}

TEST_F(MachineCatalogs, InstalledFileRewrittenInCatalogueOrder) {
  const std::string catalog = Entry("Ebro", "L1", "PPL", "LST") +
                              Entry("Jalon", "P1", "PPP", "PUN") + Entry("Ebro", "L2", "PPL2", "");
  for (const CatalogKind& kind : kKinds) {
    WriteBytes(kind.catalog, catalog);
    NameList chosen;
    for (const wchar_t* n : {L"L2", L"NOT-THERE", L"L1"}) chosen.Add(n);
    kind.install(chosen.first);
    EXPECT_EQ(ReadBytes(kind.installed),
              Lines({"A000 \"Ebro\"", "A001 \"L1\"", "A002 \"PPL\"", "A003 \"LST\"",
                     "A000 \"Ebro\"", "A001 \"L2\"", "A002 \"PPL2\"", "A003 \"\""}))
        << kind.catalog;
    kind.install(nullptr);
    EXPECT_TRUE(std::filesystem::exists(kind.installed));
    EXPECT_EQ(ReadBytes(kind.installed), "");
  }
}

class MachineFiles : public korvalen::testing::TempDirTest {};

// Flags 5 to 8 cross the record order.
TEST_F(MachineFiles, SharedFolderFlagsFromTheirRecords) {
  const int records[] = {44, 45, 46, 47, 51, 48, 49, 50, 52, 65};
  for (int flag = 0; flag < 10; ++flag) {
    WriteBytes("MIRSELIN.CNI", Lines({"Z043 ON ;", "Z" + std::to_string(records[flag]) + " ON ;",
                                      "Z053 ON ;", "Z064 ON ;"}));
    int f[10];
    for (int& v : f) v = 7;
    FicherosMaquinaEnRed(f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7], f[8], f[9]);
    for (int i = 0; i < 10; ++i) EXPECT_EQ(f[i], i == flag ? 1 : 0) << flag << " " << i;
  }
}

// Outputs without their record keep the caller's values.
TEST_F(MachineFiles, IdentificationAndHelpSettings) {
  for (const bool file : {false, true}) {
    if (file) WriteBytes("MIRSELIN.CNI", Lines({"Z000 ON ;", "Z007 \"Planta 2\" ;", "Z035 3 ;"}));
    int flag = 5, help = 9;
    wchar_t text[81] = L"kept";
    LeerParametrosCNIIdentif(flag, text);
    LeerParametrosCNIAyuda(help);
    EXPECT_EQ(std::make_tuple(flag, std::wstring(text), help),
              file ? std::make_tuple(1, std::wstring(L"Planta 2"), 3)
                   : std::make_tuple(5, std::wstring(L"kept"), 9));
  }
}

struct FileNames {
  wchar_t n[5][kMachineFilePathChars];
  int result;
  explicit FileNames(const wchar_t* machine_file) {
    result = DameNombresFicheros(machine_file, n[0], n[1], n[2], n[3], n[4]);
  }
  Names names() const { return Names(std::begin(n), std::end(n)); }
};

TEST_F(MachineFiles, FileNamesLocalAndShared) {
  const std::wstring x = kMachineFilePlaceholder;
  EXPECT_EQ(FileNames(L"").names(), (Names{x, x, x, x, x}));
  EXPECT_EQ(FileNames(L"").result, 1);
  WriteBytes("LASER.MAQ", Lines({"C000 \"PPLASER.EXE\" ;", "C001 \"LASER.SET\" ;"}));
  WriteBytes("LASER.SET", Lines({"A019 \"third\" ;", "A026 \"fourth\" ;", "A029 \"fifth\" ;"}));
  EXPECT_EQ(FileNames(L"LASER.MAQ").names(),
            (Names{L"PPLASER.EXE", L"LASER.SET", L"third", L"fourth", L"fifth"}));
  // Z046 finds the settings in the shared folder; the others are shared
  // without looking.
  WriteBytes("DIRBDACT.SYS", "base\r\n");
  std::filesystem::create_directories("base/FilesCfg");
  WriteBytes("base/FilesCfg/LASER.SET", Lines({"A019 \"shared\" ;"}));
  WriteBytes("MIRSELIN.CNI", Lines({"Z045 ON ;", "Z046 ON ;", "Z048 ON ;", "Z051 ON ;"}));
  const std::wstring shared = L"base\\FilesCfg\\";
  EXPECT_EQ(FileNames(L"LASER.MAQ").names(), (Names{shared + L"PPLASER.EXE", shared + L"LASER.SET",
                                                    shared + L"shared", x, shared + x}));
  // Without the file there, the settings stay local; Z050 shares the fourth.
  std::filesystem::remove("base/FilesCfg/LASER.SET");
  WriteBytes("MIRSELIN.CNI", Lines({"Z046 ON ;", "Z050 ON ;"}));
  EXPECT_EQ(FileNames(L"LASER.MAQ").names(),
            (Names{L"PPLASER.EXE", L"LASER.SET", L"third", shared + L"fourth", L"fifth"}));
  std::filesystem::remove("MIRSELIN.CNI");
  WriteBytes("EMPTY.MAQ", Lines({"C000 \"P\" ;", "C001 \"\" ;"}));
  EXPECT_EQ(FileNames(L"EMPTY.MAQ").result, 0);
}

TEST_F(MachineFiles, OriginFilesAlongThePath) {
  std::filesystem::create_directories("tools");
  WriteBytes("tools/PPLASER.EXE", "");
  WriteBytes("HERE.EXE", "");
  EXPECT_EQ(ExisteFicherosOrigen(L"HERE.EXE"), 1);
  EXPECT_EQ(ExisteFicherosOrigen(L"PPLASER.EXE"), 0);
  const std::string path = korvalen::testing::Environment("PATH");
  korvalen::testing::SetEnvironment("PATH", (dir() / "tools").string() + ";" + path);
  EXPECT_EQ(ExisteFicherosOrigen(L"PPLASER.EXE"), 1);
  korvalen::testing::SetEnvironment("PATH", path);
  EXPECT_EQ(ExisteFicherosOrigen(L""), 0);
}

TEST(TextColumnLengths, Table) {
  const struct {
    int table, column, length;
  } cases[] = {{0, 0, 9},   {0, 4, 9},  {0, 11, 101}, {0, 14, 11}, {0, 15, 0},
               {1, 0, 41},  {1, 5, 30}, {1, 10, 101}, {1, 18, 11}, {1, 24, 41},
               {1, 25, 0},  {2, 4, 6},  {2, 34, 11},  {2, 35, 21}, {2, 55, 61},
               {2, 58, 41}, {2, 59, 0}, {2, -1, 0},   {3, 0, 0},   {-1, 0, 0}};
  for (const auto& c : cases)
    EXPECT_EQ(DameLngMax(c.table, c.column), c.length) << c.table << "/" << c.column;
}

}  // namespace
