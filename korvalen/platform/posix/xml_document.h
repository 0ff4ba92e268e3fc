// Internal to the POSIX layer: what an IXMLDOMNodePtr points into. A
// document is a pugixml tree with a reference count; a node is a pointer into
// that tree, its lowest bit telling an attribute from any other node.
#pragma once

#include <atomic>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "korvalen/platform/xml_node.h"

struct IXMLDOMNodePtr::Document {
  std::atomic<long> references{0};
  pugi::xml_document tree;
};

namespace korvalen::platform::posix {

// A node of a document as the pointer holds it.
inline void* handle_of(pugi::xml_node node) { return node.internal_object(); }
inline void* handle_of(pugi::xml_attribute attribute) {
  return reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(attribute.internal_object()) |
                                 1u);
}
inline bool is_attribute(const IXMLDOMNodePtr& node) {
  return (reinterpret_cast<std::uintptr_t>(node.node()) & 1u) != 0;
}
// The node, or an empty one for an attribute.
inline pugi::xml_node tree_node(const IXMLDOMNodePtr& node) {
  if (is_attribute(node)) return {};
  return pugi::xml_node(static_cast<pugi::xml_node_struct*>(node.node()));
}
// The attribute, or an empty one for any other node.
inline pugi::xml_attribute tree_attribute(const IXMLDOMNodePtr& node) {
  if (!is_attribute(node)) return {};
  return pugi::xml_attribute(reinterpret_cast<pugi::xml_attribute_struct*>(
      reinterpret_cast<std::uintptr_t>(node.node()) & ~std::uintptr_t{1}));
}

// The text of a document file as UTF-8, for the parser: from a byte-order
// mark, the look of its first characters, or the encoding its declaration
// names. False when the bytes are no text in that encoding.
bool document_text(std::string_view bytes, std::string& utf8);

// The bytes of a document as it is saved, in the encoding its declaration
// names.
std::string document_bytes(const pugi::xml_document& tree);

}  // namespace korvalen::platform::posix
