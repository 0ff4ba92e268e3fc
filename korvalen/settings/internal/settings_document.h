// The product settings documents ("iVortan.cfg", "iVortan.prd", connection
// files) as the settings functions open, change and save them: the main
// element's attributes read as text and set as they stand (the DOM escapes
// them on saving), and the declaration 'version="1.0" encoding="Unicode"'
// put in when the loaded text had none.
//
//   SettingsDocument cfg;
//   if (cfg.Load(L"iVortan.cfg")) {
//     cfg.Set(L"USyName", L"IMP");
//     cfg.Save();
//   }
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "korvalen/platform/xml_node.h"

namespace korvalen::detail {

class SettingsDocument {
 public:
  // Loads the document; false when it cannot be read or has no main element.
  bool Load(const wchar_t* path);
  // A new document at path: the declaration, then a main element of that name
  // with the attributes in the order given. Nothing is written until Save.
  bool Create(const wchar_t* path, const wchar_t* main_name,
              const std::vector<std::pair<const wchar_t*, std::wstring>>& attributes);

  // The attribute's text; false (value empty) when the main element has none.
  bool Get(const wchar_t* name, std::wstring& value) const;
  // Sets the attribute, appending it when it is missing.
  bool Set(const wchar_t* name, const std::wstring& value);
  // Writes the document back to its path, through a work file.
  bool Save();

 private:
  std::wstring path_;
  IXMLDOMNodePtr document_;
  IXMLDOMNodePtr main_;
};

// The documents' declaration.
inline constexpr const wchar_t* kDeclaration = L"version=\"1.0\" encoding=\"Unicode\"";

// The path of a file of the current directory, as the settings functions
// name the documents they create: the directory joined with name and
// extension.
std::wstring CurrentDirectoryFile(const wchar_t* name, const wchar_t* extension);

}  // namespace korvalen::detail
