// The XML DOM over pugixml, with what MSXML does where the suite relies on it:
// one main element per document, the declaration as a processing
// instruction named "xml", attribute values normalised on reading.
#include "korvalen/platform/internal/xml_dom.h"

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "korvalen/platform/internal/error.h"
#include "korvalen/platform/internal/files.h"
#include "korvalen/platform/internal/utf8.h"
#include "korvalen/platform/posix/xml_document.h"

namespace korvalen::platform::xml {
namespace {

using Document = IXMLDOMNodePtr::Document;
using posix::tree_attribute;
using posix::tree_node;

// As MSXML loads: entities and character references expanded, line ends
// normalised, white space in attribute values made blanks, declaration,
// processing instructions and comments kept, white-space-only text dropped.
constexpr unsigned kParseOptions =
    pugi::parse_default | pugi::parse_declaration | pugi::parse_pi | pugi::parse_comments;

std::error_code invalid() { return make_error(std::errc::invalid_argument); }
std::error_code out_of_memory() { return make_error(std::errc::not_enough_memory); }
std::error_code malformed() { return make_error(std::errc::illegal_byte_sequence); }

IXMLDOMNodePtr pointer(Document* document, pugi::xml_node node) {
  return node ? IXMLDOMNodePtr(document, posix::handle_of(node)) : IXMLDOMNodePtr();
}

// A document is well formed for the DOM when its parse succeeded and it holds
// one main element and no text beside it.
bool one_main_element(const pugi::xml_document& tree) {
  int elements = 0;
  for (pugi::xml_node top = tree.first_child(); top; top = top.next_sibling()) {
    if (top.type() == pugi::node_element) ++elements;
    if (top.type() == pugi::node_pcdata || top.type() == pugi::node_cdata) return false;
  }
  return elements == 1;
}

// Parses the text; UTF-8 in place, the document keeping the bytes, other
// encodings converted by the parser.
std::error_code parse(posix::ParserInput input, IXMLDOMNodePtr& document) {
  auto owned = std::make_unique<Document>();
  owned->source_size = input.bytes.size();
  pugi::xml_parse_result result;
  if (input.encoding == pugi::encoding_utf8) {
    owned->text = std::move(input.bytes);
    result = owned->tree.load_buffer_inplace(owned->text.data(), owned->text.size(), kParseOptions,
                                             pugi::encoding_utf8);
  } else {
    result = owned->tree.load_buffer(input.bytes.data(), input.bytes.size(), kParseOptions,
                                     input.encoding);
  }
  if (!result || !one_main_element(owned->tree)) return malformed();
  Document* doc = owned.release();
  document = IXMLDOMNodePtr(doc, posix::handle_of(doc->tree.root()));
  return {};
}

pugi::xml_node main_element(pugi::xml_node document) {
  for (pugi::xml_node top = document.first_child(); top; top = top.next_sibling()) {
    if (top.type() == pugi::node_element) return top;
  }
  return {};
}

bool is_document(const IXMLDOMNodePtr& node) {
  return tree_node(node).type() == pugi::node_document;
}

// The declaration's data as MSXML keeps it: its pseudo-attributes as text.
std::string declaration_data(pugi::xml_node declaration) {
  std::string data;
  for (pugi::xml_attribute a = declaration.first_attribute(); a; a = a.next_attribute()) {
    if (!data.empty()) data += ' ';
    data += std::string(a.name()) + "=\"" + a.value() + "\"";
  }
  return data;
}

// Parses data ('name="value"' pairs) into the declaration's attributes; what
// does not read as such a pair ends it.
void set_declaration_data(pugi::xml_node declaration, const std::string& data) {
  while (declaration.first_attribute()) declaration.remove_attribute(declaration.first_attribute());
  std::size_t p = 0;
  for (;;) {
    p = data.find_first_not_of(' ', p);
    if (p == std::string::npos) return;
    const std::size_t equals = data.find('=', p);
    if (equals == std::string::npos || equals == p) return;
    std::string name = data.substr(p, equals - p);
    name.erase(name.find_last_not_of(' ') + 1);
    const std::size_t open = data.find_first_not_of(' ', equals + 1);
    if (open == std::string::npos || (data[open] != '"' && data[open] != '\'')) return;
    const std::size_t close = data.find(data[open], open + 1);
    if (close == std::string::npos) return;
    declaration.append_attribute(name.c_str())
        .set_value(data.substr(open + 1, close - open - 1).c_str());
    p = close + 1;
  }
}

}  // namespace

namespace native {

std::error_code create(IXMLDOMNodePtr& document) {
  auto* doc = new Document;
  document = IXMLDOMNodePtr(doc, posix::handle_of(doc->tree.root()));
  return {};
}

std::error_code load_file(const wchar_t* path, IXMLDOMNodePtr& document) {
  FILE* file = nullptr;
  if (const std::error_code error = platform::open_file(path, L"rb", -1, file)) return error;
  // Read whole at the size the file has; a file that grows meanwhile is read
  // on to its end.
  std::string bytes;
  if (std::fseek(file, 0, SEEK_END) == 0) {
    const long size = std::ftell(file);
    if (size > 0) bytes.reserve(static_cast<std::size_t>(size));
    std::rewind(file);
  }
  char block[65536];
  std::size_t n = 0;
  while ((n = std::fread(block, 1, sizeof block, file)) > 0) bytes.append(block, n);
  const bool read = std::ferror(file) == 0;
  std::fclose(file);
  if (!read) return make_error(std::errc::io_error);
  posix::ParserInput input;
  if (!posix::document_text(std::move(bytes), input)) return malformed();
  return parse(std::move(input), document);
}

std::error_code load_text(const wchar_t* text, IXMLDOMNodePtr& document) {
  return parse(posix::ParserInput{to_utf8(text), pugi::encoding_utf8}, document);
}

std::error_code document_element(const IXMLDOMNodePtr& document, IXMLDOMNodePtr& element) {
  if (!is_document(document)) return invalid();
  element = pointer(document.document(), main_element(tree_node(document)));
  return {};
}

std::error_code has_declaration(const IXMLDOMNodePtr& document, bool& has) {
  if (!is_document(document)) return invalid();
  for (pugi::xml_node top = tree_node(document).first_child(); top; top = top.next_sibling()) {
    if (top.type() == pugi::node_declaration) has = true;
  }
  return {};
}

std::error_code insert_declaration(const IXMLDOMNodePtr& document, const wchar_t* data) {
  if (!is_document(document)) return invalid();
  pugi::xml_node tree = tree_node(document);
  const pugi::xml_node main = main_element(tree);
  pugi::xml_node declaration = main ? tree.insert_child_before(pugi::node_declaration, main)
                                    : tree.append_child(pugi::node_declaration);
  if (!declaration) return out_of_memory();
  set_declaration_data(declaration, to_utf8(data));
  return {};
}

std::error_code append_element(const IXMLDOMNodePtr& parent, const wchar_t* name,
                               IXMLDOMNodePtr& element) {
  pugi::xml_node node = tree_node(parent);
  if (!node || (node.type() == pugi::node_document && main_element(node))) {
    return make_error(std::errc::operation_not_permitted);  // one main element
  }
  pugi::xml_node added = node.append_child(to_utf8(name).c_str());
  if (!added) return make_error(std::errc::operation_not_permitted);
  element = pointer(parent.document(), added);
  return {};
}

std::error_code save(const IXMLDOMNodePtr& document, FILE* out) {
  if (!is_document(document)) return invalid();
  const Document& doc = *document.document();
  // A loaded document's markup is about as long as its text was.
  return posix::write_document(doc.tree, doc.source_size + 4096, out)
             ? std::error_code()
             : make_error(std::errc::io_error);
}

std::error_code node_type(const IXMLDOMNodePtr& node, NodeType& type) {
  if (posix::is_attribute(node)) {
    type = NodeType::kAttribute;
    return {};
  }
  switch (tree_node(node).type()) {
    case pugi::node_document:
      type = NodeType::kDocument;
      break;
    case pugi::node_element:
      type = NodeType::kElement;
      break;
    case pugi::node_pcdata:
      type = NodeType::kText;
      break;
    case pugi::node_cdata:
      type = NodeType::kCData;
      break;
    case pugi::node_comment:
      type = NodeType::kComment;
      break;
    case pugi::node_pi:
    case pugi::node_declaration:
      type = NodeType::kProcessingInstruction;
      break;
    default:
      break;
  }
  return {};
}

std::error_code node_name(const IXMLDOMNodePtr& node, std::wstring& name) {
  if (posix::is_attribute(node)) {
    from_utf8(tree_attribute(node).name(), name);
    return {};
  }
  const pugi::xml_node n = tree_node(node);
  switch (n.type()) {
    case pugi::node_document:
      name = L"#document";
      break;
    case pugi::node_pcdata:
      name = L"#text";
      break;
    case pugi::node_cdata:
      name = L"#cdata-section";
      break;
    case pugi::node_comment:
      name = L"#comment";
      break;
    default:
      from_utf8(n.name(), name);
  }
  return {};
}

std::error_code first_child(const IXMLDOMNodePtr& node, IXMLDOMNodePtr& child) {
  child = pointer(node.document(), tree_node(node).first_child());
  return {};
}

std::error_code next_sibling(const IXMLDOMNodePtr& node, IXMLDOMNodePtr& sibling) {
  sibling = pointer(node.document(), tree_node(node).next_sibling());
  return {};
}

std::error_code node_value(const IXMLDOMNodePtr& node, std::wstring& value, bool& is_text) {
  if (posix::is_attribute(node)) {
    from_utf8(tree_attribute(node).value(), value);
    is_text = true;
    return {};
  }
  const pugi::xml_node n = tree_node(node);
  switch (n.type()) {
    case pugi::node_pcdata:
    case pugi::node_cdata:
    case pugi::node_comment:
    case pugi::node_pi:
      from_utf8(n.value(), value);
      is_text = true;
      break;
    case pugi::node_declaration:
      value = from_utf8(declaration_data(n));
      is_text = true;
      break;
    default:
      break;
  }
  return {};
}

std::error_code set_node_value(const IXMLDOMNodePtr& node, const wchar_t* value) {
  const std::string text = to_utf8(value);
  if (posix::is_attribute(node)) {
    return tree_attribute(node).set_value(text.c_str()) ? std::error_code() : out_of_memory();
  }
  pugi::xml_node n = tree_node(node);
  if (n.type() == pugi::node_declaration) {
    set_declaration_data(n, text);
    return {};
  }
  if (n.type() == pugi::node_element || n.type() == pugi::node_document) {
    return make_error(std::errc::operation_not_permitted);
  }
  return n.set_value(text.c_str()) ? std::error_code() : out_of_memory();
}

// MSXML moves a node of another document; the copy here leaves that
// document as it was, which no caller of the library can tell apart.
std::error_code append_child(const IXMLDOMNodePtr& parent, const IXMLDOMNodePtr& child) {
  pugi::xml_node to = tree_node(parent);
  const pugi::xml_node from = tree_node(child);
  if (!to || !from || from.type() == pugi::node_document) {
    return make_error(std::errc::operation_not_permitted);
  }
  return to.append_copy(from) ? std::error_code() : make_error(std::errc::operation_not_permitted);
}

std::error_code find_attribute(const IXMLDOMNodePtr& element, const wchar_t* name,
                               IXMLDOMNodePtr& attribute) {
  const pugi::xml_node node = tree_node(element);
  if (node.type() != pugi::node_element) return invalid();
  const pugi::xml_attribute found = node.attribute(to_utf8(name).c_str());
  if (found) attribute = IXMLDOMNodePtr(element.document(), posix::handle_of(found));
  return {};
}

std::error_code set_attribute(const IXMLDOMNodePtr& element, const wchar_t* name,
                              const wchar_t* value) {
  pugi::xml_node node = tree_node(element);
  if (node.type() != pugi::node_element) return invalid();
  const std::string key = to_utf8(name);
  pugi::xml_attribute attribute = node.attribute(key.c_str());
  if (!attribute) attribute = node.append_attribute(key.c_str());
  return attribute && attribute.set_value(to_utf8(value).c_str()) ? std::error_code()
                                                                  : out_of_memory();
}

std::error_code attribute_at(const IXMLDOMNodePtr& element, int index, IXMLDOMNodePtr& attribute) {
  const pugi::xml_node node = tree_node(element);
  if (node.type() != pugi::node_element) return invalid();
  pugi::xml_attribute a = node.first_attribute();
  for (int i = 0; i < index && a; ++i) a = a.next_attribute();
  if (a) attribute = IXMLDOMNodePtr(element.document(), posix::handle_of(a));
  return {};
}

}  // namespace native

}  // namespace korvalen::platform::xml
