// Record lists: linking of double and simple records, where the cursor lands
// after each kind of removal (the tail removal keeps it on the new tail), and
// freeing. Leaks and wrong frees are caught by the sanitizer build.
#include "korvalen/foundation/record_list.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

// Used for both kinds: the simple functions must never touch `previous`.
struct Record {
  Record* next;
  Record* previous;
  int id;
};

void** Ref(Record*& p) { return reinterpret_cast<void**>(&p); }

struct Kind {
  const char* name;
  int (*insert)(void**, void**, void*, void*, int);
  void (*remove)(void**, void**, void**);
  void (*remove_without_tail)(void**, void**);
  void (*free)(void**, void**);
  void (*free_without_tail)(void**);
  bool links_back;
};

const Kind kKinds[] = {
    {"double", InsertarRegistro, LiberarRegistro, LiberarRegistroSinCola, LiberarLista,
     LiberarListaSinCola, true},
    {"simple", InsertarRegistroSimple, LiberarRegistroSimple, LiberarRegistroSimpleSinCola,
     LiberarListaSimple, LiberarListaSimpleSinCola, false},
};

Record* Find(Record* head, int id) {
  for (Record* p = head; p != nullptr; p = p->next) {
    if (p->id == id) return p;
  }
  return nullptr;
}

// The ids from the head on; checks the back links (null in simple lists) and,
// when a tail is given, that it is the last record.
std::vector<int> Ids(const Kind& kind, Record* head, Record* const* tail = nullptr) {
  std::vector<int> ids;
  Record* last = nullptr;
  for (Record* p = head; p != nullptr; p = p->next) {
    EXPECT_EQ(p->previous, kind.links_back ? last : nullptr) << kind.name << " " << p->id;
    ids.push_back(p->id);
    last = p;
  }
  if (tail != nullptr) {
    EXPECT_EQ(*tail, last) << kind.name << " tail";
  }
  return ids;
}

int Insert(const Kind& kind, Record*& head, Record*& tail, Record* after, int id) {
  Record record{nullptr, nullptr, id};
  return kind.insert(Ref(head), Ref(tail), after, &record, sizeof record);
}

void FreeAll(const Kind& kind, Record*& head, Record*& tail, bool with_tail) {
  with_tail ? kind.free(Ref(head), Ref(tail)) : kind.free_without_tail(Ref(head));
  EXPECT_EQ(head, nullptr) << kind.name;
  if (with_tail) {
    EXPECT_EQ(tail, nullptr) << kind.name;
  }
}

TEST(RecordList, AppendingPrependingAndInsertingBetween) {
  for (const Kind& kind : kKinds) {
    Record* head = nullptr;
    Record* tail = nullptr;
    for (int id : {1, 2, 3}) ASSERT_EQ(Insert(kind, head, tail, tail, id), 1);
    EXPECT_EQ(Ids(kind, head, &tail), (std::vector<int>{1, 2, 3}));
    ASSERT_EQ(Insert(kind, head, tail, nullptr, 0), 1);  // the front; the tail stays
    ASSERT_EQ(Insert(kind, head, tail, Find(head, 2), 9), 1);
    EXPECT_EQ(Ids(kind, head, &tail), (std::vector<int>{0, 1, 2, 9, 3}));
    FreeAll(kind, head, tail, true);
  }
}

