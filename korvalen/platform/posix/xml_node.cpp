// The node pointer's reference counting: each pointer holds one reference to
// its document, which goes with the last one.
#include "korvalen/platform/xml_node.h"

#include <utility>

#if defined(__GLIBC__)
#include <sys/single_threaded.h>
#endif

#include "korvalen/platform/posix/xml_document.h"

namespace {

// While the process has a single thread no other one can hold a pointer, so
// the count is kept without atomic operations until there are more (the flag
// never goes back), as the C++ library does for its shared pointers.
bool single_threaded() {
#if defined(__GLIBC__)
  return __libc_single_threaded != 0;
#else
  return false;
#endif
}

void acquire(IXMLDOMNodePtr::Document* document) {
  if (document == nullptr) return;
  auto& count = document->references;
  if (single_threaded()) {
    count.store(count.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
  } else {
    count.fetch_add(1, std::memory_order_relaxed);
  }
}

void release(IXMLDOMNodePtr::Document* document) {
  if (document == nullptr) return;
  auto& count = document->references;
  long left = 0;
  if (single_threaded()) {
    left = count.load(std::memory_order_relaxed) - 1;
    count.store(left, std::memory_order_relaxed);
  } else {
    left = count.fetch_sub(1, std::memory_order_acq_rel) - 1;
  }
  if (left == 0) delete document;
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
