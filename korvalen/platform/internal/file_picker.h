// The system's file and folder pickers, and its help viewer. Calls follow
// the convention of error.h.
//
//   platform::FilePickerRequest request{true, flags, L"*.dxf|*.dxf||", L"dxf", L"C:\\a.dxf"};
//   bool confirmed = false;
//   std::wstring paths;  // several: tab-separated
//   if (!platform::run_file_picker(request, confirmed, paths) && confirmed) use(paths);
//
// Windows runs GetOpenFileNameW or GetSaveFileNameW (which leave the folder
// the user ended in as the current directory), SHBrowseForFolderW, and the
// HTML help of "hhctrl.ocx". POSIX runs the GTK pickers when the toolkit's
// module is there, and makes the folder the user ended in current as
// Windows does; the help file is handed to the desktop's viewer
// (xdg-open) when a display is named. Without a display every picker counts
// as cancelled and no viewer is started.
#pragma once

#include <string>
#include <system_error>
#include <vector>

#include "korvalen/platform/windows_types.h"

namespace korvalen::platform {

struct FilePickerRequest {
  bool open = true;         // false: save
  unsigned long flags = 0;  // OPENFILENAME flags
  std::wstring filter;      // "description|pattern|...|" as the framework takes it
  std::wstring default_extension;
  std::wstring initial_name;
  int buffer_chars = MAX_PATH;  // the dialog's file buffer
};

// paths: the chosen full path, or for a multiple selection every chosen
// path, tab-separated; confirmed false (paths empty) on cancel.
std::error_code run_file_picker(const FilePickerRequest& request, bool& confirmed,
                                std::wstring& paths);

// The paths a multiple selection gives, tab-separated: the system hands back
// either one full path, or the folder and then each name, all ended by a
// zero character with a second one after the last.
inline std::wstring selected_paths(const wchar_t* buffer, std::size_t capacity) {
  std::vector<std::wstring> parts;
  for (std::size_t at = 0; at < capacity && buffer[at] != 0;) {
    std::size_t end = at;
    while (end < capacity && buffer[end] != 0) ++end;
    parts.emplace_back(buffer + at, end - at);
    at = end + 1;
  }
  if (parts.size() <= 1) return parts.empty() ? std::wstring() : parts[0];
  std::wstring folder = parts[0];
  if (folder.back() != L'\\' && folder.back() != L'/') folder += L'\\';
  std::wstring joined;
  for (std::size_t i = 1; i < parts.size(); ++i) {
    if (i > 1) joined += L'\t';
    joined += folder + parts[i];
  }
  return joined;
}

// A file-system folder; start (may be empty) is selected first.
std::error_code run_folder_picker(const wchar_t* title, const wchar_t* start, bool& confirmed,
                                  std::wstring& folder);

// HTML help commands, with the Windows values.
inline constexpr unsigned kHelpDisplayTopic = 0x0000;
inline constexpr unsigned kHelpContext = 0x000F;

// Opens the help file: window is the help window, null when none opened.
// POSIX opens the file whatever the command and context, and gives a
// non-null handle (the viewer's process) when the viewer was started.
std::error_code show_help(HWND owner, const wchar_t* file, unsigned command, unsigned long data,
                          HWND& window);

namespace native {
std::error_code run_file_picker(const FilePickerRequest& request, bool& confirmed,
                                std::wstring& paths);
std::error_code run_folder_picker(const wchar_t* title, const wchar_t* start, bool& confirmed,
                                  std::wstring& folder);
std::error_code show_help(HWND owner, const wchar_t* file, unsigned command, unsigned long data,
                          HWND& window);
}  // namespace native

}  // namespace korvalen::platform
