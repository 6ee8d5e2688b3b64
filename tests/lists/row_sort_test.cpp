// Sorting and filtering rows with client callbacks: the order the comparator
// asks for, its cost on inputs that break naive quicksorts, and what survives
// a comparator that lies or fails.
#include <cmath>
#include <numeric>
#include <random>

#include "lists/row_sort.h"
#include "row_fixture.h"

namespace brevo::testing {
namespace {

constexpr std::size_t kRows = 1000;

std::vector<LONG> Keys(std::size_t n, LONG (*key)(std::size_t)) {
  std::vector<LONG> keys(n);
  for (std::size_t i = 0; i < n; ++i) keys[i] = key(i);
  return keys;
}

double NLogN(std::size_t n) { return static_cast<double>(n) * std::log2(static_cast<double>(n)); }

com_ptr<CComObject<KeyComparator>> Comparator(std::function<LONG(LONG, LONG)> order, long failAt = 0) {
  return make_object<KeyComparator>(std::move(order), failAt);
}

std::string SortFailure(RowSequence& rows, IRecordComparator* comparator) {
  try {
    SortRows(rows, comparator);
  } catch (const EBvException& e) {
    return Narrow(e.GetDescription());
  }
  return "no failure";
}

struct Shape {
  const char* name;
  LONG (*key)(std::size_t);
};

class SortShapes : public ::testing::TestWithParam<Shape> {};

// Descending by key, with comparator calls far from quadratic whatever the input.
TEST_P(SortShapes, FirstMinusSecondSortsDescendingInNLogNCalls) {
  RowSequence rows = NewRows(Keys(kRows, GetParam().key));
  const RowSequence before = rows;
  const auto comparator = Comparator(FirstMinusSecond);
  SortRows(rows, comparator.get());

  EXPECT_TRUE(SameRecords(before, rows));
  const std::vector<LONG> keys = KeysOf(rows);
  EXPECT_TRUE(std::is_sorted(keys.rbegin(), keys.rend()));
  EXPECT_LT(comparator->calls, 2 * NLogN(kRows));
  EXPECT_EQ(comparator->badArguments, 0);
}

INSTANTIATE_TEST_SUITE_P(
    Inputs, SortShapes,
    ::testing::Values(
        Shape{"Shuffled", [](std::size_t i) { return static_cast<LONG>((i * 7919) % kRows); }},
        Shape{"Ascending", [](std::size_t i) { return static_cast<LONG>(i); }},
        Shape{"Descending", [](std::size_t i) { return static_cast<LONG>(kRows - i); }},
        Shape{"AllEqual", [](std::size_t) { return LONG{4}; }},
        Shape{"FewDistinct", [](std::size_t i) { return static_cast<LONG>(i % 3); }},
        Shape{"OrganPipe", [](std::size_t i) { return static_cast<LONG>(i < kRows / 2 ? i : kRows - i); }}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(SortRows, ShortSequencesSortWithoutTheFastPath) {
  for (const std::size_t n : {2u, 3u, 16u, 17u, 40u}) {
    RowSequence rows = NewRows(Keys(n, [](std::size_t i) { return static_cast<LONG>((i * 5) % 11); }));
    SortRows(rows, Comparator(FirstMinusSecond).get());
    const std::vector<LONG> keys = KeysOf(rows);
    EXPECT_TRUE(std::is_sorted(keys.rbegin(), keys.rend())) << n;
  }
}

TEST(SortRows, AnInconsistentComparatorStillEndsWithAPermutation) {
  for (const unsigned seed : {1u, 2u, 3u}) {
    std::mt19937 random(seed);
    RowSequence rows = NewRows(Keys(kRows, [](std::size_t i) { return static_cast<LONG>(i); }));
    const RowSequence before = rows;
    const auto comparator = Comparator([&](LONG, LONG) { return static_cast<LONG>(random() % 3) - 1; });
    SortRows(rows, comparator.get());
    EXPECT_TRUE(SameRecords(before, rows)) << seed;
    EXPECT_LT(comparator->calls, 10 * NLogN(kRows)) << seed;
  }
}

TEST(SortRows, AFailingComparatorLeavesTheRowsAsTheyWere) {
  for (const long failAt : {1L, 2L, 500L, 5000L}) {
    RowSequence rows = NewRows(Keys(kRows, [](std::size_t i) { return static_cast<LONG>((i * 31) % 97); }));
    const RowSequence before = rows;
    EXPECT_EQ(SortFailure(rows, Comparator(FirstMinusSecond, failAt).get()), "Cannot sort the vector.") << failAt;
    EXPECT_TRUE(rows == before) << failAt;
  }
}

// A comparator may reach the list, and so the sequence being sorted.
TEST(SortRows, TheComparatorMayEmptyTheCallersSequenceMeanwhile) {
  RowSequence rows = NewRows(Keys(100, [](std::size_t i) { return static_cast<LONG>(i); }));
  const auto comparator = Comparator([&](LONG first, LONG second) {
    rows.clear();
    return first - second;
  });
  SortRows(rows, comparator.get());
  const std::vector<LONG> keys = KeysOf(rows);
  EXPECT_EQ(keys.size(), 100u);
  EXPECT_TRUE(std::is_sorted(keys.rbegin(), keys.rend()));
}

TEST(SortRows, ANullComparatorFailsOnlyWhenThereIsSomethingToCompare) {
  RowSequence none;
  RowSequence one = NewRows({1});
  RowSequence two = NewRows({1, 2});
  EXPECT_EQ(SortFailure(none, nullptr), "no failure");
  EXPECT_EQ(SortFailure(one, nullptr), "no failure");
  EXPECT_EQ(SortFailure(two, nullptr), "Cannot sort the vector.");
  EXPECT_EQ(KeysOf(two), (std::vector<LONG>{1, 2}));
}

TEST(FilterRows, AConditionErrorIsRaisedWithItsCode) {
  const RowSequence rows = NewRows({1, 2});
  RowSequence result;
  const com_ptr<IRecordCondition> failing(make_object<KeyCondition>(1, VARIANT_TRUE, E_INVALIDARG).get());
  try {
    FilterRows(rows, failing.get(), result);
    ADD_FAILURE() << "no failure";
  } catch (const _com_error& e) {
    EXPECT_EQ(e.Error(), E_INVALIDARG);
  }
  EXPECT_TRUE(result.empty());
}

}  // namespace
}  // namespace brevo::testing
