#include "korvalen/diagnostics/error_files.h"

#include <chrono>
#include <cstdio>
#include <initializer_list>
#include <string>

#include "korvalen/config/config_reader.h"
#include "korvalen/diagnostics/internal/unique_names.h"
#include "korvalen/diagnostics/unique_name.h"
#include "korvalen/foundation/directory_iteration.h"
#include "korvalen/foundation/file_system.h"
#include "korvalen/foundation/formatted_output.h"
#include "korvalen/foundation/internal/typed_list.h"
#include "korvalen/foundation/internal/whole_file.h"
#include "korvalen/foundation/path_functions.h"
#include "korvalen/foundation/streams.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/platform/internal/directory_search.h"
#include "korvalen/platform/internal/exclusive_file.h"
#include "korvalen/platform/internal/this_process.h"

using korvalen::kCfgLineChars;
using korvalen::detail::WorkFile;

namespace {

constexpr int kPathChars = MAX_PATH;
constexpr int kText4LineChars = 255;  // the one report line read beyond 80 characters
// A quoted text line formats into the 1024-character line buffer of fPrintf:
// two quotes, the line feed and the terminator leave this much for the text.
constexpr int kWrittenTextChars = 1020;

void WriteText(FILE* report, const wchar_t* text) {
  if (text == nullptr) text = L"";
  wchar_t cut[kWrittenTextChars + 1];
  if (StrLen(text) > kWrittenTextChars) {
    StrnCpy(cut, text, kWrittenTextChars);
    cut[kWrittenTextChars] = 0;
    text = cut;
  }
  fPrintf(report, L"\"%s\"\n", text);
}

// Takes the quoted text of the next line into a field of `capacity`
// characters (terminator included), cutting what does not fit.
void ReadText(FILE* report, int line_limit, wchar_t* field, int capacity) {
  wchar_t line[kText4LineChars + 1];
  wchar_t text[kText4LineChars + 1];
  LeerLineaDeFichero(report, line, line_limit);
  int cursor = 0;
  LeerUnTexto(line, cursor, text);
  StrnCpy(field, text, static_cast<std::size_t>(capacity - 1));
  field[capacity - 1] = 0;
}

void ReadInt(FILE* report, int& value) {
  wchar_t line[kCfgLineChars + 1];
  LeerLineaDeFichero(report, line, kCfgLineChars);
  int cursor = 0;
  LeerUnEntero(line, cursor, value);
}

// Fills a zeroed record from one report file.
void LeerFicheroError(const wchar_t* name, TRegError& record) {
  StrnCpy(record.file_name, name, korvalen::kErrorFileNameChars - 1);
  FILE* report = fOpen(name, L"rt");
  if (report == nullptr) return;
  ReadInt(report, record.code);
  ReadText(report, kCfgLineChars, record.text1, korvalen::kErrorShortTextChars);
  ReadText(report, kCfgLineChars, record.text2, korvalen::kErrorShortTextChars);
  ReadText(report, kCfgLineChars, record.text3, korvalen::kErrorShortTextChars);
  ReadText(report, kText4LineChars, record.text4, korvalen::kErrorLongTextChars);
  ReadText(report, kCfgLineChars, record.text5, korvalen::kErrorLongTextChars);
  ReadText(report, kCfgLineChars, record.text6, korvalen::kErrorShortTextChars);
  ReadText(report, kCfgLineChars, record.text7, korvalen::kErrorShortTextChars);
  ReadInt(report, record.number1);
  wchar_t line[kCfgLineChars + 1];
  LeerLineaDeFichero(report, line, kCfgLineChars);
  int cursor = 0;
  LeerUnLong(line, cursor, record.number2);
  ReadInt(report, record.number3);
  std::fclose(report);
}

// A report is written into one of a few work files beside the counter file,
// each held by the writer that claimed it; more writers at once wait for one
// to come free. A report is seconds' work at most.
constexpr int kReportWorkFiles = 8;
constexpr auto kGiveUpWaiting = std::chrono::seconds(5);
constexpr unsigned kPauseMicroseconds = 200;

std::wstring ReportWorkFile(const wchar_t* counter, int slot) {
  return korvalen::detail::work_file_name((counter + (L"." + std::to_wstring(slot))).c_str());
}

// The number of the work file claimed, or -1 when none can be had.
int ClaimReportWorkFile(const wchar_t* counter, WorkFile& work) {
  const auto give_up = std::chrono::steady_clock::now() + kGiveUpWaiting;
  for (;;) {
    for (int slot = 0; slot < kReportWorkFiles; ++slot) {
      const std::error_code error = work.TryClaim(ReportWorkFile(counter, slot).c_str());
      if (!error) return slot;
      if (error != std::errc::device_or_resource_busy) return -1;
    }
    if (std::chrono::steady_clock::now() >= give_up) return -1;
    korvalen::platform::sleep_microseconds(kPauseMicroseconds);
  }
}

// Work files that writers killed halfway left in the other places; a claim
// takes over its own place's, but a place may not be claimed again for long.
void RemoveAbandonedWorkFiles(const wchar_t* counter, int own_slot) {
  for (int slot = 0; slot < kReportWorkFiles; ++slot) {
    if (slot != own_slot) {
      (void)korvalen::platform::remove_abandoned_work_file(ReportWorkFile(counter, slot).c_str());
    }
  }
}

void WriteReport(int code, const wchar_t* short_text1, const wchar_t* short_text2,
                 const wchar_t* short_text3, const wchar_t* long_text4, const wchar_t* medium_text5,
                 const wchar_t* short_text6, const wchar_t* short_text7, int number1, LONG number2,
                 int number3) {
  wchar_t counter[kPathChars];
  MakePath(counter, L"", L"", L"CONTERRW", L".cdr");
  WorkFile work;
  const int slot = ClaimReportWorkFile(counter, work);
  if (slot < 0) return;
  FILE* report = work.stream();
  fPrintf(report, L"%d\n", code);
  for (const wchar_t* text : {short_text1, short_text2, short_text3, long_text4, medium_text5,
                              short_text6, short_text7}) {
    WriteText(report, text);
  }
  fPrintf(report, L"%d\n", number1);
  fPrintf(report, L"%ld\n", static_cast<long>(number2));
  fPrintf(report, L"%d\n", number3);
  // Only the complete report takes a name, the counter's next free one, so
  // the gatherer never meets a report being written.
  wchar_t base[korvalen::kUniqueNameChars + 1];
  korvalen::detail::next_unique_name(counter, L".err", base,
                                     [&](const wchar_t* path) { return work.Publish(path); });
  RemoveAbandonedWorkFiles(counter, slot);
}

void Gather(TRegError*& head, TRegError*& tail, TDtsFile& search) {
  for (int found = DamePrimerFichero(L"*.err", search); found != 0;
       found = DameSiguienteFichero(search)) {
    TRegError record{};
    LeerFicheroError(search.data.name, record);
    // Without memory for the record this report is left out; the rest goes on.
    korvalen::detail::append(head, tail, record);
  }
}

}  // namespace

