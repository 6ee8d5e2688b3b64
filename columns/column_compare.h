// Column equality, shared by the mutable column and its view.
#pragma once

#include "columns/column_interfaces.h"

namespace brevo {

// 0 when type, display name and name all match, 1 otherwise: not an ordering.
LONG CompareColumns(IColumnRaw& column, IColumnRaw& other);

// The column behind any column interface; a null one is E_POINTER.
com_ptr<IColumnRaw> RawColumnOf(IDispatch* column);

}  // namespace brevo
