#include "records/record_compare.h"

#include "core/cell_value.h"

namespace brevo {

LONG CompareRecords(IRecordRaw& own, IRecordRaw& other) {
  const ULONG mine = own.ColumnCount();
  const ULONG theirs = other.ColumnCount();
  for (ULONG i = 0; i < mine && i < theirs; ++i) {
    const unique_variant a = own.GetValue(i);
    const unique_variant b = other.GetValue(i);
    if (!CellValuesEqual(a.get(), &b.get())) return a.vt() == VT_EMPTY ? -1 : 1;
  }
  return theirs < mine ? -1 : theirs == mine ? 0 : 1;
}

}  // namespace brevo
