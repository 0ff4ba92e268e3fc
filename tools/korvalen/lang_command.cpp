// korvalen lang list [-C DIR]: the languages an installation knows (the
// table of the suite and "Languages.xml"), which library file each one uses,
// whether it is there and passes its verification, and its character set.
// korvalen lang strings DLL [ID...]: the string resources of a language
// library, all of them or those asked for, on every system.
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "command_line.h"
#include "commands.h"
#include "failure.h"
#include "json_output.h"
#include "korvalen/korvalen.h"
#include "text_output.h"
#include "working_directory.h"

namespace korvalen::tool {
namespace {

namespace fs = std::filesystem;

constexpr int kLibraryChars = 256;
// The numbers of the suite's language table; "Languages.xml" may add others.
constexpr int kTableLanguages[] = {1,  3,  5,   7,   11,  12,  14,  15, 16,
                                   17, 18, 201, 202, 203, 204, 205, 206};
constexpr unsigned kLastStringId = 65535;

// The "LanID" of every "LANGUAGE" element of "Languages.xml".
std::vector<int> ListedLanguages() {
  std::vector<int> languages;
  const IXMLDOMNodePtr main = GetXMLMainNodeObjectFromFile(L"Languages.xml");
  for (IXMLDOMNodePtr l = GetSimpleChildElementNode(main, L"LANGUAGE"); l != nullptr;
       l = GetSimpleNextElementNode(l, L"LANGUAGE")) {
    BSTR id = GetAttributeValue(l, L"LanID");
    languages.push_back(aToi(id));
    SysFreeString(id);
  }
  return languages;
}

void ListLanguages() {
  std::vector<int> languages(std::begin(kTableLanguages), std::end(kTableLanguages));
  for (const int listed : ListedLanguages()) {
    if (std::find(languages.begin(), languages.end(), listed) == languages.end()) {
      languages.push_back(listed);
    }
  }
  print(L"Language  Library        State               Character set\n");
  section()["languages"] = Json::array();
  for (const int language : languages) {
    wchar_t library[kLibraryChars];
    DameDllDeIdioma(language, library);
    std::wstring state = L"missing";
    if (Access(library, 0) == 0) {
      HMODULE module = CargaRecursosDeIdioma(language);
      state = module == nullptr                              ? L"not a library"
              : DllDeRecursosCorrecta(module, language) != 0 ? L"verified"
                                                             : L"fails verification";
      LiberaRecursosDeIdioma(module);
    }
    wchar_t line[512];
    sPrintf(line, L"%-9d %-14s %-19s %d\n", language, library, state.c_str(),
            DameCharSetDeIdioma(language));
    print(line);
    section()["languages"].push_back({{"language", language},
                                      {"library", utf8(library)},
                                      {"state", utf8(state)},
                                      {"character_set", DameCharSetDeIdioma(language)}});
  }
}

// A scratch folder whose "Languages.xml" names the library for one language:
// the library's own loader then loads it from wherever it lies.
class LibraryByPath {
 public:
  explicit LibraryByPath(const fs::path& library) {
    std::random_device random;
    scratch_ = fs::temp_directory_path() / ("korvalen-lang-" + std::to_string(random()));
    fs::create_directories(scratch_);
    previous_ = fs::current_path();
    FILE* list = std::fopen((scratch_ / "Languages.xml").string().c_str(), "wb");
    if (list != nullptr) {
      // UTF-8, with the path's markup characters escaped.
      const std::u8string utf8 = fs::absolute(library).u8string();
      const std::string path(utf8.begin(), utf8.end());
      std::string escaped;
      for (const char c : path)
        escaped += c == '&' ? "&amp;" : c == '"' ? "&quot;" : c == '<' ? "&lt;" : std::string(1, c);
      std::fprintf(list, "<LIST><LANGUAGE LanID=\"%d\" LanguageDLL=\"%s\"/></LIST>", kLanguage,
                   escaped.c_str());
      std::fclose(list);
    }
    fs::current_path(scratch_);
    module_ = CargaRecursosDeIdioma(kLanguage);
  }
  ~LibraryByPath() {
    LiberaRecursosDeIdioma(module_);
    std::error_code ignored;
    fs::current_path(previous_, ignored);
    fs::remove_all(scratch_, ignored);
  }
  bool loaded() const { return module_ != nullptr; }

 private:
  static constexpr int kLanguage = 999;
  fs::path scratch_;
  fs::path previous_;
  HMODULE module_ = nullptr;
};

bool ShowString(unsigned id) {
  wchar_t text[1024];
  if (LoadStr(id, text) == 0) return false;
  wchar_t head[16];
  sPrintf(head, L"%5u  ", id);
  print(head + std::wstring(text) + L"\n");
  section()["strings"].push_back({{"id", id}, {"text", utf8(text)}});
  return true;
}

}  // namespace

void add_lang_commands(CLI::App& app) {
  auto* lang = app.add_subcommand("lang", "The language libraries of an installation");
  lang->require_subcommand(1);

  auto* list = lang->add_subcommand("list", "Languages, their libraries and character sets");
  static std::string directory;
  static bool json = false;
  add_directory_option(*list, directory);
  add_json_flag(*list, json, "languages [{language, library, state, character_set}]");
  list->callback([] {
    enter_directory(directory);
    if (json) open_document();
    ListLanguages();
    close_document();
    std::fflush(stdout);
  });

  auto* strings = lang->add_subcommand("strings", "The string resources of a language library");
  static std::string library;
  static std::vector<unsigned> ids;
  strings->add_option("DLL", library, "Language library")->required();
  strings->add_option("ID", ids, "String numbers (all of them when none is given)");
  add_directory_option(*strings, directory);
  add_json_flag(*strings, json,
                "library, strings [{id, text}] (an ID without a string is left out)");
  strings->callback([] {
    enter_directory(directory);
    const fs::path path(library);
    if (!fs::exists(path)) fail(argument_text(library), L"no such file");
    const LibraryByPath loaded{path};
    if (!loaded.loaded()) fail(argument_text(library), L"not a language library");
    if (json) open_document();
    section()["library"] = utf8(argument_text(library));
    section()["strings"] = Json::array();
    if (ids.empty()) {
      for (unsigned id = 0; id <= kLastStringId; ++id) ShowString(id);
    } else {
      for (const unsigned id : ids) {
        if (!ShowString(id)) print(std::to_wstring(id) + L"  (none)\n");
      }
    }
    close_document();
    std::fflush(stdout);
  });
}

}  // namespace korvalen::tool
