#include "korvalen/settings/machine_parameters.h"

#include <cstdio>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/config_writer.h"
#include "korvalen/config/internal/record_walk.h"
#include "korvalen/foundation/formatted_output.h"
#include "korvalen/foundation/internal/whole_file.h"
#include "korvalen/foundation/streams.h"
#include "korvalen/foundation/string_functions.h"

namespace {

constexpr const wchar_t* kParametersFile = L"CFGSMACH.CFG";
constexpr const wchar_t* kParametersWork = L"AUXCFGSMACH.CFG";

// A004 to A008: the option file names.
constexpr int kFirstText = 4;
constexpr int kLastText = 8;

void CreateParametersFile(int switch_on, LONG a002, LONG a003) {
  korvalen::detail::write_whole_file(kParametersFile, [&](FILE* f) {
    fPrintf(f, L"#--------------------------------------------------------------------#\n");
    fPrintf(f, L"# CFGSMACH Aplication launch parameters                              #\n");
    fPrintf(f, L"#--------------------------------------------------------------------#\n");
    fPrintf(f, L"A000 %d\n", 1);
    fPrintf(f, switch_on != 0 ? L"A001 ON\n" : L"A001 OFF\n");
    fPrintf(f, L"A002 %d\n", static_cast<int>(a002));
    fPrintf(f, L"A003 %d\n", static_cast<int>(a003));
    fPrintf(f, L"A004 %s\n", L"CFGSMACH.OPC");
  });
}

// Groups 1 and 2 name their identifiers one by one; the others number their
// items after a common prefix.
constexpr const wchar_t* kGroup1[] = {L"21 1", L"21 2", L"21 6", L"21 7"};
constexpr const wchar_t* kGroup2[] = {L"21 3", L"21 4", L"21 5", L"21 6"};

struct NumberedGroup {
  int group;
  const wchar_t* prefix;
  int items;
};

constexpr NumberedGroup kNumberedGroups[] = {
    {3, L"22 9 ", 7}, {4, L"19 ", 4}, {5, L"22 1 ", 7}, {7, L"22 10 ", 6}, {8, L"22 8 ", 5},
};

template <int kItems>
void Listed(const wchar_t* const (&ids)[kItems], int item, wchar_t* id) {
  if (item >= 1 && item <= kItems) StrCpy(id, ids[item - 1]);
}

}  // namespace

void ReadCfgsMachParameters(int& a000, int& a001, LONG& a002, LONG& a003, wchar_t* a004,
                            wchar_t* a005, wchar_t* a006, wchar_t* a007, wchar_t* a008, int& a009) {
  a000 = 1;
  a001 = 0;
  a002 = 800;
  a003 = 600;
  wchar_t* const texts[] = {a004, a005, a006, a007, a008};
  for (wchar_t* text : texts) {
    if (text != nullptr) text[0] = 0;
  }
  a009 = 0;
  korvalen::detail::for_each_record<korvalen::kCfgLineChars>(
      kParametersFile, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (type != L'A') return true;
        if (index == 0) {
          LeerUnEntero(line, cursor, a000);
        } else if (index == 1) {
          LeerSIoNO(line, cursor, a001);
        } else if (index == 2) {
          LeerUnLong(line, cursor, a002);
        } else if (index == 3) {
          LeerUnLong(line, cursor, a003);
        } else if (index >= kFirstText && index <= kLastText) {
          wchar_t* text = texts[index - kFirstText];
          if (text != nullptr) LeerUnTexto(line, cursor, text);
        } else if (index == 9) {
          LeerUnEntero(line, cursor, a009);
        }
        return true;
      });
}

void WriteCfgsMachParameters(int switch_on, LONG a002, LONG a003) {
  int first = static_cast<int>(a002);
  int second = static_cast<int>(a003);
  const bool rewritten = korvalen::detail::rewrite_records<korvalen::kCfgLineChars>(
      kParametersFile, kParametersWork, [&](wchar_t* line, wchar_t type, int index, int cursor) {
        if (type == L'A' && index == 1) {
          EscribirSIoNO(line, cursor, switch_on);
        } else if (type == L'A' && index == 2 && switch_on == 0) {
          EscribirUnEntero(line, cursor, first);
        } else if (type == L'A' && index == 3 && switch_on == 0) {
          EscribirUnEntero(line, cursor, second);
        }
      });
  if (!rewritten) CreateParametersFile(switch_on, a002, a003);
}

int LeerEstadoOpt(const wchar_t* line, int& position, int& state) {
  if (line == nullptr) return 0;
  const int length = StrLen(line);
  int i = position < 0 ? 0 : position;
  while (i < length && line[i] == L' ') ++i;
  if (i < length && line[i] == L';' && (i + 1 == length || line[i + 1] == L' ')) {
    position = i + 1;
    return 0;
  }
  LeerUnEntero(line, position, state);
  return 1;
}

void GetCfgOptionID(int group, int item, wchar_t* id) {
  if (id == nullptr) return;
  id[0] = 0;
  if (group == 1) return Listed(kGroup1, item, id);
  if (group == 2) return Listed(kGroup2, item, id);
  for (const NumberedGroup& g : kNumberedGroups) {
    if (g.group == group && item >= 1 && item <= g.items) {
      sPrintf(id, L"%s%d", g.prefix, item);
    }
  }
}
