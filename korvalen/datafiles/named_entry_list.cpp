#include "korvalen/datafiles/named_entry_list.h"

#include "korvalen/foundation/internal/typed_list.h"
#include "korvalen/foundation/string_functions.h"

namespace {

void CopyCut(wchar_t (&out)[kAgjVntTextChars], const wchar_t* text) {
  int n = 0;
  if (text != nullptr) {
    for (; n < kAgjVntTextChars - 1 && text[n] != 0; ++n) out[n] = text[n];
  }
  out[n] = 0;
}

TRegAgjVnt* Find(const wchar_t* name, TRegAgjVnt* list) {
  if (name == nullptr) return nullptr;
  for (TRegAgjVnt* node : korvalen::detail::each(list)) {
    if (StrCmp(node->name, name) == 0) return node;
  }
  return nullptr;
}

}  // namespace

int NombreEnListaAgjVnt(const wchar_t* name, TRegAgjVnt* list) {
  return Find(name, list) != nullptr ? 1 : 0;
}

void DameEltoDeListaAgjVnt(const wchar_t* name, TRegAgjVnt* list, TRegAgjVnt*& found) {
  found = Find(name, list);
}

void MeterEltoAgjVnt(const wchar_t* name, const wchar_t* text, TRegAgjVnt*& first,
                     TRegAgjVnt*& last) {
  MeterEltoXYAgjVnt(0, 0, 0, name, text, 0.0, 0.0, first, last);
}

void MeterEltoXYAgjVnt(int first_integer, int second_integer, int third_integer,
                       const wchar_t* name, const wchar_t* text, double x, double y,
                       TRegAgjVnt*& first, TRegAgjVnt*& last) {
  TRegAgjVnt node{};
  node.first_integer = first_integer;
  node.second_integer = second_integer;
  node.third_integer = third_integer;
  CopyCut(node.name, name);
  CopyCut(node.text, text);
  node.x = x;
  node.y = y;
  korvalen::detail::append(first, last, node);
}

void QuitarEltoAgjVnt(const wchar_t* name, TRegAgjVnt*& first, TRegAgjVnt*& last) {
  TRegAgjVnt* current = Find(name, first);
  if (current != nullptr) korvalen::detail::remove(first, last, current);
}
