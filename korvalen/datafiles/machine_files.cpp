#include "korvalen/datafiles/machine_files.h"

#include <initializer_list>
#include <iterator>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/internal/record_walk.h"
#include "korvalen/datafiles/work_order_files.h"
#include "korvalen/foundation/file_system.h"
#include "korvalen/platform/internal/bounded_copy.h"
#include "korvalen/platform/windows_types.h"

namespace {

using korvalen::platform::copy_cut;

constexpr const wchar_t* kProcessFile = L"MIRSELIN.CNI";
constexpr int kDirectoryChars = 257;  // what DameNombreDeDirBDActiva fills

// The Z record behind each of the ten shared-folder flags, in flag order.
constexpr int kSharedFolderRecords[] = {44, 45, 46, 47, 51, 48, 49, 50, 52, 65};
constexpr int kSharedFlags = static_cast<int>(std::size(kSharedFolderRecords));

// The flags that DameNombresFicheros looks at, by their place in that list.
constexpr int kProgramInShared = 1;   // Z045
constexpr int kSettingsInShared = 2;  // Z046, only when the file is there
constexpr int kFifthInShared = 4;     // Z051
constexpr int kThirdInShared = 5;     // Z048
constexpr int kFourthInShared = 7;    // Z050

void ReadSharedFlags(int* const (&flags)[kSharedFlags]) {
  for (int* flag : flags) *flag = 0;
  korvalen::detail::for_each_record<korvalen::kCfgLineChars>(
      kProcessFile, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type != L'Z') return true;
        for (int i = 0; i < kSharedFlags; ++i) {
          if (kSharedFolderRecords[i] == index) LeerSIoNO(line, cursor, *flags[i]);
        }
        return true;
      });
}

// Reads the texts of the records of one letter into their outputs: the
// record of index indexes[k] into texts[k]. The outputs hold a whole line.
void ReadTexts(const wchar_t* file, wchar_t letter, std::initializer_list<int> indexes,
               std::initializer_list<wchar_t*> texts) {
  korvalen::detail::for_each_record<korvalen::kCfgLineChars>(
      file, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type != letter) return true;
        auto text = texts.begin();
        for (const int wanted : indexes) {
          if (wanted == index) LeerUnTexto(line, cursor, *text);
          ++text;
        }
        return true;
      });
}

// name = "<dir>\FilesCfg\<name>", cut to the name's buffer.
void InSharedFolder(const wchar_t* dir, wchar_t* name) {
  wchar_t path[kMachineFilePathChars];
  int n = 0;
  for (const wchar_t* part : {dir, L"\\FilesCfg\\", static_cast<const wchar_t*>(name)}) {
    for (; *part != 0 && n < kMachineFilePathChars - 1; ++part) path[n++] = *part;
  }
  path[n] = 0;
  copy_cut(name, kMachineFilePathChars, path);
}

}  // namespace

void FicherosMaquinaEnRed(int& flag1, int& flag2, int& flag3, int& flag4, int& flag5, int& flag6,
                          int& flag7, int& flag8, int& flag9, int& flag10) {
  ReadSharedFlags(
      {&flag1, &flag2, &flag3, &flag4, &flag5, &flag6, &flag7, &flag8, &flag9, &flag10});
}

int DameNombresFicheros(const wchar_t* machine_file, wchar_t* name1, wchar_t* name2, wchar_t* name3,
                        wchar_t* name4, wchar_t* name5) {
  wchar_t* const names[] = {name1, name2, name3, name4, name5};
  for (wchar_t* name : names) {
    if (name == nullptr) return 0;
  }
  for (wchar_t* name : names) copy_cut(name, kMachineFilePathChars, kMachineFilePlaceholder);
  if (machine_file != nullptr && machine_file[0] != 0) {
    ReadTexts(machine_file, L'C', {0, 1}, {name1, name2});
  }
  int flags[kSharedFlags];
  int* const flag_outputs[kSharedFlags] = {&flags[0], &flags[1], &flags[2], &flags[3], &flags[4],
                                           &flags[5], &flags[6], &flags[7], &flags[8], &flags[9]};
  ReadSharedFlags(flag_outputs);
  wchar_t dir[kDirectoryChars];
  DameNombreDeDirBDActiva(dir);
  if (flags[kSettingsInShared] != 0) {
    wchar_t shared[kMachineFilePathChars];
    copy_cut(shared, kMachineFilePathChars, name2);
    InSharedFolder(dir, shared);
    if (ExisteFicherosOrigen(shared)) copy_cut(name2, kMachineFilePathChars, shared);
  }
  if (name2[0] != 0) ReadTexts(name2, L'A', {19, 26, 29}, {name3, name4, name5});
  if (flags[kProgramInShared] != 0) InSharedFolder(dir, name1);
  if (flags[kThirdInShared] != 0) InSharedFolder(dir, name3);
  if (flags[kFourthInShared] != 0) InSharedFolder(dir, name4);
  if (flags[kFifthInShared] != 0) InSharedFolder(dir, name5);
  return name1[0] != 0 && name2[0] != 0 ? 1 : 0;
}

int ExisteFicherosOrigen(const wchar_t* file_name) {
  wchar_t found[MAX_PATH + 1];
  SearchEnv(file_name, L"PATH", found);
  return found[0] != 0 ? 1 : 0;
}

void LeerParametrosCNIIdentif(int& flag, wchar_t* text) {
  korvalen::detail::for_each_record<korvalen::kCfgLineChars>(
      kProcessFile, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type == L'Z' && index == 0) {
          LeerSIoNO(line, cursor, flag);
        } else if (type == L'Z' && index == 7 && text != nullptr) {
          LeerUnTexto(line, cursor, text);
        }
        return true;
      });
}

void LeerParametrosCNIAyuda(int& value) {
  korvalen::detail::for_each_record<korvalen::kCfgLineChars>(
      kProcessFile, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type == L'Z' && index == 35) LeerUnEntero(line, cursor, value);
        return true;
      });
}
