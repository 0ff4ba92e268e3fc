#include "korvalen/diagnostics/trace_messages.h"

#include <cstdio>

#include "korvalen/config/config_reader.h"
#include "korvalen/config/config_writer.h"
#include "korvalen/foundation/file_system.h"
#include "korvalen/foundation/formatted_output.h"
#include "korvalen/foundation/internal/number_formatting.h"
#include "korvalen/foundation/streams.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/platform/internal/files.h"
#include "korvalen/platform/internal/message_box.h"

namespace platform = korvalen::platform;

namespace {

constexpr const wchar_t* kWorkFile = L"AUXCHIVA.DAT";
constexpr int kTraceLineChars = 80;
// What EscribirLineaEnFichero writes of a line at most.
constexpr int kEntryChars = 498;
constexpr int kMessageChars = 1024;

// Text built in a fixed buffer; what does not fit is cut.
template <int Capacity>
class Bounded {
 public:
  Bounded& operator<<(const wchar_t* text) {
    for (; text != nullptr && *text != 0 && length_ < Capacity - 1; ++text)
      data_[length_++] = *text;
    data_[length_] = 0;
    return *this;
  }
  const wchar_t* c_str() const { return data_; }

 private:
  wchar_t data_[Capacity] = {};
  int length_ = 0;
};

// Values as the traces show them. Each fits its buffer: the longest is "%f"
// of the largest double, some 320 characters.
struct Value {
  wchar_t text[kMessageChars];
};

Value Char(wchar_t c) {
  Value v{};
  v.text[0] = c;
  return v;
}
Value Bool(int b) {
  Value v{};
  StrCpy(v.text, b != 0 ? L"TRUE" : L"FALSE");
  return v;
}
Value Integer(long n) {
  Value v{};
  sPrintf(v.text, L"%ld", n);
  return v;
}
Value Real(double x, int decimals) {
  Value v{};
  korvalen::detail::format_fixed(v.text, kMessageChars, x, decimals);
  return v;
}

// A box that cannot be shown is a trace lost; the caller carries on.
void Show(const wchar_t* text, const wchar_t* caption) {
  int answer = 0;
  (void)platform::show_message_box(text, caption, platform::kMessageBoxOk, answer);
}

void AppendToTrace(const wchar_t* file, const wchar_t* value, const wchar_t* name) {
  FILE* work = fOpen(kWorkFile, L"wt");
  if (work != nullptr) {
    if (FILE* trace = fOpen(file, L"rt"); trace != nullptr) {
      wchar_t line[kTraceLineChars + 1];
      // The read that meets the end of the file gives an empty line, and it is
      // written too: the trace keeps an empty line before each new entry.
      while (!std::feof(trace) && !std::ferror(trace)) {
        LeerLineaDeFichero(trace, line, kTraceLineChars);
        EscribirLineaEnFichero(work, line);
      }
      std::fclose(trace);
    }
    Bounded<kEntryChars + 1> entry;
    entry << name << L" = " << value;
    EscribirLineaEnFichero(work, entry.c_str());
    std::fclose(work);
    // The new trace replaces the old one in one step.
    if (!platform::replace_file(kWorkFile, file)) return;
  }
  // Without a work file of its own, the trace still gives way to whatever
  // "AUXCHIVA.DAT" holds, or is lost.
  Remove(file);
  Rename(kWorkFile, file);
}

}  // namespace

void ChivatoMsgTexto(const wchar_t* text, const wchar_t* caption) { Show(text, caption); }
void ChivatoMsgChar(wchar_t value, const wchar_t* caption) { Show(Char(value).text, caption); }
void ChivatoMsgBool(int value, const wchar_t* caption) { Show(Bool(value).text, caption); }
void ChivatoMsgShort(short value, const wchar_t* caption) { Show(Integer(value).text, caption); }
void ChivatoMsgEntero(int value, const wchar_t* caption) { Show(Integer(value).text, caption); }
void ChivatoMsgLong(LONG value, const wchar_t* caption) { Show(Integer(value).text, caption); }
void ChivatoMsgReal(double value, const wchar_t* caption) { Show(Real(value, 6).text, caption); }

void ChivatoTiempo(const wchar_t* text, std::tm& time) {
  wchar_t clock[64];
  sPrintf(clock, L"%02d:%02d:%02d.", time.tm_hour, time.tm_min, time.tm_sec);
  Bounded<kMessageChars> message;
  message << text << L" -> " << clock;
  Show(message.c_str(), L"Tiempo");
}

void ChivatoFicTexto(const wchar_t* file, const wchar_t* value, const wchar_t* name) {
  if (file == nullptr || *file == 0) return;
  try {
    AppendToTrace(file, value, name);
  } catch (...) {
    // A trace that cannot be written is not the caller's problem.
  }
}

void ChivatoFicChar(const wchar_t* file, wchar_t value, const wchar_t* name) {
  ChivatoFicTexto(file, Char(value).text, name);
}
void ChivatoFicBool(const wchar_t* file, int value, const wchar_t* name) {
  ChivatoFicTexto(file, Bool(value).text, name);
}
void ChivatoFicShort(const wchar_t* file, short value, const wchar_t* name) {
  ChivatoFicTexto(file, Integer(value).text, name);
}
void ChivatoFicEntero(const wchar_t* file, int value, const wchar_t* name) {
  ChivatoFicTexto(file, Integer(value).text, name);
}
void ChivatoFicLong(const wchar_t* file, LONG value, const wchar_t* name) {
  ChivatoFicTexto(file, Integer(value).text, name);
}
void ChivatoFicReal(const wchar_t* file, double value, const wchar_t* name) {
  ChivatoFicTexto(file, Real(value, 3).text, name);
}
