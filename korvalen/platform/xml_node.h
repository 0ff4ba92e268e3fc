// IXMLDOMNodePtr: a node of an XML document, as the XML functions take and
// return it. It is a reference-counted smart pointer: copies share the node,
// the last one releases it, and a node keeps its whole document alive. A null
// node means "not found" or "could not open".
//
//   IXMLDOMNodePtr main = GetXMLMainNodeObjectFromFile(L"Languages.xml");
//   if (main != nullptr) {
//     IXMLDOMNodePtr language = GetSimpleChildElementNode(main, L"LANGUAGE");
//     ...
//   }
//
// On Windows it is the COM smart pointer of the system's MSXML DOM node
// (_com_ptr_t over IXMLDOMNode), so applications pass their own MSXML nodes.
// Elsewhere it is the library's own pointer over its DOM, with the same use:
// copy it, compare it with nullptr or another node, test it in a condition.
#pragma once

#include "korvalen/platform/bstr.h"

#if defined(_WIN32)
#include <msxml2.h>
// After msxml2.h: the Microsoft compiler then declares the MSXML pointers.
#include <comdef.h>

#if !defined(_MSC_VER) && !defined(KORVALEN_IXMLDOMNODE_UUID)
#define KORVALEN_IXMLDOMNODE_UUID
// The MinGW headers name no interface identifier for __uuidof(IXMLDOMNode).
__CRT_UUID_DECL(IXMLDOMNode, 0x2933bf80, 0x7b36, 0x11d2, 0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e,
                0x60)
_COM_SMARTPTR_TYPEDEF(IXMLDOMNode, __uuidof(IXMLDOMNode));
#endif

#else
#include <cstddef>

#include "korvalen/export.h"

class KORVALEN_API IXMLDOMNodePtr {
 public:
  IXMLDOMNodePtr() noexcept = default;
  IXMLDOMNodePtr(std::nullptr_t) noexcept {}
  IXMLDOMNodePtr(const IXMLDOMNodePtr& other) noexcept;
  IXMLDOMNodePtr(IXMLDOMNodePtr&& other) noexcept;
  IXMLDOMNodePtr& operator=(const IXMLDOMNodePtr& other) noexcept;
  IXMLDOMNodePtr& operator=(IXMLDOMNodePtr&& other) noexcept;
  ~IXMLDOMNodePtr();

  explicit operator bool() const noexcept { return node_ != nullptr; }
  friend bool operator==(const IXMLDOMNodePtr& node, std::nullptr_t) noexcept {
    return node.node_ == nullptr;
  }
  // The same node of the same document.
  friend bool operator==(const IXMLDOMNodePtr& a, const IXMLDOMNodePtr& b) noexcept {
    return a.node_ == b.node_;
  }

  // The library's side, opaque to applications: the document (whose
  // reference count the pointer holds one of) and the node in it.
  struct Document;
  IXMLDOMNodePtr(Document* document, void* node) noexcept;
  Document* document() const noexcept { return document_; }
  void* node() const noexcept { return node_; }

 private:
  Document* document_ = nullptr;
  void* node_ = nullptr;
};
#endif
