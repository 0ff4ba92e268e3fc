// The pickers and the help viewer over POSIX: the GTK pickers through the
// module, and the desktop's viewer for help files.
#include "korvalen/platform/internal/file_picker.h"

#include <unistd.h>

#include <cstdint>
#include <string>

#include "korvalen/platform/internal/processes.h"
#include "korvalen/platform/internal/utf8.h"
#include "korvalen/platform/posix/gtk_module.h"
#include "korvalen/platform/posix/native_path.h"

namespace korvalen::platform::native {
namespace {

constexpr unsigned long kAllowMultiSelect = 0x200;
constexpr unsigned long kOverwritePrompt = 0x2;

// The filter's patterns (every second part), each ended by a line feed.
std::string Patterns(const std::wstring& filter) {
  std::string patterns;
  std::size_t part = 0;
  for (std::size_t at = 0, bar; (bar = filter.find(L'|', at)) != std::wstring::npos;
       at = bar + 1, ++part) {
    if (part % 2 == 1 && bar > at) patterns += to_utf8(filter.substr(at, bar - at)) + "\n";
  }
  return patterns;
}

std::string CurrentDirectory() {
  char path[4096];
  return ::getcwd(path, sizeof path) != nullptr ? path : "";
}

// A folder that has gone in the meantime leaves the current directory as it
// is.
void ChangeTo(const std::string& folder) {
  if (!folder.empty() && ::chdir(folder.c_str()) != 0) return;
}

// Runs the module's picker; the folder the user ended in becomes current,
// as the Windows dialogs leave it.
bool Pick(const KorvalenGtkApi& gtk, const KorvalenGtkFileRequest& request, std::wstring& chosen) {
  char* paths = nullptr;
  char* folder = nullptr;
  const bool confirmed = gtk.choose_file(&request, &paths, &folder) != 0;
  if (folder != nullptr) ChangeTo(folder);
  std::string list = paths != nullptr ? paths : "";
  gtk.free_bytes(paths);
  gtk.free_bytes(folder);
  if (!list.empty() && list.back() == '\n') list.pop_back();
  for (char& c : list) {
    if (c == '\n') c = '\t';
  }
  chosen = from_utf8(list);
  return confirmed;
}

}  // namespace

std::error_code run_file_picker(const FilePickerRequest& request, bool& confirmed,
                                std::wstring& paths) {
  const KorvalenGtkApi* gtk = gtk_module();
  if (gtk == nullptr) return {};  // no display: as cancelled
  const std::string folder = CurrentDirectory();
  const std::string name = posix::native_path(request.initial_name.c_str());
  const std::string patterns = Patterns(request.filter);
  const KorvalenGtkFileRequest picker{request.open ? 1 : 0,
                                      0,
                                      (request.flags & kAllowMultiSelect) != 0 ? 1 : 0,
                                      (request.flags & kOverwritePrompt) != 0 ? 1 : 0,
                                      request.open ? "Open" : "Save As",
                                      folder.c_str(),
                                      name.c_str(),
                                      patterns.c_str()};
  confirmed = Pick(*gtk, picker, paths);
  // What a buffer of that size could have held, as the system cuts it.
  if (paths.size() >= static_cast<std::size_t>(request.buffer_chars)) {
    paths.resize(static_cast<std::size_t>(request.buffer_chars) - 1);
  }
  return {};
}

std::error_code run_folder_picker(const wchar_t* title, const wchar_t* start, bool& confirmed,
                                  std::wstring& folder) {
  const KorvalenGtkApi* gtk = gtk_module();
  if (gtk == nullptr) return {};
  const std::string caption = to_utf8(title);
  const std::string from = *start != 0 ? posix::native_path(start) : CurrentDirectory();
  const KorvalenGtkFileRequest picker{1, 1, 0, 0, caption.c_str(), from.c_str(), "", ""};
  const std::string here = CurrentDirectory();
  confirmed = Pick(*gtk, picker, folder);
  ChangeTo(here);  // the shell's browser leaves the current directory alone
  if (folder.size() >= MAX_PATH) folder.resize(MAX_PATH - 1);
  return {};
}

std::error_code show_help(HWND /*owner*/, const wchar_t* file, unsigned /*command*/,
                          unsigned long /*data*/, HWND& window) {
  if (!display_named()) return {};  // no desktop to show it on
  const std::wstring command = L"xdg-open \"" + from_utf8(posix::native_path(file)) + L"\"";
  Process viewer;
  if (const std::error_code error = start_process(nullptr, command.c_str(), viewer)) return error;
  window = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(viewer.id));
  return {};
}

}  // namespace korvalen::platform::native
