// Reads the version resource of a module with the system's own reader and
// compares its fixed and text versions with the project version:
//
//   korvalen_version_resource_check KORVALEN.DLL 1.2.3
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

std::wstring Wide(const char* text) {
  return std::wstring(text, text + std::char_traits<char>::length(text));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const std::wstring module = Wide(argv[1]);
  const std::wstring version = Wide(argv[2]);
  unsigned major = 0, minor = 0, patch = 0;
  if (std::sscanf(argv[2], "%u.%u.%u", &major, &minor, &patch) != 3) return 2;

  DWORD ignored = 0;
  const DWORD size = GetFileVersionInfoSizeW(module.c_str(), &ignored);
  std::vector<unsigned char> block(size);
  if (size == 0 || !GetFileVersionInfoW(module.c_str(), 0, size, block.data())) {
    std::printf("no version resource in %s\n", argv[1]);
    return 1;
  }
  int failures = 0;
  auto check = [&failures](bool ok, const char* what) {
    if (!ok) {
      std::printf("FAILED: %s\n", what);
      ++failures;
    }
  };

  void* value = nullptr;
  UINT length = 0;
  check(VerQueryValueW(block.data(), L"\\", &value, &length) && length >= sizeof(VS_FIXEDFILEINFO),
        "the fixed part");
  if (value != nullptr) {
    const auto* fixed = static_cast<const VS_FIXEDFILEINFO*>(value);
    const DWORD ms = MAKELONG(minor, major);
    const DWORD ls = MAKELONG(0, patch);
    check(fixed->dwSignature == 0xFEEF04BD, "signature");
    check(fixed->dwFileVersionMS == ms && fixed->dwFileVersionLS == ls, "FILEVERSION");
    check(fixed->dwProductVersionMS == ms && fixed->dwProductVersionLS == ls, "PRODUCTVERSION");
    check(fixed->dwFileType == VFT_DLL, "file type");
  }

  // The texts in the language and code page the translation entry names.
  WORD* translation = nullptr;
  check(VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation",
                       reinterpret_cast<void**>(&translation), &length) &&
            length == 4,
        "translation entry");
  if (translation == nullptr) return 1;
  wchar_t table[64];
  std::swprintf(table, 64, L"\\StringFileInfo\\%04X%04X\\", translation[0], translation[1]);
  const struct {
    const wchar_t* name;
    std::wstring expected;
  } texts[] = {{L"FileVersion", version},
               {L"ProductVersion", version},
               {L"ProductName", L"korvalen"},
               {L"OriginalFilename", L"KORVALEN.DLL"}};
  for (const auto& text : texts) {
    wchar_t* found = nullptr;
    const bool ok = VerQueryValueW(block.data(), (table + std::wstring(text.name)).c_str(),
                                   reinterpret_cast<void**>(&found), &length);
    check(ok && found != nullptr && text.expected == found, "a text of the string table");
    if (!ok || found == nullptr || text.expected != found) std::printf("  (%ls)\n", text.name);
  }
  if (failures == 0) std::printf("version resource %s: OK\n", argv[2]);
  return failures == 0 ? 0 : 1;
}
