// The file dialog's rules (flags, filter, default extension, the paths of a
// multiple selection), the browser-component version check, the system's
// pickers under Wine answered by a user stand-in, and the dialogs where none
// can be shown: pickers answer as cancelled. The current directory is always
// restored.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "korvalen/korvalen.h"
#include "korvalen/platform/internal/file_picker.h"
#include "korvalen/ui/internal/file_dialog_rules.h"
#include "process_support.h"
#include "temp_dir_test.h"

#if defined(_WIN32)
#include "dialog_stand_in.h"
#endif

namespace {

namespace fs = std::filesystem;
namespace detail = korvalen::detail;

TEST(FileDialogRules, Flags) {
  const unsigned long base = detail::kOfnExplorer | detail::kOfnLongNames;
  const struct {
    int open, read_only, must_exist, path_exists, multiple;
    unsigned long flags;
  } cases[] = {
      {1, 1, 0, 0, 0, base},
      {1, 0, 0, 0, 0, base | detail::kOfnHideReadOnly},
      {1, 1, 1, 1, 1,
       base | detail::kOfnFileMustExist | detail::kOfnPathMustExist | detail::kOfnAllowMultiSelect},
      {0, 1, 0, 0, 0, base | detail::kOfnOverwritePrompt},  // a save dialog always asks
  };
  for (const auto& c : cases) {
    EXPECT_EQ(
        detail::file_dialog_flags(c.open, c.read_only, c.must_exist, c.path_exists, c.multiple),
        c.flags);
  }
}

TEST(FileDialogRules, FilterAndDefaultExtension) {
  const struct {
    const wchar_t* list;
    const wchar_t* filter;
    const wchar_t* extension;
  } cases[] = {
      {L"dxf,dwg", L"*.dxf|*.dxf|*.dwg|*.dwg||", L"dxf,dwg"},
      {L"*", L"*.*|*.*||", L""},
      {L"cnc", L"*.cnc|*.cnc||", L"cnc"},
      {L"", L"", L""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(detail::file_dialog_filter(c.list), c.filter);
    EXPECT_EQ(detail::file_dialog_default_extension(c.list), c.extension);
  }
}

TEST(FileDialogRules, MultipleSelectionIsTabSeparated) {
  const wchar_t one[] = L"C:\\Parts\\a.dxf\0";
  const wchar_t several[] = L"C:\\Parts\0a.dxf\0b.dxf\0";
  EXPECT_EQ(korvalen::platform::selected_paths(one, std::size(one)), L"C:\\Parts\\a.dxf");
  EXPECT_EQ(korvalen::platform::selected_paths(several, std::size(several)),
            L"C:\\Parts\\a.dxf\tC:\\Parts\\b.dxf");
}

TEST(BrowserComponentCheck, QueryAndTextualComparison) {
  const std::uint8_t translation[] = {0x09, 0x04, 0xE4, 0x04};
  EXPECT_EQ(detail::version_query(translation, 0), L"\\StringFileInfo\\040904E4\\FileVersion");
  EXPECT_EQ(detail::version_query(nullptr, 0x0C0A), L"\\StringFileInfo\\0C0A04B0\\FileVersion");
  for (const auto& [version, passes] : {std::pair{L"4.71", true},
                                        {L"5.00", true},
                                        {L"4.70", false},
                                        {L"10.0", false},
                                        {L"4.7", false},
                                        {L"6.00.2900", true},
                                        {L"", false}}) {
    EXPECT_EQ(detail::version_passes(version), passes) << version;
  }
}

class Dialogs : public korvalen::testing::TempDirTest {};

#if !defined(_WIN32)
TEST_F(Dialogs, VersionOfTheComponentInTheCurrentDirectory) {
  EXPECT_EQ(InternetExplorerValidoParaHtmlHelp(), 0);  // none
  for (const auto& [age, valid] : {std::pair{"new", 1}, {"old", 0}}) {
    fs::copy_file(fs::path(korvalen::testing::ProgramDirectory()) / "fixtures" / "versions" /
                      ("SHDOCVW_" + std::string(age) + ".DLL"),
                  "shdocvw.dll", fs::copy_options::overwrite_existing);
    EXPECT_EQ(InternetExplorerValidoParaHtmlHelp(), valid) << age;
  }
}

// Without a display: cancelled, the folder given back, the directory kept.
TEST_F(Dialogs, PickersWithoutADisplayAnswerCancelled) {
  if (!korvalen::testing::Environment("DISPLAY").empty()) GTEST_SKIP() << "a display is named";
  fs::create_directory("parts");
  const std::wstring parts = (dir() / "parts").wstring();
  wchar_t file[2048] = L"a.dxf";
  wchar_t folder[256];
  parts.copy(folder, 255);
  folder[parts.size()] = 0;
  EXPECT_EQ(SeleccionarUnFichero(1, L"dxf", file, folder, 0, 1, 1, 1), 0);
  EXPECT_EQ(fs::current_path(), dir());
  EXPECT_EQ(std::wstring(folder), parts);
  EXPECT_STREQ(file, L"a.dxf");
  EXPECT_EQ(SeleccionarUnDirectorio(L"Folder", folder), 0);
  EXPECT_EQ(LanzarAyuda(7, 1, L"help.chm"), nullptr);
}
#endif

#if defined(_WIN32)
using korvalen::testing::AnswerNextDialog;

TEST_F(Dialogs, SystemPickersRestoreTheDirectory) {
  fs::create_directory("parts");
  const std::wstring parts = (dir() / "parts").wstring();
  wchar_t file[2048] = L"a.dxf";
  wchar_t folder[256] = {};
  parts.copy(folder, 255);
  AnswerNextDialog cancel(IDCANCEL, nullptr);
  EXPECT_EQ(SeleccionarUnFichero(0, L"dxf,dwg", file, folder, 0, 0, 1, 0), 0);
  EXPECT_TRUE(cancel.answered());
  EXPECT_EQ(fs::current_path(), dir());
  EXPECT_TRUE(fs::equivalent(folder, parts)) << folder;
  EXPECT_STREQ(file, L"a.dxf");

  AnswerNextDialog save(IDOK, L"b.dxf");
  EXPECT_EQ(SeleccionarUnFichero(0, L"dxf,dwg", file, folder, 0, 0, 1, 0), 1);
  EXPECT_TRUE(save.answered());
  EXPECT_TRUE(fs::equivalent(fs::path(file).parent_path(), parts)) << file;
  EXPECT_EQ(fs::path(file).filename(), "b.dxf");
  EXPECT_EQ(fs::current_path(), dir());

  AnswerNextDialog browse(IDCANCEL, nullptr);
  EXPECT_EQ(SeleccionarUnDirectorio(L"Parts", folder), 0);
  EXPECT_TRUE(browse.answered());
}

// Help goes through the system's help control, loaded on the first call.
// With no such help file it opens no window, nor does the context call's
// second try (0x20000). Opening a window needs a compiled help file, which no
// tool here makes.
TEST_F(Dialogs, HelpGoesThroughTheSystemsHelpControl) {
  EXPECT_EQ(GetModuleHandleW(L"hhctrl.ocx"), nullptr);
  EXPECT_EQ(LanzarAyuda(7, 1, L"missing.chm"), nullptr);
  EXPECT_NE(GetModuleHandleW(L"hhctrl.ocx"), nullptr);
  EXPECT_EQ(LanzarAyuda(0, 11, L"missing.chm"), nullptr);
}
#endif

TEST_F(Dialogs, HelpCommandsOtherThanOneAndElevenOpenNothing) {
  EXPECT_EQ(LanzarAyuda(7, 3, L"help.chm"), reinterpret_cast<HWND>(3));
  EXPECT_EQ(LanzarAyuda(7, 0, L"help.chm"), nullptr);
}

}  // namespace
