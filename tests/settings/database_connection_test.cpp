// The database connection: the network-path rule, the legacy records of the
// process file under the document's attributes, the predefined connection
// file, and the writes to both places (the database folder written whole,
// however long).
#include "korvalen/settings/database_connection.h"

#include <gtest/gtest.h>

#include <string>

#include "korvalen/drawing/xml_documents.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::ReadBytes;
using korvalen::testing::RunningUnderWine;
using korvalen::testing::Utf16Le;
using korvalen::testing::WriteBytes;

class DatabaseConnection : public korvalen::testing::TempDirTest {};

// A settings document the tests can also change under Wine, whose msxml3
// refuses the label "Unicode" and saves a loaded UTF-16 document wrongly.
void WriteSettings(const std::string& attributes) {
  WriteBytes("iVortan.cfg",
             "<?xml version=\"1.0\" encoding=\"UTF-8\"?><LNKCFGPAR " + attributes + "/>");
}

struct Connection {
  int server_type = -1, companion_type = -1, use_proxy = -1;
  double offset = -1;
  wchar_t connection[256], server[256], database[256], folder[256], user[256], password[256],
      entity[256], location[256], proxy[256];
  void Read() {
    LeerParametrosConexionDB(server_type, connection, server, database, folder, user, password,
                             entity, location, proxy, companion_type, offset, use_proxy);
  }
};

TEST_F(DatabaseConnection, FolderFollowsTheNetworkPathRule) {
  const struct {
    std::string server;
    std::string folder;
    const wchar_t* expected_server;
    const wchar_t* expected_folder;
  } cases[] = {
      {".", "Data", L".", L"Data"},
      {"(local)", "Data", L"(local)", L"Data"},
      {"DBHOST", "Data", L"DBHOST", L"\\\\DBHOST\\Data"},
      {"DBHOST", "D:\\Data", L"DBHOST", L"D:\\Data"},
      {"DBHOST", "\\\\NAS\\Data", L"DBHOST", L"\\\\NAS\\Data"},
      {"DBHOST", "", L"DBHOST", L"\\\\DBHOST\\Database$"},
      {"(local)", "", L"(local)", L"C:\\Local"},  // the local folder, record 8
      {"", "Data", L"(local)", L"Data"},
      // Local for the folder rule, not for the default share.
      {"(LOCAL)", "Data", L"(LOCAL)", L"Data"},
      {"(LOCAL)", "", L"(LOCAL)", L"\\\\(LOCAL)\\Database$"},
  };
  WriteBytes("MIRSELIN.CNI", "R008 \"C:\\Local\" ;\r\n");
  for (const auto& c : cases) {
    WriteSettings("SvrName=\"" + c.server + "\" DBFolder=\"" + c.folder + "\"");
    Connection read;
    read.Read();
    EXPECT_STREQ(read.server, c.expected_server) << c.server << " " << c.folder;
    EXPECT_STREQ(read.folder, c.expected_folder) << c.server << " " << c.folder;
  }
}

TEST_F(DatabaseConnection, DocumentOverridesTheLegacyRecords) {
  WriteBytes("MIRSELIN.CNI",
             "R001 \"OLDHOST\" ;\r\nR002 \"old\" ;\r\nR003 \"olduser\" ;\r\nR004 \"secret\" ;\r\n"
             "R006 3 ;\r\nR007 2.5 ;\r\nR009 ON ;\r\nR010 \"Planta2\" ;\r\nR013 2 ;\r\n");
  WriteSettings("DBName=\"Planta3\" SvrType=\"1020\" EntName=\"ent\"");
  Connection read;
  read.Read();
  EXPECT_STREQ(read.server, L"OLDHOST");
  EXPECT_STREQ(read.database, L"Planta3");
  EXPECT_STREQ(read.user, L"olduser");
  EXPECT_STREQ(read.password, L"secret");
  EXPECT_STREQ(read.connection, L"Planta2");
  EXPECT_STREQ(read.entity, L"ent");
  EXPECT_EQ(read.server_type, 1020);
  EXPECT_EQ(read.offset, 2.5);
  EXPECT_EQ(read.use_proxy, 1);
  EXPECT_EQ(read.companion_type, 2);
  // Without either file: the defaults.
  std::remove("MIRSELIN.CNI");
  std::remove("iVortan.cfg");
  read.Read();
  EXPECT_STREQ(read.server, L"(local)");
  EXPECT_STREQ(read.user, L"SYSADM");
  EXPECT_STREQ(read.entity, L"ment");
  EXPECT_STREQ(read.database, L"");
  EXPECT_EQ(read.server_type, 0);
}

TEST_F(DatabaseConnection, WritesBothPlacesTheFolderWhole) {
  WriteBytes("MIRSELIN.CNI",
             "R001 \"a\"        ;\r\n\r\nR005 \"f\" ;\r\nR010 \"c\"   ;\r\n"
             "R011 \"kept\" ;\r\n");
  WriteSettings("SvrName=\"a\" DBFolder=\"f\" UsrName=\"u\"");
  const std::wstring folder = L"\\\\NAS\\" + std::wstring(400, L'd');
  ActualizaParametrosConexionDB(L"DBHOST", L"db", folder.c_str(), L"Cnn");
  EXPECT_EQ(ReadBytes("MIRSELIN.CNI"), "R001 \"DBHOST\"   ;\r\nR005 \"\\\\NAS\\" +
                                           std::string(400, 'd') +
                                           "\"\r\nR010 \"Cnn\" ;\r\nR011 \"kept\" ;\r\n");
  BSTR written = GetAttributeValue(GetXMLMainNodeObjectFromFile(L"iVortan.cfg"), L"SvrName");
  EXPECT_STREQ(written, L"DBHOST");
  SysFreeString(written);

  wchar_t server[256];
  EXPECT_EQ(EscribirElServidor(L"OTHER"), 1);
  EXPECT_EQ(LeerElServidor(server), 1);
  EXPECT_STREQ(server, L"OTHER");
  double offset = -1;
  LeerOffsetDB(offset);
  EXPECT_EQ(offset, 0.0);
  WriteSettings("DBOffset=\"42.9\"");
  LeerOffsetDB(offset);
  EXPECT_EQ(offset, 42.0);
}

TEST_F(DatabaseConnection, PredefinedConnectionFile) {
  if (RunningUnderWine()) GTEST_SKIP() << "Wine's msxml3 cannot save under the label \"Unicode\"";
  CrearConexionPredefinida(3, L"DBHOST", L"Planta2", L"D:\\Bases", 0);
  EXPECT_EQ(ReadBytes("PrdfCnn/Planta2.cnn"),
            Utf16Le(L"<?xml version=\"1.0\" encoding=\"Unicode\"?>\r\n<CNN stp=\"1020\" "
                    L"svr=\"DBHOST\" db=\"Planta2\" dbfld=\"D:\\Bases\" ent=\"ment\" l2dtyp=\"0\" "
                    L"l2dloc=\"\" l2dupx=\"0\" l2dpsv=\"\" l2dppt=\"\"/>\r\n"));
  // No settings document before: it is created pointing at the connection.
  wchar_t server[256];
  EXPECT_EQ(LeerElServidor(server), 1);
  EXPECT_STREQ(server, L"DBHOST");
  CrearConexionPredefinida(3, L"DBHOST", L"Planta3", L"D:\\Bases", 0);
  BSTR name = GetAttributeValue(GetXMLMainNodeObjectFromFile(L"iVortan.cfg"), L"PrdCnn");
  EXPECT_STREQ(name, L"Planta3");
  SysFreeString(name);
}

}  // namespace
