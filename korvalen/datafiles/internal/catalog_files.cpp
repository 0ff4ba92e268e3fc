#include "korvalen/datafiles/internal/catalog_files.h"

#include "korvalen/config/config_reader.h"
#include "korvalen/config/internal/record_walk.h"
#include "korvalen/foundation/internal/arguments.h"
#include "korvalen/foundation/internal/typed_list.h"
#include "korvalen/foundation/string_functions.h"

namespace korvalen::detail {

void read_catalog_texts(const wchar_t* file, int index, TRegListaNombre*& first,
                        TRegListaNombre*& last) {
  first = nullptr;
  last = nullptr;
  for_each_record<kCfgLineChars>(or_empty(file),
                                 [&](wchar_t* line, wchar_t type, int record_index, int& cursor) {
                                   if (type != L'A' || record_index != index) return true;
                                   return append_text(line, cursor, first, last);
                                 });
}

bool append_text(const wchar_t* line, int& cursor, TRegListaNombre*& first,
                 TRegListaNombre*& last) {
  TRegListaNombre node{};
  LeerUnTexto(line, cursor, node.name);
  return append(first, last, node) != 0;
}

bool name_listed(const wchar_t* name, const TRegListaNombre* list) {
  for (; list != nullptr; list = list->next) {
    if (StrCmp(list->name, name) == 0) return true;
  }
  return false;
}

}  // namespace korvalen::detail
