#include "korvalen/settings/mosaic_settings.h"

#include <cstdio>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/config_writer.h"
#include "korvalen/config/internal/record_walk.h"
#include "korvalen/foundation/formatted_output.h"
#include "korvalen/foundation/internal/typed_list.h"
#include "korvalen/foundation/internal/whole_file.h"
#include "korvalen/foundation/streams.h"
#include "korvalen/foundation/string_functions.h"

namespace {

constexpr const wchar_t* kMosaicFile = L"MOSAICOS.CFG";
constexpr const wchar_t* kMosaicWork = L"AUXMOSAICOS.CFG";
constexpr int kLastSettingsRecord = 13;

// The switch records and their fields.
struct Switch {
  int index;
  int TipoRegMosaico::*field;
};

constexpr Switch kSwitches[] = {
    {1, &TipoRegMosaico::a001},  {2, &TipoRegMosaico::a002}, {3, &TipoRegMosaico::a003},
    {4, &TipoRegMosaico::a004},  {6, &TipoRegMosaico::a006}, {7, &TipoRegMosaico::a007},
    {8, &TipoRegMosaico::a008},  {9, &TipoRegMosaico::a009}, {10, &TipoRegMosaico::a010},
    {13, &TipoRegMosaico::a013},
};

int TipoRegMosaico::*SwitchOf(int index) {
  for (const Switch& s : kSwitches) {
    if (s.index == index) return s.field;
  }
  return nullptr;
}

// The text cut to the capacity of a field; a field of the caller's that was
// left unterminated is read no further than its own capacity.
template <int kChars>
void CopyCut(wchar_t (&out)[kChars], const wchar_t* text) {
  int i = 0;
  for (; i < kChars - 1 && text[i] != 0; ++i) out[i] = text[i];
  out[i] = 0;
}

// A text field of a long record, read whole and then cut to its capacity.
template <int kChars>
void ReadCut(void (*read)(const wchar_t*, int&, wchar_t*), const wchar_t* line, int& cursor,
             wchar_t (&out)[kChars]) {
  wchar_t whole[korvalen::kCfgLongLineChars + 1];
  read(line, cursor, whole);
  CopyCut(out, whole);
}

// The list keeps no tail: it is the last record.
TRegMosaico* LastOf(TRegMosaico* head) {
  TRegMosaico* last = head;
  while (last != nullptr && last->next != nullptr) last = last->next;
  return last;
}

void FreeEntries(TipoRegMosaico& settings) {
  TRegMosaico* last = LastOf(settings.entries);
  korvalen::detail::free_list(settings.entries, last);
  settings.entry_count = 0;
}

void ReadSettingsRecord(TipoRegMosaico& settings, const wchar_t* line, int index, int& cursor,
                        int& a000) {
  if (index == 0) {
    LeerSIoNO(line, cursor, a000);
  } else if (const auto field = SwitchOf(index)) {
    LeerSIoNO(line, cursor, settings.*field);
  } else if (index == 5) {
    LeerUnEntero(line, cursor, settings.a005);
  } else if (index == 11) {
    LeerUnReal(line, cursor, settings.a011);
  } else if (index == 12) {
    ReadCut(LeerUnTexto, line, cursor, settings.a012);
  }
}

void EditSettingsRecord(const TipoRegMosaico& settings, wchar_t* line, int index, int cursor) {
  if (const auto field = SwitchOf(index)) {
    int on = settings.*field;
    EscribirSIoNO(line, cursor, on);
  } else if (index == 5) {
    int value = settings.a005;
    EscribirUnEntero(line, cursor, value);
  } else if (index == 11) {
    double value = settings.a011;
    EscribirUnReal(line, cursor, value);
  } else if (index == 12) {
    wchar_t text[kMosaicTextChars];
    CopyCut(text, settings.a012);
    EscribirUnTexto(line, cursor, text);
  }
}

void WriteEntries(FILE* out, const TRegMosaico* head) {
  for (const TRegMosaico* e = head; e != nullptr; e = e->next) {
    wchar_t name[kMosaicNameChars];
    wchar_t code[kMosaicCodeChars];
    CopyCut(name, e->name);
    CopyCut(code, e->code);
    fPrintf(out, L"Z000 \"%s\"\n", name);
    fPrintf(out, L"Z001 \"%s\"\n", code);
    fPrintf(out, L"Z999\n");
  }
}

}  // namespace

int LeerCfgMosaicos(TipoRegMosaico& settings, int& error) {
  settings = TipoRegMosaico{};
  TRegMosaico pending{};
  int a000 = 0;
  TRegMosaico* last = nullptr;
  const bool opened = korvalen::detail::for_each_record<korvalen::kCfgLongLineChars>(
      kMosaicFile, [&](wchar_t* line, wchar_t type, int index, int& cursor) {
        if (error != 0) return false;
        if (type == L'A') {
          ReadSettingsRecord(settings, line, index, cursor, a000);
        } else if (type == L'Z' && index == 0) {
          ReadCut(LeerUnString, line, cursor, pending.name);
        } else if (type == L'Z' && index == 1) {
          ReadCut(LeerUnString, line, cursor, pending.code);
        } else if (type == L'Z' && index == 999) {
          if (korvalen::detail::append(settings.entries, last, pending) == 0) {
            error = 1;
            return false;
          }
          ++settings.entry_count;
          pending = TRegMosaico{};
        }
        return true;
      });
  if (!opened) return 0;
  if (error != 0) {
    korvalen::detail::free_list(settings.entries, last);
    settings.entry_count = 0;
    return 0;
  }
  return a000;
}

void EscribirCfgMosaicos(TipoRegMosaico& settings) {
  FILE* in = fOpen(kMosaicFile, L"rt");
  korvalen::detail::WorkFile out(kMosaicWork);
  if (in != nullptr && out.stream() != nullptr) {
    korvalen::detail::for_each_line<korvalen::kCfgLongLineChars>(
        in, [&](wchar_t* line, wchar_t type, int index, int cursor) {
          if (type == L'Z') return;
          if (type == L'A' && index >= 1 && index <= kLastSettingsRecord) {
            EditSettingsRecord(settings, line, index, cursor);
          }
          EscribirLineaEnFichero(out.stream(), line);
        });
  }
  if (in != nullptr) std::fclose(in);
  if (out.stream() != nullptr) {
    WriteEntries(out.stream(), settings.entries);
    out.Replace(kMosaicFile);
  } else {
    korvalen::detail::give_up_target(out, kMosaicFile, kMosaicWork);
  }
  FreeEntries(settings);
}
