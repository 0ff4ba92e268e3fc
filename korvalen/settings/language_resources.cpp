#include "korvalen/settings/language_resources.h"

#include <string>
#include <utility>
#include <vector>

#include "korvalen/drawing/xml_documents.h"
#include "korvalen/foundation/file_system.h"
#include "korvalen/foundation/formatted_output.h"
#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/internal/current_resources.h"
#include "korvalen/foundation/number_functions.h"
#include "korvalen/foundation/string_functions.h"
#include "korvalen/platform/internal/bounded_copy.h"
#include "korvalen/platform/internal/resource_module.h"
#include "korvalen/platform/internal/xml_dom.h"
#include "korvalen/settings/internal/settings_document.h"

namespace {

namespace xml = korvalen::platform::xml;
using korvalen::detail::SettingsDocument;

constexpr const wchar_t* kSettingsFile = L"iVortan.cfg";
constexpr const wchar_t* kLanguagesFile = L"Languages.xml";
constexpr const wchar_t* kFallbackLibrary = L"UKVORTAN.DLL";
constexpr unsigned kVerificationString = 13051;
constexpr int kVerificationChars = 80;
constexpr int kLibraryNameChars = 256;

struct Language {
  int number;
  const wchar_t* library;
  const wchar_t* verification;
};

constexpr Language kLanguages[] = {
    {1, L"GRVORTAN.DLL", L"grtxtvor"},   {3, L"UKVORTAN.DLL", L"uktxtvor"},
    {5, L"FRVORTAN.DLL", L"frtxtvor"},   {7, L"SPVORTAN.DLL", L"sptxtvor"},
    {11, L"ITVORTAN.DLL", L"ittxtvor"},  {12, L"DUVORTAN.DLL", L"dutxtvor"},
    {14, L"POVORTAN.DLL", L"potxtvor"},  {15, L"PLVORTAN.DLL", L"pltxtvor"},
    {16, L"RSVORTAN.DLL", L"rstxtvor"},  {17, L"SWVORTAN.DLL", L"swtxtvor"},
    {18, L"THVORTAN.DLL", L"thtxtvor"},  {201, L"CSVORTAN.DLL", L"cstxtvor"},
    {202, L"JPVORTAN.DLL", L"jptxtvor"}, {203, L"CTVORTAN.DLL", L"cttxtvor"},
    {204, L"KOVORTAN.DLL", L"kotxtvor"}, {205, L"TRVORTAN.DLL", L"trtxtvor"},
    {206, L"CZVORTAN.DLL", L"cztxtvor"},
};

const Language* TableEntry(int number) {
  for (const Language& l : kLanguages) {
    if (l.number == number) return &l;
  }
  return nullptr;
}

// An attribute's value, decoded as the document helpers read it.
std::wstring Attribute(const IXMLDOMNodePtr& node, const wchar_t* name) {
  BSTR value = GetAttributeValue(node, name);
  std::wstring text(value != nullptr ? value : L"", SysStringLen(value));
  SysFreeString(value);
  return text;
}

// The first "LANGUAGE" element of main whose "LanID" is the language.
IXMLDOMNodePtr LanguageElement(int language, const IXMLDOMNodePtr& main) {
  for (IXMLDOMNodePtr element = GetSimpleChildElementNode(main, L"LANGUAGE"); element != nullptr;
       element = GetSimpleNextElementNode(element, L"LANGUAGE")) {
    if (aToi(Attribute(element, L"LanID").c_str()) == language) return element;
  }
  return nullptr;
}

// The character-set constants: the attributes of "CONSTANTS", name and value.
std::vector<std::pair<std::wstring, std::wstring>> Constants(const IXMLDOMNodePtr& main) {
  std::vector<std::pair<std::wstring, std::wstring>> constants;
  const IXMLDOMNodePtr element = GetSimpleChildElementNode(main, L"CONSTANTS");
  if (element == nullptr) return constants;
  IXMLDOMNodePtr attribute;
  for (int i = 0; !xml::attribute_at(element, i, attribute) && attribute; ++i) {
    std::wstring name;
    std::wstring value;
    bool is_text = false;
    if (!xml::node_name(attribute, name) && !xml::node_value(attribute, value, is_text)) {
      constants.emplace_back(std::move(name), std::move(value));
    }
  }
  return constants;
}

}  // namespace

