// Filtering and sorting a list's rows with client callbacks. The results feed
// the filtered and sorted iterators.
#pragma once

#include "lists/list_interfaces.h"

namespace brevo {

// Replaces result with the rows the condition accepts (any non-zero answer),
// in order; a null condition accepts nothing. An error from the condition is
// raised with its code.
void FilterRows(const RowSequence& rows, IRecordCondition* condition, RowSequence& result);

// Sorts rows in place, not stably: x goes before y when Compare(x, y) is
// positive. Any failure raises "Cannot sort the vector." and leaves rows as
// they were. An inconsistent comparator yields some permutation, never an
// endless loop or an access outside rows.
void SortRows(RowSequence& rows, IRecordComparator* comparator);

}  // namespace brevo