void GeneraError(int code, const wchar_t* short_text1, const wchar_t* short_text2,
                 const wchar_t* short_text3, const wchar_t* long_text4, const wchar_t* medium_text5,
                 const wchar_t* short_text6, const wchar_t* short_text7, int number1, LONG number2,
                 int number3) {
  try {
    WriteReport(code, short_text1, short_text2, short_text3, long_text4, medium_text5, short_text6,
                short_text7, number1, number2, number3);
  } catch (...) {
    // No report, as when its file cannot be created.
  }
}

void DameListaErrores(TRegError*& head, TRegError*& tail, int delete_files) {
  head = nullptr;
  tail = nullptr;
  TDtsFile search{};
  search.handle = korvalen::platform::kNoSearch;
  try {
    Gather(head, tail, search);
  } catch (...) {
    // What was gathered stays the caller's; the search must not stay open.
    if (search.handle != korvalen::platform::kNoSearch) {
      korvalen::platform::find_close(search.handle);
    }
  }
  if (delete_files != 0) BorrarFicherosDeErrores(head);
}

void BorrarFicherosDeErrores(TRegError* first) {
  for (TRegError* e = first; e != nullptr; e = e->next) unLink(e->file_name);
}

void BorraListaErrores(TRegError*& head, TRegError*& tail) {
  korvalen::detail::free_list(head, tail);
  head = nullptr;
  tail = nullptr;
}
