// The portable part of the XML DOM: argument checks and cleared outputs.
#include "korvalen/platform/internal/xml_dom.h"

#include "korvalen/platform/internal/error.h"

namespace korvalen::platform::xml {
namespace {

std::error_code invalid() { return make_error(std::errc::invalid_argument); }

bool is_name(const wchar_t* name) { return name != nullptr && *name != 0; }

}  // namespace

std::error_code create(IXMLDOMNodePtr& document) {
  document = nullptr;
  return guarded([&] { return native::create(document); });
}

std::error_code load_file(const wchar_t* path, IXMLDOMNodePtr& document) {
  document = nullptr;
  if (path == nullptr) return invalid();
  return guarded([&] { return native::load_file(path, document); });
}

std::error_code load_text(const wchar_t* text, IXMLDOMNodePtr& document) {
  document = nullptr;
  if (text == nullptr) return invalid();
  return guarded([&] { return native::load_text(text, document); });
}

std::error_code document_element(const IXMLDOMNodePtr& document, IXMLDOMNodePtr& element) {
  element = nullptr;
  if (!document) return invalid();
  return guarded([&] { return native::document_element(document, element); });
}

std::error_code has_declaration(const IXMLDOMNodePtr& document, bool& has) {
  has = false;
  if (!document) return invalid();
  return guarded([&] { return native::has_declaration(document, has); });
}

std::error_code insert_declaration(const IXMLDOMNodePtr& document, const wchar_t* data) {
  if (!document || data == nullptr) return invalid();
  return guarded([&] { return native::insert_declaration(document, data); });
}

std::error_code append_element(const IXMLDOMNodePtr& parent, const wchar_t* name,
                               IXMLDOMNodePtr& element) {
  element = nullptr;
  if (!parent || !is_name(name)) return invalid();
  return guarded([&] { return native::append_element(parent, name, element); });
}

std::error_code save(const IXMLDOMNodePtr& document, FILE* out) {
  if (!document || out == nullptr) return invalid();
  return guarded([&] { return native::save(document, out); });
}

std::error_code node_type(const IXMLDOMNodePtr& node, NodeType& type) {
  type = NodeType::kOther;
  if (!node) return invalid();
  return guarded([&] { return native::node_type(node, type); });
}

std::error_code node_name(const IXMLDOMNodePtr& node, std::wstring& name) {
  name.clear();
  if (!node) return invalid();
  return guarded([&] { return native::node_name(node, name); });
}

std::error_code first_child(const IXMLDOMNodePtr& node, IXMLDOMNodePtr& child) {
  child = nullptr;
  if (!node) return invalid();
  return guarded([&] { return native::first_child(node, child); });
}

std::error_code next_sibling(const IXMLDOMNodePtr& node, IXMLDOMNodePtr& sibling) {
  sibling = nullptr;
  if (!node) return invalid();
  return guarded([&] { return native::next_sibling(node, sibling); });
}

std::error_code node_value(const IXMLDOMNodePtr& node, std::wstring& value, bool& is_text) {
  value.clear();
  is_text = false;
  if (!node) return invalid();
  return guarded([&] { return native::node_value(node, value, is_text); });
}

std::error_code set_node_value(const IXMLDOMNodePtr& node, const wchar_t* value) {
  if (!node || value == nullptr) return invalid();
  return guarded([&] { return native::set_node_value(node, value); });
}

std::error_code append_child(const IXMLDOMNodePtr& parent, const IXMLDOMNodePtr& child) {
  if (!parent || !child) return invalid();
  return guarded([&] { return native::append_child(parent, child); });
}

std::error_code find_attribute(const IXMLDOMNodePtr& element, const wchar_t* name,
                               IXMLDOMNodePtr& attribute) {
  attribute = nullptr;
  if (!element || name == nullptr) return invalid();
  return guarded([&] { return native::find_attribute(element, name, attribute); });
}

std::error_code set_attribute(const IXMLDOMNodePtr& element, const wchar_t* name,
                              const wchar_t* value) {
  if (!element || !is_name(name) || value == nullptr) return invalid();
  return guarded([&] { return native::set_attribute(element, name, value); });
}

std::error_code attribute_at(const IXMLDOMNodePtr& element, int index, IXMLDOMNodePtr& attribute) {
  attribute = nullptr;
  if (!element || index < 0) return invalid();
  return guarded([&] { return native::attribute_at(element, index, attribute); });
}

}  // namespace korvalen::platform::xml
