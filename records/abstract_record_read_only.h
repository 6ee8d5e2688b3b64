// The typed getters every record shape shares, written once over GetValue.
#pragma once

#include <optional>

#include "core/bstr_t.h"
#include "core/unique_variant.h"

namespace brevo {

class AbstractRecordReadOnly {
 public:
  virtual ~AbstractRecordReadOnly() = default;

  // An owned copy of the cell at a column index.
  virtual unique_variant GetValue(ULONG index) = 0;
  // The stored cell itself, where the record can lend it with the checks of
  // GetValue; the typed getters then convert it without copying it first.
  // Null: they read a copy from GetValue.
  virtual const VARIANT* PeekValue(ULONG) { return nullptr; }

  VARIANT_BOOL GetValueAsBoolean(ULONG index);
  double GetValueAsDouble(ULONG index);
  float GetValueAsFloat(ULONG index);
  LONG GetValueAsInt32(ULONG index);
  SHORT GetValueAsInt16(ULONG index);
  LONGLONG GetValueAsInt64(ULONG index);
  BYTE GetValueAsByte(ULONG index);
  unique_bstr GetValueAsString(ULONG index);

 private:
  template <auto convert>
  auto ReadAs(ULONG index, const OLECHAR* message);
};

}  // namespace brevo
