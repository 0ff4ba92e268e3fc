// The printer file: read field by field in binary mode, the settings bytes
// into a block of their own; and, where no dialog can be shown (Linux
// without a display), the setup writing back exactly what it read, unknown
// settings bytes included.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "korvalen/korvalen.h"
#include "process_support.h"
#if defined(_WIN32)
#include "dialog_stand_in.h"
#endif
#include "temp_dir_test.h"

namespace {

using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;

class PrinterFile : public korvalen::testing::TempDirTest {};

// Settings bytes with a zero, a line feed, a carriage return and a quote:
// opaque, and kept as they are.
const std::string kSettings("\x01\x00\n\r\"\xFF", 6);

TEST_F(PrinterFile, ReadFieldByField) {
  const struct {
    std::string file;
    int values[3];
    const wchar_t* driver;
    const wchar_t* device;
    std::string settings;  // "-" for no block
  } cases[] = {
      {"7\n8\n9\n\"winspool\"\n\"Plotter A0\"\n\"LPT1:\"\n6\n" + kSettings,
       {7, 8, 9},
       L"winspool",
       L"Plotter A0",
       kSettings},
      // n 0: no block; a name stops at its first inner quote.
      {"1\n2\n3\n\"dri\"ver\"\n\"dev\"\n\"\"\n0\n", {1, 2, 3}, L"dri", L"dev", "-"},
      // A file shorter than n: the rest of the block stays zero.
      {"0\n0\n0\n\"d\"\n\"e\"\n\"p\"\n4\nAB", {0, 0, 0}, L"d", L"e", std::string("AB\0\0", 4)},
  };
  for (const auto& c : cases) {
    WriteBytes("printer.cfg", c.file);
    int values[3] = {-1, -1, -1};
    wchar_t driver[81], device[81], port[81];
    LPDEVMODEW settings = nullptr;
    LeerFicheroCfgList(L"printer.cfg", values[0], values[1], values[2], driver, device, port,
                       settings);
    EXPECT_EQ(std::vector<int>(values, values + 3), std::vector<int>(c.values, c.values + 3));
    EXPECT_STREQ(driver, c.driver);
    EXPECT_STREQ(device, c.device);
    if (c.settings == "-") {
      EXPECT_EQ(settings, nullptr);
    } else {
      ASSERT_NE(settings, nullptr);
      EXPECT_EQ(std::string(reinterpret_cast<const char*>(settings), c.settings.size()),
                c.settings);
      GlobalFree(settings);
    }
  }
  // A missing file: zeros, and the caller's names left alone.
  int a = 5, b = 5, c = 5;
  wchar_t driver[81] = L"kept", device[81] = L"", port[81] = L"";
  LPDEVMODEW settings = nullptr;
  LeerFicheroCfgList(L"missing.cfg", a, b, c, driver, device, port, settings);
  EXPECT_EQ(a + b + c, 0);
  EXPECT_STREQ(driver, L"kept");
}

#if defined(_WIN32)
// The system's print setup, cancelled by a user stand-in: the file is written
// again from what was read, whether the file named a printer (the dialog
// preset with its names and settings) or none (the dialog of the default).
TEST_F(PrinterFile, CancelledSystemSetupRewritesWhatWasRead) {
  // A whole DEVMODEW: its size at 68, no driver bytes after it.
  std::string devmode(220, '\0');
  devmode[0] = 'P';
  devmode[68] = static_cast<char>(220);
  const std::string named = "3\n-1\n12\n\"winspool\"\n\"Plotter A0\"\n\"LPT1:\"\n";
  const std::string cases[] = {
      named + "0\n",
      named + "220\n" + devmode,
      "1\n2\n3\n\"\"\n\"\"\n\"\"\n0\n",
  };
  for (const auto& file : cases) {
    WriteBytes("LISTADO.IMP", file);
    korvalen::testing::AnswerNextDialog cancel(IDCANCEL, nullptr);
    C_MiImpresora printer;
    printer.ConfigurarImpresora(0, L"LISTADO.IMP");
    EXPECT_TRUE(cancel.answered());
    EXPECT_EQ(ReadBytes("LISTADO.IMP"), file);
  }
}
#else
// Without a display the dialog counts as cancelled: the file is written
// again from what was read.
TEST_F(PrinterFile, CancelledSetupRewritesWhatWasRead) {
  if (!korvalen::testing::Environment("DISPLAY").empty()) GTEST_SKIP() << "a display is named";
  const std::string stored = "3\n-1\n12\n\"GTK\"\n\"Plotter A0\"\n\"\"\n6\n" + kSettings;
  const struct {
    std::string before, after;
  } cases[] = {
      {stored, stored},
      {"1\n2\n3\n\"a\"b\"\n\"\"\n\"\"\n0\n", "1\n2\n3\n\"a\"\n\"\"\n\"\"\n0\n"},
      {"", "0\n0\n0\n\"\"\n\"\"\n\"\"\n0\n"},  // no file: made with zeros and no printer
  };
  for (const auto& c : cases) {
    if (!c.before.empty()) WriteBytes("LISTADO.IMP", c.before);
    C_MiImpresora printer;
    printer.ConfigurarImpresora(0, L"LISTADO.IMP");
    EXPECT_EQ(ReadBytes("LISTADO.IMP"), c.after);
    std::remove("LISTADO.IMP");
  }
}
#endif

}  // namespace
