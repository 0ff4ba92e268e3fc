// Fuzzes the config record reader and writer: arbitrary bytes become a
// settings file read through every line reader, and every line is then taken
// apart by every field reader and edited by every in-place writer, all on heap
// buffers of exactly the capacity their contract states, so that a write one
// character too far is caught.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "korvalen/korvalen.h"

namespace {

using Chars = std::unique_ptr<wchar_t[]>;

Chars Make(std::size_t capacity) { return Chars(new wchar_t[capacity]); }

Chars Copy(const wchar_t* text, std::size_t capacity) {
  Chars out = Make(capacity);
  std::wcscpy(out.get(), text);
  return out;
}

// Work files in the temporary directory, unique to this process so that
// parallel fuzzing jobs do not share them; removed when the process ends.
struct WorkFiles {
  WorkFiles() {
    std::random_device random;
    const std::filesystem::path base = std::filesystem::temp_directory_path() /
                                       ("korvalen-config-fuzz-" + std::to_string(random()));
    input = base.string() + ".cfg";
    output = base.string() + ".out";
  }
  ~WorkFiles() {
    std::remove(input.c_str());
    std::remove(output.c_str());
  }
  std::string input;
  std::string output;
};

struct Inputs {
  int max_length;
  int value;
  LONG long_value;
  double real;
  char separator;
  int extra_cursor;
  std::wstring text;  // a value for the text writers, any length
};

void ReadFields(const wchar_t* line, int start, const Inputs& in) {
  const std::size_t text_capacity = std::wcslen(line) + 1;
  Chars text = Make(text_capacity);
  int cursor = start;
  wchar_t c;
  int i;
  short s;
  LONG l;
  double r;
  // One pass in record order, each reader going on from where the last one
  // stopped, then every reader from the same start.
  for (int round = 0; round < 2; ++round) {
    auto from = [&]() -> int& {
      if (round == 1) cursor = start;
      return cursor;
    };
    LeerUnStr(line, from(), text.get());
    LeerUnStrSep(line, from(), in.separator, text.get());
    LeerUnChar(line, from(), c);
    LeerUnTexto(line, from(), text.get());
    LeerUnString(line, from(), text.get());
    LeerUnStringSep(line, from(), in.separator, text.get());
    LeerSIoNO(line, from(), i);
    LeerSIoNOInt(line, from(), i);
    LeerUnShort(line, from(), s);
    LeerUnEntero(line, from(), i);
    LeerUnEnteroSep(line, from(), in.separator, i);
    LeerUnLong(line, from(), l);
    LeerUnReal(line, from(), r);
  }
}

void EditFields(const wchar_t* line, std::size_t capacity, int start, const Inputs& in, FILE* out) {
  const int n = static_cast<int>(std::wcslen(line));
  const wchar_t* text = in.text.c_str();
  const int text_length = static_cast<int>(in.text.size());
  int value = in.value;
  LONG long_value = in.long_value;
  double real = in.real;

  // The in-place writers never lengthen the line.
  Chars edited = Copy(line, capacity);
  int cursor = start;
  EscribirUnStr(edited.get(), cursor, text);
  EscribirUnTexto(edited.get(), cursor, text);
  EscribirSIoNO(edited.get(), cursor, value);
  EscribirUnEntero(edited.get(), cursor, value);
  EscribirUnLong(edited.get(), cursor, long_value);
  EscribirUnReal(edited.get(), cursor, real);
  EscribirUnRealLargo(edited.get(), cursor, real);
  EscribirUnTexto(edited.get(), cursor, line);
  EscribirLineaEnFichero(out, edited.get());

  // The forced text needs room up to the closing quote and its terminator.
  if (start <= n + 600) {
    const int s = std::max(start, 0);
    Chars forced = Copy(line, std::max<std::size_t>(capacity, s + text_length + 4));
    cursor = start;
    EscribirUnTextoForzado(forced.get(), cursor, text);
    EscribirLineaEnFichero(out, forced.get());
  }

  // The separate destination holds the source or a 79-character prefix with
  // the quoted text.
  Chars destination = Make(std::max(n + 1, 79 + text_length + 3));
  cursor = start;
  EscribirUnTextoLargo(line, destination.get(), cursor, text);
  EscribirLineaEnFichero(out, destination.get());
}

void BuildRecords(const wchar_t* line, const Inputs& in, FILE* out) {
  // The first word of the line is the head.
  const std::size_t head_length = std::min<std::size_t>(std::wcscspn(line, L" "), 12);
  const std::wstring head(line, head_length);
  // The head's last character becomes the opening quote; an empty head gets one.
  const std::size_t quoted = std::max<std::size_t>(head_length, 1) + in.text.size() + 1;
  Chars record = Make(std::max<std::size_t>(quoted, 76) + 2);
  DameParametroTexto(head.c_str(), in.text.c_str(), record.get());
  EscribirLineaEnFichero(out, record.get());
  record = Make(head_length + 11 + 2 + 1);
  DameParametroEntero(head.c_str(), in.value, record.get());
  DameParametroLong(head.c_str(), in.long_value, record.get());
  record = Make(head_length + 3 + 2 + 1);
  DameParametroBool(head.c_str(), 0, record.get());
  DameONOFFConUnInt(head.c_str(), in.value, record.get());
  // Any double in "%1.3f": sign, 309 digits, point and three decimals.
  record = Make(head_length + 314 + 2 + 1);
  DameParametroReal(head.c_str(), in.real, record.get());
  EscribirLineaEnFichero(out, record.get());
}

void ExerciseLine(const wchar_t* line, std::size_t capacity, const Inputs& in, FILE* out) {
  wchar_t type = L' ';
  int index = 0;
  int head_cursor = 0;
  ObtenerTipoIndexCfg(line, type, index, head_cursor);
  const int n = static_cast<int>(std::wcslen(line));
  const int starts[] = {head_cursor, 0, -1, n - 1, n, n + 1, n + 2, in.extra_cursor, INT_MAX};
  for (int start : starts) {
    ReadFields(line, start, in);
    if (start != INT_MAX) EditFields(line, capacity, start, in, out);
  }
  BuildRecords(line, in, out);
}

void ReadRecords(const std::string& name, bool long_lines, const Inputs& in, FILE* out) {
  FILE* file = fOpen(name.c_str(), "rt");
  if (file == nullptr) return;
  const std::size_t capacity = long_lines ? 501 : 81;
  Chars line = Make(capacity);
  wchar_t type = L' ';
  int index = 0;
  int cursor = 0;
  // A read error never sets the end-of-file indicator; the bound keeps the
  // loop finite anyway.
  for (int reads = 0; reads < 5000 && !std::feof(file); ++reads) {
    if (long_lines) {
      LeerLineaLargaDeCfg(file, line.get(), type, index, cursor);
    } else {
      LeerLineaDeCfg(file, line.get(), type, index, cursor);
    }
    // Writing every edited line would make file output the bulk of the work.
    if (reads < 6) ExerciseLine(line.get(), capacity, in, reads < 2 ? out : nullptr);
  }
  std::fclose(file);
}

void ReadPlain(const std::string& name, const Inputs& in) {
  FILE* file = fOpen(name.c_str(), "rt");
  if (file == nullptr) return;
  Chars line = Make(static_cast<std::size_t>(std::max(in.max_length, 0)) + 1);
  for (int reads = 0; reads < 5000 && !std::feof(file); ++reads) {
    switch (reads % 3) {
      case 0:
        LeerLineaDeFichero(file, line.get(), in.max_length);
        break;
      case 1:
        LeerEnteroDeFichero(file);
        break;
      default:
        LeerRealDeFichero(file);
        break;
    }
  }
  std::fclose(file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider provider(data, size);
  Inputs in;
  in.max_length = provider.ConsumeIntegralInRange(-2, 2100);
  in.value = provider.ConsumeIntegral<int>();
  in.long_value = provider.ConsumeIntegral<LONG>();
  const std::uint64_t bits = provider.ConsumeIntegral<std::uint64_t>();
  std::memcpy(&in.real, &bits, sizeof in.real);
  in.separator = provider.ConsumeIntegral<char>();
  in.extra_cursor = provider.ConsumeIntegralInRange(-3, 600);
  const std::string text = provider.ConsumeRandomLengthString(700);
  for (unsigned char byte : text) {
    // Some characters outside the code page, to cut written lines.
    in.text += byte == 0x7F ? L'\u4E2D' : static_cast<wchar_t>(byte == 0 ? 1 : byte);
  }
  const std::string bytes = provider.ConsumeRemainingBytesAsString();

  static const WorkFiles work;
  const std::string& name = work.input;
  FILE* file = std::fopen(name.c_str(), "wb");
  if (file == nullptr) return 0;
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);

  FILE* out = fOpen(work.output.c_str(), "wt");
  ReadRecords(name, false, in, out);
  ReadRecords(name, true, in, out);
  ReadPlain(name, in);
  if (out != nullptr) std::fclose(out);
  return 0;
}
