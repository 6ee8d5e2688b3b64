// Rules on single cell values: which kinds a column type accepts, and when two
// values are equal.
#pragma once

#include "platform/com.h"

namespace brevo {

// Whether value may be stored in a column of the given type code. A value that
// does not fit and cannot even be copied raises the copy's _com_error.
bool FitsColumnType(const VARIANT& value, ULONG columnType);

// Kind-exact equality (no conversion between kinds). Kinds that cannot be
// compared, 64-bit integers among them, raise _com_error E_INVALIDARG.
bool CellValuesEqual(const VARIANT& value, const VARIANT* other);

}  // namespace brevo
