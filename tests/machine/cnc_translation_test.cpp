// Character translation of CNC programs and the copy of serial configuration
// lists: exact output bytes, the empty-replacement rule, duplicate indexes and
// large translation files.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "korvalen/korvalen.h"
#include "temp_dir_test.h"

namespace {

using korvalen::testing::ReadBytes;
using korvalen::testing::WriteBytes;

class CncTranslation : public korvalen::testing::TempDirTest {};

template <typename T>
void** Link(T*& p) {
  return reinterpret_cast<void**>(&p);
}

TEST_F(CncTranslation, TranslatesCharacterByCharacter) {
  struct Case {
    const char* name;
    std::string translation;
    std::string program;
    std::string expected;
  };
  const Case cases[] = {
      {"replaced, others pass", "A000 \"(\" ;\r\nB000 \"[\" ;\r\n", "N1 (X)\r\n", "N1 [X)\r\n"},
      {"empty replacement ends the line", "A001 \";\" ;\r\nB001 \"\" ;\r\n",
       "G0 X1 ; note\r\nG1\r\n", "G0 X1 \r\nG1\r\n"},
      {"no B record: unchanged", "A002 \"X\" ;\r\n", "X1\r\n", "X1\r\n"},
      {"B goes to the first of two indexes", "A003 \"a\" ;\r\nA003 \"b\" ;\r\nB003 \"1\" ;\r\n",
       "ab\r\n", "1b\r\n"},
      {"first entry of a character wins",
       "A004 \"x\" ;\r\nB004 \"1\" ;\r\nA005 \"x\" ;\r\n"
       "B005 \"2\" ;\r\n",
       "x\r\n", "1\r\n"},
      {"B before its A, other types, comments ignored",
       "B006 \"z\" ;\r\n# A006 \"q\" ;\r\nC006 \"q\" ;\r\nA006 \"q\" ;\r\n", "q\r\n", "q\r\n"},
      {"code page characters", "A007 \"\xe9\" ;\r\nB007 \"e\" ;\r\n", "caf\xe9\r\n", "cafe\r\n"},
      {"last line without line end, empty lines kept", "", "a\r\n\r\nb", "a\r\n\r\nb\r\n"},
      {"lines cut at 255", "", std::string(300, 'n') + "\r\n", std::string(255, 'n') + "\r\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    WriteBytes("TRAD.CFG", c.translation);
    WriteBytes("PROG.CNC", c.program);
    CambiarCnc(L"TRAD.CFG", L"PROG.CNC", L"PROG.OUT");
    EXPECT_EQ(ReadBytes("PROG.OUT"), c.expected);
  }
  // Without a translation file the program is copied; without a program
  // nothing is written.
  CambiarCnc(L"NONE.CFG", L"PROG.CNC", L"COPY.OUT");
  EXPECT_EQ(ReadBytes("COPY.OUT"), std::string(255, 'n') + "\r\n");
  CambiarCnc(L"TRAD.CFG", L"NONE.CNC", L"NONE.OUT");
  EXPECT_FALSE(korvalen::testing::Exists("NONE.OUT"));
}

TEST_F(CncTranslation, LoadsLargeListsAndLeavesListsAloneWithoutAFile) {
  std::string file;
  char record[32];
  for (int i = 0; i < 10000; ++i) {
    std::snprintf(record, sizeof record, "A%03d \"c\" ;\r\n", i % 1000);
    file += record;
  }
  file += "B999 \"r\" ;\r\nA500 \"\" ;\r\n";
  WriteBytes("BIG.CFG", file);
  TRegListaCaract* head = nullptr;
  TRegListaCaract* tail = nullptr;
  CargarListaConfig(L"BIG.CFG", head, tail);
  int count = 0;
  for (TRegListaCaract* n = head; n != nullptr; n = n->next) {
    EXPECT_EQ(n->index, count < 10000 ? count % 1000 : 500);
    EXPECT_EQ(std::wstring(n->replacement), count == 999 ? L"r" : (count < 10000 ? L"c" : L""));
    ++count;
  }
  EXPECT_EQ(count, 10001);
  EXPECT_EQ(tail->previous->index, 999);

  TRegListaCaract* kept_head = head;
  CargarListaConfig(L"", head, tail);
  CargarListaConfig(L"MISSING.CFG", head, tail);
  EXPECT_EQ(head, kept_head);
  LiberarLista(Link(head), Link(tail));
}

TEST_F(CncTranslation, CopiesConfigurationNodes) {
  TDtsCfgCom a{}, b{};
  a.next = &b;
  a.previous = &b;  // not copied
  for (int i = 0; i < kComConfigurationWords; ++i) {
    a.payload[i] = static_cast<DWORD>(i);
    b.payload[i] = static_cast<DWORD>(i * 7);
  }
  TDtsCfgCom* head = nullptr;
  TDtsCfgCom* tail = nullptr;
  int error = 0;
  CopiarListaDtsCom(&a, head, tail, error);
  CopiarListaDtsCom(nullptr, head, tail, error);
  CopiarListaDtsCom(&b, head, tail, error);
  ASSERT_NE(head, nullptr);
  EXPECT_EQ(error, 0);
  EXPECT_EQ(head->previous, nullptr);
  EXPECT_EQ(std::memcmp(head->payload, a.payload, sizeof a.payload), 0);
  EXPECT_EQ(std::memcmp(head->next->payload, b.payload, sizeof b.payload), 0);
  EXPECT_EQ(std::memcmp(tail->payload, b.payload, sizeof b.payload), 0);
  EXPECT_EQ(tail->previous, head->next);
  EXPECT_EQ(head->next->next, tail);
  LiberarLista(Link(head), Link(tail));
}

}  // namespace
