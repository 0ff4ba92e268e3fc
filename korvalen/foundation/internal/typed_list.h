// Internal: typed access to record lists, so the library builds and walks its
// lists of TReg... records without casts. The exported record-list functions
// stay the single implementation; these only cast.
//
//   TRegListaNombre* first = nullptr;
//   TRegListaNombre* last = nullptr;
//   korvalen::detail::append(first, last, node);      // copy of node at the tail
//   for (TRegListaNombre* n : korvalen::detail::each(first)) { ... }
//   korvalen::detail::free_list(first, last);
#pragma once

#include "korvalen/foundation/record_list.h"

namespace korvalen::detail {

template <typename T>
void** link(T*& p) {
  return reinterpret_cast<void**>(&p);
}

// Double records (T has next and previous as its first two members).
template <typename T>
int insert_after(T*& head, T*& tail, T* after, const T& record) {
  return InsertarRegistro(link(head), link(tail), after, const_cast<T*>(&record),
                          static_cast<int>(sizeof(T)));
}
template <typename T>
int append(T*& head, T*& tail, const T& record) {
  return insert_after(head, tail, tail, record);
}
template <typename T>
void remove(T*& head, T*& tail, T*& current) {
  LiberarRegistro(link(head), link(tail), link(current));
}
template <typename T>
void free_list(T*& head, T*& tail) {
  LiberarLista(link(head), link(tail));
}

// Simple records (only next).
template <typename T>
int append_simple(T*& head, T*& tail, const T& record) {
  return InsertarRegistroSimple(link(head), link(tail), tail, const_cast<T*>(&record),
                                static_cast<int>(sizeof(T)));
}
template <typename T>
void free_simple_list(T*& head, T*& tail) {
  LiberarListaSimple(link(head), link(tail));
}

// Range over a list by its next members.
template <typename T>
class Each {
 public:
  class iterator {
   public:
    explicit iterator(T* p) : p_(p) {}
    T* operator*() const { return p_; }
    iterator& operator++() {
      p_ = p_->next;
      return *this;
    }
    bool operator!=(const iterator& o) const { return p_ != o.p_; }

   private:
    T* p_;
  };
  explicit Each(T* head) : head_(head) {}
  iterator begin() const { return iterator(head_); }
  iterator end() const { return iterator(nullptr); }

 private:
  T* head_;
};

template <typename T>
Each<T> each(T* head) {
  return Each<T>(head);
}

}  // namespace korvalen::detail
