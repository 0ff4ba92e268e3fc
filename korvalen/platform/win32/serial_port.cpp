// Serial ports over the Win32 comm API, threads and events.
#include "korvalen/platform/internal/serial_port.h"

#include <windows.h>

#include <string>

namespace korvalen::platform {
namespace {

std::error_code last_error() {
  return std::error_code(static_cast<int>(GetLastError()), std::system_category());
}

std::error_code result_of(BOOL ok) { return ok ? std::error_code() : last_error(); }

}  // namespace

std::error_code open_serial_port(int number, HANDLE& port) {
  const std::wstring name = L"COM" + std::to_wstring(number);
  port = CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                     FILE_FLAG_OVERLAPPED, nullptr);
  if (port != INVALID_HANDLE_VALUE) return {};
  const DWORD error = GetLastError();
  if (error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED) {
    return std::make_error_code(std::errc::device_or_resource_busy);
  }
  return std::error_code(static_cast<int>(error), std::system_category());
}

std::error_code set_queue_sizes(HANDLE port, DWORD input_bytes, DWORD output_bytes) {
  return result_of(SetupComm(port, input_bytes, output_bytes));
}

std::error_code set_timeouts(HANDLE port, const COMMTIMEOUTS& timeouts) {
  COMMTIMEOUTS copy = timeouts;
  return result_of(SetCommTimeouts(port, &copy));
}

std::error_code get_port_state(HANDLE port, DCB& state) {
  return result_of(GetCommState(port, &state));
}

std::error_code set_port_state(HANDLE port, const DCB& state) {
  DCB copy = state;
  return result_of(SetCommState(port, &copy));
}

std::error_code set_dtr(HANDLE port, bool raised) {
  return result_of(EscapeCommFunction(port, raised ? SETDTR : CLRDTR));
}

std::error_code clear_event_mask(HANDLE port) { return result_of(SetCommMask(port, 0)); }

std::error_code purge_port(HANDLE port) {
  return result_of(PurgeComm(port, PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR));
}

void close_port(HANDLE port) { CloseHandle(port); }

std::error_code write_port(HANDLE port, OVERLAPPED& overlapped, const char* bytes, DWORD size,
                           DWORD wait_ms, WriteEnd& end, DWORD& written) {
  written = 0;
  if (WriteFile(port, bytes, size, nullptr, &overlapped)) {
    end = WriteEnd::kAtOnce;
    return {};
  }
  if (GetLastError() != ERROR_IO_PENDING) return last_error();
  if (WaitForSingleObject(overlapped.hEvent, wait_ms) != WAIT_OBJECT_0) {
    return std::make_error_code(std::errc::timed_out);
  }
  if (!GetOverlappedResult(port, &overlapped, &written, FALSE)) return last_error();
  end = WriteEnd::kAfterWait;
  return {};
}

std::error_code start_thread(LPTHREAD_START_ROUTINE routine, HANDLE& thread) {
  DWORD id = 0;
  thread = CreateThread(nullptr, 0, routine, nullptr, 0, &id);
  if (thread == nullptr) return last_error();
  SetThreadPriority(thread, THREAD_PRIORITY_HIGHEST);
  ResumeThread(thread);
  return {};
}

bool thread_running(HANDLE thread) {
  DWORD code = 0;
  return GetExitCodeThread(thread, &code) && code == STILL_ACTIVE;
}

void close_thread(HANDLE thread) { CloseHandle(thread); }

std::error_code create_event(bool manual_reset, bool signalled, HANDLE& event) {
  event = CreateEventW(nullptr, manual_reset, signalled, nullptr);
  return event != nullptr ? std::error_code() : last_error();
}

std::error_code set_event(HANDLE event) { return result_of(SetEvent(event)); }

void close_event(HANDLE event) { CloseHandle(event); }

}  // namespace korvalen::platform
