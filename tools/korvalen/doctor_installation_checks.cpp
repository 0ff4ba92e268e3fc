// The doctor's checks of the installation as a whole: files left by a writer
// that was killed, the error report counter, the migration of "param.sys"
// and the language libraries.
#include <algorithm>
#include <string>
#include <vector>

#include "doctor_checks.h"
#include "korvalen/korvalen.h"

namespace korvalen::tool {
namespace {

constexpr int kParamValueChars = 256;
constexpr std::size_t kReportNameChars = 8;

// The number of an error report or counter name of eight digits, -1 for any
// other text.
long report_number(const std::wstring& digits) {
  if (digits.size() != kReportNameChars ||
      !std::all_of(digits.begin(), digits.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; }))
    return -1;
  return std::stol(digits);
}

std::wstring attribute(const IXMLDOMNodePtr& node, const wchar_t* name) {
  BSTR value = GetAttributeValue(node, name);
  std::wstring text = value != nullptr ? value : L"";
  SysFreeString(value);
  return text;
}

// The number of the first line holding the text, 0 when none does.
int line_with(const std::wstring& file, const std::string& text) {
  for (const RawLine& line : file_lines(file)) {
    if (line.bytes.find(text) != std::string::npos) return line.number;
  }
  return 0;
}

// The line of the value a "param.sys" header sets (the last such header
// wins), 0 when no header gives one.
int param_value_line(const wchar_t* header) {
  const auto lines = file_lines(L"param.sys");
  int value = 0;
  for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
    if (upper(wide(lines[i].bytes)) == upper(header)) value = lines[i + 1].number;
  }
  return value;
}

}  // namespace

void check_work_files(Findings& found) {
  for (const std::wstring& file : installation_files()) {
    const std::wstring name = upper(file);
    if (is_suite_work_file(name)) {
      found.push_back({file, 0, "work-file",
                       L"a rewrite's work file left behind by a program that stopped in the middle",
                       L"check that the file it rewrote is whole, then delete it while no program "
                       L"of the suite runs"});
    } else if (name.rfind(L"CONTERRW.CDR.", 0) == 0 && ends_with(name, L".WORK")) {
      found.push_back({file, 0, "work-file",
                       L"an error report its writer never finished: it was killed",
                       L"delete it while no program of the suite runs"});
    } else if (ends_with(name, L".WORK")) {
      found.push_back({file, 0, "work-file",
                       L"a work file left behind by a writer that was killed; " +
                           file.substr(0, file.size() - 5) + L" was not changed by it",
                       L"delete it while no program of the suite runs"});
    }
  }
}

void check_error_counter(Findings& found) {
  long newest = -1;
  std::wstring newest_name;
  for (const std::wstring& file : installation_files()) {
    if (!ends_with(upper(file), L".ERR")) continue;
    const long n = report_number(file.substr(0, file.size() - 4));
    if (n > newest) {
      newest = n;
      newest_name = file;
    }
  }
  if (newest < 0) return;
  long counter = 0;
  if (Access(L"CONTERRW.cdr", 0) == 0) {
    const auto lines = file_lines(L"CONTERRW.cdr");
    if (!lines.empty()) counter = std::max(0L, report_number(wide(lines.front().bytes)));
  }
  if (counter >= newest) return;
  wchar_t base[16];
  sPrintf(base, L"%08ld", newest);
  found.push_back({L"CONTERRW.cdr", Access(L"CONTERRW.cdr", 0) == 0 ? 1 : 0, "error-counter",
                   L"the error report counter stands at " + std::to_wstring(counter) +
                       L", behind the report " + newest_name +
                       L": new reports pass over the names taken",
                   std::wstring(L"set its first line to ") + base});
}

