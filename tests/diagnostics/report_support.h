// Shared by the error-report tests: a report's values, the exact bytes of its
// file, and a gathered list that frees itself.
#pragma once

#include <string>
#include <vector>

#include "korvalen/diagnostics/error_files.h"

namespace korvalen::testing {

struct Report {
  int code;
  std::wstring texts[7];
  int number1;
  LONG number2;
  int number3;
};

// The eleven CR LF lines a report file holds on disk (ASCII texts only).
std::string ReportBytes(const Report& r);

void Generate(const Report& r);

// Names of the ".err" files of the current directory, sorted.
std::vector<std::string> ErrorFileNames();

std::string Narrow(const wchar_t* ascii);

struct GatheredList {
  TRegError* head = nullptr;
  TRegError* tail = nullptr;
  ~GatheredList() { BorraListaErrores(head, tail); }
  // The records in list order, after checking that next and previous agree.
  std::vector<TRegError*> Records() const;
};

}  // namespace korvalen::testing
