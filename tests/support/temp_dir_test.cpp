#include "temp_dir_test.h"

#include <atomic>
#include <chrono>
#include <fstream>
#include <iterator>
#include <sstream>

#if defined(_WIN32)
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace korvalen::testing {
namespace {

long ProcessId() {
#if defined(_WIN32)
  return static_cast<long>(GetCurrentProcessId());
#else
  return static_cast<long>(getpid());
#endif
}

}  // namespace

void TempDirTest::SetUp() {
  static std::atomic<int> counter{0};
  previous_ = std::filesystem::current_path();
  const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
  std::ostringstream name;
  name << "korvalen-test-" << ProcessId() << "-" << counter++ << "-" << stamp % 100000;
  dir_ = std::filesystem::temp_directory_path() / name.str();
  std::filesystem::create_directories(dir_);
  std::filesystem::current_path(dir_);
}

void TempDirTest::TearDown() {
  std::filesystem::current_path(previous_);
  std::error_code ignored;
  std::filesystem::remove_all(dir_, ignored);
}

std::string Lines(const std::vector<std::string>& lines) {
  std::string out;
  for (const std::string& l : lines) out += l + "\r\n";
  return out;
}

std::string ReadBytes(const std::string& name) {
  std::ifstream in(name, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteBytes(const std::string& name, const std::string& bytes) {
  std::ofstream out(name, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

bool Exists(const std::string& name) {
  std::error_code ignored;
  return std::filesystem::exists(name, ignored);
}

std::string Utf16Le(const std::wstring& text) {
  std::string bytes = "\xFF\xFE";
  for (const wchar_t c : text) {
    bytes += static_cast<char>(c & 0xFF);
    bytes += static_cast<char>((c >> 8) & 0xFF);
  }
  return bytes;
}

bool RunningUnderWine() {
#if defined(_WIN32)
  HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
  return ntdll != nullptr && GetProcAddress(ntdll, "wine_get_version") != nullptr;
#else
  return false;
#endif
}

}  // namespace korvalen::testing
