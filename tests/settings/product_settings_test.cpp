// The product settings documents: the exact bytes the library saves, the
// updates of the settings and of the process file's connection records, the
// reading of the current settings, and the param.sys migration.
//
// Wine's msxml3 refuses the encoding label "Unicode" that real MSXML accepts,
// and the library saves new documents under it: the tests that create one
// skip themselves under Wine. The others change UTF-8 documents, which Wine
// saves as it loaded them (a loaded UTF-16 document it saves in UTF-8 under
// its UTF-16 label, which it then cannot read back).
#include "korvalen/settings/product_settings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "korvalen/drawing/xml_documents.h"
#include "settings_file_support.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::Exists;
using korvalen::testing::ReadBytes;
using korvalen::testing::RunningUnderWine;
using korvalen::testing::Utf16Le;
using korvalen::testing::WriteBytes;

// A text record line as the suite writes it.
std::string Record(const std::string& head, const std::string& value) {
  return korvalen::testing::TextRecord(head, value) + "\r\n";
}

class ProductSettings : public korvalen::testing::TempDirTest {};

constexpr const wchar_t* kDeclaration = L"<?xml version=\"1.0\" encoding=\"Unicode\"?>\r\n";

std::wstring Attribute(const wchar_t* file, const wchar_t* name) {
  BSTR value = GetAttributeValue(GetXMLMainNodeObjectFromFile(file), name);
  std::wstring text(value != nullptr ? value : L"", SysStringLen(value));
  SysFreeString(value);
  return text;
}

TEST_F(ProductSettings, CreatesTheBasicDocumentByteForByte) {
  if (RunningUnderWine()) GTEST_SKIP() << "Wine's msxml3 cannot save under the label \"Unicode\"";
  CrearIVortanCfgBasico(3, L"SRV\\SQL", L"Planta & \"2\"", L"D:\\Bases", 1, 0, 1, L"unused",
                        L"Cl<assic>");
  EXPECT_EQ(
      ReadBytes("iVortan.cfg"),
      Utf16Le(std::wstring(kDeclaration) +
              L"<LNKCFGPAR LanID=\"3\" PrdCnn=\"Planta &amp; &quot;2&quot;\" SvrType=\"1020\" "
              L"SvrName=\"SRV\\SQL\" DBName=\"Planta &amp; &quot;2&quot;\" "
              L"DBFolder=\"D:\\Bases\" UsrName=\"SYSADM\" EntName=\"ment\" L2DCnnType=\"0\" "
              L"L2DLocation=\"\" L2DUseProxy=\"0\" L2DPServer=\"\" L2DPPort=\"\" "
              L"StyRef=\"Cl&lt;assic>\" USyName=\"IMP\" AsianGrd=\"0\" SysFontT=\"1\"/>\r\n"));
  ActualizaIVortanPrd(L"Corte\tfino", L"", L"");
  EXPECT_EQ(ReadBytes("iVortan.prd"),
            Utf16Le(std::wstring(kDeclaration) + L"<PRDDATA PrdDsc=\"Corte&#x9;fino\"/>\r\n"));
}

TEST_F(ProductSettings, UpdatesKeepTheDocumentAndAddTheDeclarationWhenMissing) {
  // A document without a declaration gets one; attribute order stays, a
  // new attribute comes last.
  WriteBytes("iVortan.cfg", "<LNKCFGPAR SvrName=\"a\" LanID=\"7\"/>");
  ActualizaParametrosLFocus(0);
  if (!RunningUnderWine()) {
    EXPECT_EQ(ReadBytes("iVortan.cfg"),
              Utf16Le(std::wstring(kDeclaration) +
                      L"<LNKCFGPAR SvrName=\"a\" LanID=\"7\" USyName=\"MET\"/>\r\n"));
  }
  WriteBytes("iVortan.cfg",
             "<?xml version=\"1.0\" encoding=\"UTF-8\"?><LNKCFGPAR USyName=\"MET\"/>");
  ActualizaParametrosLFocus(5);
  EXPECT_EQ(Attribute(L"iVortan.cfg", L"USyName"), L"IMP");
  // No document: nothing is created.
  std::filesystem::remove("iVortan.cfg");
  ActualizaParametrosLFocus(1);
  EXPECT_FALSE(Exists("iVortan.cfg"));
}