TEST(RecordList, RemovalUnlinksAndMovesTheCursor) {
  // What is left and where the cursor lands (0: null), with and without a tail.
  const struct {
    std::vector<int> list;
    int removed;
    std::vector<int> left;
    int cursor_with_tail;
    int cursor_without_tail;
  } cases[] = {
      {{1, 2, 3}, 1, {2, 3}, 2, 2},
      {{1, 2, 3}, 2, {1, 3}, 3, 3},
      {{1, 2, 3}, 3, {1, 2}, 2, 0},  // with a tail the cursor stays on the new tail
      {{1}, 1, {}, 0, 0},
  };
  for (const Kind& kind : kKinds) {
    for (const auto& c : cases) {
      for (const bool with_tail : {true, false}) {
        Record* head = nullptr;
        Record* tail = nullptr;
        for (int id : c.list) ASSERT_EQ(Insert(kind, head, tail, tail, id), 1);
        Record* current = Find(head, c.removed);
        with_tail ? kind.remove(Ref(head), Ref(tail), Ref(current))
                  : kind.remove_without_tail(Ref(head), Ref(current));
        EXPECT_EQ(Ids(kind, head, with_tail ? &tail : nullptr), c.left);
        EXPECT_EQ(current, Find(head, with_tail ? c.cursor_with_tail : c.cursor_without_tail))
            << kind.name << " removing " << c.removed << " of " << c.list.size() << " tail "
            << with_tail;
        FreeAll(kind, head, tail, with_tail);
      }
    }
  }
}

TEST(RecordList, EmptyListsAreLeftAlone) {
  // A stale tail and cursor beside an empty head: nothing is read or freed
  // through them (the sanitizer build would see it); freeing clears the tail.
  for (const Kind& kind : kKinds) {
    for (const bool with_tail : {true, false}) {
      Record stale{nullptr, nullptr, 7};
      Record* head = nullptr;
      Record* tail = &stale;
      Record* current = &stale;
      with_tail ? kind.remove(Ref(head), Ref(tail), Ref(current))
                : kind.remove_without_tail(Ref(head), Ref(current));
      EXPECT_EQ(current, &stale) << kind.name;
      FreeAll(kind, head, tail, with_tail);
    }
  }
}

TEST(RecordList, TheListHoldsAFreshCopyWithItsLinksOverwritten) {
  constexpr std::size_t kLinks = 2 * sizeof(void*);
  unsigned char record[40];
  for (std::size_t i = 0; i < sizeof record; ++i) record[i] = static_cast<unsigned char>(i + 1);
  const std::vector<unsigned char> original(record, record + sizeof record);
  Record* head = nullptr;
  Record* tail = nullptr;
  for (int i = 0; i < 2; ++i) {
    ASSERT_EQ(InsertarRegistro(Ref(head), Ref(tail), tail, record, sizeof record), 1);
  }
  EXPECT_EQ(std::vector<unsigned char>(record, record + sizeof record), original);
  ASSERT_NE(head, tail);
  EXPECT_EQ(Ids(kKinds[0], head, &tail).size(), 2u);
  for (Record* copy : {head, tail}) {
    ASSERT_NE(static_cast<void*>(copy), static_cast<void*>(record));
    EXPECT_EQ(std::memcmp(reinterpret_cast<unsigned char*>(copy) + kLinks, record + kLinks,
                          sizeof record - kLinks),
              0);
  }
  // A block too small for its links is refused and the list stays as it was.
  EXPECT_EQ(InsertarRegistro(Ref(head), Ref(tail), tail, record, sizeof(void*)), 0);
  EXPECT_EQ(Ids(kKinds[0], head, &tail).size(), 2u);
  LiberarLista(Ref(head), Ref(tail));
}

TEST(RecordList, LinkingAnAllocatedRecordDoesNotCopyIt) {
  Record* head = nullptr;
  Record* tail = nullptr;
  ASSERT_EQ(Insert(kKinds[0], head, tail, tail, 1), 1);
  auto* own = static_cast<Record*>(std::malloc(sizeof(Record)));
  auto* first = static_cast<Record*>(std::malloc(sizeof(Record)));
  ASSERT_TRUE(own != nullptr && first != nullptr);
  own->id = 2;
  first->id = 0;
  InsertarComponenteEnLista(Ref(head), Ref(tail), Ref(tail), Ref(own));
  InsertarComponenteEnLista(Ref(head), Ref(tail), nullptr, Ref(first));
  EXPECT_EQ(head, first);
  EXPECT_EQ(tail, own);
  EXPECT_EQ(Ids(kKinds[0], head, &tail), (std::vector<int>{0, 1, 2}));
  LiberarLista(Ref(head), Ref(tail));  // the list owns them now
}

}  // namespace
