// korvalen migrate [-C DIR]: the start-up migration of the suite's settings
// (param.sys into the product settings documents, once, and the default copy
// of those), run as a program of the suite runs it at start, and what it
// changed in the installation: files created, deleted and changed.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "commands.h"
#include "korvalen/korvalen.h"
#include "text_output.h"
#include "working_directory.h"

namespace korvalen::tool {
namespace {

namespace fs = std::filesystem;

// Every entry under the current directory by relative path, with the bytes
// of the files (directories have none).
std::map<fs::path, std::string> Snapshot() {
  std::map<fs::path, std::string> entries;
  for (const auto& entry : fs::recursive_directory_iterator(".")) {
    std::string bytes;
    if (entry.is_regular_file()) {
      std::ifstream in(entry.path(), std::ios::binary);
      bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    entries[entry.path().lexically_relative(".")] = bytes;
  }
  return entries;
}

void Report(const wchar_t* what, const fs::path& path) {
  fs::path shown = path;
  print(std::wstring(L"  ") + what + L" " + shown.make_preferred().wstring() + L"\n");
}

}  // namespace

void add_migrate_commands(CLI::App& app) {
  auto* migrate = app.add_subcommand(
      "migrate", "Migrate param.sys into the product settings and refresh their default copy");
  static std::string directory;
  add_directory_option(*migrate, directory);
  migrate->callback([] {
    if (!enter_directory(directory)) throw CLI::RuntimeError(1);
    const auto before = Snapshot();
    TratamientoFicherosConfiguracion();
    const auto after = Snapshot();
    int changes = 0;
    for (const auto& [path, bytes] : after) {
      const auto old = before.find(path);
      if (old == before.end()) {
        Report(L"created", path);
      } else if (old->second != bytes) {
        Report(L"changed", path);
      } else {
        continue;
      }
      ++changes;
    }
    for (const auto& [path, bytes] : before) {
      if (after.count(path) == 0) {
        Report(L"deleted", path);
        ++changes;
      }
    }
    print(changes == 0   ? std::wstring(L"Nothing changed\n")
          : changes == 1 ? std::wstring(L"1 change\n")
                         : std::to_wstring(changes) + L" changes\n");
    std::fflush(stdout);
  });
}

}  // namespace korvalen::tool
