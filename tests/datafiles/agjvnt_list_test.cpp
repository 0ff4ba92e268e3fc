// The AgjVnt list: appending, exact-name lookups that find the first of equal
// names, removal, and names cut to their 40 characters.
#include "korvalen/datafiles/agjvnt_list.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "korvalen/foundation/record_list.h"

namespace {

struct List {
  TRegAgjVnt* first = nullptr;
  TRegAgjVnt* last = nullptr;
  ~List() { LiberarLista(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last)); }
  std::vector<std::wstring> Names() const {
    std::vector<std::wstring> out;
    for (const TRegAgjVnt* n = first; n != nullptr; n = n->next) out.emplace_back(n->name);
    return out;
  }
};

TEST(AgjVntList, AppendsKeepAllValues) {
  List list;
  MeterEltoXYAgjVnt(1, -2, 3, L"P1", L"left", 10.5, -20.25, list.first, list.last);
  MeterEltoAgjVnt(L"P2", L"right", list.first, list.last);
  ASSERT_EQ(list.Names(), (std::vector<std::wstring>{L"P1", L"P2"}));
  const TRegAgjVnt& a = *list.first;
  EXPECT_EQ(a.previous, nullptr);
  EXPECT_EQ(a.first_integer, 1);
  EXPECT_EQ(a.second_integer, -2);
  EXPECT_EQ(a.third_integer, 3);
  EXPECT_STREQ(a.text, L"left");
  EXPECT_EQ(a.x, 10.5);
  EXPECT_EQ(a.y, -20.25);
  const TRegAgjVnt& b = *list.last;
  EXPECT_EQ(b.previous, list.first);
  EXPECT_EQ(b.next, nullptr);
  EXPECT_EQ(b.first_integer, 0);
  EXPECT_EQ(b.second_integer, 0);
  EXPECT_EQ(b.third_integer, 0);
  EXPECT_STREQ(b.text, L"right");
  EXPECT_EQ(b.x, 0.0);
  EXPECT_EQ(b.y, 0.0);
}

TEST(AgjVntList, LookupsAreExactAndFindTheFirst) {
  List list;
  MeterEltoXYAgjVnt(1, 0, 0, L"P1", L"", 0, 0, list.first, list.last);
  MeterEltoXYAgjVnt(2, 0, 0, L"P2", L"", 0, 0, list.first, list.last);
  MeterEltoXYAgjVnt(3, 0, 0, L"P1", L"", 0, 0, list.first, list.last);  // duplicates allowed

  EXPECT_EQ(NombreEnListaAgjVnt(L"P1", list.first), 1);
  EXPECT_EQ(NombreEnListaAgjVnt(L"p1", list.first), 0);
  EXPECT_EQ(NombreEnListaAgjVnt(L"P", list.first), 0);
  EXPECT_EQ(NombreEnListaAgjVnt(L"P1", nullptr), 0);

  TRegAgjVnt* found = list.first;
  DameEltoDeListaAgjVnt(L"P1", list.first, found);
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->first_integer, 1);
  DameEltoDeListaAgjVnt(L"P3", list.first, found);
  EXPECT_EQ(found, nullptr);
  DameEltoDeListaAgjVnt(L"P1", nullptr, found);
  EXPECT_EQ(found, nullptr);

  // Removal takes the first of the equal names.
  QuitarEltoAgjVnt(L"P1", list.first, list.last);
  EXPECT_EQ(list.Names(), (std::vector<std::wstring>{L"P2", L"P1"}));
  EXPECT_EQ(list.last->first_integer, 3);
  QuitarEltoAgjVnt(L"missing", list.first, list.last);
  EXPECT_EQ(list.Names().size(), 2u);
  QuitarEltoAgjVnt(L"P1", list.first, list.last);  // the tail
  EXPECT_EQ(list.last, list.first);
  EXPECT_EQ(list.last->next, nullptr);
  QuitarEltoAgjVnt(L"P2", list.first, list.last);
  EXPECT_EQ(list.first, nullptr);
  EXPECT_EQ(list.last, nullptr);
}

TEST(AgjVntList, TextsAreCutToFortyCharacters) {
  List list;
  const std::wstring long_name(100, L'n');
  MeterEltoAgjVnt(long_name.c_str(), std::wstring(41, L't').c_str(), list.first, list.last);
  EXPECT_EQ(std::wstring(list.first->name), std::wstring(40, L'n'));
  EXPECT_EQ(std::wstring(list.first->text), std::wstring(40, L't'));
  EXPECT_EQ(NombreEnListaAgjVnt(std::wstring(40, L'n').c_str(), list.first), 1);
  EXPECT_EQ(NombreEnListaAgjVnt(long_name.c_str(), list.first), 0);
}

}  // namespace
