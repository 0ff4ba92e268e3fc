// The node pointer's reference counting: each pointer holds one reference to
// its document, which goes with the last one.
#include "korvalen/platform/xml_node.h"

#include <utility>

#include "korvalen/platform/posix/xml_document.h"

namespace {

void acquire(IXMLDOMNodePtr::Document* document) {
  if (document != nullptr) document->references.fetch_add(1, std::memory_order_relaxed);
}

void release(IXMLDOMNodePtr::Document* document) {
  if (document != nullptr && document->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    delete document;
  }
}

}  // namespace

IXMLDOMNodePtr::IXMLDOMNodePtr(Document* document, void* node) noexcept
    : document_(node != nullptr ? document : nullptr),
      node_(document_ != nullptr ? node : nullptr) {
  acquire(document_);
}

IXMLDOMNodePtr::IXMLDOMNodePtr(const IXMLDOMNodePtr& other) noexcept
    : document_(other.document_), node_(other.node_) {
  acquire(document_);
}

IXMLDOMNodePtr::IXMLDOMNodePtr(IXMLDOMNodePtr&& other) noexcept
    : document_(std::exchange(other.document_, nullptr)),
      node_(std::exchange(other.node_, nullptr)) {}

IXMLDOMNodePtr& IXMLDOMNodePtr::operator=(const IXMLDOMNodePtr& other) noexcept {
  acquire(other.document_);
  release(document_);
  document_ = other.document_;
  node_ = other.node_;
  return *this;
}

IXMLDOMNodePtr& IXMLDOMNodePtr::operator=(IXMLDOMNodePtr&& other) noexcept {
  if (this != &other) {
    release(document_);
    document_ = std::exchange(other.document_, nullptr);
    node_ = std::exchange(other.node_, nullptr);
  }
  return *this;
}

IXMLDOMNodePtr::~IXMLDOMNodePtr() { release(document_); }