int LeerElIdioma(int& language) {
  try {
    SettingsDocument cfg;
    std::wstring value;
    if (!cfg.Load(kSettingsFile) || !cfg.Get(L"LanID", value)) return 0;
    language = aToi(value.c_str());
    return 1;
  } catch (...) {
    return 0;
  }
}

int EscribirElIdioma(int language) {
  try {
    SettingsDocument cfg;
    return cfg.Load(kSettingsFile) && cfg.Set(L"LanID", std::to_wstring(language)) && cfg.Save()
               ? 1
               : 0;
  } catch (...) {
    return 0;
  }
}

void LoadLanguageParameters(int language, CString& library, IXMLDOMNodePtr main) {
  try {
    library.Empty();
    if (const IXMLDOMNodePtr element = LanguageElement(language, main); element != nullptr) {
      library = Attribute(element, L"LanguageDLL").c_str();
    }
  } catch (...) {
  }
}

void LoadCharSetParameters(int language, int& charset, IXMLDOMNodePtr main) {
  try {
    const IXMLDOMNodePtr element = LanguageElement(language, main);
    if (element == nullptr) return;
    const std::wstring value = Attribute(element, L"CharSet");
    for (const auto& [name, constant] : Constants(main)) {
      if (name == value) {
        charset = aToi(constant.c_str());
        return;
      }
    }
    charset = aToi(value.c_str());
  } catch (...) {
  }
}

void LoadLanguageDllFromFile(int language, const wchar_t* file, CString& library) {
  if (file == nullptr || Access(file, 0) != 0) return;
  LoadLanguageParameters(language, library, GetXMLMainNodeObjectFromFile(file));
}

void LoadCharSetFromFile(int language, const wchar_t* file, int& charset) {
  if (file == nullptr || Access(file, 0) != 0) return;
  LoadCharSetParameters(language, charset, GetXMLMainNodeObjectFromFile(file));
}

void DameDllDeIdioma(int language, wchar_t* library) {
  if (library == nullptr) return;
  library[0] = 0;
  try {
    CString named;
    LoadLanguageDllFromFile(language, kLanguagesFile, named);
    if (named.IsEmpty()) {
      const Language* entry = TableEntry(language);
      named = entry != nullptr ? entry->library : kFallbackLibrary;
    }
    korvalen::platform::copy_cut(library, kLibraryNameChars, static_cast<const wchar_t*>(named));
  } catch (...) {
    library[0] = 0;
  }
}

HMODULE CargaRecursosDeIdioma(int language) {
  try {
    wchar_t library[kLibraryNameChars];
    DameDllDeIdioma(language, library);
    if (library[0] == 0 || Access(library, 0) != 0) return nullptr;
    HMODULE module = nullptr;
    if (korvalen::platform::load_resource_module(library, module)) return nullptr;
    korvalen::detail::set_current_resources(module);
    return module;
  } catch (...) {
    return nullptr;
  }
}

int DllDeRecursosCorrecta(HMODULE module, int language) {
  if (module == nullptr) return 0;
  const Language* entry = TableEntry(language);
  if (entry == nullptr) return 1;
  wchar_t text[kVerificationChars + 1];
  int length = 0;
  korvalen::platform::load_string(module, kVerificationString, text, kVerificationChars + 1,
                                  length);
  return StrCmp(text, entry->verification) == 0 ? 1 : 0;
}

void LiberaRecursosDeIdioma(HMODULE& module) {
  if (module == nullptr) return;
  if (korvalen::detail::current_resources() == module) {
    korvalen::detail::set_current_resources(nullptr);
  }
  korvalen::platform::free_resource_module(module);
  module = nullptr;
}

int DameCharSetDeIdioma(int language) {
  int charset = 0;
  LoadCharSetFromFile(language, kLanguagesFile, charset);
  return charset;
}

void DameFicheroDeIdioma(const wchar_t* base, int language, wchar_t* output) {
  if (output == nullptr) return;
  sPrintf(output, L"%s.%03d", korvalen::detail::or_empty(base), language);
}

void DameFuenteYCharset(const wchar_t* font, wchar_t* name, int& charset) {
  if (name == nullptr) return;
  const wchar_t* text = korvalen::detail::or_empty(font);
  StrCpy(name, text);
  const wchar_t* last = StrrChr(text, L'#');
  // Only "name##number", with something after the signs, is split.
  if (last == nullptr || last == text || last[-1] != L'#' || last[1] == 0) return;
  const int number = aToi(last + 1);
  if (number > 0) charset = number;
  name[last - 1 - text] = 0;
}
