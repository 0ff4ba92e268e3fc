// The dialogs on Linux with a display: the GTK module loaded from beside the
// library, the progress dialogs built from the test language library's
// templates (or the built-in layout without one), driven and read back, and
// message boxes answered by the module's test hook. Each dialog is saved as
// a PNG image in the folder KORVALEN_SCREENSHOTS names. Without a display
// the module is never loaded and the dialogs are headless.
#if !defined(_WIN32)
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "korvalen/korvalen.h"
#include "korvalen/platform/posix/gtk_interface.h"
#include "process_support.h"
#include "temp_dir_test.h"

namespace {

namespace fs = std::filesystem;
using korvalen::testing::Environment;

bool DisplayNamed() {
  return !Environment("DISPLAY").empty() || !Environment("WAYLAND_DISPLAY").empty();
}

// The module this process has loaded, if any: never loaded by the test.
const KorvalenGtkApi* LoadedModule() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&CargaRecursosDeIdioma), &info) == 0) return nullptr;
  const fs::path path = fs::path(info.dli_fname).parent_path() / "libkorvalen-gtk.so.1";
  void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (module == nullptr) return nullptr;
  const auto entry = reinterpret_cast<KorvalenGtkEntry>(dlsym(module, kKorvalenGtkEntryName));
  return entry != nullptr ? entry(kKorvalenGtkVersion) : nullptr;
}

std::string Image(const char* name) {
  const fs::path folder = Environment("KORVALEN_SCREENSHOTS").empty()
                              ? fs::temp_directory_path()
                              : fs::path(Environment("KORVALEN_SCREENSHOTS"));
  fs::create_directories(folder);
  const fs::path png = folder / name;
  fs::remove(png);
  return png.string();
}

std::wstring Text(const CDialog& dialog, int id) {
  CString text;
  dialog.GetDlgItemText(id, text);
  return static_cast<const wchar_t*>(text);
}

class GtkDialogs : public korvalen::testing::TempDirTest {
 protected:
  void SetUp() override {
    TempDirTest::SetUp();
    if (!DisplayNamed()) GTEST_SKIP() << "no display: the dialogs are headless";
  }
  void TearDown() override {
    LiberaRecursosDeIdioma(library_);
    TempDirTest::TearDown();
  }
  void LoadLanguage() {
    fs::copy_file(
        fs::path(korvalen::testing::ProgramDirectory()) / "fixtures" / "dialogs" / "DIALOGS.DLL",
        "UKVORTAN.DLL");
    library_ = CargaRecursosDeIdioma(3);
    ASSERT_NE(library_, nullptr);
  }
  // The module, which a display must have brought.
  const KorvalenGtkApi& Module() {
    const KorvalenGtkApi* gtk = LoadedModule();
    if (gtk == nullptr) ADD_FAILURE() << "a display is named but the GTK module is not loaded";
    static const KorvalenGtkApi none{};
    return gtk != nullptr ? *gtk : none;
  }
  HMODULE library_ = nullptr;
};

TEST_F(GtkDialogs, CutDialogFromTheLibraryTemplate) {
  LoadLanguage();
  CDlgCutPrgrs dialog;
  ASSERT_EQ(dialog.Create(nullptr), 1);
  const KorvalenGtkApi& gtk = Module();
  if (gtk.save_image == nullptr) return;
  dialog.InitializeButtons(1, 1, 1, 1, 0, 1, 1, 1, 1, 1, 1, 1);
  dialog.SetCutScrapLine(1);
  dialog.SetCutContours(1);
  dialog.SetValueCounterCutContour(40);
  for (int i = 0; i < 60; ++i) dialog.AddCounter(i % 3 == 0 ? 2 : 12);
  EXPECT_EQ(Text(dialog, 14211), L"60");
  EXPECT_EQ(Text(dialog, 14208), std::wstring(60, L'I'));
  EXPECT_EQ(dialog.IsDlgButtonChecked(14205), 0u);
  EXPECT_EQ(dialog.IsDlgButtonChecked(14203), 1u);
  EXPECT_FALSE(dialog.IsDlgItemEnabled(14205));
  // The template's own caption of a box: the dialog came from the library.
  EXPECT_EQ(Text(dialog, 14205), L"Cut the scrap line");
  EXPECT_EQ(gtk.save_image(reinterpret_cast<void*>(dialog.m_hWnd),
                           Image("cut_progress_dialog.png").c_str()),
            1);
  // The Escape poll takes the dialog's keys, one a look.
  gtk.press_key(reinterpret_cast<void*>(dialog.m_hWnd), 0x61);    // a
  gtk.press_key(reinterpret_cast<void*>(dialog.m_hWnd), 0xff1b);  // Escape
  EXPECT_EQ(HayEscapePulsado(dialog.m_hWnd), 0);
  EXPECT_EQ(HayEscapePulsado(dialog.m_hWnd), 1);
  EXPECT_EQ(HayEscapePulsado(dialog.m_hWnd), 0);
}

