// Fuzzes the reading of language libraries: arbitrary bytes become
// "UKVORTAN.DLL", which is loaded as the current library (on POSIX the PE
// reader takes it apart) and read: the verification string, strings whose
// numbers the input chooses, and the messages built from them; the dialog
// templates of the progress dialogs and of numbers the input chooses are
// taken apart, and the same bytes as "SHDOCVW.DLL" give their version.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>

#include "korvalen/korvalen.h"
#include "korvalen/platform/internal/dialog_template.h"
#include "korvalen/platform/internal/pe_image.h"

namespace {

// The library lives by bare name in the current directory: each fuzzing
// process works in a directory of its own.
struct WorkDirectory {
  WorkDirectory() {
    std::random_device random;
    path = std::filesystem::temp_directory_path() /
           ("korvalen-pe-fuzz-" + std::to_string(random()));
    std::filesystem::create_directories(path);
    std::filesystem::current_path(path);
  }
  ~WorkDirectory() {
    std::error_code ignored;
    std::filesystem::current_path(std::filesystem::temp_directory_path(), ignored);
    std::filesystem::remove_all(path, ignored);
  }
  std::filesystem::path path;
};

// The templates a GTK dialog would be built from.
void ParseDialogs(const std::uint8_t* data, std::size_t size) {
  korvalen::platform::PeImage image;
  if (!image.Parse({data, size})) return;
  korvalen::platform::DialogTemplate dialog;
  const std::uint32_t chosen =
      size >= 2 ? static_cast<std::uint32_t>(data[size - 2] | (data[size - 1] << 8)) : 1;
  for (const std::uint32_t id : {14200u, 14301u, chosen}) {
    korvalen::platform::parse_dialog_template(
        image.FindResource(korvalen::platform::kResourceDialog, id), dialog);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static WorkDirectory directory;
  ParseDialogs(data, size);
  if (FILE* version = std::fopen("SHDOCVW.DLL", "wb")) {
    std::fwrite(data, 1, size, version);
    std::fclose(version);
    InternetExplorerValidoParaHtmlHelp();
  }
  FILE* f = std::fopen("UKVORTAN.DLL", "wb");
  if (f == nullptr) return 0;
  std::fwrite(data, 1, size, f);
  std::fclose(f);
  HMODULE module = CargaRecursosDeIdioma(3);
  if (module == nullptr) return 0;
  DllDeRecursosCorrecta(module, 3);
  wchar_t text[1024];
  // Strings of every block the input names in its last bytes, and the ones
  // the library itself reads.
  for (std::size_t i = size > 8 ? size - 8 : 0; i + 1 < size; i += 2) {
    const unsigned id = static_cast<unsigned>(data[i] | (data[i + 1] << 8));
    LoadStr(id, text);
  }
  for (const unsigned id : {13051u, 24565u, 25000u, 26300u}) LoadStr(id, text);
  TRegMensDFFab* messages = nullptr;
  if (DamePunMensDFFab(messages)) {
    LeerMensajesDefFab(messages);
    LiberaPunMensDFFab(messages);
  }
  wchar_t error[1024] = L"25000";
  int number = 0;
  ConvertirTextoError(error, number);
  LiberaRecursosDeIdioma(module);
  return 0;
}
