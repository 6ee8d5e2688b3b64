// The typed getters every record shape shares, written once over GetValue.
#pragma once

#include "core/bstr_t.h"
#include "core/unique_variant.h"

namespace brevo {

class AbstractRecordReadOnly {
 public:
  virtual ~AbstractRecordReadOnly() = default;

  // An owned copy of the cell at a column index.
  virtual unique_variant GetValue(ULONG index) = 0;

  VARIANT_BOOL GetValueAsBoolean(ULONG index);
  double GetValueAsDouble(ULONG index);
  float GetValueAsFloat(ULONG index);
  LONG GetValueAsInt32(ULONG index);
  SHORT GetValueAsInt16(ULONG index);
  LONGLONG GetValueAsInt64(ULONG index);
  BYTE GetValueAsByte(ULONG index);
  _bstr_t GetValueAsString(ULONG index);
};

}  // namespace brevo
