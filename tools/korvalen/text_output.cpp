#include "text_output.h"

#include <cstdio>

#include "json_output.h"
#include "korvalen/platform/internal/utf8.h"

namespace korvalen::tool {

void print(const std::wstring& text) {
  if (json_wanted()) return;
  const std::string bytes = platform::to_utf8(text);
  std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

void print_error(const std::wstring& text) {
  const std::string bytes = "korvalen: " + platform::to_utf8(text) + "\n";
  std::fwrite(bytes.data(), 1, bytes.size(), stderr);
}

void print_field(const std::wstring& label, const std::wstring& value, int indent) {
  if (document_takes(label, value)) return;
  constexpr std::size_t kLabelColumns = 28;
  std::wstring line(static_cast<std::size_t>(indent), L' ');
  line += label;
  if (label.size() < kLabelColumns) line.append(kLabelColumns - label.size(), L' ');
  line += value;
  while (!line.empty() && line.back() == L' ') line.pop_back();
  print(line + L"\n");
}

}  // namespace korvalen::tool
