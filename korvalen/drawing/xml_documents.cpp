#include "korvalen/drawing/xml_documents.h"

#include <algorithm>
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

// A work buffer: at most 255 characters, as the suite's fixed buffers hold.
class WorkText {
 public:
  explicit WorkText(std::wstring_view text) { Assign(text); }
  void Assign(std::wstring_view text) {
    length_ = text.size() < kWorkChars ? text.size() : kWorkChars;
    text.copy(chars_, length_);
  }
  std::wstring_view view() const { return {chars_, length_}; }

  // Replaces every occurrence of one text by another, cut to the buffer.
  void Replace(const Replacement& row) {
    std::size_t at = view().find(row.text);
    if (at == std::wstring_view::npos) return;
    wchar_t out[kWorkChars];
    std::size_t used = 0;
    std::size_t from = 0;
    const auto put = [&](std::wstring_view piece) {
      const std::size_t n = piece.size() < kWorkChars - used ? piece.size() : kWorkChars - used;
      piece.copy(out + used, n);
      used += n;
    };
    for (; at != std::wstring_view::npos; at = view().find(row.text, from)) {
      put(view().substr(from, at - from));
      put(row.becomes);
      from = at + row.text.size();
    }
    put(view().substr(from));
    std::copy(out, out + used, chars_);
    length_ = used;
  }

 private:
  wchar_t chars_[kWorkChars];
  std::size_t length_ = 0;
};

// Applies each row to the whole text in turn, within the work buffer. Every
// row starts with '&' or '@', and most values hold few of those: the rows are
// tried only where one stands, and a row that matches nowhere costs nothing
// more.
template <std::size_t N>
WorkText Translate(std::wstring_view source, const Replacement (&table)[N]) {
  WorkText text(source);
  std::size_t marks[kWorkChars];
  std::size_t count = 0;
  const auto find_marks = [&] {
    count = 0;
    const std::wstring_view v = text.view();
    for (std::size_t i = 0; i < v.size(); ++i) {
      if (v[i] == L'&' || v[i] == L'@') marks[count++] = i;
    }
  };
  const auto occurs = [&](std::wstring_view pattern) {
    const std::wstring_view v = text.view();
    for (std::size_t k = 0; k < count; ++k) {
      if (v.substr(marks[k], pattern.size()) == pattern) return true;
    }
    return false;
  };
  find_marks();
  for (const Replacement& row : table) {
    if (row.text[0] != L'&' && row.text[0] != L'@') {
      text.Replace(row);
      find_marks();
    } else if (count > 0 && occurs(row.text)) {
      text.Replace(row);
      find_marks();
    }
  }
  return text;
}

wchar_t LowerChar(wchar_t c) { return korvalen::platform::to_lower(c); }

// Whether the node is an element whose name matches the wanted one (already
// lower case and cut) within the work buffer, without regard to case.
bool IsElementNamed(const IXMLDOMNodePtr& node, std::wstring_view wanted) {
  xml::NodeType type = xml::NodeType::kOther;
  if (xml::node_type(node, type) || type != xml::NodeType::kElement) return false;
  thread_local std::wstring name;
  if (xml::node_name(node, name)) return false;
  const std::wstring_view cut = std::wstring_view(name).substr(0, kWorkChars);
  if (cut.size() != wanted.size()) return false;
  for (std::size_t i = 0; i < cut.size(); ++i) {
    if (LowerChar(cut[i]) != wanted[i]) return false;
  }
  return true;
}

// The first element named so from candidate on, through the following
// siblings.
IXMLDOMNodePtr FindFrom(IXMLDOMNodePtr candidate, const wchar_t* name) {
  WorkText wanted(korvalen::detail::or_empty(name));
  wchar_t lowered[kWorkChars];
  const std::wstring_view view = wanted.view();
  for (std::size_t i = 0; i < view.size(); ++i) lowered[i] = LowerChar(view[i]);
  const std::wstring_view lower_wanted(lowered, view.size());
  while (candidate) {
    if (IsElementNamed(candidate, lower_wanted)) return candidate;
    IXMLDOMNodePtr next;
    if (xml::next_sibling(candidate, next)) return nullptr;
    candidate = std::move(next);
  }
  return nullptr;
}

IXMLDOMNodePtr MainElement(std::error_code loaded, const IXMLDOMNodePtr& document) {
  IXMLDOMNodePtr main;
  if (loaded || xml::document_element(document, main)) return nullptr;
  return main;
}

BSTR NewBstr(std::wstring_view text) {
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
    thread_local std::wstring value;
    bool is_text = false;
    if (!attribute || xml::node_value(attribute, value, is_text) || !is_text) return EmptyBstr();
    return NewBstr(Translate(value, kDecoding).view());
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
    const std::wstring encoded(Translate(korvalen::detail::or_empty(value), kEncoding).view());
    xml::set_node_value(attribute, encoded.c_str());
  } catch (...) {
  }
}

void TranslateTxtAttributeValue(const wchar_t* source, wchar_t* destination) {
  if (destination == nullptr) return;
  try {
    korvalen::platform::copy_cut(destination, static_cast<int>(kWorkChars + 1),
                                 Translate(korvalen::detail::or_empty(source), kEncoding).view());
  } catch (...) {
    destination[0] = 0;
  }
}
