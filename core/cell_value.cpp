#include "core/cell_value.h"

#include <cstring>

#include "core/bstr_t.h"
#include "core/unique_variant.h"

namespace brevo {

bool FitsColumnType(const VARIANT& value, ULONG columnType) {
  const VARTYPE vt = value.vt;
  bool fits = false;
  switch (columnType) {
    case 1: case 8: case 9: fits = vt == VT_BSTR; break;
    case 2: fits = vt == VT_BOOL || vt == VT_I2; break;
    case 3: fits = vt == VT_R4; break;
    case 4: fits = vt == VT_R8; break;
    case 5: case 23: case 24: fits = vt == VT_UNKNOWN || vt == VT_DISPATCH; break;
    case 10: fits = vt == VT_I4 || vt == VT_INT; break;
    case 11: fits = vt == VT_I2; break;
    case 12: fits = vt == VT_I8; break;
    case 13: case 15: fits = vt == VT_UI1 || vt == VT_I1; break;
    case 14: fits = vt == VT_UI2; break;
    case 16: case 17: case 18: case 19: case 20: fits = vt == VT_DATE; break;
    default: break;
  }
  // The test works on a copy of the value; a fitting value always copies, so
  // only a refused one can surface the copy's own failure.
  if (!fits) unique_variant copy(value);
  return fits;
}

bool CellValuesEqual(const VARIANT& value, const VARIANT* other) {
  if (other == nullptr) return false;
  if (other == &value) return true;
  if (value.vt != other->vt) return false;
  switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return true;
    case VT_I2:
    case VT_BOOL:
    case VT_UI2:
      return value.uiVal == other->uiVal;
    case VT_I4:
    case VT_ERROR:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
      return value.ulVal == other->ulVal;
    case VT_R4:
      return value.fltVal == other->fltVal;
    case VT_R8:
    case VT_DATE:
      return value.dblVal == other->dblVal;
    case VT_CY:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return value.ullVal == other->ullVal;
    case VT_BSTR:
      return SameText(value.bstrVal, other->bstrVal);
    case VT_DECIMAL:
      return std::memcmp(&value.decVal, &other->decVal, sizeof(DECIMAL)) == 0;
    case VT_I1:
    case VT_UI1:
      return value.bVal == other->bVal;
    default:
      _com_issue_error(E_INVALIDARG);
  }
}

}  // namespace brevo