TEST_F(GtkDialogs, PunchDialogFromTheBuiltInLayoutWithoutALibrary) {
  CDlgPnzPrgrs dialog;
  ASSERT_EQ(dialog.Create(nullptr), 1);
  const KorvalenGtkApi& gtk = Module();
  if (gtk.save_image == nullptr) return;
  dialog.InitializeButtons(1, 1, 1, 1, 1, 1);
  dialog.SetCheckPunchParts(1);
  for (int i = 0; i < 155; ++i) dialog.AddCounter(0, L"Ménsula 12");
  dialog.AddCounter(4, L"Part 17");
  EXPECT_EQ(Text(dialog, 14302), L"III");
  EXPECT_EQ(Text(dialog, 14304), L"155");
  EXPECT_EQ(Text(dialog, 14303), L"Ménsula 12");
  EXPECT_EQ(Text(dialog, 14315), L"Part 17");
  EXPECT_EQ(Text(dialog, 14305), L"Punch parts");
  EXPECT_EQ(gtk.save_image(reinterpret_cast<void*>(dialog.m_hWnd),
                           Image("punch_progress_dialog_builtin.png").c_str()),
            1);
  LoadLanguage();
  CDlgPnzPrgrs from_library;
  ASSERT_EQ(from_library.Create(nullptr), 1);
  from_library.InitializeButtons(1, 1, 0, 0, 1, 0);
  from_library.AddCounter(1, L"Scrap 3");
  EXPECT_EQ(Text(from_library, 14306), L"Scrap 3");
  gtk.save_image(reinterpret_cast<void*>(from_library.m_hWnd),
                 Image("punch_progress_dialog.png").c_str());
}

TEST_F(GtkDialogs, MessageBoxesAreToolkitDialogs) {
  LoadLanguage();
  CDlgCutPrgrs dialog;  // brings the module
  ASSERT_EQ(dialog.Create(nullptr), 1);
  const KorvalenGtkApi& gtk = Module();
  if (gtk.answer_next_modal == nullptr) return;
  const std::string warning = Image("message_box_warning.png");
  gtk.answer_next_modal(1, warning.c_str(), nullptr);
  TratarMensajePocoEspacioBD(12.5);
  EXPECT_TRUE(fs::exists(warning));
  const std::string trace = Image("message_box_trace.png");
  gtk.answer_next_modal(1, trace.c_str(), nullptr);
  ChivatoMsgEntero(42, L"count");
  EXPECT_TRUE(fs::exists(trace));
}

// GTK's answers: accept, cancel, OK.
constexpr int kAccept = -3, kCancel = -6, kOk = -5;

