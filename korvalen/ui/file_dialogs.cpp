#include "korvalen/ui/file_dialogs.h"

#include <cstdint>
#include <string>

#include "korvalen/foundation/file_names.h"
#include "korvalen/platform/internal/bounded_copy.h"
#include "korvalen/platform/internal/file_picker.h"
#include "korvalen/platform/internal/files.h"
#include "korvalen/platform/internal/version_info.h"
#include "korvalen/ui/internal/file_dialog_rules.h"

namespace {

namespace platform = korvalen::platform;
namespace detail = korvalen::detail;

constexpr unsigned kHelpContextCommand = 1;
constexpr unsigned kHelpTopicCommand = 11;
constexpr unsigned long kFallbackContext = 0x20000;
constexpr std::size_t kVersionChars = 250;
constexpr int kPathChars = 1024;

// The current directory while a dialog runs, restored at the end; the folder
// the user ended in is read before.
class CurrentDirectoryKept {
 public:
  CurrentDirectoryKept() {
    if (platform::current_directory(remembered_, kPathChars)) remembered_[0] = 0;
  }
  ~CurrentDirectoryKept() {
    if (remembered_[0] != 0) platform::change_directory(remembered_);
  }
  CurrentDirectoryKept(const CurrentDirectoryKept&) = delete;
  CurrentDirectoryKept& operator=(const CurrentDirectoryKept&) = delete;

 private:
  wchar_t remembered_[kPathChars] = {};
};

}  // namespace

int SeleccionarUnFichero(int open, const wchar_t* extensions, wchar_t* file, wchar_t* folder,
                         int read_only_shown, int file_must_exist, int path_must_exist,
                         int multiple) {
  if (file == nullptr || folder == nullptr) return 0;
  try {
    const CurrentDirectoryKept kept;
    CambiarDirectorio(folder);
    const std::wstring list = extensions != nullptr ? extensions : L"";
    platform::FilePickerRequest request;
    request.open = open != 0;
    request.flags = detail::file_dialog_flags(open, read_only_shown, file_must_exist,
                                              path_must_exist, multiple);
    request.filter = detail::file_dialog_filter(list);
    request.default_extension = detail::file_dialog_default_extension(list);
    wchar_t initial[korvalen::kFullNameChars + 1] = {};
    DameNombreCompleto(folder, file, L"", initial);
    request.initial_name = initial;
    request.buffer_chars = multiple != 0 ? detail::kMultipleSelectionChars : MAX_PATH;
    bool confirmed = false;
    std::wstring paths;
    (void)platform::run_file_picker(request, confirmed, paths);
    if (confirmed) platform::copy_cut(file, request.buffer_chars, paths);
    DameDirectorioActual(folder);
    return confirmed ? 1 : 0;
  } catch (...) {
    return 0;
  }
}

int SeleccionarUnDirectorio(const wchar_t* title, wchar_t* folder) {
  if (folder == nullptr) return 0;
  try {
    bool confirmed = false;
    std::wstring chosen;
    (void)platform::run_folder_picker(title, folder, confirmed, chosen);
    if (!confirmed) return 0;
    platform::copy_cut(folder, MAX_PATH, chosen);
    return 1;
  } catch (...) {
    return 0;
  }
}

HWND LanzarAyuda(unsigned long context, unsigned command, const wchar_t* file) {
  try {
    HWND window = nullptr;
    if (command == kHelpContextCommand) {
      (void)platform::show_help(nullptr, file, platform::kHelpContext, context, window);
      if (window == nullptr) {
        (void)platform::show_help(nullptr, file, platform::kHelpContext, kFallbackContext, window);
      }
    } else if (command == kHelpTopicCommand) {
      (void)platform::show_help(nullptr, file, platform::kHelpDisplayTopic, 0, window);
    } else {
      window = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(command));
    }
    return window;
  } catch (...) {
    return nullptr;
  }
}

int InternetExplorerValidoParaHtmlHelp() {
  try {
    std::vector<std::uint8_t> resource;
    if (platform::read_version_resource(L"SHDOCVW.DLL", resource) || resource.empty()) return 0;
    std::span<const std::uint8_t> translation, version;
    const bool translated =
        platform::find_version_value(resource, L"\\VarFileInfo\\Translation", translation) &&
        translation.size() == 4;
    const std::wstring query = detail::version_query(translated ? translation.data() : nullptr,
                                                     platform::user_default_language());
    if (!platform::find_version_value(resource, query.c_str(), version)) return 0;
    std::wstring text;
    for (std::size_t i = 0; i + 1 < version.size() && text.size() < kVersionChars; i += 2) {
      const auto unit = static_cast<wchar_t>(version[i] | (version[i + 1] << 8));
      if (unit == 0) break;
      text += unit;
    }
    return detail::version_passes(text) ? 1 : 0;
  } catch (...) {
    return 0;
  }
}
