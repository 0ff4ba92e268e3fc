#include "report_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace korvalen::testing {

std::string Narrow(const wchar_t* ascii) {
  std::string out;
  for (; *ascii != 0; ++ascii) out += static_cast<char>(*ascii);
  return out;
}

std::string ReportBytes(const Report& r) {
  std::string out = std::to_string(r.code) + "\r\n";
  for (const std::wstring& t : r.texts) out += "\"" + Narrow(t.c_str()) + "\"\r\n";
  out += std::to_string(r.number1) + "\r\n";
  out += std::to_string(r.number2) + "\r\n";
  out += std::to_string(r.number3) + "\r\n";
  return out;
}

void Generate(const Report& r) {
  GeneraError(r.code, r.texts[0].c_str(), r.texts[1].c_str(), r.texts[2].c_str(),
              r.texts[3].c_str(), r.texts[4].c_str(), r.texts[5].c_str(), r.texts[6].c_str(),
              r.number1, r.number2, r.number3);
}

std::vector<std::string> ErrorFileNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(".")) {
    const std::string name = entry.path().filename().string();
    if (entry.is_regular_file() && name.size() > 4 && name.substr(name.size() - 4) == ".err") {
      names.push_back(name);
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<TRegError*> GatheredList::Records() const {
  std::vector<TRegError*> records;
  TRegError* previous = nullptr;
  for (TRegError* e = head; e != nullptr; e = e->next) {
    EXPECT_EQ(e->previous, previous);
    records.push_back(e);
    previous = e;
  }
  EXPECT_EQ(tail, previous);
  return records;
}

}  // namespace korvalen::testing
