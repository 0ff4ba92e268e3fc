#include "korvalen/settings/internal/settings_document.h"

#include "korvalen/foundation/file_names.h"
#include "korvalen/foundation/internal/whole_file.h"
#include "korvalen/foundation/path_functions.h"
#include "korvalen/platform/internal/xml_dom.h"

namespace korvalen::detail {

namespace xml = platform::xml;

bool SettingsDocument::Load(const wchar_t* path) {
  path_ = path;
  if (xml::load_file(path, document_) || xml::document_element(document_, main_)) return false;
  return static_cast<bool>(main_);
}

bool SettingsDocument::Create(
    const wchar_t* path, const wchar_t* main_name,
    const std::vector<std::pair<const wchar_t*, std::wstring>>& attributes) {
  path_ = path;
  if (xml::create(document_) || xml::insert_declaration(document_, kDeclaration) ||
      xml::append_element(document_, main_name, main_)) {
    return false;
  }
  for (const auto& [name, value] : attributes) {
    if (!Set(name, value)) return false;
  }
  return true;
}

bool SettingsDocument::Get(const wchar_t* name, std::wstring& value) const {
  value.clear();
  IXMLDOMNodePtr attribute;
  bool is_text = false;
  return !xml::find_attribute(main_, name, attribute) && attribute &&
         !xml::node_value(attribute, value, is_text) && is_text;
}

bool SettingsDocument::Set(const wchar_t* name, const std::wstring& value) {
  return !xml::set_attribute(main_, name, value.c_str());
}

bool SettingsDocument::Save() {
  bool declared = false;
  if (xml::has_declaration(document_, declared)) return false;
  if (!declared && xml::insert_declaration(document_, kDeclaration)) return false;
  return write_whole_file(
      path_.c_str(), [&](FILE* out) { return !xml::save(document_, out); },
      platform::WorkContent::kBinary);
}

std::wstring CurrentDirectoryFile(const wchar_t* name, const wchar_t* extension) {
  wchar_t directory[kDirectoryChars];
  DameDirectorioActual(directory);
  wchar_t path[kFullNameChars];
  MakePath(path, L"", directory, name, extension);
  return path;
}

}  // namespace korvalen::detail
