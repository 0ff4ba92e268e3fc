// The XML DOM over MSXML, as the suite has always made its documents: the
// version-independent MSXML2 DOMDocument class, run and set to load
// synchronously, without validation or external entities, dropping
// white-space-only text.
#include "korvalen/platform/internal/xml_dom.h"

#include <objbase.h>
#include <ole2.h>

#include <cstdio>
#include <string>

#include "korvalen/platform/internal/com_startup.h"
#include "korvalen/platform/internal/error.h"

namespace korvalen::platform::xml {
namespace {

// {F6D90F11-9C73-11D3-B32E-00C04F990BB4}: the MSXML2 DOMDocument class.
constexpr CLSID kDocumentClass = {
    0xF6D90F11, 0x9C73, 0x11D3, {0xB3, 0x2E, 0x00, 0xC0, 0x4F, 0x99, 0x0B, 0xB4}};

std::error_code invalid() { return make_error(std::errc::invalid_argument); }

std::error_code com_error(HRESULT result) {
  return std::error_code(static_cast<int>(result), std::system_category());
}

// A COM interface pointer released at the end of its scope.
template <typename Interface>
class Held {
 public:
  Held() = default;
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  ~Held() {
    if (p_ != nullptr) p_->Release();
  }
  Interface** out() { return &p_; }
  Interface* operator->() const { return p_; }
  Interface* get() const { return p_; }
  explicit operator bool() const { return p_ != nullptr; }

 private:
  Interface* p_ = nullptr;
};

// A BSTR released at the end of its scope.
class Text {
 public:
  explicit Text(const wchar_t* text = nullptr)
      : b_(text != nullptr ? SysAllocString(text) : nullptr) {
    if (text != nullptr && b_ == nullptr) throw std::bad_alloc();
  }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  ~Text() { SysFreeString(b_); }
  BSTR get() const { return b_; }
  BSTR* out() { return &b_; }
  std::wstring string() const { return std::wstring(b_ != nullptr ? b_ : L"", SysStringLen(b_)); }

 private:
  BSTR b_ = nullptr;
};

// A string VARIANT, cleared at the end of its scope.
class Variant {
 public:
  Variant() { VariantInit(&v_); }
  explicit Variant(const wchar_t* text) : Variant() {
    v_.vt = VT_BSTR;
    v_.bstrVal = SysAllocString(text);
    if (v_.bstrVal == nullptr) throw std::bad_alloc();
  }
  explicit Variant(IUnknown* object) : Variant() {
    v_.vt = VT_UNKNOWN;
    v_.punkVal = object;
    object->AddRef();
  }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant() { VariantClear(&v_); }
  VARIANT& get() { return v_; }

