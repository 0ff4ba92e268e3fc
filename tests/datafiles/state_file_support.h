// Shared by the state-file tests: a name list that checks its links and frees
// itself, and a record list of any double record type that frees itself.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "korvalen/foundation/name_list.h"
#include "korvalen/foundation/record_list.h"

namespace korvalen::testing {

struct NameList {
  TRegListaNombre* first = nullptr;
  TRegListaNombre* last = nullptr;
  ~NameList() { LiberarLista(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last)); }
  void Add(const std::wstring& name) {
    TRegListaNombre node{};
    name.copy(node.name, kNameListChars - 1);
    InsertarRegistro(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last), last, &node,
                     static_cast<int>(sizeof node));
  }
  // The names in list order, after checking that next, previous and last agree.
  std::vector<std::wstring> Names() const {
    std::vector<std::wstring> out;
    const TRegListaNombre* previous = nullptr;
    for (const TRegListaNombre* n = first; n != nullptr; previous = n, n = n->next) {
      EXPECT_EQ(n->previous, previous);
      out.emplace_back(n->name);
    }
    EXPECT_EQ(last, previous);
    return out;
  }
};

template <typename T>
struct OwnedList {
  T* first = nullptr;
  T* last = nullptr;
  OwnedList() = default;
  OwnedList(const OwnedList&) = delete;
  OwnedList& operator=(const OwnedList&) = delete;
  ~OwnedList() { LiberarLista(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last)); }
  void Append(T record) {
    InsertarRegistro(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last), last,
                     &record, static_cast<int>(sizeof record));
  }
};

}  // namespace korvalen::testing
