#include "records/abstract_mutable_record.h"

#include "core/com_error.h"

namespace brevo {
namespace {

template <class Payload>
unique_variant MakeValue(VARTYPE vt, Payload VARIANT::*field, Payload payload) {
  unique_variant value;
  value.get().*field = payload;
  value->vt = vt;
  return value;
}

}  // namespace

void AbstractMutableRecord::SetValueAsBoolean(ULONG index, VARIANT_BOOL value) {
  SetValue(index, MakeValue(VT_BOOL, &VARIANT::boolVal, value).get());
}

void AbstractMutableRecord::SetValueAsByte(ULONG index, BYTE value) {
  SetValue(index, MakeValue(VT_UI1, &VARIANT::bVal, value).get());
}

void AbstractMutableRecord::SetValueAsDouble(ULONG index, double value) {
  SetValue(index, MakeValue(VT_R8, &VARIANT::dblVal, value).get());
}

void AbstractMutableRecord::SetValueAsFloat(ULONG index, float value) {
  SetValue(index, MakeValue(VT_R4, &VARIANT::fltVal, value).get());
}

void AbstractMutableRecord::SetValueAsInt32(ULONG index, LONG value) {
  SetValue(index, MakeValue(VT_I4, &VARIANT::lVal, value).get());
}

void AbstractMutableRecord::SetValueAsInt16(ULONG index, SHORT value) {
  SetValue(index, MakeValue(VT_I2, &VARIANT::iVal, value).get());
}

void AbstractMutableRecord::SetValueAsInt64(ULONG index, LONGLONG value) {
  SetValue(index, MakeValue(VT_EMPTY, &VARIANT::llVal, value).get());
}

void AbstractMutableRecord::SetValueAsString(ULONG index, const _bstr_t& value) {
  const BSTR text = value.GetBSTR();
  const BSTR copy = SysAllocStringByteLen(reinterpret_cast<const char*>(text), SysStringByteLen(text));
  if (copy == nullptr) _com_issue_error(E_OUTOFMEMORY);
  SetValue(index, MakeValue(VT_BSTR, &VARIANT::bstrVal, copy).get());
}

}  // namespace brevo
