// Internal to the POSIX layer: what an IXMLDOMNodePtr points into. A
// document is a pugixml tree with a reference count; a node is a pointer into
// that tree, its lowest bit telling an attribute from any other node.
#pragma once

#include <atomic>
#include <cstdio>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "korvalen/platform/xml_node.h"

struct IXMLDOMNodePtr::Document {
  std::atomic<long> references{0};
  // The parsed text, which the tree points into (UTF-8 documents only).
  std::string text;
  // The size of the file or text the document came from: about how long its
  // markup is when saved.
  std::size_t source_size = 0;
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

// The text of a document file as the parser takes it: the encoding comes
// from a byte-order mark, the look of the first characters, or the label of
// an 8-bit declaration. UTF-8 and UTF-16 are handed on as they are (the
// parser converts UTF-16), windows-1252 converted to UTF-8. False when the
// bytes are no text in their encoding (bad UTF-8, an odd number of UTF-16
// bytes).
struct ParserInput {
  std::string bytes;
  pugi::xml_encoding encoding = pugi::encoding_utf8;
};
bool document_text(std::string bytes, ParserInput& input);

// Writes the document to the file in the encoding its declaration names
// (UTF-16LE with a byte-order mark for "Unicode" and "UTF-16", windows-1252
// for that label, UTF-8 otherwise). size_hint is about how long its markup
// is; false when the file reports an error.
bool write_document(const pugi::xml_document& tree, std::size_t size_hint, FILE* file);

}  // namespace korvalen::platform::posix
