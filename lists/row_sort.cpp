#include "lists/row_sort.h"

#include <cstddef>
#include <utility>

#include "core/bv_exception.h"
#include "core/call_out.h"

namespace brevo {

void FilterRows(const RowSequence& rows, IRecordCondition* condition, RowSequence& result) {
  result.clear();
  // The condition is client code and may change the list while it runs.
  const RowSequence candidates = rows;
  if (condition == nullptr) return;
  for (const Row& row : candidates) {
    VARIANT_BOOL accepted = VARIANT_FALSE;
    const CallOutLevel level;
    ThrowIfFailed(condition->Evaluate(row.get(), &accepted), condition);
    if (accepted != VARIANT_FALSE) result.push_back(row);
  }
}

namespace {

constexpr std::size_t kInsertionSortMax = 16;
constexpr std::size_t kNintherMin = 128;

// The client's order. Nothing below may rely on it being consistent: every
// scan is bounded by indices alone, and rows only ever move by swaps.
class RowOrder {
 public:
  RowOrder(RowSequence& rows, IRecordComparator* comparator) : rows_(rows), comparator_(comparator) {}

  bool Before(std::size_t x, std::size_t y) {
    // In-parameters: the callee does not own them, so the rows' own references
    // are lent without a count.
    VARIANT first;
    VARIANT second;
    VariantInit(&first);
    VariantInit(&second);
    first.vt = second.vt = VT_UNKNOWN;
    first.punkVal = rows_[x].get();
    second.punkVal = rows_[y].get();
    LONG result = 0;
    const CallOutLevel level;
    ThrowIfFailed(comparator_->Compare(first, second, &result));
    return result > 0;
  }
  void Swap(std::size_t x, std::size_t y) noexcept { std::swap(rows_[x], rows_[y]); }

  void Sort(std::size_t lo, std::size_t hi, unsigned depthLeft) {
    // Recurse into the smaller part, loop on the larger: the stack stays
    // logarithmic whatever the comparator answers.
    while (hi - lo > kInsertionSortMax) {
      if (depthLeft-- == 0) return HeapSort(lo, hi);
      const std::size_t pivot = Partition(lo, hi);
      if (pivot - lo < hi - pivot) {
        Sort(lo, pivot, depthLeft);
        lo = pivot + 1;
      } else {
        Sort(pivot + 1, hi, depthLeft);
        hi = pivot;
      }
    }
    InsertionSort(lo, hi);
  }

 private:
  std::size_t MedianOf(std::size_t a, std::size_t b, std::size_t c) {
    if (Before(b, a)) std::swap(a, b);
    if (!Before(c, b)) return b;
    return Before(c, a) ? a : c;
  }

  // Puts a median of three (of three medians on long ranges) at lo. The first
  // row is not a candidate: a partition leaves the largest row of its left
  // part there, and taking it would make reverse-sorted input quadratic.
  void ChoosePivotAt(std::size_t lo, std::size_t hi) {
    const std::size_t first = lo + 1;
    const std::size_t mid = lo + (hi - lo) / 2;
    const std::size_t last = hi - 1;
    std::size_t pivot;
    if (hi - lo > kNintherMin) {
      const std::size_t step = (hi - lo) / 8;
      pivot = MedianOf(MedianOf(first, first + step, first + 2 * step), MedianOf(mid - step, mid, mid + step),
                       MedianOf(last - 2 * step, last - step, last));
    } else {
      pivot = MedianOf(first, mid, last);
    }
    Swap(lo, pivot);
  }

  // Hoare's scheme with the pivot parked at lo. Both scans stop on rows equal
  // to the pivot, so equal keys split evenly instead of piling on one side.
  // Returns the pivot's final index; [lo, p) and (p, hi) are both shorter
  // than [lo, hi).
  std::size_t Partition(std::size_t lo, std::size_t hi) {
    ChoosePivotAt(lo, hi);
    std::size_t i = lo;
    std::size_t j = hi;
    for (;;) {
      while (++i < hi && Before(i, lo)) {
      }
      while (--j > lo && Before(lo, j)) {
      }
      if (i >= j) break;
      Swap(i, j);
    }
    Swap(lo, j);
    return j;
  }

  void InsertionSort(std::size_t lo, std::size_t hi) {
    for (std::size_t k = lo + 1; k < hi; ++k) {
      for (std::size_t m = k; m > lo && Before(m, m - 1); --m) Swap(m, m - 1);
    }
  }

  // The fallback once the partitions keep coming out lopsided.
  void HeapSort(std::size_t lo, std::size_t hi) {
    const std::size_t n = hi - lo;
    for (std::size_t root = n / 2; root-- > 0;) SiftDown(lo, root, n);
    for (std::size_t end = n; end-- > 1;) {
      Swap(lo, lo + end);
      SiftDown(lo, 0, end);
    }
  }
  void SiftDown(std::size_t lo, std::size_t root, std::size_t n) {
    for (std::size_t child; (child = 2 * root + 1) < n; root = child) {
      if (child + 1 < n && Before(lo + child, lo + child + 1)) ++child;
      if (!Before(lo + root, lo + child)) return;
      Swap(lo + root, lo + child);
    }
  }

  RowSequence& rows_;
  IRecordComparator* comparator_;
};

unsigned DepthLimit(std::size_t n) {
  unsigned log2 = 0;
  while (n >>= 1) ++log2;
  return 2 * log2;
}

}  // namespace

void SortRows(RowSequence& rows, IRecordComparator* comparator) {
  if (rows.size() < 2) return;
  try {
    if (comparator == nullptr) _com_issue_error(E_POINTER);
    // The comparator is client code that may reach the caller's sequence
    // (through the list) while the sort runs; the sort works on its own.
    RowSequence work = rows;
    RowOrder(work, comparator).Sort(0, work.size(), DepthLimit(work.size()));
    rows.swap(work);
  } catch (const CallOutTooDeep&) {
    throw;
  } catch (...) {
    throw EBvException(OLESTR("Cannot sort the vector."));
  }
}

}  // namespace brevo