TEST_F(GtkDialogs, PickersAndPrinterSetupAnsweredByTheHook) {
  CDlgCutPrgrs brings_the_module;
  ASSERT_EQ(brings_the_module.Create(nullptr), 1);
  const KorvalenGtkApi& gtk = Module();
  if (gtk.answer_next_modal == nullptr) return;
  fs::create_directory("parts");
  korvalen::testing::WriteBytes("parts/b.dxf", "0\nSECTION\n");
  const std::wstring parts = (dir() / "parts").wstring();
  wchar_t file[2048] = L"b.dxf";
  wchar_t folder[256] = {};
  parts.copy(folder, 255);
  const std::string open_png = Image("file_dialog_open.png");
  gtk.answer_next_modal(kAccept, open_png.c_str(), (dir() / "parts" / "b.dxf").c_str());
  EXPECT_EQ(SeleccionarUnFichero(1, L"dxf,dwg", file, folder, 0, 1, 1, 0), 1);
  EXPECT_EQ(std::wstring(file), (dir() / "parts" / "b.dxf").wstring());
  EXPECT_EQ(std::wstring(folder), parts);
  EXPECT_EQ(fs::current_path(), dir());
  EXPECT_TRUE(fs::exists(open_png));

  gtk.answer_next_modal(kCancel, Image("folder_dialog.png").c_str(), nullptr);
  EXPECT_EQ(SeleccionarUnDirectorio(L"Choose the parts folder", folder), 0);

  korvalen::testing::WriteBytes("LISTADO.IMP", "1\n2\n3\n\"GTK\"\n\"none\"\n\"\"\n2\nAB");
  gtk.answer_next_modal(kCancel, Image("printer_setup.png").c_str(), nullptr);
  C_MiImpresora printer;
  printer.ConfigurarImpresora(0, L"LISTADO.IMP");
  EXPECT_EQ(korvalen::testing::ReadBytes("LISTADO.IMP"), "1\n2\n3\n\"GTK\"\n\"none\"\n\"\"\n2\nAB");
  // Confirmed on the printer the file names: its name and the toolkit's
  // settings written, the integers carried through.
  korvalen::testing::WriteBytes("LISTADO.IMP", "4\n5\n6\n\"GTK\"\n\"Print to File\"\n\"\"\n0\n");
  gtk.answer_next_modal(kOk, nullptr, nullptr);
  printer.ConfigurarImpresora(0, L"LISTADO.IMP");
  const std::string written = korvalen::testing::ReadBytes("LISTADO.IMP");
  const std::string head = "4\n5\n6\n\"GTK\"\n\"Print to File\"\n\"\"\n";
  EXPECT_EQ(written.substr(0, head.size()), head);
  // n, then exactly n bytes of the toolkit's settings.
  const std::size_t size = std::stoul(written.substr(head.size()));
  const std::size_t settings = written.find('\n', head.size()) + 1;
  EXPECT_EQ(written.size() - settings, size);
  EXPECT_EQ(written.compare(settings, 16, "[Print Settings]"), 0) << written;
}

// Help files go to the desktop's viewer: here a stand-in that notes what it
// was given.
TEST_F(GtkDialogs, HelpOpensTheViewer) {
  CDlgCutPrgrs brings_the_module;
  ASSERT_EQ(brings_the_module.Create(nullptr), 1);
  if (LoadedModule() == nullptr) GTEST_FAIL() << "no GTK module";
  korvalen::testing::WriteBytes("xdg-open", "#!/bin/sh\necho \"$1\" > viewer.txt\n");
  fs::permissions("xdg-open", fs::perms::owner_all);
  const std::string path = Environment("PATH");
  korvalen::testing::SetEnvironment("PATH", dir().string() + ":" + path);
  EXPECT_NE(LanzarAyuda(4, 1, L"help.chm"), nullptr);
  korvalen::testing::SetEnvironment("PATH", path);
  for (int i = 0; i < 100 && korvalen::testing::ReadBytes("viewer.txt").empty(); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  EXPECT_EQ(korvalen::testing::ReadBytes("viewer.txt"), "help.chm\n");
}

// Without a display, or with a display but without the module (the suite
// run with KORVALEN_GTK_MODULE naming no file), the dialogs are headless.
TEST(HeadlessDialogs, NoDisplayOrNoModuleLoadsNoToolkit) {
  if (DisplayNamed() && Environment("KORVALEN_GTK_MODULE").empty()) {
    GTEST_SKIP() << "a display is named and the module is there";
  }
  CDlgCutPrgrs dialog;
  ASSERT_EQ(dialog.Create(nullptr), 1);
  dialog.AddCounter(0);
  EXPECT_EQ(LoadedModule(), nullptr);
  CString text;
  dialog.GetDlgItemText(14209, text);
  EXPECT_EQ(text, L"1");
}

}  // namespace
#endif
