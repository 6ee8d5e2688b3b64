#include "columns/column_compare.h"

namespace brevo {

LONG CompareColumns(IColumnRaw& column, IColumnRaw& other) {
  if (other.ColumnType() != column.ColumnType()) return 1;
  if (other.DisplayName() != column.DisplayName()) return 1;
  if (other.ColumnName() != column.ColumnName()) return 1;
  return 0;
}

com_ptr<IColumnRaw> RawColumnOf(IDispatch* column) { return com_ptr<IDispatch>(column).query<IColumnRaw>(); }

}  // namespace brevo
