// Internal: the six column tables of "CFGSTABS.CFG", their record letters and
// the catalogues that give each column kind its heading (column_layouts.h
// lists them). The string loader is a parameter so that the catalogues can be
// checked without a language module; the library passes LoadStr.
//
//   korvalen::detail::give_titles(korvalen::detail::kPartsColumns, texts, first,
//                                 [](unsigned id, wchar_t* buffer) { LoadStr(id, buffer); });
#pragma once

#include <array>
#include <span>

#include "korvalen/datafiles/column_layouts.h"
#include "korvalen/datafiles/internal/message_resources.h"
#include "korvalen/foundation/internal/typed_list.h"

namespace korvalen::detail {

// The heading of one column kind: a string resource followed by `text`, a
// caller text, or the fixed `text`; then " <number>" when number is not 0.
struct ColumnTitle {
  unsigned resource = 0;
  int caller_text = 0;  // 1 for the reader's first text
  const wchar_t* text = L"";
  int number = 0;
};

struct ColumnTable {
  wchar_t creating;  // appends a column; its field is the position
  wchar_t width;
  wchar_t unit;
  std::span<const ColumnTitle> titles;  // by kind, from 0
  // Kinds beyond the catalogue get the empty heading rather than keep theirs.
  bool clears_other_kinds = false;
  // The sheets table's own headings per machine type ("S" records).
  bool stored_headings = false;
};

constexpr ColumnTitle Resource(unsigned id, const wchar_t* suffix = L"", int number = 0) {
  return {id, 0, suffix, number};
}
constexpr ColumnTitle CallerText(int n) { return {0, n, L"", 0}; }
constexpr ColumnTitle Fixed(const wchar_t* text) { return {0, 0, text, 0}; }

// clang-format off
inline constexpr ColumnTitle kPartsTitles[] = {
    Resource(26100), Resource(26101), CallerText(1), CallerText(2), CallerText(3),   // 0-4
    Resource(26102), CallerText(4), CallerText(5), CallerText(6), CallerText(7),      // 5-9
    CallerText(8), Resource(26110), Resource(26111),                                  // 10-12
    Resource(26112, L"", 1), Resource(26112, L"", 2), Resource(26112, L"", 3),        // 13-15
    Resource(26105, L"", 1), Resource(26105, L"", 2), Resource(26105, L"", 3),        // 16-18
    Resource(26106), Resource(26107), Resource(26108),                                // 19-21
    CallerText(9), CallerText(10), CallerText(11),                                    // 22-24
    Resource(26121), Resource(26122), Resource(26123), Resource(26119),               // 25-28
};

inline constexpr std::array<ColumnTitle, 59> kFigureTitles = [] {
  std::array<ColumnTitle, 59> t = {
      Resource(26130), Resource(26131), CallerText(1), CallerText(2), CallerText(3),  // 0-4
      Resource(26132), Fixed(L"X"), Fixed(L"Y"),                                      // 5-7
  };
  // 8-57: the figure's dimensions, numbered from 1.
  for (int kind = 8; kind <= 57; ++kind) t[kind] = Resource(26133, L"", kind - 7);
  t[58] = Resource(26134, L" %");
  return t;
}();

inline constexpr ColumnTitle kSheetTitles[] = {
    Resource(26140), Resource(26141), CallerText(1), CallerText(2), CallerText(3),  // 0-4
    Fixed(L"X"), Fixed(L"Y"), Resource(26142), Resource(26143),                    // 5-8
    Resource(26144, L" %"), Fixed(L"CNC"), Resource(26145), Resource(26146),       // 9-12
    Resource(26147), Resource(26148), Resource(26149),                             // 13-15
};

inline constexpr ColumnTitle kListTitles[] = {
    Resource(26150), Resource(26151), CallerText(1), CallerText(2), CallerText(3),  // 0-4
    CallerText(4), CallerText(5), CallerText(6), CallerText(7), CallerText(8),      // 5-9
    CallerText(9), CallerText(10), CallerText(11), Resource(26152), Resource(26153),  // 10-14
    Fixed(L"CNC"), Resource(26154), Resource(26155, L" %"),                         // 15-17
};

inline constexpr std::array<ColumnTitle, 38> kPartsWindowTitles = [] {
  std::array<ColumnTitle, 38> t = {
      Resource(26100), Resource(26101), CallerText(1), CallerText(2), CallerText(3),  // 0-4
      CallerText(4), CallerText(5), CallerText(6), CallerText(7), CallerText(8),      // 5-9
      Resource(26102), Resource(26110), Resource(26111),                              // 10-12
      Resource(26112, L"", 1), Resource(26112, L"", 2), Resource(26112, L"", 3),      // 13-15
      Resource(26105, L"", 1), Resource(26105, L"", 2), Resource(26105, L"", 3),      // 16-18
      Resource(26106), Resource(26107), Resource(26108), Resource(26121),             // 19-22
      Resource(26122), Resource(26123), Resource(26119),                              // 23-25
  };
  for (int kind = 26; kind <= 37; ++kind) t[kind] = Resource(26160 + (kind - 26));
  return t;
}();

inline constexpr ColumnTitle kSheetWindowTitles[] = {CallerText(1), CallerText(2), CallerText(3)};
// clang-format on

inline constexpr ColumnTable kPartsColumns = {L'T', L'U', L'N', kPartsTitles};
inline constexpr ColumnTable kFigureColumns = {L'X', L'Y', L'L', kFigureTitles};
inline constexpr ColumnTable kSheetColumns = {L'Q', L'R', L'M', kSheetTitles, false, true};
inline constexpr ColumnTable kListColumns = {L'A', L'B', L'C', kListTitles};
inline constexpr ColumnTable kPartsWindowColumns = {L'E', L'F', L'G', kPartsWindowTitles, true};
inline constexpr ColumnTable kSheetWindowColumns = {L'H', L'I', L'J', kSheetWindowTitles};

// out = the heading, cut to kColumnTitleChars - 1 characters. texts are the
// caller's texts (null ones empty); load(id, buffer) fills a buffer of
// kResourceTextChars.
template <typename Loader>
void title_of(const ColumnTitle& title, std::span<const wchar_t* const> texts,
              wchar_t (&out)[kColumnTitleChars], Loader load) {
  wchar_t resource[kResourceTextChars] = L"";
  const wchar_t* parts[3] = {L"", title.text, L""};
  if (title.resource != 0) {
    load(title.resource, resource);
    resource[kResourceTextChars - 1] = 0;
    parts[0] = resource;
  } else if (title.caller_text > 0) {
    const auto i = static_cast<std::size_t>(title.caller_text - 1);
    parts[0] = i < texts.size() && texts[i] != nullptr ? texts[i] : L"";
    parts[1] = L"";
  }
  wchar_t number[16] = L"";
  if (title.number != 0) {
    // Small positive numbers only: " 1" to " 50".
    int n = 0;
    number[n++] = L' ';
    if (title.number >= 10) number[n++] = static_cast<wchar_t>(L'0' + title.number / 10);
    number[n++] = static_cast<wchar_t>(L'0' + title.number % 10);
    number[n] = 0;
    parts[2] = number;
  }
  int n = 0;
  for (const wchar_t* part : parts) {
    for (; *part != 0 && n < kColumnTitleChars - 1; ++part) out[n++] = *part;
  }
  out[n] = 0;
}

// Gives every node of the list the heading of its kind.
template <typename Loader>
void give_titles(const ColumnTable& table, std::span<const wchar_t* const> texts, TRegTWin* list,
                 Loader load) {
  for (TRegTWin* column : each(list)) {
    if (column->kind >= 0 && static_cast<std::size_t>(column->kind) < table.titles.size()) {
      title_of(table.titles[static_cast<std::size_t>(column->kind)], texts, column->title, load);
    } else if (table.clears_other_kinds) {
      column->title[0] = 0;
    }
  }
}

}  // namespace korvalen::detail
