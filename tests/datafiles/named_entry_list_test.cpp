// The named-entry list: appending, exact-name lookups that find the first of equal
// names, removal, and names and texts cut to their 40 characters.
#include "korvalen/datafiles/named_entry_list.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "korvalen/foundation/record_list.h"

namespace {

struct List {
  TRegAgjVnt* first = nullptr;
  TRegAgjVnt* last = nullptr;
  ~List() { LiberarLista(reinterpret_cast<void**>(&first), reinterpret_cast<void**>(&last)); }
  // "name:i1,i2,i3:text:x,y" of each node, after checking the links.
  std::vector<std::wstring> Nodes() const {
    std::vector<std::wstring> out;
    const TRegAgjVnt* previous = nullptr;
    for (const TRegAgjVnt* n = first; n != nullptr; previous = n, n = n->next) {
      EXPECT_EQ(n->previous, previous);
      out.push_back(std::wstring(n->name) + L":" + std::to_wstring(n->first_integer) + L"," +
                    std::to_wstring(n->second_integer) + L"," + std::to_wstring(n->third_integer) +
                    L":" + n->text + L":" + std::to_wstring(n->x) + L"," + std::to_wstring(n->y));
    }
    EXPECT_EQ(last, previous);
    return out;
  }
};

TEST(AgjVntList, AppendLookUpAndRemove) {
  List list;
  MeterEltoXYAgjVnt(1, -2, 3, L"P1", L"left", 10.5, -20.25, list.first, list.last);
  MeterEltoAgjVnt(L"P2", L"right", list.first, list.last);
  MeterEltoXYAgjVnt(7, 0, 0, L"P1", L"", 0, 0, list.first, list.last);  // duplicates allowed
  EXPECT_EQ(list.Nodes(), (std::vector<std::wstring>{L"P1:1,-2,3:left:10.500000,-20.250000",
                                                     L"P2:0,0,0:right:0.000000,0.000000",
                                                     L"P1:7,0,0::0.000000,0.000000"}));

  EXPECT_EQ(NombreEnListaAgjVnt(L"P1", list.first), 1);
  for (const wchar_t* other : {L"p1", L"P", L"P1 "}) {
    EXPECT_EQ(NombreEnListaAgjVnt(other, list.first), 0);
  }
  EXPECT_EQ(NombreEnListaAgjVnt(L"P1", nullptr), 0);
  TRegAgjVnt* found = nullptr;
  DameEltoDeListaAgjVnt(L"P1", list.first, found);
  EXPECT_EQ(found, list.first);
  DameEltoDeListaAgjVnt(L"P3", list.first, found);
  EXPECT_EQ(found, nullptr);
  found = list.first;
  DameEltoDeListaAgjVnt(L"P1", nullptr, found);
  EXPECT_EQ(found, nullptr);

  // Removal takes the first of equal names, then the tail, then the last node.
  QuitarEltoAgjVnt(L"P1", list.first, list.last);
  QuitarEltoAgjVnt(L"missing", list.first, list.last);
  EXPECT_EQ(list.Nodes(), (std::vector<std::wstring>{L"P2:0,0,0:right:0.000000,0.000000",
                                                     L"P1:7,0,0::0.000000,0.000000"}));
  QuitarEltoAgjVnt(L"P1", list.first, list.last);
  EXPECT_EQ(list.Nodes().size(), 1u);
  QuitarEltoAgjVnt(L"P2", list.first, list.last);
  EXPECT_EQ(list.first, nullptr);
  EXPECT_EQ(list.last, nullptr);

  // Names and texts are cut to their 40 characters, and looked up as cut.
  const std::wstring long_name(100, L'n');
  MeterEltoAgjVnt(long_name.c_str(), std::wstring(41, L't').c_str(), list.first, list.last);
  EXPECT_EQ(list.Nodes(),
            (std::vector<std::wstring>{std::wstring(40, L'n') + L":0,0,0:" +
                                       std::wstring(40, L't') + L":0.000000,0.000000"}));
  EXPECT_EQ(NombreEnListaAgjVnt(std::wstring(40, L'n').c_str(), list.first), 1);
  EXPECT_EQ(NombreEnListaAgjVnt(long_name.c_str(), list.first), 0);
}

}  // namespace
