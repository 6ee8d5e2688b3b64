// The mutable iterator's walk, search and removal rules over a bare row
// sequence, and the read-only wrapper around it.
#include "lists/const_iterator.h"
#include "lists/mutable_iterator.h"
#include "lists/row_sort.h"
#include "row_fixture.h"

namespace brevo::testing {
namespace {

class IteratorTest : public ::testing::Test {
 protected:
  com_ptr<IMutableColumns> columns = NewColumns();
  RowSequence rows = NewRows({10, 20, 30}, columns);

  static com_ptr<IRecordListIterator> Iterate(RowSequence& sequence, VARIANT_BOOL synchronized,
                                              IRecordCondition* condition = nullptr, IUnknown* owner = nullptr) {
    auto made = make_object<MutableIterator>();
    IMutableIteratorRaw* raw = made.get();
    raw->Bind(sequence, synchronized, owner);
    raw->Create(condition);
    return com_ptr<IRecordListIterator>(made.get());
  }
  static com_ptr<IRecordListIterator> ReadOnly(IRecordListIterator* iterator) {
    auto made = make_object<ConstIterator>();
    static_cast<IConstIteratorRaw*>(made.get())->Create(iterator);
    return com_ptr<IRecordListIterator>(made.get());
  }
  static com_ptr<IRecordCondition> Condition(LONG key, VARIANT_BOOL answer = VARIANT_TRUE, HRESULT hr = S_OK) {
    return com_ptr<IRecordCondition>(make_object<KeyCondition>(key, answer, hr).get());
  }

