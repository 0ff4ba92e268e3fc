// Record lists: linking of double and simple records, where the cursor lands
// after each kind of removal (the tail removal keeps it on the new tail), and
// freeing. Leaks and wrong frees are caught by the sanitizer build.
#include "korvalen/foundation/record_list.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <vector>

namespace {

struct Double {
  Double* next;
  Double* previous;
  int id;
};

struct Simple {
  Simple* next;
  int id;
};

template <typename T>
void** Ref(T*& p) {
  return reinterpret_cast<void**>(&p);
}

// Checks the whole chain both ways and the tail.
void ExpectDouble(Double* head, Double* tail, const std::vector<int>& ids) {
  std::vector<int> forward;
  Double* last = nullptr;
  for (Double* p = head; p != nullptr; p = p->next) {
    EXPECT_EQ(p->previous, last) << "previous of " << p->id;
    forward.push_back(p->id);
    last = p;
  }
  EXPECT_EQ(forward, ids);
  EXPECT_EQ(tail, last);
}

// The records of a simple list, in order; *last gets the last one.
std::vector<int> SimpleIds(Simple* head, Simple** last) {
  std::vector<int> forward;
  *last = nullptr;
  for (Simple* p = head; p != nullptr; p = p->next) {
    forward.push_back(p->id);
    *last = p;
  }
  return forward;
}

void ExpectSimple(Simple* head, Simple* tail, const std::vector<int>& ids) {
  Simple* last = nullptr;
  EXPECT_EQ(SimpleIds(head, &last), ids);
  EXPECT_EQ(tail, last);
}

void ExpectSimple(Simple* head, const std::vector<int>& ids) {
  Simple* last = nullptr;
  EXPECT_EQ(SimpleIds(head, &last), ids);
}

// Appends ids to a double list (after the tail each time).
void Append(Double*& head, Double*& tail, std::initializer_list<int> ids) {
  for (int id : ids) {
    Double record{nullptr, nullptr, id};
    ASSERT_EQ(InsertarRegistro(Ref(head), Ref(tail), tail, &record, sizeof record), 1);
  }
}

void Append(Simple*& head, Simple*& tail, std::initializer_list<int> ids) {
  for (int id : ids) {
    Simple record{nullptr, id};
    ASSERT_EQ(InsertarRegistroSimple(Ref(head), Ref(tail), tail, &record, sizeof record), 1);
  }
}

// The record of a list with that id.
template <typename T>
T* Find(T* head, int id) {
  for (T* p = head; p != nullptr; p = p->next) {
    if (p->id == id) return p;
  }
  return nullptr;
}

TEST(RecordList, AppendingGivesHeadTailAndBackLinks) {
  Double* head = nullptr;
  Double* tail = nullptr;
  Append(head, tail, {1, 2, 3});
  ExpectDouble(head, tail, {1, 2, 3});
  EXPECT_EQ(tail->previous->previous, head);
  LiberarLista(Ref(head), Ref(tail));
  EXPECT_EQ(head, nullptr);
  EXPECT_EQ(tail, nullptr);
}

TEST(RecordList, InsertingAfterNullPrependsAndAfterARecordGoesBetween) {
  Double* head = nullptr;
  Double* tail = nullptr;
  Append(head, tail, {1, 2});
  Double front{nullptr, nullptr, 0};
  ASSERT_EQ(InsertarRegistro(Ref(head), Ref(tail), nullptr, &front, sizeof front), 1);
  ExpectDouble(head, tail, {0, 1, 2});
  Double middle{nullptr, nullptr, 9};
  ASSERT_EQ(InsertarRegistro(Ref(head), Ref(tail), Find(head, 1), &middle, sizeof middle), 1);
  ExpectDouble(head, tail, {0, 1, 9, 2});

  LiberarLista(Ref(head), Ref(tail));
}

TEST(RecordList, SimpleInsertionFollowsTheSameRules) {
  Simple* head = nullptr;
  Simple* tail = nullptr;
  Append(head, tail, {1, 2, 3});
  ExpectSimple(head, tail, {1, 2, 3});
  Simple front{nullptr, 0};
  ASSERT_EQ(InsertarRegistroSimple(Ref(head), Ref(tail), nullptr, &front, sizeof front), 1);
  Simple middle{nullptr, 9};
  ASSERT_EQ(InsertarRegistroSimple(Ref(head), Ref(tail), Find(head, 2), &middle, sizeof middle), 1);
  ExpectSimple(head, tail, {0, 1, 2, 9, 3});
  LiberarListaSimple(Ref(head), Ref(tail));
  EXPECT_EQ(head, nullptr);
  EXPECT_EQ(tail, nullptr);
}

TEST(RecordList, TheListHoldsAFreshCopyWithItsLinksOverwritten) {
  struct Record40 {
    void* next;
    void* previous;
    unsigned char payload[40 - 2 * sizeof(void*)];
  };
  static_assert(sizeof(Record40) == 40);
  Record40 record;
  std::memset(&record, 0xA5, sizeof record);
  for (std::size_t i = 0; i < sizeof record.payload; ++i) {
    record.payload[i] = static_cast<unsigned char>(i + 1);
  }
  const Record40 original = record;
  Record40* head = nullptr;
  Record40* tail = nullptr;
  ASSERT_EQ(InsertarRegistro(Ref(head), Ref(tail), tail, &record, sizeof record), 1);
  ASSERT_EQ(InsertarRegistro(Ref(head), Ref(tail), tail, &record, sizeof record), 1);
  EXPECT_EQ(std::memcmp(&record, &original, sizeof record), 0) << "the caller's record changed";
  ASSERT_NE(head, &record);
  EXPECT_EQ(head->previous, nullptr);
  EXPECT_EQ(head->next, tail);
  EXPECT_EQ(tail->previous, head);
  EXPECT_EQ(tail->next, nullptr);
  EXPECT_EQ(std::memcmp(head->payload, record.payload, sizeof record.payload), 0);
  EXPECT_EQ(std::memcmp(tail->payload, record.payload, sizeof record.payload), 0);
  LiberarLista(Ref(head), Ref(tail));
}

TEST(RecordList, ARecordTooSmallForItsLinksIsRefused) {
  Double* head = nullptr;
  Double* tail = nullptr;
  Append(head, tail, {1});
  Double record{nullptr, nullptr, 2};
  EXPECT_EQ(InsertarRegistro(Ref(head), Ref(tail), tail, &record, sizeof(void*)), 0);
  ExpectDouble(head, tail, {1});
  LiberarLista(Ref(head), Ref(tail));
}

TEST(RecordList, LinkingAnAllocatedRecordDoesNotCopyIt) {
  Double* head = nullptr;
  Double* tail = nullptr;
  Append(head, tail, {1});
  auto* own = static_cast<Double*>(std::malloc(sizeof(Double)));
  ASSERT_NE(own, nullptr);
  own->id = 2;
  InsertarComponenteEnLista(Ref(head), Ref(tail), Ref(tail), Ref(own));
  EXPECT_EQ(tail, own);
  auto* first = static_cast<Double*>(std::malloc(sizeof(Double)));
  ASSERT_NE(first, nullptr);
  first->id = 0;
  InsertarComponenteEnLista(Ref(head), Ref(tail), nullptr, Ref(first));
  EXPECT_EQ(head, first);
  ExpectDouble(head, tail, {0, 1, 2});
  LiberarLista(Ref(head), Ref(tail));  // the list owns them now
}

// Removing one record of the list 1, 2, 3: what is left and where the cursor
// lands (0 for null).
struct Removal {
  int removed;
  std::vector<int> left;
  int cursor;
};

TEST(RecordList, RemovingDoubleRecordsWithTail) {
  const Removal cases[] = {
      {1, {2, 3}, 2}, {2, {1, 3}, 3}, {3, {1, 2}, 2},  // the tail: the cursor stays on the new tail
  };
  for (const Removal& c : cases) {
    Double* head = nullptr;
    Double* tail = nullptr;
    Append(head, tail, {1, 2, 3});
    Double* current = Find(head, c.removed);
    LiberarRegistro(Ref(head), Ref(tail), Ref(current));
    ExpectDouble(head, tail, c.left);
    EXPECT_EQ(current, Find(head, c.cursor)) << "removing " << c.removed;
    LiberarLista(Ref(head), Ref(tail));
  }
}

TEST(RecordList, RemovingDoubleRecordsWithoutTail) {
  const Removal cases[] = {
      {1, {2, 3}, 2}, {2, {1, 3}, 3}, {3, {1, 2}, 0},  // no tail: the cursor runs off the end
  };
  for (const Removal& c : cases) {
    Double* head = nullptr;
    Double* tail = nullptr;
    Append(head, tail, {1, 2, 3});
    Double* current = Find(head, c.removed);
    LiberarRegistroSinCola(Ref(head), Ref(current));
    Double* last = head;
    while (last != nullptr && last->next != nullptr) last = last->next;
    ExpectDouble(head, last, c.left);
    EXPECT_EQ(current, Find(head, c.cursor)) << "removing " << c.removed;
    LiberarListaSinCola(Ref(head));
    EXPECT_EQ(head, nullptr);
  }
}

TEST(RecordList, RemovingSimpleRecordsWithTail) {
  const Removal cases[] = {
      {1, {2, 3}, 2}, {2, {1, 3}, 3}, {3, {1, 2}, 2},  // the same asymmetry as double records
  };
  for (const Removal& c : cases) {
    Simple* head = nullptr;
    Simple* tail = nullptr;
    Append(head, tail, {1, 2, 3});
    Simple* current = Find(head, c.removed);
    LiberarRegistroSimple(Ref(head), Ref(tail), Ref(current));
    ExpectSimple(head, tail, c.left);
    EXPECT_EQ(current, Find(head, c.cursor)) << "removing " << c.removed;
    LiberarListaSimple(Ref(head), Ref(tail));
  }
}

TEST(RecordList, RemovingSimpleRecordsWithoutTail) {
  const Removal cases[] = {
      {1, {2, 3}, 2},
      {2, {1, 3}, 3},
      {3, {1, 2}, 0},
  };
  for (const Removal& c : cases) {
    Simple* head = nullptr;
    Simple* tail = nullptr;
    Append(head, tail, {1, 2, 3});
    Simple* current = Find(head, c.removed);
    LiberarRegistroSimpleSinCola(Ref(head), Ref(current));
    ExpectSimple(head, c.left);
    EXPECT_EQ(current, Find(head, c.cursor)) << "removing " << c.removed;
    LiberarListaSimpleSinCola(Ref(head));
    EXPECT_EQ(head, nullptr);
  }
}

TEST(RecordList, RemovingTheOnlyRecordEmptiesEverything) {
  Double* head = nullptr;
  Double* tail = nullptr;
  Append(head, tail, {1});
  Double* current = head;
  LiberarRegistro(Ref(head), Ref(tail), Ref(current));
  EXPECT_EQ(head, nullptr);
  EXPECT_EQ(tail, nullptr);
  EXPECT_EQ(current, nullptr);

  Simple* simple_head = nullptr;
  Simple* simple_tail = nullptr;
  Append(simple_head, simple_tail, {1});
  Simple* simple_current = simple_head;
  LiberarRegistroSimple(Ref(simple_head), Ref(simple_tail), Ref(simple_current));
  EXPECT_EQ(simple_head, nullptr);
  EXPECT_EQ(simple_tail, nullptr);
  EXPECT_EQ(simple_current, nullptr);
}

TEST(RecordList, EmptyListsAreLeftAloneAndFreeingThemClearsTheTail) {
  // A stale tail and cursor beside an empty head: nothing is read or freed
  // through them (the sanitizer build would see it).
  Double stale{nullptr, nullptr, 7};
  Double* head = nullptr;
  Double* tail = &stale;
  Double* current = &stale;
  LiberarRegistro(Ref(head), Ref(tail), Ref(current));
  LiberarRegistroSinCola(Ref(head), Ref(current));
  EXPECT_EQ(current, &stale);
  LiberarLista(Ref(head), Ref(tail));
  EXPECT_EQ(head, nullptr);
  EXPECT_EQ(tail, nullptr);
  LiberarListaSinCola(Ref(head));
  EXPECT_EQ(head, nullptr);

  Simple simple_stale{nullptr, 7};
  Simple* simple_head = nullptr;
  Simple* simple_tail = &simple_stale;
  Simple* simple_current = &simple_stale;
  LiberarRegistroSimple(Ref(simple_head), Ref(simple_tail), Ref(simple_current));
  LiberarRegistroSimpleSinCola(Ref(simple_head), Ref(simple_current));
  EXPECT_EQ(simple_current, &simple_stale);
  LiberarListaSimple(Ref(simple_head), Ref(simple_tail));
  EXPECT_EQ(simple_head, nullptr);
  EXPECT_EQ(simple_tail, nullptr);
  LiberarListaSimpleSinCola(Ref(simple_head));
  EXPECT_EQ(simple_head, nullptr);
}

}  // namespace
