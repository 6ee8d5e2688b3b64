// The mutable iterator's rules, its read-only wrapper, and the sort behind
// sorted iterators: order, cost on inputs that break naive quicksorts, and
// comparators that lie or fail.
#include <cmath>
#include <random>
#include <sstream>

#include "lists/const_iterator.h"
#include "lists/mutable_iterator.h"
#include "lists/row_sort.h"
#include "row_fixture.h"

namespace brevo::testing {
namespace {

com_ptr<IRecordListIterator> Iterate(RowSequence& rows, VARIANT_BOOL synchronized, LONG conditionKey = 0,
                                     IUnknown* owner = nullptr) {
  auto made = make_object<MutableIterator>();
  static_cast<IMutableIteratorRaw*>(made.get())->Bind(rows, synchronized, owner);
  static_cast<IMutableIteratorRaw*>(made.get())->Create(
      conditionKey != 0 ? make_object<KeyCondition>(conditionKey, VARIANT_TRUE).get() : nullptr);
  return com_ptr<IRecordListIterator>(made.get());
}
com_ptr<IRecordListIterator> ReadOnly(IRecordListIterator* iterator) {
  auto made = make_object<ConstIterator>();
  static_cast<IConstIteratorRaw*>(made.get())->Create(iterator);
  return com_ptr<IRecordListIterator>(made.get());
}

struct Walk {
  const char* what;
  std::vector<LONG> keys;
  VARIANT_BOOL synchronized;
  LONG condition;  // the key the iterator's own condition looks for; 0: none
  bool readOnly;
  const char *steps, *heard;
};

// Runs the steps on an iterator over rows with the keys and tells what each
// answered: N Next (the key), H HasNext, X FindNext, F<key> Find and S
// IsSynchronized (T, F or the number), R Remove and A AddToList of a row with
// key 40 (ok), A0 AddToList of null, O the references to the rows' owner; a
// refusal reads [its message]. The keys of the source rows follow the bar.
std::string Heard(const Walk& w) {
  const auto columns = NewColumns();
  RowSequence rows = NewRows(w.keys, columns);
  const RowSequence keep = rows;  // a removed record's end would clear the shared columns
  const Row added = NewRows({40}, columns)[0];
  CountedObject owner;
  std::string heard;
  {
    const auto it = w.readOnly ? ReadOnly(Iterate(rows, w.synchronized, w.condition, &owner).get())
                               : Iterate(rows, w.synchronized, w.condition, &owner);
    std::istringstream steps(w.steps);
    for (std::string step; steps >> step;) {
      com_ptr<IDispatch> next;
      VARIANT_BOOL answer = 7;
      HRESULT hr = S_OK;
      if (step == "N") hr = it->Next(next.put());
      if (step == "H") hr = it->HasNext(&answer);
      if (step == "X") hr = it->FindNext(&answer);
      if (step == "S") hr = it->IsSynchronized(&answer);
      if (step[0] == 'F') hr = it->Find(make_object<KeyCondition>(std::stol(step.substr(1)), -1).get(), &answer);
      if (step == "R") hr = it->Remove();
      if (step[0] == 'A') hr = it.query<IAddToList>()->AddToList(step == "A" ? added.get() : nullptr);
      EXPECT_TRUE(!next || w.readOnly != bool(next.try_query<IMutableRecord>())) << "views from a const iterator";
      const std::string error = TakeErrorInfo().description;
      heard += hr == E_POINTER           ? "E_POINTER "
               : hr != S_OK              ? "[" + error + "] "
               : next                    ? std::to_string(KeyOf(next.get())) + " "
               : step == "O"             ? std::to_string(owner.refs) + " "
               : answer == VARIANT_TRUE  ? "T "
               : answer == VARIANT_FALSE ? "F "
               : answer != 7             ? std::to_string(answer) + " "
                                         : "ok ";
    }
  }
  EXPECT_EQ(owner.refs, 1u) << "the owner is let go with the iterator";
  heard += "|";
  for (const LONG key : KeysOf(rows)) heard += " " + std::to_string(key);
  return heard;
}

TEST(Iterator, WalksFindsAndRemovesByItsRules) {
  const Walk walks[] = {
      {"walked without asking, the last row is still announced; no condition, no FindNext", {10, 20, 30}, -1, 0,
       false, "N N N H H X", "10 20 30 T F F | 10 20 30"},
      {"empty", {}, -1, 10, false, "H X N R",
       "F F [The record iterator is empty.] [The list is empty , No objects to remove.] |"},
      {"removing the last row leaves the cursor at the end", {10, 20, 30}, -1, 10, false, "N N N R N R X",
       "10 20 30 ok [The record iterator is in the end.] [Failed in iterator remove.] F | 10 20"},
      {"Find searches from the first row and starts no walk; FindNext finds the first match again", {10, 20, 30}, 0,
       20, false, "F30 N F20 F99 N X N X", "T 10 T F 30 T 30 T | 10 20 30"},
      {"Remove keeps the cursor's index, skipping the row that moves under it", {10, 20, 30, 40}, -1, 0, false,
       "N N R N", "10 20 ok 40 | 10 30 40"},
      {"one row goes wherever the cursor is", {1}, -1, 0, false, "N R H", "1 ok F |"},
      {"-1 walks the source in place and holds its owner", {1, 2, 3}, -1, 0, false, "S O R", "T 2 ok | 2 3"},
      {"0 walks a copy, which alone loses the row", {1, 2, 3}, 0, 0, false, "S O R N N", "F 1 ok 2 3 | 1 2 3"},
      {"1 is not -1", {1, 2, 3}, 1, 0, false, "S O R", "1 1 ok | 1 2 3"},
      {"AddToList appends", {10, 20}, -1, 0, false, "A0 A N N N", "E_POINTER ok 10 20 40 | 10 20 40"},
      {"read-only: forwards, hands out views, refuses Remove", {10, 20, 30}, -1, 0, true, "S F20 X N R N N",
       "T T F 10 [Unsupported Operation Remove.] 20 30 | 10 20 30"},
      {"read-only: the wrapped one's refusal as it was", {}, -1, 0, true, "N", "[The record iterator is empty.] |"},
  };
  for (const Walk& w : walks) EXPECT_EQ(Heard(w), std::string(w.heard)) << w.what;
  EXPECT_EQ(ReadOnly(nullptr)->Next(com_ptr<IDispatch>().put()), E_POINTER) << "a const iterator wrapping nothing";
  ClearErrorInfo();
}

TEST(IteratorDeathTest, NextPastTheLastRowEndsTheProcess) {
  RowSequence rows = NewRows({1});
  const auto it = Iterate(rows, VARIANT_TRUE);
  ASSERT_EQ(it->Next(com_ptr<IDispatch>().put()), S_OK);
  EXPECT_DEATH(it->Next(com_ptr<IDispatch>().put()), "");
  // A host that survives the abort sees the iterator's own failure.
  const ScopedThrowingInvalidParameter guard;
  ExpectFailure(it->Next(com_ptr<IDispatch>().put()), "Failed in iterator next.");
}

RowSequence Rows(std::size_t n, LONG (*key)(std::size_t)) {
  std::vector<LONG> keys(n);
  for (std::size_t i = 0; i < n; ++i) keys[i] = key(i);
  return NewRows(keys);
}
double NLogN(std::size_t n) { return static_cast<double>(n) * std::log2(static_cast<double>(n)); }
std::string SortFailure(RowSequence& rows, IRecordComparator* comparator) try {
  SortRows(rows, comparator);
  return "no failure";
} catch (const EBvException& e) {
  return Narrow(e.GetDescription());
}
bool Descending(const RowSequence& rows) {
  const std::vector<LONG> keys = KeysOf(rows);
  return std::is_sorted(keys.rbegin(), keys.rend());
}

// Descending by key, with comparator calls far from quadratic whatever the
// input; short ranges are finished by insertion alone.
TEST(SortRows, FirstMinusSecondSortsDescendingInNLogNCalls) {
  constexpr std::size_t n = 1000;
  using Key = LONG (*)(std::size_t);
  const Key mod11 = [](std::size_t i) { return static_cast<LONG>((i * 5) % 11); };
  const std::pair<std::size_t, Key> shapes[] = {
      {n, [](std::size_t i) { return static_cast<LONG>((i * 7919) % n); }},  // shuffled
      {n, [](std::size_t i) { return static_cast<LONG>(i); }},
      {n, [](std::size_t i) { return static_cast<LONG>(n - i); }},
      {n, [](std::size_t) { return LONG{4}; }},
      {n, [](std::size_t i) { return static_cast<LONG>(i < n / 2 ? i : n - i); }},  // organ pipe
      {2, mod11}, {17, mod11}, {40, mod11}};
  for (const auto& [size, key] : shapes) {
    SCOPED_TRACE(::testing::Message() << size << " rows, key(1) = " << key(1));
    RowSequence rows = Rows(size, key);
    const RowSequence before = rows;
    const auto comparator = make_object<KeyComparator>(FirstMinusSecond);
    SortRows(rows, comparator.get());
    EXPECT_TRUE(std::is_permutation(before.begin(), before.end(), rows.begin(), rows.end()));
    EXPECT_TRUE(Descending(rows));
    EXPECT_LE(comparator->calls, 2 * NLogN(size));
  }
}

// A comparator that lies still ends in a permutation, in bounded time; one
// that fails, or none, leaves the rows as they were.
TEST(SortRows, ALyingComparatorEndsInAPermutationAndAFailingOneChangesNothing) {
  const RowSequence shuffled = Rows(1000, [](std::size_t i) { return static_cast<LONG>((i * 31) % 97); });
  for (const unsigned seed : {1u, 2u, 3u}) {
    std::mt19937 random(seed);
    RowSequence rows = shuffled;
    const auto comparator = make_object<KeyComparator>([&](LONG, LONG) { return static_cast<LONG>(random() % 3) - 1; });
    SortRows(rows, comparator.get());
    EXPECT_TRUE(std::is_permutation(shuffled.begin(), shuffled.end(), rows.begin(), rows.end())) << seed;
    EXPECT_LT(comparator->calls, 10 * NLogN(1000)) << seed;
  }
  for (const long failAt : {1L, 2L, 500L, 5000L}) {
    RowSequence rows = shuffled;
    EXPECT_EQ(SortFailure(rows, make_object<KeyComparator>(FirstMinusSecond, failAt).get()), "Cannot sort the vector.");
    EXPECT_TRUE(rows == shuffled) << failAt;
  }
  RowSequence none, one = NewRows({1}), two = NewRows({1, 2});
  EXPECT_EQ(SortFailure(none, nullptr), "no failure");
  EXPECT_EQ(SortFailure(one, nullptr), "no failure");
  EXPECT_EQ(SortFailure(two, nullptr), "Cannot sort the vector.");
  EXPECT_EQ(KeysOf(two), (std::vector<LONG>{1, 2}));
}

// A comparator may reach the list, and so the sequence being sorted.
TEST(SortRows, TheComparatorMayEmptyTheCallersSequenceMeanwhile) {
  RowSequence rows = Rows(100, [](std::size_t i) { return static_cast<LONG>(i); });
  const auto comparator = make_object<KeyComparator>([&](LONG first, LONG second) {
    rows.clear();
    return first - second;
  });
  SortRows(rows, comparator.get());
  EXPECT_EQ(rows.size(), 100u);
  EXPECT_TRUE(Descending(rows));
}

}  // namespace
}  // namespace brevo::testing