TEST_F(ProductSettings, ConnectionUpdateRewritesTheProcessRecords) {
  WriteBytes("iVortan.cfg", "<?xml version=\"1.0\" encoding=\"UTF-8\"?><LNKCFGPAR UsrName=\"u\"/>");
  // Empty lines go; a line of blanks keeps the type of the record before it
  // and stays.
  WriteBytes("MIRSELIN.CNI", "# connection\r\n\r\n" + Record("R001", "old server") +
                                 Record("A001", "Talleres") + "   \r\n" +
                                 Record("R002", "old db") + Record("R003", "old user") +
                                 Record("R004", "keep"));
  ActualizaParametrosConexion(L"ADMIN", L"DBHOST", L"Planta2");
  EXPECT_EQ(ReadBytes("MIRSELIN.CNI"),
            "# connection\r\n" + Record("R001", "DBHOST") + Record("A001", "Talleres") +
                "   \r\n" + Record("R002", "Planta2") + Record("R003", "ADMIN") +
                Record("R004", "keep"));
  EXPECT_EQ(Attribute(L"iVortan.cfg", L"UsrName"), L"ADMIN");
  EXPECT_EQ(Attribute(L"iVortan.cfg", L"SvrName"), L"DBHOST");
  EXPECT_EQ(Attribute(L"iVortan.cfg", L"DBName"), L"Planta2");
  EXPECT_FALSE(Exists("AUXMRSIN.AUX"));
}

TEST_F(ProductSettings, ReadsTheCurrentSettingsOrKeepsTheCallersValues) {
  int language = 99, units = 7;
  wchar_t style[256] = L"keep", product[256] = L"keep", company[256] = L"keep";
  LeerDatosLFocus(language, style, product, units, company);
  EXPECT_EQ(language, 99);
  EXPECT_EQ(units, 7);
  EXPECT_STREQ(style, L"keep");
  EXPECT_STREQ(company, L"keep");

  WriteBytes("iVortan.cfg",
             Utf16Le(L"<?xml version=\"1.0\" encoding=\"UTF-16\"?>"
                     L"<LNKCFGPAR LanID=\"203\" StyRef=\"Modern\" USyName=\"IMP\"/>"));
  WriteBytes("IVORTAN.PRD", "<PRDDATA PrdDsc=\"Laser &amp; punch\"/>");
  WriteBytes("MIRSELIN.CNI", "A001 \"Talleres Ebro\" ;\r\n");
  LeerDatosLFocus(language, style, product, units, company);
  EXPECT_EQ(language, 203);
  EXPECT_EQ(units, 1);
  EXPECT_STREQ(style, L"Modern");
  EXPECT_STREQ(product, L"Laser & punch");
  EXPECT_STREQ(company, L"Talleres Ebro");
}

TEST_F(ProductSettings, MigratesParamSysOnce) {
  if (RunningUnderWine()) GTEST_SKIP() << "Wine's msxml3 cannot save under the label \"Unicode\"";
  WriteBytes(
      "param.sys",
      "[Language]\r\n4\r\n[Server name]\r\nSRV\r\n[Database files directory]\r\nD:\\Bases\r\n"
      "[Database file backup]\r\nD:\\Copias\\Planta2.bak\r\n[International units]\r\n0\r\n"
      "[System CodePage]\r\n932\r\n[Project title]\r\nCorte\r\n");
  WriteBytes("MIRSELIN.CNI", "A000 1 ;\r\n" + Record("R001", "x"));
  std::filesystem::create_directory("DefPer");
  TratamientoFicherosConfiguracion();
  EXPECT_FALSE(Exists("param.sys"));
  EXPECT_EQ(ReadBytes("DefPer/iVortan.cfg"), ReadBytes("iVortan.cfg"));
  EXPECT_EQ(ReadBytes("MIRSELIN.CNI"), "A000 4 ;\r\n" + Record("R001", "SRV"));
  const struct {
    const wchar_t* name;
    const wchar_t* value;
  } expected[] = {{L"LanID", L"4"},        {L"PrdCnn", L"Planta2"},
                  {L"DBName", L"Planta2"}, {L"DBFolder", L"D:\\Bases"},
                  {L"USyName", L"IMP"},    {L"AsianGrd", L"1"},
                  {L"SysFontT", L"1"},     {L"UsrName", L"SYSADM"},
                  {L"EntName", L"ment"}};
  for (const auto& e : expected) EXPECT_EQ(Attribute(L"iVortan.cfg", e.name), e.value) << e.name;
  EXPECT_EQ(Attribute(L"iVortan.prd", L"PrdDsc"), L"Corte");

  // Once migrated, nothing changes.
  const std::string cfg = ReadBytes("iVortan.cfg");
  WriteBytes("DefPer/iVortan.cfg", "stale");
  TratamientoFicherosConfiguracion();
  EXPECT_EQ(ReadBytes("iVortan.cfg"), cfg);
  EXPECT_EQ(ReadBytes("DefPer/iVortan.cfg"), "stale");
}

}  // namespace