 private:
  VARIANT v_;
};

// The node pointer taking over a reference the caller holds.
IXMLDOMNodePtr adopt(IXMLDOMNode* node) { return IXMLDOMNodePtr(node, false); }

template <typename Interface>
std::error_code query(const IXMLDOMNodePtr& node, REFIID id, Held<Interface>& out) {
  if (!node) return invalid();
  const HRESULT result =
      node.GetInterfacePtr()->QueryInterface(id, reinterpret_cast<void**>(out.out()));
  return SUCCEEDED(result) ? std::error_code() : com_error(result);
}

std::error_code new_document(Held<IXMLDOMDocument>& document) {
  Held<IUnknown> object;
  HRESULT result = CoCreateInstance(kDocumentClass, nullptr, CLSCTX_ALL, IID_IUnknown,
                                    reinterpret_cast<void**>(object.out()));
  if (result == CO_E_NOTINITIALIZED) {
    // A thread of the caller's that never started COM: start it, as every
    // program of the suite does.
    (void)start_com();
    result = CoCreateInstance(kDocumentClass, nullptr, CLSCTX_ALL, IID_IUnknown,
                              reinterpret_cast<void**>(object.out()));
  }
  if (FAILED(result)) return com_error(result);
  if (FAILED(result = OleRun(object.get()))) return com_error(result);
  result = object->QueryInterface(IID_IXMLDOMDocument, reinterpret_cast<void**>(document.out()));
  if (FAILED(result)) return com_error(result);
  for (HRESULT set :
       {document->put_async(VARIANT_FALSE), document->put_validateOnParse(VARIANT_FALSE),
        document->put_resolveExternals(VARIANT_FALSE),
        document->put_preserveWhiteSpace(VARIANT_FALSE)}) {
    if (FAILED(set)) return com_error(set);
  }
  return {};
}

std::error_code as_node(IXMLDOMDocument* document, IXMLDOMNodePtr& node) {
  IXMLDOMNode* raw = nullptr;
  const HRESULT result = document->QueryInterface(IID_IXMLDOMNode, reinterpret_cast<void**>(&raw));
  if (FAILED(result)) return com_error(result);
  node = adopt(raw);
  return {};
}

// The document a node belongs to (itself for a document).
std::error_code owner_of(const IXMLDOMNodePtr& node, Held<IXMLDOMDocument>& document) {
  if (!query(node, IID_IXMLDOMDocument, document)) return {};
  const HRESULT result = node->get_ownerDocument(document.out());
  if (FAILED(result)) return com_error(result);
  return document ? std::error_code() : invalid();
}

template <typename Load>
std::error_code load(Load load_into, IXMLDOMNodePtr& document) {
  document = nullptr;
  Held<IXMLDOMDocument> created;
  if (const std::error_code error = new_document(created)) return error;
  VARIANT_BOOL loaded = VARIANT_FALSE;
  const HRESULT result = load_into(created.get(), &loaded);
  if (FAILED(result)) return com_error(result);
  if (loaded != VARIANT_TRUE) return make_error(std::errc::illegal_byte_sequence);
  return as_node(created.get(), document);
}

}  // namespace

namespace native {

std::error_code create(IXMLDOMNodePtr& document) {
  Held<IXMLDOMDocument> created;
  if (const std::error_code error = new_document(created)) return error;
  return as_node(created.get(), document);
}

std::error_code load_file(const wchar_t* path, IXMLDOMNodePtr& document) {
  Variant source(path);
  return load([&](IXMLDOMDocument* d, VARIANT_BOOL* ok) { return d->load(source.get(), ok); },
              document);
}

std::error_code load_text(const wchar_t* text, IXMLDOMNodePtr& document) {
  Text source(text);
  return load([&](IXMLDOMDocument* d, VARIANT_BOOL* ok) { return d->loadXML(source.get(), ok); },
              document);
}

std::error_code document_element(const IXMLDOMNodePtr& document, IXMLDOMNodePtr& element) {
  Held<IXMLDOMDocument> d;
  if (const std::error_code error = query(document, IID_IXMLDOMDocument, d)) return error;
  Held<IXMLDOMElement> main;
  const HRESULT result = d->get_documentElement(main.out());
  if (FAILED(result)) return com_error(result);
  if (!main) return std::error_code();
  IXMLDOMNode* raw = nullptr;
  if (FAILED(main->QueryInterface(IID_IXMLDOMNode, reinterpret_cast<void**>(&raw)))) {
    return invalid();
  }
  element = adopt(raw);
  return std::error_code();
}

std::error_code has_declaration(const IXMLDOMNodePtr& document, bool& has) {
  IXMLDOMNodePtr child;
  if (const std::error_code error = native::first_child(document, child)) return error;
  while (child) {
    NodeType type = NodeType::kOther;
    std::wstring name;
    native::node_type(child, type);
    native::node_name(child, name);
    if (type == NodeType::kProcessingInstruction && name == L"xml") has = true;
    IXMLDOMNodePtr next;
    native::next_sibling(child, next);
    child = next;
  }
  return std::error_code();
}

std::error_code insert_declaration(const IXMLDOMNodePtr& document, const wchar_t* data) {
  Held<IXMLDOMDocument> d;
  if (const std::error_code error = query(document, IID_IXMLDOMDocument, d)) return error;
  Held<IXMLDOMProcessingInstruction> declaration;
  Text target(L"xml");
  Text text(data);
  HRESULT result = d->createProcessingInstruction(target.get(), text.get(), declaration.out());
  if (FAILED(result)) return com_error(result);
  IXMLDOMNodePtr main;
  native::document_element(document, main);
  Held<IXMLDOMNode> inserted;
  if (main) {
    Variant before(main.GetInterfacePtr());
    result = d->insertBefore(declaration.get(), before.get(), inserted.out());
  } else {
    result = d->appendChild(declaration.get(), inserted.out());
  }
  return SUCCEEDED(result) ? std::error_code() : com_error(result);
}

std::error_code append_element(const IXMLDOMNodePtr& parent, const wchar_t* name,
                               IXMLDOMNodePtr& element) {
  Held<IXMLDOMDocument> d;
  if (const std::error_code error = owner_of(parent, d)) return error;
  Held<IXMLDOMElement> created;
  Text tag(name);
  HRESULT result = d->createElement(tag.get(), created.out());
  if (FAILED(result)) return com_error(result);
  IXMLDOMNode* added = nullptr;
  result = parent->appendChild(created.get(), &added);
  if (FAILED(result)) return com_error(result);
  element = adopt(added);
  return std::error_code();
}

std::error_code save(const IXMLDOMNodePtr& document, FILE* out) {
  Held<IXMLDOMDocument> d;
  if (const std::error_code error = query(document, IID_IXMLDOMDocument, d)) return error;
  // The DOM writes to a stream in memory what it would write to a file; the
  // caller's stream then takes it as it is.
  Held<IStream> memory;
  HRESULT result = CreateStreamOnHGlobal(nullptr, TRUE, memory.out());
  if (FAILED(result)) return com_error(result);
  Variant target(memory.get());
  result = d->save(target.get());
  if (FAILED(result)) return com_error(result);
  STATSTG status{};
  HGLOBAL global = nullptr;
  result = memory->Stat(&status, STATFLAG_NONAME);
  if (SUCCEEDED(result)) result = GetHGlobalFromStream(memory.get(), &global);
  if (FAILED(result)) return com_error(result);
  const std::size_t size = static_cast<std::size_t>(status.cbSize.QuadPart);
  const void* bytes = GlobalLock(global);
  if (bytes == nullptr && size != 0) return make_error(std::errc::not_enough_memory);
  const bool written = std::fwrite(bytes, 1, size, out) == size;
  GlobalUnlock(global);
  return written ? std::error_code() : make_error(std::errc::io_error);
}

std::error_code node_type(const IXMLDOMNodePtr& node, NodeType& type) {
  DOMNodeType dom = NODE_INVALID;
  const HRESULT result = node->get_nodeType(&dom);
  if (FAILED(result)) return com_error(result);
  switch (dom) {
    case NODE_ELEMENT:
      type = NodeType::kElement;
      break;
    case NODE_ATTRIBUTE:
      type = NodeType::kAttribute;
      break;
    case NODE_TEXT:
      type = NodeType::kText;
      break;
    case NODE_CDATA_SECTION:
      type = NodeType::kCData;
      break;
    case NODE_PROCESSING_INSTRUCTION:
      type = NodeType::kProcessingInstruction;
      break;
    case NODE_COMMENT:
      type = NodeType::kComment;
      break;
    case NODE_DOCUMENT:
      type = NodeType::kDocument;
      break;
    default:
      break;
  }
  return std::error_code();
}

std::error_code node_name(const IXMLDOMNodePtr& node, std::wstring& name) {
  Text text;
  const HRESULT result = node->get_nodeName(text.out());
  if (FAILED(result)) return com_error(result);
  name = text.string();
  return std::error_code();
}

std::error_code first_child(const IXMLDOMNodePtr& node, IXMLDOMNodePtr& child) {
  IXMLDOMNode* raw = nullptr;
  const HRESULT result = node->get_firstChild(&raw);
  if (FAILED(result)) return com_error(result);
  child = adopt(raw);
  return std::error_code();
}

std::error_code next_sibling(const IXMLDOMNodePtr& node, IXMLDOMNodePtr& sibling) {
  IXMLDOMNode* raw = nullptr;
  const HRESULT result = node->get_nextSibling(&raw);
  if (FAILED(result)) return com_error(result);
  sibling = adopt(raw);
  return std::error_code();
}

std::error_code node_value(const IXMLDOMNodePtr& node, std::wstring& value, bool& is_text) {
  Variant held;
  const HRESULT result = node->get_nodeValue(&held.get());
  if (FAILED(result)) return com_error(result);
  if (held.get().vt == VT_BSTR) {
    const BSTR text = held.get().bstrVal;
    value.assign(text != nullptr ? text : L"", SysStringLen(text));
    is_text = true;
  }
  return std::error_code();
}

std::error_code set_node_value(const IXMLDOMNodePtr& node, const wchar_t* value) {
  Variant text(value);
  const HRESULT result = node->put_nodeValue(text.get());
  return SUCCEEDED(result) ? std::error_code() : com_error(result);
}

std::error_code append_child(const IXMLDOMNodePtr& parent, const IXMLDOMNodePtr& child) {
  Held<IXMLDOMNode> added;
  const HRESULT result = parent->appendChild(child.GetInterfacePtr(), added.out());
  return SUCCEEDED(result) ? std::error_code() : com_error(result);
}

std::error_code find_attribute(const IXMLDOMNodePtr& element, const wchar_t* name,
                               IXMLDOMNodePtr& attribute) {
  Held<IXMLDOMNamedNodeMap> attributes;
  HRESULT result = element->get_attributes(attributes.out());
  if (FAILED(result)) return com_error(result);
  if (!attributes) return invalid();  // no element
  Text key(name);
  IXMLDOMNode* raw = nullptr;
  result = attributes->getNamedItem(key.get(), &raw);
  if (FAILED(result)) return com_error(result);
  attribute = adopt(raw);
  return std::error_code();
}

std::error_code set_attribute(const IXMLDOMNodePtr& element, const wchar_t* name,
                              const wchar_t* value) {
  Held<IXMLDOMElement> e;
  if (const std::error_code error = query(element, IID_IXMLDOMElement, e)) return error;
  Text key(name);
  Variant text(value);
  const HRESULT result = e->setAttribute(key.get(), text.get());
  return SUCCEEDED(result) ? std::error_code() : com_error(result);
}

std::error_code attribute_at(const IXMLDOMNodePtr& element, int index, IXMLDOMNodePtr& attribute) {
  Held<IXMLDOMNamedNodeMap> attributes;
  HRESULT result = element->get_attributes(attributes.out());
  if (FAILED(result)) return com_error(result);
  if (!attributes) return invalid();  // no element
  long length = 0;
  result = attributes->get_length(&length);
  if (FAILED(result)) return com_error(result);
  if (index >= length) return {};
  IXMLDOMNode* raw = nullptr;
  result = attributes->get_item(index, &raw);
  if (FAILED(result)) return com_error(result);
  attribute = adopt(raw);
  return {};
}

}  // namespace native

}  // namespace korvalen::platform::xml
