#include "serial_peer.h"

#include <chrono>
#include <string>
#include <thread>

#include "process_support.h"
#include "temp_dir_test.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cstdlib>
#endif

namespace korvalen::testing {

#if defined(_WIN32)

namespace {

HANDLE Peer(long long handle) { return reinterpret_cast<HANDLE>(handle); }

std::string UnixName(const wchar_t* windows_name) {
  using UnixNameOf = char*(CDECL*)(const wchar_t*);
  const auto unix_name = reinterpret_cast<UnixNameOf>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
  char* name = unix_name != nullptr ? unix_name(windows_name) : nullptr;
  std::string result = name != nullptr ? name : "";
  if (name != nullptr) HeapFree(GetProcessHeap(), 0, name);
  return result;
}

}  // namespace

SerialPeer::SerialPeer() {
  if (!RunningUnderWine()) {
    unavailable_ = "needs a null-modem pair of ports on Windows";
    return;
  }
  // "c:/" ends the prefix's name for drive C: its dosdevices folder.
  std::string dosdevices = UnixName(L"C:\\");
  dosdevices.resize(dosdevices.size() >= 3 ? dosdevices.size() - 3 : 0);
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  // COM1 to COM9 are the only device names; take one no other run maps.
  const int pid = static_cast<int>(GetCurrentProcessId());
  // A name ending in COMn means the device wherever it stands, so the links
  // are listed with a pattern rather than looked up by name.
  bool mapped[10] = {true, true};
  WIN32_FIND_DATAW found;
  const std::wstring links = L"Z:" + std::wstring(dosdevices.begin(), dosdevices.end()) + L"com?";
  HANDLE search = FindFirstFileW(links.c_str(), &found);
  for (bool more = search != INVALID_HANDLE_VALUE; more; more = FindNextFileW(search, &found)) {
    if (found.cFileName[3] >= L'1' && found.cFileName[3] <= L'9')
      mapped[found.cFileName[3] - L'0'] = true;
  }
  if (search != INVALID_HANDLE_VALUE) FindClose(search);
  for (int i = 0; i < 8 && port_ == 0; ++i) {
    const int n = 2 + (pid + i) % 8;
    if (!mapped[n]) port_ = n;
  }
  const std::wstring peer = std::wstring(temp) + L"korvalen-peer-" + std::to_wstring(pid);
  if (dosdevices.empty() || port_ == 0 || UnixName(peer.c_str()).empty()) {
    unavailable_ = "no Wine prefix or no free COM port name";
    return;
  }
  // socat ends by itself after 10 idle seconds, and removes its links then.
  std::string command = "/usr/bin/socat -T 10 PTY,raw,echo=0,link=" + dosdevices + "com" +
                        std::to_string(port_) + " PTY,raw,echo=0,link=" + UnixName(peer.c_str());
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (!CreateProcessA("Z:\\usr\\bin\\socat", command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                      nullptr, &startup, &process)) {
    unavailable_ = "socat cannot be started (is it installed?)";
    return;
  }
  HANDLE h = INVALID_HANDLE_VALUE;
  for (int i = 0; i < 250 && h == INVALID_HANDLE_VALUE; ++i) {
    Sleep(20);
    h = CreateFileW(peer.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0,
                    nullptr);
  }
  if (h == INVALID_HANDLE_VALUE) {
    unavailable_ = "socat made no pseudo-terminal pair";
    return;
  }
  handle_ = reinterpret_cast<long long>(h);
}

SerialPeer::~SerialPeer() { Close(); }

bool SerialPeer::Write(const std::string& bytes) {
  DWORD written = 0;
  return WriteFile(Peer(handle_), bytes.data(), static_cast<DWORD>(bytes.size()), &written,
                   nullptr) &&
         written == bytes.size();
}

std::string SerialPeer::Read(std::size_t count, int timeout_ms) {
  COMMTIMEOUTS timeouts{MAXDWORD, MAXDWORD, static_cast<DWORD>(timeout_ms), 0, 0};
  SetCommTimeouts(Peer(handle_), &timeouts);
  std::string bytes;
  char buffer[4096];
  DWORD n = 0;
  while (bytes.size() < count && ReadFile(Peer(handle_), buffer, sizeof buffer, &n, nullptr) &&
         n > 0) {
    bytes.append(buffer, n);
  }
  return bytes;
}

void SerialPeer::Close() {
  if (handle_ != -1) CloseHandle(Peer(handle_));
  handle_ = -1;
}

#else

SerialPeer::SerialPeer() {
  const int master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0 || ptsname(master) == nullptr) {
    unavailable_ = "no pseudo-terminal";
    return;
  }
  handle_ = master;
  port_ = 7;
  SetEnvironment("KORVALEN_COM7", ptsname(master));
}

SerialPeer::~SerialPeer() { Close(); }

bool SerialPeer::Write(const std::string& bytes) {
  return write(master(), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
}

std::string SerialPeer::Read(std::size_t count, int timeout_ms) {
  std::string bytes;
  char buffer[65536];
  pollfd p{master(), POLLIN, 0};
  while (bytes.size() < count && poll(&p, 1, timeout_ms) > 0) {
    const ssize_t n = read(master(), buffer, sizeof buffer);
    if (n <= 0) break;
    bytes.append(buffer, static_cast<std::size_t>(n));
  }
  return bytes;
}

void SerialPeer::Close() {
  if (handle_ != -1) close(master());
  handle_ = -1;
}

#endif

}  // namespace korvalen::testing
