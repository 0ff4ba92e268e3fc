// The pickers and the help viewer over Win32: the common file dialogs, the
// shell's folder browser, and HtmlHelpW of "hhctrl.ocx".
#include "korvalen/platform/internal/file_picker.h"

#include <windows.h>
// After windows.h.
#include <commdlg.h>
#include <shlobj.h>

#include <algorithm>
#include <vector>

namespace korvalen::platform::native {
namespace {

int CALLBACK SelectStart(HWND window, UINT message, LPARAM, LPARAM start) {
  if (message == BFFM_INITIALIZED && start != 0) {
    SendMessageW(window, BFFM_SETSELECTIONW, TRUE, start);
  }
  return 0;
}

using HtmlHelp = HWND(WINAPI*)(HWND, LPCWSTR, UINT, DWORD_PTR);

}  // namespace

std::error_code run_file_picker(const FilePickerRequest& request, bool& confirmed,
                                std::wstring& paths) {
  // The framework's filter separates its parts with '|'; the system's with
  // zero characters.
  std::wstring filter = request.filter;
  std::replace(filter.begin(), filter.end(), L'|', L'\0');
  std::vector<wchar_t> file(static_cast<std::size_t>(std::max(request.buffer_chars, MAX_PATH)),
                            L'\0');
  request.initial_name.copy(file.data(), file.size() - 1);
  OPENFILENAMEW dialog{};
  dialog.lStructSize = sizeof dialog;
  dialog.lpstrFilter = filter.empty() ? nullptr : filter.c_str();
  dialog.lpstrFile = file.data();
  dialog.nMaxFile = static_cast<DWORD>(file.size());
  dialog.lpstrDefExt =
      request.default_extension.empty() ? nullptr : request.default_extension.c_str();
  dialog.Flags = request.flags;
  confirmed = (request.open ? GetOpenFileNameW(&dialog) : GetSaveFileNameW(&dialog)) != FALSE;
  if (confirmed) paths = selected_paths(file.data(), file.size());
  return {};
}

std::error_code run_folder_picker(const wchar_t* title, const wchar_t* start, bool& confirmed,
                                  std::wstring& folder) {
  BROWSEINFOW browse{};
  browse.lpszTitle = title;
  browse.ulFlags = BIF_RETURNONLYFSDIRS;
  browse.lpfn = &SelectStart;
  browse.lParam = *start != 0 ? reinterpret_cast<LPARAM>(start) : 0;
  PIDLIST_ABSOLUTE item = SHBrowseForFolderW(&browse);
  if (item == nullptr) return {};
  wchar_t path[MAX_PATH] = {};
  confirmed = SHGetPathFromIDListW(item, path) != FALSE;
  if (confirmed) folder = path;
  CoTaskMemFree(item);
  return {};
}

std::error_code show_help(HWND owner, const wchar_t* file, unsigned command, unsigned long data,
                          HWND& window) {
  // Loaded once and kept, as the help control stays while its windows live.
  static const HtmlHelp html_help = [] {
    HMODULE control = LoadLibraryW(L"hhctrl.ocx");
    return control != nullptr ? reinterpret_cast<HtmlHelp>(reinterpret_cast<void (*)()>(
                                    GetProcAddress(control, "HtmlHelpW")))
                              : nullptr;
  }();
  if (html_help == nullptr) return std::make_error_code(std::errc::function_not_supported);
  // The application's main window owns the help: the active one, when no
  // owner is given.
  window = html_help(owner != nullptr ? owner : GetActiveWindow(), file, command, data);
  return {};
}

}  // namespace korvalen::platform::native
