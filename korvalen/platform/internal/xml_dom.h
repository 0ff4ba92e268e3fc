// The XML DOM the library works with: MSXML on Windows, pugixml elsewhere,
// behind the node type of xml_node.h. Every node, the document itself
// included, is an IXMLDOMNodePtr. Calls follow the convention of error.h;
// a call given a null node fails with std::errc::invalid_argument.
//
//   IXMLDOMNodePtr document;
//   if (!xml::load_file(L"iVortan.cfg", document)) {
//     IXMLDOMNodePtr main;
//     xml::document_element(document, main);
//     xml::set_attribute(main, L"LanID", L"3");
//     xml::save(document, out);  // out: a binary stream, e.g. a work file
//   }
//
// Documents are made as the suite has always made them: loading is
// synchronous, without validation or external entities, and text made only of
// white space between elements is dropped.
#pragma once

#include <cstdio>
#include <string>
#include <system_error>

#include "korvalen/platform/xml_node.h"

namespace korvalen::platform::xml {

// The DOM's node types, with their DOM numbers.
enum class NodeType {
  kOther = 0,
  kElement = 1,
  kAttribute = 2,
  kText = 3,
  kCData = 4,
  kProcessingInstruction = 7,
  kComment = 8,
  kDocument = 9,
};

// --- documents ------------------------------------------------------------
// A new empty document.
std::error_code create(IXMLDOMNodePtr& document);
// A document loaded from a file, or parsed from a text; an error when it
// cannot be read or is not well formed.
std::error_code load_file(const wchar_t* path, IXMLDOMNodePtr& document);
std::error_code load_text(const wchar_t* text, IXMLDOMNodePtr& document);
// The main element; null (and no error) when the document has none.
std::error_code document_element(const IXMLDOMNodePtr& document, IXMLDOMNodePtr& element);
// Whether the document holds an XML declaration ("<?xml ...?>").
std::error_code has_declaration(const IXMLDOMNodePtr& document, bool& has);
// Puts the declaration "<?xml data?>" before the main element (at the end
// when there is none).
std::error_code insert_declaration(const IXMLDOMNodePtr& document, const wchar_t* data);
// A new element of that name appended to the node (the document or an
// element).
std::error_code append_element(const IXMLDOMNodePtr& parent, const wchar_t* name,
                               IXMLDOMNodePtr& element);
// Writes the document, as the DOM saves it to a file, into out (a binary
// stream, left open): in the encoding its declaration names (UTF-16 with a
// byte-order mark for "Unicode" and "UTF-16", UTF-8 without a declaration).
// Files are written as a whole by the caller (foundation/internal/whole_file.h).
std::error_code save(const IXMLDOMNodePtr& document, FILE* out);

// --- nodes ----------------------------------------------------------------
std::error_code node_type(const IXMLDOMNodePtr& node, NodeType& type);
std::error_code node_name(const IXMLDOMNodePtr& node, std::wstring& name);
// The first child and the next sibling; null (and no error) when none.
std::error_code first_child(const IXMLDOMNodePtr& node, IXMLDOMNodePtr& child);
std::error_code next_sibling(const IXMLDOMNodePtr& node, IXMLDOMNodePtr& sibling);
// The node's value when it has a text one (attributes, text, comments,
// processing instructions): is_text false and value empty for the others.
std::error_code node_value(const IXMLDOMNodePtr& node, std::wstring& value, bool& is_text);
std::error_code set_node_value(const IXMLDOMNodePtr& node, const wchar_t* value);
// Appends child (its whole subtree, from any document) as the node's last
// child.
std::error_code append_child(const IXMLDOMNodePtr& parent, const IXMLDOMNodePtr& child);

// --- attributes of an element -----------------------------------------------
// The attribute node of that name, compared with regard to case; null (and
// no error) when there is none.
std::error_code find_attribute(const IXMLDOMNodePtr& element, const wchar_t* name,
                               IXMLDOMNodePtr& attribute);
// setAttribute: the value as it stands (the DOM escapes it on saving); an
// attribute that is missing is appended.
std::error_code set_attribute(const IXMLDOMNodePtr& element, const wchar_t* name,
                              const wchar_t* value);
// The element's attribute at that place (from 0, in document order); null
// (and no error) past the last one.
std::error_code attribute_at(const IXMLDOMNodePtr& element, int index, IXMLDOMNodePtr& attribute);

// Each system's implementation, for the portable layer (xml_dom.cpp) only:
// nodes, names and texts are not null, outputs are cleared, and an
// allocation failure may throw. save writes to the path it is given, the
// portable layer's work file.
namespace native {
std::error_code create(IXMLDOMNodePtr& document);
std::error_code load_file(const wchar_t* path, IXMLDOMNodePtr& document);
std::error_code load_text(const wchar_t* text, IXMLDOMNodePtr& document);
std::error_code document_element(const IXMLDOMNodePtr& document, IXMLDOMNodePtr& element);
std::error_code has_declaration(const IXMLDOMNodePtr& document, bool& has);
std::error_code insert_declaration(const IXMLDOMNodePtr& document, const wchar_t* data);
std::error_code append_element(const IXMLDOMNodePtr& parent, const wchar_t* name,
                               IXMLDOMNodePtr& element);
std::error_code save(const IXMLDOMNodePtr& document, FILE* out);
std::error_code node_type(const IXMLDOMNodePtr& node, NodeType& type);
std::error_code node_name(const IXMLDOMNodePtr& node, std::wstring& name);
std::error_code first_child(const IXMLDOMNodePtr& node, IXMLDOMNodePtr& child);
std::error_code next_sibling(const IXMLDOMNodePtr& node, IXMLDOMNodePtr& sibling);
std::error_code node_value(const IXMLDOMNodePtr& node, std::wstring& value, bool& is_text);
std::error_code set_node_value(const IXMLDOMNodePtr& node, const wchar_t* value);
std::error_code append_child(const IXMLDOMNodePtr& parent, const IXMLDOMNodePtr& child);
std::error_code find_attribute(const IXMLDOMNodePtr& element, const wchar_t* name,
                               IXMLDOMNodePtr& attribute);
std::error_code set_attribute(const IXMLDOMNodePtr& element, const wchar_t* name,
                              const wchar_t* value);
std::error_code attribute_at(const IXMLDOMNodePtr& element, int index, IXMLDOMNodePtr& attribute);
}  // namespace native

}  // namespace korvalen::platform::xml
