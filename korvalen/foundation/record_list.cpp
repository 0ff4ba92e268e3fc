#include "korvalen/foundation/record_list.h"

#include <cstdlib>
#include <cstring>

namespace {

// The links are the record's first (next) and second (previous) pointers.
// They are read and written through memcpy so any record type may be used.
void* next_of(void* record) {
  void* p;
  std::memcpy(&p, record, sizeof p);
  return p;
}
void* previous_of(void* record) {
  void* p;
  std::memcpy(&p, static_cast<char*>(record) + sizeof(void*), sizeof p);
  return p;
}
void set_next(void* record, void* next) { std::memcpy(record, &next, sizeof next); }
void set_previous(void* record, void* previous) {
  std::memcpy(static_cast<char*>(record) + sizeof(void*), &previous, sizeof previous);
}

void link_double(void** head, void** tail, void* after, void* record) {
  if (*head != nullptr && after != nullptr) {
    void* successor = next_of(after);
    set_next(record, successor);
    set_previous(record, after);
    set_next(after, record);
    if (successor != nullptr) set_previous(successor, record);
  } else {
    set_previous(record, nullptr);
    set_next(record, *head);
    if (*head != nullptr) set_previous(*head, record);
    *head = record;
  }
  if (tail != nullptr && *tail == after) *tail = record;
}

void link_simple(void** head, void** tail, void* after, void* record) {
  if (*head != nullptr && after != nullptr) {
    set_next(record, next_of(after));
    set_next(after, record);
  } else {
    set_next(record, *head);
    *head = record;
  }
  if (*tail == after) *tail = record;
}

void* copy_of(void* record, int size) {
  // A block smaller than its links could not be linked.
  if (record == nullptr || size < static_cast<int>(sizeof(void*))) return nullptr;
  void* block = std::malloc(static_cast<std::size_t>(size));
  if (block != nullptr) std::memcpy(block, record, static_cast<std::size_t>(size));
  return block;
}

// The record whose next is `record`, walking from the head.
void* predecessor(void* head, void* record) {
  void* p = head;
  while (p != nullptr && next_of(p) != record) p = next_of(p);
  return p;
}

}  // namespace

int InsertarRegistro(void** head, void** tail, void* after, void* record, int size) {
  if (head == nullptr || tail == nullptr || size < static_cast<int>(2 * sizeof(void*))) return 0;
  void* block = copy_of(record, size);
  if (block == nullptr) return 0;
  link_double(head, tail, after, block);
  return 1;
}

int InsertarRegistroSimple(void** head, void** tail, void* after, void* record, int size) {
  if (head == nullptr || tail == nullptr) return 0;
  void* block = copy_of(record, size);
  if (block == nullptr) return 0;
  link_simple(head, tail, after, block);
  return 1;
}

void InsertarComponenteEnLista(void** head, void** tail, void** after, void** record) {
  if (head == nullptr || tail == nullptr || record == nullptr || *record == nullptr) return;
  link_double(head, tail, after != nullptr ? *after : nullptr, *record);
}

void LiberarRegistro(void** head, void** tail, void** current) {
  if (head == nullptr || *head == nullptr || tail == nullptr || current == nullptr ||
      *current == nullptr) {
    return;
  }
  void* record = *current;
  if (record == *head) {
    *head = next_of(record);
    if (*head != nullptr) {
      set_previous(*head, nullptr);
    } else {
      *tail = nullptr;
    }
    *current = *head;
  } else if (record != *tail) {
    void* previous = previous_of(record);
    void* next = next_of(record);
    set_next(previous, next);
    set_previous(next, previous);
    *current = next;
  } else {
    // The tail: the cursor stays on the record that is the new tail.
    *tail = previous_of(record);
    set_next(*tail, nullptr);
    *current = *tail;
  }
  std::free(record);
}

void LiberarRegistroSinCola(void** head, void** current) {
  if (head == nullptr || *head == nullptr || current == nullptr || *current == nullptr) return;
  void* record = *current;
  void* next = next_of(record);
  if (record == *head) {
    *head = next;
    if (next != nullptr) set_previous(next, nullptr);
  } else {
    void* previous = previous_of(record);
    set_next(previous, next);
    if (next != nullptr) set_previous(next, previous);
  }
  *current = next;
  std::free(record);
}

void LiberarRegistroSimple(void** head, void** tail, void** current) {
  if (head == nullptr || *head == nullptr || tail == nullptr || current == nullptr ||
      *current == nullptr) {
    return;
  }
  void* record = *current;
  if (record == *head) {
    *head = next_of(record);
    if (*head == nullptr) *tail = nullptr;
    *current = *head;
  } else if (record != *tail) {
    void* previous = predecessor(*head, record);
    if (previous == nullptr) return;  // not in this list: leave it alone
    set_next(previous, next_of(record));
    *current = next_of(record);
  } else {
    void* previous = predecessor(*head, record);
    if (previous == nullptr) return;
    set_next(previous, nullptr);
    *tail = previous;
    *current = previous;
  }
  std::free(record);
}

void LiberarRegistroSimpleSinCola(void** head, void** current) {
  if (head == nullptr || *head == nullptr || current == nullptr || *current == nullptr) return;
  void* record = *current;
  void* next = next_of(record);
  if (record == *head) {
    *head = next;
  } else {
    void* previous = predecessor(*head, record);
    if (previous == nullptr) return;
    set_next(previous, next);
  }
  *current = next;
  std::free(record);
}

void LiberarLista(void** head, void** tail) {
  if (head == nullptr) return;
  void* ignored_tail = nullptr;
  if (tail == nullptr) tail = &ignored_tail;
  while (*head != nullptr) LiberarRegistro(head, tail, head);
  *head = nullptr;
  *tail = nullptr;
}

void LiberarListaSinCola(void** head) {
  if (head == nullptr) return;
  while (*head != nullptr) LiberarRegistroSinCola(head, head);
}

void LiberarListaSimple(void** head, void** tail) {
  if (head == nullptr) return;
  void* ignored_tail = nullptr;
  if (tail == nullptr) tail = &ignored_tail;
  while (*head != nullptr) LiberarRegistroSimple(head, tail, head);
  *head = nullptr;
  *tail = nullptr;
}

void LiberarListaSimpleSinCola(void** head) {
  if (head == nullptr) return;
  while (*head != nullptr) LiberarRegistroSimpleSinCola(head, head);
}
