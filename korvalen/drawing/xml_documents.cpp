#include "korvalen/drawing/xml_documents.h"

#include <string>
#include <string_view>

#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/platform/internal/bounded_copy.h"
#include "korvalen/platform/internal/text_case.h"
#include "korvalen/platform/internal/xml_dom.h"

namespace {

namespace xml = korvalen::platform::xml;

// The work buffers of names and values: 255 characters and the terminator.
constexpr std::size_t kWorkChars = 255;

struct Replacement {
  std::wstring_view text;
  std::wstring_view becomes;
};

constexpr Replacement kEncoding[] = {
    {L"&", L"&#x26;"},  {L"<", L"&#x3c;"},    {L">", L"&#x3e;"},
    {L"\"", L"&#x22;"}, {L"\n", L"@#NwLn#@"},
};

constexpr Replacement kDecoding[] = {
    {L"@#NwLn#@", L"\n"}, {L"&#x22;", L"\""}, {L"&quot;", L"\""},
    {L"&#x3e;", L">"},    {L"&gt;", L">"},    {L"&#x3c;", L"<"},
    {L"&lt;", L"<"},      {L"&#x26;", L"&"},  {L"&amp;", L"&"},
};

std::wstring Cut(std::wstring_view text) { return std::wstring(text.substr(0, kWorkChars)); }

// Applies each row to the whole text in turn, within the work buffer.
template <std::size_t N>
std::wstring Translate(std::wstring_view source, const Replacement (&table)[N]) {
  std::wstring text = Cut(source);
  if (text.empty()) return text;
  for (const Replacement& row : table) {
    std::wstring out;
    std::size_t from = 0;
    for (std::size_t at; (at = text.find(row.text, from)) != std::wstring::npos;
         from = at + row.text.size()) {
      out.append(text, from, at - from);
      out += row.becomes;
    }
    out.append(text, from, std::wstring::npos);
    text = Cut(out);
  }
  return text;
}

std::wstring Lower(std::wstring_view name) {
  std::wstring lowered = Cut(name);
  for (wchar_t& c : lowered) c = korvalen::platform::to_lower(c);
  return lowered;
}

bool IsElementNamed(const IXMLDOMNodePtr& node, const std::wstring& lowered_name) {
  xml::NodeType type = xml::NodeType::kOther;
  std::wstring name;
  return !xml::node_type(node, type) && type == xml::NodeType::kElement &&
         !xml::node_name(node, name) && Lower(name) == lowered_name;
}

// The first element named so from candidate on, through the following
// siblings.
IXMLDOMNodePtr FindFrom(IXMLDOMNodePtr candidate, const wchar_t* name) {
  const std::wstring wanted = Lower(korvalen::detail::or_empty(name));
  while (candidate) {
    if (IsElementNamed(candidate, wanted)) return candidate;
    IXMLDOMNodePtr next;
    if (xml::next_sibling(candidate, next)) return nullptr;
    candidate = next;
  }
  return nullptr;
}

IXMLDOMNodePtr MainElement(std::error_code loaded, const IXMLDOMNodePtr& document) {
  IXMLDOMNodePtr main;
  if (loaded || xml::document_element(document, main)) return nullptr;
  return main;
}

BSTR NewBstr(const std::wstring& text) {
  return SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

BSTR EmptyBstr() { return SysAllocString(L""); }

}  // namespace

IXMLDOMNodePtr GetXMLMainNodeObjectFromFile(const wchar_t* path) {
  try {
    IXMLDOMNodePtr document;
    if (path == nullptr) return nullptr;
    return MainElement(xml::load_file(path, document), document);
  } catch (...) {
    return nullptr;
  }
}

IXMLDOMNodePtr GetXMLMainNodeObjectFromString(const wchar_t* text) {
  try {
    IXMLDOMNodePtr document;
    if (text == nullptr) return nullptr;
    return MainElement(xml::load_text(text, document), document);
  } catch (...) {
    return nullptr;
  }
}

IXMLDOMNodePtr GetSimpleChildElementNode(IXMLDOMNodePtr node, const wchar_t* name) {
  try {
    IXMLDOMNodePtr child;
    if (!node || xml::first_child(node, child)) return nullptr;
    return FindFrom(child, name);
  } catch (...) {
    return nullptr;
  }
}

IXMLDOMNodePtr GetSimpleNextElementNode(IXMLDOMNodePtr node, const wchar_t* name) {
  try {
    IXMLDOMNodePtr next;
    if (!node || xml::next_sibling(node, next)) return nullptr;
    return FindFrom(next, name);
  } catch (...) {
    return nullptr;
  }
}

void AppendChildXMLText(IXMLDOMNodePtr node, const wchar_t* text) {
  try {
    if (!node) return;
    const IXMLDOMNodePtr main = GetXMLMainNodeObjectFromString(text);
    if (main) xml::append_child(node, main);
  } catch (...) {
  }
}

BSTR GetAttributeValue(IXMLDOMNodePtr node, const wchar_t* name) {
  try {
    IXMLDOMNodePtr attribute;
    if (!node || name == nullptr || xml::find_attribute(node, name, attribute) || !attribute) {
      return EmptyBstr();
    }
    return GetAttributeNodeValue(attribute);
  } catch (...) {
    return EmptyBstr();
  }
}

BSTR GetAttributeNodeValue(IXMLDOMNodePtr attribute) {
  try {
    std::wstring value;
    bool is_text = false;
    if (!attribute || xml::node_value(attribute, value, is_text) || !is_text) return EmptyBstr();
    return NewBstr(Translate(value, kDecoding));
  } catch (...) {
    return EmptyBstr();
  }
}

void ChangeAttributeValue(IXMLDOMNodePtr node, const wchar_t* name, const wchar_t* value) {
  try {
    IXMLDOMNodePtr attribute;
    if (!node || name == nullptr || xml::find_attribute(node, name, attribute) || !attribute) {
      return;
    }
    xml::set_node_value(attribute, Translate(korvalen::detail::or_empty(value), kEncoding).c_str());
  } catch (...) {
  }
}

void TranslateTxtAttributeValue(const wchar_t* source, wchar_t* destination) {
  if (destination == nullptr) return;
  try {
    korvalen::platform::copy_cut(destination, static_cast<int>(kWorkChars + 1),
                                 Translate(korvalen::detail::or_empty(source), kEncoding));
  } catch (...) {
    destination[0] = 0;
  }
}
