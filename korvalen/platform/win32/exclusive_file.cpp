// Exclusive files over Win32: a handle opened without sharing, CREATE_NEW, and
// work files held by a handle that shares neither writing nor itself, moved
// into place by MoveFileExW while still held.
#include "korvalen/platform/internal/exclusive_file.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/win32/busy_retry.h"

namespace korvalen::platform {
namespace {

std::error_code system_error(DWORD error) {
  return std::error_code(static_cast<int>(error), std::system_category());
}

HANDLE handle_of(const WorkFile& work) { return reinterpret_cast<HANDLE>(work.handle); }

}  // namespace

namespace native {

std::error_code open_exclusive(const wchar_t* name, FILE*& file) {
  HANDLE h = CreateFileW(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) {
    const DWORD error = GetLastError();
    if (error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION) {
      return make_error(std::errc::device_or_resource_busy);
    }
    return system_error(error);
  }
  const int fd = _open_osfhandle(reinterpret_cast<intptr_t>(h), _O_RDWR | _O_TEXT);
  if (fd == -1) {
    CloseHandle(h);
    return errno_error();
  }
  file = _wfdopen(fd, L"r+t");
  if (file == nullptr) {
    const std::error_code error = errno_error();
    _close(fd);
    return error;
  }
  return {};
}

std::error_code create_new_file(const wchar_t* name) {
  DWORD error = ERROR_SUCCESS;
  // Half a second of refusals: a rename or delete of the name takes moments.
  const bool created = win32::retry_while_busy(
      [&] {
        HANDLE h =
            CreateFileW(name, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                        nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (h == INVALID_HANDLE_VALUE) {
          error = GetLastError();
          return false;
        }
        CloseHandle(h);
        return true;
      },
      [&] { return win32::is_busy(error); }, win32::kBusyAttempts / 2);
  if (created) return {};
  if (error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS) {
    return make_error(std::errc::file_exists);
  }
  return system_error(error);
}

std::error_code claim_work_file(const wchar_t* name, WorkContent content, WorkFile& work) {
  // Readers may look in, and the file may be moved or deleted while held; a
  // second writer is refused with a sharing violation. CREATE_ALWAYS empties
  // what a writer that died left (no work file is ever another file's name).
  HANDLE h = INVALID_HANDLE_VALUE;
  DWORD error = ERROR_SUCCESS;
  // A work file that its holder has just deleted refuses to be opened until
  // the holder closes it (access denied): a moment.
  win32::retry_while_busy(
      [&] {
        h = CreateFileW(name, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                        CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (h != INVALID_HANDLE_VALUE) return true;
        error = GetLastError();
        return false;
      },
      [&] { return error == ERROR_ACCESS_DENIED; }, win32::kBusyAttempts / 10);
  if (h == INVALID_HANDLE_VALUE) {
    if (error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION) {
      return make_error(std::errc::device_or_resource_busy);
    }
    return system_error(error);
  }
  const bool text = content == WorkContent::kText;
  const int fd =
      _open_osfhandle(reinterpret_cast<intptr_t>(h), _O_WRONLY | (text ? _O_TEXT : _O_BINARY));
  if (fd == -1) {
    const std::error_code failed = errno_error();
    DeleteFileW(name);
    CloseHandle(h);
    return failed;
  }
  work.stream = _wfdopen(fd, text ? L"wt" : L"wb");
  if (work.stream == nullptr) {
    const std::error_code failed = errno_error();
    DeleteFileW(name);
    _close(fd);
    return failed;
  }
  work.handle = reinterpret_cast<std::intptr_t>(h);
  return {};
}

std::error_code finish_work_file(WorkFile& work, bool sync) {
  if (std::fflush(work.stream) != 0 || std::ferror(work.stream) != 0) {
    return make_error(std::errc::io_error);
  }
  if (sync && !FlushFileBuffers(handle_of(work))) return system_error(GetLastError());
  return {};
}

std::error_code replace_with_work_file(WorkFile& work, const wchar_t* target) {
  // The move would be refused as a busy file's, and waited for in vain.
  const DWORD attributes = GetFileAttributesW(target);
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    return make_error(std::errc::permission_denied);
  }
  DWORD error = ERROR_SUCCESS;
  if (!win32::move_file_while_busy(work.name.c_str(), target,
                                   MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH, error)) {
    return system_error(error);
  }
  // The hold ends only now that the file is in place.
  std::fclose(work.stream);
  return {};
}

std::error_code publish_work_file(WorkFile& work, const wchar_t* name) {
  // An entry that exists (a folder, say) might refuse the move as a busy file
  // would, and be waited for in vain.
  if (GetFileAttributesW(name) != INVALID_FILE_ATTRIBUTES) {
    return make_error(std::errc::file_exists);
  }
  DWORD error = ERROR_SUCCESS;
  // Without MOVEFILE_REPLACE_EXISTING the move fails on any existing entry.
  if (!win32::move_file_while_busy(work.name.c_str(), name, MOVEFILE_WRITE_THROUGH, error)) {
    if (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS) {
      return make_error(std::errc::file_exists);
    }
    return system_error(error);
  }
  std::fclose(work.stream);
  return {};
}

void drop_work_file(WorkFile& work) {
  // The hold shares deletion: the file goes when the stream closes.
  DeleteFileW(work.name.c_str());
  std::fclose(work.stream);
}

std::error_code remove_abandoned_work_file(const wchar_t* name) {
  // Reading without sharing writes is refused while a writer holds the file.
  HANDLE h = CreateFileW(name, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                         OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) {
    const DWORD error = GetLastError();
    if (error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION) {
      return make_error(std::errc::device_or_resource_busy);
    }
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) {
      return make_error(std::errc::no_such_file_or_directory);
    }
    return system_error(error);
  }
  DeleteFileW(name);
  CloseHandle(h);
  return {};
}

}  // namespace native

}  // namespace korvalen::platform
