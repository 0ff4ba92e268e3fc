// Shared by the settings tests: settings files written as one text, and text
// records as the suite lays them out.
#pragma once

#include <string>

namespace korvalen::testing {

// The bytes of CR LF lines as the text-mode writers leave them, from one text
// with '|' between the lines.
inline std::string Records(const std::string& lines) {
  std::string out;
  for (char c : lines) out += c == '|' ? std::string("\r\n") : std::string(1, c);
  return out + "\r\n";
}

// A text record as the suite writes it: the terminator in column 77.
inline std::string TextRecord(const std::string& head, const std::string& value) {
  std::string r = head + " \"" + value + "\"";
  if (r.size() < 76) r.append(76 - r.size(), ' ');
  return r + ";";
}

}  // namespace korvalen::testing