  static VARIANT_BOOL Ask(IRecordListIterator* iterator, HRESULT (STDMETHODCALLTYPE IRecordListIterator::*method)(
                                                             VARIANT_BOOL*)) {
    VARIANT_BOOL answer = 7;
    EXPECT_EQ((iterator->*method)(&answer), S_OK);
    return answer;
  }
  static VARIANT_BOOL HasNext(IRecordListIterator* it) { return Ask(it, &IRecordListIterator::HasNext); }
  static VARIANT_BOOL FindNext(IRecordListIterator* it) { return Ask(it, &IRecordListIterator::FindNext); }
  static VARIANT_BOOL Find(IRecordListIterator* it, IRecordCondition* condition) {
    VARIANT_BOOL found = 7;
    EXPECT_EQ(it->Find(condition, &found), S_OK);
    return found;
  }
  static LONG NextKey(IRecordListIterator* it) {
    com_ptr<IDispatch> record;
    EXPECT_EQ(it->Next(record.put()), S_OK);
    return KeyOf(record.get());
  }
  static std::vector<LONG> Walk(IRecordListIterator* it) {
    std::vector<LONG> keys;
    while (HasNext(it) != VARIANT_FALSE && keys.size() < 10) keys.push_back(NextKey(it));
    return keys;
  }
};
using IteratorDeathTest = IteratorTest;

TEST_F(IteratorTest, WalksSynchronizedRowsInOrderAsTheRecordsThemselves) {
  const auto it = Iterate(rows, VARIANT_TRUE);
  EXPECT_EQ(it->Next(nullptr), E_POINTER);  // neither moves nor starts the walk
  for (const Row& row : rows) {
    EXPECT_EQ(HasNext(it.get()), VARIANT_TRUE);
    com_ptr<IDispatch> next;
    ASSERT_EQ(it->Next(next.put()), S_OK);
    EXPECT_EQ(next.get(), static_cast<IDispatch*>(row.get()));
  }
  EXPECT_EQ(HasNext(it.get()), VARIANT_FALSE);
  EXPECT_EQ(Ask(it.get(), &IRecordListIterator::IsSynchronized), VARIANT_TRUE);
}

TEST_F(IteratorTest, TheLastRowIsAnnouncedOnceBeforeAnyNext) {
  RowSequence one = NewRows({5});
  const auto single = Iterate(one, VARIANT_TRUE);
  EXPECT_EQ(HasNext(single.get()), VARIANT_TRUE);
  EXPECT_EQ(HasNext(single.get()), VARIANT_FALSE);
  EXPECT_EQ(NextKey(single.get()), 5);
  EXPECT_EQ(HasNext(single.get()), VARIANT_FALSE);

  // Walked without asking, the announcement is still owed at the last row.
  const auto unasked = Iterate(rows, VARIANT_TRUE);
  for (const LONG key : {10, 20, 30}) EXPECT_EQ(NextKey(unasked.get()), key);
  EXPECT_EQ(HasNext(unasked.get()), VARIANT_TRUE);
  EXPECT_EQ(HasNext(unasked.get()), VARIANT_FALSE);
}

TEST_F(IteratorTest, ReportsTheEmptyAndTheEndStates) {
  RowSequence none;
  const auto empty = Iterate(none, VARIANT_TRUE, Condition(10).get());
  EXPECT_EQ(HasNext(empty.get()), VARIANT_FALSE);
  EXPECT_EQ(FindNext(empty.get()), VARIANT_FALSE);
  ExpectFailure(empty->Next(com_ptr<IDispatch>().put()), "The record iterator is empty.");
  ExpectFailure(empty->Remove(), "The list is empty , No objects to remove.");

  // Removing the last row leaves the cursor one past the rest.
  const RowSequence keep = rows;
  const auto it = Iterate(rows, VARIANT_TRUE, Condition(10).get());
  for (int i = 0; i < 3; ++i) NextKey(it.get());
  ASSERT_EQ(it->Remove(), S_OK);
  EXPECT_EQ(KeysOf(rows), (std::vector<LONG>{10, 20}));
  com_ptr<IDispatch> next;
  ExpectFailure(it->Next(next.put()), "The record iterator is in the end.");
  EXPECT_FALSE(next);
  ExpectFailure(it->Remove(), "Failed in iterator remove.");
  EXPECT_EQ(FindNext(it.get()), VARIANT_FALSE);  // though row 10 would match
}

TEST_F(IteratorTest, OnlyVariantTrueWalksTheSourceInPlaceAndHoldsItsOwner) {
  for (const VARIANT_BOOL flag : {VARIANT_BOOL{-1}, VARIANT_BOOL{0}, VARIANT_BOOL{1}}) {
    SCOPED_TRACE(flag);
    const auto sourceColumns = NewColumns();
    RowSequence source = NewRows({1, 2}, sourceColumns);
    CountedObject owner;
    {
      const auto it = Iterate(source, flag, nullptr, &owner);
      EXPECT_EQ(owner.refs, flag == VARIANT_TRUE ? 2u : 1u);
      EXPECT_EQ(Ask(it.get(), &IRecordListIterator::IsSynchronized), flag);
      source.push_back(NewRow(sourceColumns.get(), 3));
      EXPECT_EQ(Walk(it.get()).size(), flag == VARIANT_TRUE ? 3u : 2u);
    }
    EXPECT_EQ(owner.refs, 1u);
  }
}

TEST_F(IteratorTest, FindTakesOnlyTrueWhileFilterRowsTakesAnyNonZero) {
  struct Case {
    VARIANT_BOOL answer;
    VARIANT_BOOL found;
    std::size_t kept;
  };
  for (const Case& c : {Case{-1, -1, 1}, Case{1, 0, 1}, Case{0, 0, 0}}) {
    SCOPED_TRACE(c.answer);
    const auto condition = Condition(20, c.answer);
    const auto it = Iterate(rows, VARIANT_TRUE);
    EXPECT_EQ(Find(it.get(), condition.get()), c.found);
    RowSequence kept = NewRows({99});
    FilterRows(rows, condition.get(), kept);
    EXPECT_EQ(kept.size(), c.kept);
    if (c.kept == 1) {
      EXPECT_EQ(kept[0].get(), rows[1].get());
    }
  }
  const auto it = Iterate(rows, VARIANT_TRUE);
  EXPECT_EQ(Find(it.get(), nullptr), VARIANT_FALSE);
  RowSequence kept = rows;
  FilterRows(rows, nullptr, kept);
  EXPECT_TRUE(kept.empty());
}

TEST_F(IteratorTest, FindMovesTheCursorButLeavesTheWalkUnstarted) {
  const auto it = Iterate(rows, VARIANT_FALSE);
  EXPECT_EQ(Find(it.get(), Condition(30).get()), VARIANT_TRUE);
  EXPECT_EQ(NextKey(it.get()), 10);
  EXPECT_EQ(Find(it.get(), Condition(20).get()), VARIANT_TRUE);
  EXPECT_EQ(Find(it.get(), Condition(99).get()), VARIANT_FALSE);  // the cursor stays on 20
  EXPECT_EQ(NextKey(it.get()), 30);
  VARIANT_BOOL found = 7;
  ExpectFailure(it->Find(Condition(10, VARIANT_TRUE, E_FAIL).get(), &found), "Failed in iterator find.");
}

TEST_F(IteratorTest, FindNextFindsTheFirstMatchAgain) {
  const auto it = Iterate(rows, VARIANT_TRUE, Condition(20).get());
  EXPECT_EQ(NextKey(it.get()), 10);
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(FindNext(it.get()), VARIANT_TRUE);
    EXPECT_EQ(NextKey(it.get()), 30);
  }
  EXPECT_EQ(FindNext(Iterate(rows, VARIANT_TRUE).get()), VARIANT_FALSE);  // no condition
  VARIANT_BOOL found = 7;
  ExpectFailure(Iterate(rows, VARIANT_TRUE, Condition(20, -1, E_FAIL).get())->FindNext(&found),
                "Failed in iterator find.");
}

TEST_F(IteratorTest, RemoveTakesTheRowUnderTheCursorFromTheWalkedSequence) {
  // The cursor keeps its index, so the row that moved under it is skipped.
  RowSequence four = NewRows({10, 20, 30, 40});
  const RowSequence keep = four;  // a dying record would clear the shared columns
  const auto it = Iterate(four, VARIANT_TRUE);
  NextKey(it.get());
  NextKey(it.get());
  ASSERT_EQ(it->Remove(), S_OK);
  EXPECT_EQ(KeysOf(four), (std::vector<LONG>{10, 30, 40}));
  EXPECT_EQ(NextKey(it.get()), 40);

  // A private copy loses the row, the source keeps it.
  RowSequence source = NewRows({1, 2, 3});
  const auto copy = Iterate(source, VARIANT_FALSE);
  ASSERT_EQ(copy->Remove(), S_OK);
  EXPECT_EQ(Walk(copy.get()), (std::vector<LONG>{2, 3}));
  EXPECT_EQ(source.size(), 3u);

  // One row goes wherever the cursor is.
  RowSequence one = NewRows({1});
  const auto single = Iterate(one, VARIANT_TRUE);
  EXPECT_EQ(NextKey(single.get()), 1);
  ASSERT_EQ(single->Remove(), S_OK);
  EXPECT_TRUE(one.empty());
}

TEST_F(IteratorTest, AddToListAppendsTheRecordToTheWalkedSequence) {
  const auto it = Iterate(rows, VARIANT_TRUE);
  const auto adder = it.query<IAddToList>();
  EXPECT_EQ(adder->AddToList(nullptr), E_POINTER);
  const Row added = NewRow(columns.get(), 40);
  ASSERT_EQ(adder->AddToList(added.get()), S_OK);
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(rows.back().get(), added.get());
  EXPECT_EQ(Walk(it.get()), (std::vector<LONG>{10, 20, 30, 40}));
}

TEST_F(IteratorTest, ConstIteratorHandsOutReadOnlyViewsAndRefusesRemove) {
  const auto it = ReadOnly(Iterate(rows, VARIANT_TRUE).get());
  EXPECT_EQ(Ask(it.get(), &IRecordListIterator::IsSynchronized), VARIANT_TRUE);
  EXPECT_EQ(Find(it.get(), Condition(20).get()), VARIANT_TRUE);
  EXPECT_EQ(FindNext(it.get()), VARIANT_FALSE);  // the wrapped one has no condition
  com_ptr<IDispatch> next;
  ASSERT_EQ(it->Next(next.put()), S_OK);
  EXPECT_TRUE(next.try_query<IRecord>());
  EXPECT_FALSE(next.try_query<IMutableRecord>());
  EXPECT_EQ(KeyOf(next.get()), 10);
  ExpectFailure(it->Remove(), "Unsupported Operation Remove.");
  EXPECT_EQ(rows.size(), 3u);
  EXPECT_EQ(Walk(it.get()), (std::vector<LONG>{20, 30}));

  // The wrapped iterator's own failure reaches the caller as it was.
  RowSequence none;
  ExpectFailure(ReadOnly(Iterate(none, VARIANT_TRUE).get())->Next(next.put()), "The record iterator is empty.");

  const auto unwrapped = ReadOnly(nullptr);
  VARIANT_BOOL answer = 0;
  EXPECT_EQ(unwrapped->HasNext(&answer), E_POINTER);
  EXPECT_EQ(unwrapped->Next(next.put()), E_POINTER);
  EXPECT_EQ(unwrapped->Find(Condition(1).get(), &answer), E_POINTER);
}

TEST_F(IteratorDeathTest, NextPastTheLastRowEndsTheProcess) {
  const auto it = Iterate(rows, VARIANT_TRUE);
  for (int i = 0; i < 3; ++i) NextKey(it.get());
  EXPECT_DEATH(it->Next(com_ptr<IDispatch>().put()), "");
  // A host that survives the abort sees the iterator's own failure.
  const ScopedThrowingInvalidParameter guard;
  ExpectFailure(it->Next(com_ptr<IDispatch>().put()), "Failed in iterator next.");
}

}  // namespace
}  // namespace brevo::testing