void check_param_sys(Findings& found) {
  if (Access(L"param.sys", 0) != 0) return;
  int language = 3, units = 1, cp1 = 0, cp2 = 0, wos = 1;
  wchar_t server[kParamValueChars + 1], files[kParamValueChars + 1], shared[kParamValueChars + 1],
      company[kParamValueChars + 1], title[kParamValueChars + 1], backup[kParamValueChars + 1],
      style[kParamValueChars + 1];
  if (LeerDatosParamSys(language, server, files, shared, units, cp1, cp2, company, title, wos,
                        backup, style) == 0)
    return;
  if (Access(L"iVortan.cfg", 0) != 0) {
    found.push_back({L"param.sys", 0, "param-sys",
                     L"the system parameters are not yet migrated into iVortan.cfg",
                     L"run korvalen migrate (every program of the suite does it at start)"});
    return;
  }
  // With iVortan.cfg in place the migration only deletes param.sys: what
  // param.sys says otherwise is lost.
  const IXMLDOMNodePtr settings = GetXMLMainNodeObjectFromFile(L"iVortan.cfg");
  if (settings == nullptr) return;
  struct Value {
    const wchar_t* header;
    std::wstring ours;
    const wchar_t* attribute;
  };
  const Value values[] = {{L"[Language]", std::to_wstring(language), L"LanID"},
                          {L"[Server name]", server, L"SvrName"},
                          {L"[Database files directory]", files, L"DBFolder"}};
  for (const Value& v : values) {
    // A value param.sys does not set carries nothing over.
    const int line = param_value_line(v.header);
    const std::wstring theirs = attribute(settings, v.attribute);
    if (line == 0 || theirs == v.ours) continue;
    found.push_back({L"param.sys", line, "param-sys",
                     std::wstring(L"not migrated: ") + v.header + L" is \"" + v.ours + L"\" but " +
                         v.attribute + L" in iVortan.cfg is \"" + theirs +
                         L"\", and the next start deletes param.sys keeping iVortan.cfg's value",
                     L"set the value wanted in iVortan.cfg, then run korvalen migrate"});
  }
}

void check_languages(Findings& found) {
  if (Access(L"Languages.xml", 0) != 0) return;
  // The language the programs load at start.
  int installed = 3;
  if (LeerElIdioma(installed) == 0) {
    wchar_t text[kParamValueChars + 1];
    int units = 1, cp1 = 0, cp2 = 0, wos = 1;
    LeerDatosParamSys(installed, text, text, text, units, cp1, cp2, text, text, wos, text, text);
  }
  struct Listed {
    std::wstring id, library;
  };
  std::vector<Listed> listed;
  const IXMLDOMNodePtr main = GetXMLMainNodeObjectFromFile(L"Languages.xml");
  for (IXMLDOMNodePtr l = GetSimpleChildElementNode(main, L"LANGUAGE"); l != nullptr;
       l = GetSimpleNextElementNode(l, L"LANGUAGE")) {
    listed.push_back({attribute(l, L"LanID"), attribute(l, L"LanguageDLL")});
  }
  // A directory with no language library at all holds the settings apart
  // from the programs; only where libraries are installed is one missing.
  const bool libraries_installed = std::any_of(listed.begin(), listed.end(), [](const Listed& l) {
    return !l.library.empty() && Access(l.library.c_str(), 0) == 0;
  });
  for (const auto& [id, library] : listed) {
    const int language = aToi(id.c_str());
    if (library.empty()) continue;
    char id_bytes[32];
    TCharToChar(id_bytes, sizeof id_bytes, id.c_str());
    const int line = line_with(L"Languages.xml", "LanID=\"" + std::string(id_bytes) + "\"");
    std::wstring problem;
    if (Access(library.c_str(), 0) != 0) {
      if (language != installed || !libraries_installed) continue;
      problem = L"the library " + library + L" of the installation's language " + id +
                L" is missing: the programs start without their texts";
    } else {
      HMODULE module = CargaRecursosDeIdioma(language);
      if (module == nullptr) {
        problem = library + L" of language " + id + L" is not a language library";
      } else if (DllDeRecursosCorrecta(module, language) == 0) {
        problem = library + L" fails the verification of language " + id +
                  L": it is another language's library";
      }
      LiberaRecursosDeIdioma(module);
    }
    if (!problem.empty()) {
      found.push_back(
          {L"Languages.xml", line, "language-library", problem,
           L"install the right library for language " + id + L", or correct LanguageDLL"});
    }
  }
}

}  // namespace korvalen::tool
