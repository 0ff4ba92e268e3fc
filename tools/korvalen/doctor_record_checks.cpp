// The doctor's checks of the config-record files: lines that are no record,
// lines the readers cut, records no reader takes, and the catalogues.
#include <algorithm>
#include <cctype>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "doctor_checks.h"
#include "korvalen/korvalen.h"

namespace korvalen::tool {
namespace {

constexpr int kRecordLine = 80;
constexpr int kLongRecordLine = 500;
// What one read of a physical line takes; the rest of a longer line is not
// read as part of it.
constexpr int kPhysicalLine = 1023;
constexpr int kMakerChars = 80;
constexpr int kCodeChars = 12;

// The settings documents in XML share the ".cfg" ending with the record files.
bool is_xml(const std::vector<RawLine>& lines) {
  if (lines.empty()) return false;
  const std::string& first = lines.front().bytes;
  return first.rfind("\xFF\xFE", 0) == 0 || first.rfind("\xFE\xFF", 0) == 0 ||
         first.rfind("\xEF\xBB\xBF<", 0) == 0 || first.rfind("<", 0) == 0;
}

// The record line limit of a config-record file, 0 for any other file.
int record_line_limit(const std::wstring& upper_name) {
  if (is_suite_work_file(upper_name) || ends_with(upper_name, L".WORK")) return 0;
  for (const wchar_t* long_records : {L"MIRSELID.CFG", L"MIRSELPR.CFG", L"MOSAICOS.CFG"}) {
    if (upper_name == long_records) return kLongRecordLine;
  }
  if (ends_with(upper_name, L".CFG") || ends_with(upper_name, L".ALL") ||
      upper_name.rfind(L"LSIMPEXP.", 0) == 0 || upper_name == L"PEQUENO.SYS") {
    return kRecordLine;
  }
  return 0;
}

// Record codes each reader takes, for the files whose whole record set is
// fixed: letter and the indices taken (empty: any index).
using RecordSet = std::map<wchar_t, std::set<int>>;
std::optional<RecordSet> fixed_records(const std::wstring& upper_name) {
  for (const wchar_t* catalogue : {L"LISTPOST.", L"LISTIMPO.", L"LISTEXPO."}) {
    if (upper_name == catalogue + std::wstring(L"ALL") ||
        upper_name == catalogue + std::wstring(L"CFG"))
      return RecordSet{{L'A', {0, 1, 2, 3}}};
  }
  if (upper_name.rfind(L"LSIMPEXP.", 0) == 0)
    return RecordSet{{L'A', {}}, {L'B', {}}, {L'C', {}}, {L'D', {}}};
  if (upper_name == L"PEQUENO.SYS") return RecordSet{{L'A', {0, 1, 2}}};
  if (upper_name == L"CFGSTABS.CFG") {
    RecordSet layouts;
    for (const wchar_t letter : std::wstring(L"TUNXYLQRMABCEFGHIJS")) layouts[letter] = {};
    return layouts;
  }
  if (upper_name == L"MIRSELID.CFG") return RecordSet{{L'A', {2, 3}}};
  return std::nullopt;
}

// In the column layouts each table's second and third records ("U", "N")
// act only on a column its creating record ("T") made before them.
constexpr std::pair<wchar_t, wchar_t> kLayoutCreators[] = {
    {L'U', L'T'}, {L'N', L'T'}, {L'Y', L'X'}, {L'L', L'X'}, {L'R', L'Q'}, {L'M', L'Q'},
    {L'B', L'A'}, {L'C', L'A'}, {L'F', L'E'}, {L'G', L'E'}, {L'I', L'H'}, {L'J', L'H'}};

std::wstring number(int value) { return std::to_wstring(value); }

// What keeps a line from reading as a record, and what to do; empty when it
// reads as one.
struct SyntaxProblem {
  std::wstring problem;
  std::wstring fix;
};
SyntaxProblem record_syntax_problem(const std::string& line) {
  if (line.empty() || line[0] == '#') return {};
  const std::wstring record = L"write it as a type letter, an index and the fields";
  const std::size_t head = line.find_first_not_of(' ');
  if (head == std::string::npos)
    return {L"a line of blanks reads as record 0 of the type before it", L"empty the line"};
  if (line[head] == '#')
    return {L"a '#' after blanks is no comment: it reads as a record of type '#'",
            L"move the '#' to the first column"};
  if (!std::isalpha(static_cast<unsigned char>(line[head])))
    return {L"the line does not begin with a type letter", record + L", or as a '#' comment"};
  const std::size_t index = line.find_first_not_of(' ', head + 1);
  const std::size_t index_end = std::min(line.find(' ', index), line.size());
  if (index == std::string::npos || index >= index_end ||
      line.find_first_not_of("0123456789", index) < index_end)
    return {L"no index number after the type letter", record};
  if (std::count(line.begin(), line.end(), '"') % 2 != 0)
    return {L"a quoted text is not closed", L"close it with a double quote"};
  bool quoted = false;
  for (const char c : line) {
    if (c == '"') quoted = !quoted;
    if (c == '\t' && !quoted)
      return {L"a tab between fields: the readers separate fields by blanks only",
              L"put blanks in place of the tab"};
  }
  return {};
}

// The line as the readers need it, without the blanks and the terminator the
// readers never reach.
std::string content(std::string line) {
  while (!line.empty() && line.back() == ' ') line.pop_back();
  if (line.size() >= 2 && line.back() == ';' && line[line.size() - 2] == ' ') {
    line.pop_back();
    while (!line.empty() && line.back() == ' ') line.pop_back();
  }
  return line;
}

void check_length(const std::wstring& file, const RawLine& line, int limit, const std::string& kept,
                  Findings& found) {
  const int length = static_cast<int>(wide(kept).size());
  if (static_cast<int>(wide(line.bytes).size()) > kPhysicalLine) {
    found.push_back({file, line.number, "line-length",
                     L"a line of " + number(static_cast<int>(wide(line.bytes).size())) +
                         L" characters: no reader takes more than 1023 at once",
                     L"split or shorten the line"});
  } else if (limit > 0 && length > limit) {
    found.push_back({file, line.number, "line-length",
                     L"the line holds " + number(length) + L" characters and its reader keeps " +
                         number(limit) + L": the rest is dropped silently",
                     L"shorten it to " + number(limit) + L" characters"});
  }
}

struct Record {
  wchar_t type = L' ';
  int index = 0;
  int cursor = 0;
  std::wstring line;
};

// A record line read through the library, cut where its reader cuts it.
Record read_record(const std::string& bytes, int limit) {
  Record r;
  r.line = wide(bytes).substr(0, static_cast<std::size_t>(limit));
  ObtenerTipoIndexCfg(r.line.data(), r.type, r.index, r.cursor);
  return r;
}

std::wstring read_text(Record& r) {
  std::wstring text(r.line.size() + 1, L'\0');
  LeerUnTexto(r.line.data(), r.cursor, text.data());
  return text.c_str();
}

void check_record_file(const std::wstring& file, int limit, Findings& found) {
  const auto lines = file_lines(file);
  if (is_xml(lines)) return;
  const auto records = fixed_records(upper(file));
  std::set<std::pair<wchar_t, int>> created;
  for (const RawLine& line : lines) {
    const SyntaxProblem syntax = record_syntax_problem(line.bytes);
    if (!syntax.problem.empty()) {
      found.push_back({file, line.number, "record-syntax", syntax.problem, syntax.fix});
      continue;
    }
    if (line.bytes.empty() || line.bytes[0] == '#') {
      check_length(file, line, 0, "", found);
      continue;
    }
    check_length(file, line, limit, content(line.bytes), found);
    if (!records) continue;
    const Record r = read_record(line.bytes, limit);
    created.insert({r.type, r.index});
    const auto creator = std::find_if(std::begin(kLayoutCreators), std::end(kLayoutCreators),
                                      [&](const auto& c) { return c.first == r.type; });
    if (upper(file) == L"CFGSTABS.CFG" && creator != std::end(kLayoutCreators) &&
        created.count({creator->second, r.index}) == 0) {
      wchar_t codes[32];
      sPrintf(codes, L"%c%03d comes before %c%03d", r.type, r.index, creator->second, r.index);
      found.push_back({file, line.number, "ignored-record",
                       std::wstring(L"the record is ignored: ") + codes + L", the column it sets",
                       L"move it after the column's record, or remove it"});
      continue;
    }
    const auto letter = records->find(r.type);
    if (letter == records->end() ||
        (!letter->second.empty() && letter->second.count(r.index) == 0)) {
      wchar_t code[16];
      sPrintf(code, L"%c%03d", r.type, r.index);
      found.push_back({file, line.number, "ignored-record",
                       std::wstring(L"no reader of this file takes record ") + code,
                       L"remove it, or correct its code"});
    }
  }
}

// One catalogue file: its entries cut short, and the names of its entries
// with the lines that name them.
std::map<std::wstring, int> check_catalogue_file(const std::wstring& file, Findings& found) {
  std::map<std::wstring, int> names;
  bool seen[3] = {false, false, false};
  int open_line = 0;
  for (const RawLine& line : file_lines(file)) {
    if (!record_syntax_problem(line.bytes).problem.empty() || line.bytes.empty() ||
        line.bytes[0] == '#')
      continue;
    Record r = read_record(line.bytes, kRecordLine);
    if (r.type != L'A' || r.index > 3) continue;
    const std::wstring text = read_text(r);
    const int capacity = r.index < 2 ? kMakerChars : kCodeChars;
    if (static_cast<int>(text.size()) > capacity) {
      found.push_back({file, line.number, "catalogue",
                       L"the text \"" + text + L"\" is longer than the " + number(capacity) +
                           L" characters its field keeps",
                       L"shorten it to " + number(capacity) + L" characters"});
    }
    if (r.index == 1) names.emplace(text, line.number);
    if (r.index < 3) {
      seen[r.index] = true;
      if (open_line == 0) open_line = line.number;
      continue;
    }
    for (int i = 0; i < 3; ++i) {
      if (!seen[i]) {
        found.push_back({file, line.number, "catalogue",
                         L"the entry lacks its A00" + number(i) +
                             L" record and takes that field from the entry before it",
                         L"add the A00" + number(i) + L" record to the entry"});
      }
      seen[i] = false;
    }
    open_line = 0;
  }
  if (open_line != 0) {
    found.push_back({file, open_line, "catalogue",
                     L"the entry that starts here has no A003 record and is never listed",
                     L"complete it with its A003 record, or remove it"});
  }
  return names;
}

}  // namespace

void check_settings_files(Findings& found) {
  for (const std::wstring& file : installation_files()) {
    const int limit = record_line_limit(upper(file));
    if (limit != 0) check_record_file(file, limit, found);
  }
}

void check_catalogues(Findings& found) {
  for (const wchar_t* kind : {L"LISTPOST", L"LISTIMPO", L"LISTEXPO"}) {
    const std::wstring all = kind + std::wstring(L".ALL");
    const std::wstring installed = kind + std::wstring(L".CFG");
    const bool has_all = Access(all.c_str(), 0) == 0;
    const auto catalogue =
        has_all ? check_catalogue_file(all, found) : std::map<std::wstring, int>{};
    if (Access(installed.c_str(), 0) != 0) continue;
    for (const auto& [name, line] : check_catalogue_file(installed, found)) {
      if (catalogue.count(name) != 0) continue;
      found.push_back({installed, line, "catalogue",
                       L"the installed entry \"" + name + L"\" is not in " + all +
                           L": the next change of the installed list drops it",
                       L"add the entry to " + all + L", or remove it here"});
    }
  }
}

void check_state_files(Findings& found) {
  // The most of each line its reader takes.
  const std::map<std::wstring, int> limits = {{L"ORDENACT.SYS", 40},
                                              {L"LSPINOOF.SYS", 40},
                                              {L"DIRBDACT.SYS", 256},
                                              {L"LISTOFS.SYS", 81},
                                              {L"PARAM.SYS", 256}};
  for (const std::wstring& file : installation_files()) {
    const auto limit = limits.find(upper(file));
    if (limit != limits.end()) {
      for (const RawLine& line : file_lines(file))
        check_length(file, line, limit->second, line.bytes, found);
    }
  }
  if (Access(L"CHGCHAPA.SYS", 0) != 0) return;
  // A queue of pairs: the key (255 characters at most), then the sheet (40).
  const auto lines = file_lines(L"CHGCHAPA.SYS");
  for (std::size_t i = 0; i < lines.size(); i += 2) {
    const RawLine& key = lines[i];
    check_length(L"CHGCHAPA.SYS", key, 255, key.bytes, found);
    if (i + 1 == lines.size()) {
      found.push_back({L"CHGCHAPA.SYS", key.number, "sheet-queue",
                       L"the key \"" + wide(key.bytes) + L"\" has no sheet line after it",
                       L"add the sheet's line, or remove the key"});
      break;
    }
    const RawLine& sheet = lines[i + 1];
    check_length(L"CHGCHAPA.SYS", sheet, 40, sheet.bytes, found);
    if (key.bytes.empty() != sheet.bytes.empty()) {
      const RawLine& lone = key.bytes.empty() ? sheet : key;
      found.push_back({L"CHGCHAPA.SYS", lone.number, "sheet-queue",
                       L"a split pair: \"" + wide(lone.bytes) +
                           L"\" is paired with an empty line, and every pair after it is read "
                           L"with key and sheet crossed",
                       L"put each key and its sheet on two lines in a row"});
      break;
    }
  }
}

}  // namespace korvalen::tool
