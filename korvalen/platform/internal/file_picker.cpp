// The portable part of the pickers and the help viewer: a failure confirms
// nothing and opens nothing.
#include "korvalen/platform/internal/file_picker.h"

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform {

std::error_code run_file_picker(const FilePickerRequest& request, bool& confirmed,
                                std::wstring& paths) {
  confirmed = false;
  paths.clear();
  const std::error_code error =
      guarded([&] { return native::run_file_picker(request, confirmed, paths); });
  if (error || !confirmed) {
    confirmed = false;
    paths.clear();
  }
  return error;
}

std::error_code run_folder_picker(const wchar_t* title, const wchar_t* start, bool& confirmed,
                                  std::wstring& folder) {
  confirmed = false;
  folder.clear();
  const std::error_code error = guarded([&] {
    return native::run_folder_picker(title != nullptr ? title : L"", start != nullptr ? start : L"",
                                     confirmed, folder);
  });
  if (error || !confirmed) {
    confirmed = false;
    folder.clear();
  }
  return error;
}

std::error_code show_help(HWND owner, const wchar_t* file, unsigned command, unsigned long data,
                          HWND& window) {
  window = nullptr;
  if (file == nullptr) return make_error(std::errc::invalid_argument);
  const std::error_code error =
      guarded([&] { return native::show_help(owner, file, command, data, window); });
  if (error) window = nullptr;
  return error;
}

}  // namespace korvalen::platform
