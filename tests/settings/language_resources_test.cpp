// Language libraries: which library a language loads (Languages.xml, the
// table, English otherwise), its verification, the texts that then come from
// it (strings, default and special messages, error texts) alike from the
// 32-bit and 64-bit images, on Linux through the PE reader and under Wine
// through the system loader; character sets, the language number, and the
// two text functions.
#include "korvalen/settings/language_resources.h"

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <string>

#include "korvalen/datafiles/units_and_messages.h"
#include "korvalen/datafiles/work_order_files.h"
#include "korvalen/foundation/string_resources.h"
#include "korvalen/settings/error_texts.h"
#include "process_support.h"
#include "temp_dir_test.h"

namespace {

namespace fs = std::filesystem;
using korvalen::testing::ProgramDirectory;
using korvalen::testing::ReadBytes;
using korvalen::testing::RunningUnderWine;
using korvalen::testing::WriteBytes;

// Each test leaves no library current for the next.
class LanguageResources : public korvalen::testing::TempDirTest {
 protected:
  void TearDown() override {
    for (HMODULE& m : loaded_) LiberaRecursosDeIdioma(m);
    korvalen::testing::TempDirTest::TearDown();
  }
  // A fixture library of the tests copied here under a name.
  static void Install(const std::string& library, int bits, const std::string& as) {
    fs::copy_file(fs::path(ProgramDirectory()) / "fixtures" / std::to_string(bits) / library, as,
                  fs::copy_options::overwrite_existing);
  }
  // The handle, kept for freeing at the end unless the test frees it.
  HMODULE& Load(int language) { return loaded_.emplace_back(CargaRecursosDeIdioma(language)); }
  std::deque<HMODULE> loaded_;
};

std::wstring Text(unsigned id) {
  wchar_t text[1024];
  LoadStr(id, text);
  return text;
}

TEST_F(LanguageResources, EachLanguageLoadsItsLibrary) {
  const struct {
    int language;
    const char* languages_xml;  // null: no Languages.xml
    const wchar_t* verification;
  } cases[] = {
      {3, nullptr, L"uktxtvor"},
      {2, nullptr, L"uktxtvor"},
      {999, nullptr, L"uktxtvor"},
      {7, nullptr, L"sptxtvor"},
      // The list takes precedence over the table.
      {7, "<L><LANGUAGE LanID=\"3\"/><LANGUAGE LanID=\"7\" LanguageDLL=\"RSVORTAN.DLL\"/></L>",
       L"rstxtvor"},
  };
  for (const int bits : {64, 32}) {
    Install("UKVORTAN.DLL", bits, "UKVORTAN.DLL");
    Install("SPVORTAN.DLL", bits, "SPVORTAN.DLL");
    Install("RSVORTAN.DLL", bits, "RSVORTAN.DLL");
    for (const auto& c : cases) {
      if (c.languages_xml != nullptr) WriteBytes("Languages.xml", c.languages_xml);
      const HMODULE m = Load(c.language);
      ASSERT_NE(m, nullptr) << c.language;
      EXPECT_EQ(Text(13051), c.verification) << bits << "-bit, language " << c.language;
      EXPECT_EQ(DllDeRecursosCorrecta(m, c.language),
                c.languages_xml == nullptr || c.language == 999 ? 1 : 0);
      fs::remove("Languages.xml");
    }
    // A library that is missing loads nothing and keeps the current one.
    EXPECT_EQ(Load(5), nullptr);
    EXPECT_EQ(Text(13051), L"rstxtvor");
    // Windows keeps a loaded library's file from being replaced.
    for (HMODULE& m : loaded_) LiberaRecursosDeIdioma(m);
  }
}

TEST_F(LanguageResources, VerificationFollowsTheTable) {
  Install("UKVORTAN.DLL", 64, "UKVORTAN.DLL");
  Install("RSVORTAN.DLL", 64, "RSVORTAN.DLL");
  HMODULE& uk = Load(3);
  const HMODULE rs = Load(16);
  EXPECT_EQ(DllDeRecursosCorrecta(uk, 3), 1);
  EXPECT_EQ(DllDeRecursosCorrecta(uk, 206), 0);
  EXPECT_EQ(DllDeRecursosCorrecta(uk, 999), 1);
  EXPECT_EQ(DllDeRecursosCorrecta(rs, 16), 1);
  EXPECT_EQ(DllDeRecursosCorrecta(nullptr, 3), 0);
  // Freeing a library that is not current keeps the current one.
  LiberaRecursosDeIdioma(uk);
  EXPECT_EQ(uk, nullptr);
  EXPECT_EQ(Text(13051), L"rstxtvor");
}

TEST_F(LanguageResources, TextsComeFromTheCurrentLibrary) {
  EXPECT_EQ(Text(25000), L"");
  Install("UKVORTAN.DLL", 64, "UKVORTAN.DLL");
  Install("RSVORTAN.DLL", 32, "RSVORTAN.DLL");
  HMODULE& uk = Load(3);
  ASSERT_NE(uk, nullptr);
  EXPECT_EQ(Text(25000), L"The part has no contour.");
  TRegMensDFFab* messages = nullptr;
  ASSERT_TRUE(DamePunMensDFFab(messages));
  LeerMensajesDefFab(messages);
  EXPECT_STREQ(messages->text[8], L"Speed (%)");
  EXPECT_STREQ(messages->text[31], L"Machine");
  LiberaPunMensDFFab(messages);
  wchar_t special[1024] = L"\u00AA@A";
  DameMensajeEspecial(special);
  EXPECT_STREQ(special, L"Special message A");
  const struct {
    const wchar_t* text;
    int result;
    int number;
    const wchar_t* after;
  } errors[] = {
      {L"25001", 1, 25001, L"The sheet is smaller than the part."},
      {L"24999", 0, 0, L"24999"},
      {L"25003", 0, 0, L"25003"},  // no such text
      {L"2500", 0, 0, L"2500"},
  };
  for (const auto& e : errors) {
    wchar_t text[1024];
    wcscpy(text, e.text);
    int number = -1;
    EXPECT_EQ(ConvertirTextoError(text, number), e.result) << e.text;
    EXPECT_EQ(number, e.number) << e.text;
    EXPECT_STREQ(text, e.after);
  }
  // Another script, and a character beyond U+FFFF, from the 32-bit image.
  HMODULE& rs = Load(16);
  EXPECT_EQ(Text(25001), L"\u041B\u0438\u0441\u0442 \U0001F600");
  LiberaRecursosDeIdioma(uk);
  LiberaRecursosDeIdioma(rs);
  EXPECT_EQ(Text(13051), L"");
}

TEST_F(LanguageResources, DamagedLibrariesLoadNothing) {
  Install("UKVORTAN.DLL", 64, "good.dll");
  const std::string good = ReadBytes("good.dll");
  const std::string damaged[] = {"", "This is a text file, not a library.\r\n", good.substr(0, 100),
                                 good.substr(0, good.size() / 2)};
  for (const std::string& bytes : damaged) {
    WriteBytes("UKVORTAN.DLL", bytes);
    const HMODULE m = Load(3);
    if (m != nullptr) {
      EXPECT_EQ(Text(13051), L"") << bytes.size() << " bytes";
    }
  }
}

TEST_F(LanguageResources, CharacterSetsFromTheListAndItsConstants) {
  WriteBytes("Languages.xml",
             "<LIST><CONSTANTS BALTIC_CHARSET=\"186\" SHIFTJIS_CHARSET=\"128\"/>"
             "<LANGUAGE LanID=\"15\" CharSet=\"BALTIC_CHARSET\"/>"
             "<LANGUAGE LanID=\"202\" CharSet=\"128\"/>"
             "<LANGUAGE LanID=\"16\" CharSet=\"204\"/></LIST>");
  EXPECT_EQ(DameCharSetDeIdioma(15), 186);
  EXPECT_EQ(DameCharSetDeIdioma(202), 128);
  EXPECT_EQ(DameCharSetDeIdioma(16), 204);
  EXPECT_EQ(DameCharSetDeIdioma(3), 0);
  CString library = L"unchanged";
  LoadLanguageDllFromFile(15, L"missing.xml", library);
  EXPECT_EQ(library, L"unchanged");
  LoadLanguageDllFromFile(15, L"Languages.xml", library);
  EXPECT_TRUE(library.IsEmpty());
}

TEST_F(LanguageResources, LanguageNumberInTheSettings) {
  int language = 42;
  EXPECT_EQ(LeerElIdioma(language), 0);
  EXPECT_EQ(language, 42);
  WriteBytes("iVortan.cfg", "<?xml version=\"1.0\" encoding=\"UTF-8\"?><LNKCFGPAR LanID=\"7\"/>");
  EXPECT_EQ(LeerElIdioma(language), 1);
  EXPECT_EQ(language, 7);
  EXPECT_EQ(EscribirElIdioma(202), 1);
  EXPECT_EQ(LeerElIdioma(language), 1);
  EXPECT_EQ(language, 202);
}

TEST(LanguageTexts, FileNamesAndFonts) {
  wchar_t name[64];
  DameFicheroDeIdioma(L"AYUDA", 7, name);
  EXPECT_STREQ(name, L"AYUDA.007");
  const struct {
    const wchar_t* font;
    const wchar_t* name;
    int charset;
  } fonts[] = {
      {L"Arial##238", L"Arial", 238}, {L"Arial#238", L"Arial#238", -1}, {L"Arial##0", L"Arial", -1},
      {L"Arial##", L"Arial##", -1},   {L"Arial", L"Arial", -1},
  };
  for (const auto& f : fonts) {
    int charset = -1;
    DameFuenteYCharset(f.font, name, charset);
    EXPECT_STREQ(name, f.name) << f.font;
    EXPECT_EQ(charset, f.charset) << f.font;
  }
}

// The message boxes go to standard error where there are no windows; under
// Windows they would wait for a click.
TEST_F(LanguageResources, MessageBoxesShowTheLanguagesTexts) {
#if defined(_WIN32)
  GTEST_SKIP() << "message boxes wait for the user on Windows";
#else
  Install("UKVORTAN.DLL", 64, "UKVORTAN.DLL");
  Load(3);
  ::testing::internal::CaptureStderr();
  TratarMensajePocoEspacioBD(12.5);
  TratarErrorCom(new _com_error(static_cast<HRESULT>(0x80004005), L"25000"));
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "Warning: The database is nearly full.\nDelete old orders or copy them away\nbefore "
            "you go on.\nFree space:12.50 MB.\nSYSTEM COM ERROR: The part has no contour.\n");
#endif
}

}  // namespace
