#include "records/abstract_mutable_record.h"

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
  SetOwnedValue(index, MakeValue(VT_BOOL, &VARIANT::boolVal, value));
}

void AbstractMutableRecord::SetValueAsByte(ULONG index, BYTE value) {
  SetOwnedValue(index, MakeValue(VT_UI1, &VARIANT::bVal, value));
}

void AbstractMutableRecord::SetValueAsDouble(ULONG index, double value) {
  SetOwnedValue(index, MakeValue(VT_R8, &VARIANT::dblVal, value));
}

void AbstractMutableRecord::SetValueAsFloat(ULONG index, float value) {
  SetOwnedValue(index, MakeValue(VT_R4, &VARIANT::fltVal, value));
}

void AbstractMutableRecord::SetValueAsInt32(ULONG index, LONG value) {
  SetOwnedValue(index, MakeValue(VT_I4, &VARIANT::lVal, value));
}

void AbstractMutableRecord::SetValueAsInt16(ULONG index, SHORT value) {
  SetOwnedValue(index, MakeValue(VT_I2, &VARIANT::iVal, value));
}

void AbstractMutableRecord::SetValueAsInt64(ULONG index, LONGLONG value) {
  SetOwnedValue(index, MakeValue(VT_EMPTY, &VARIANT::llVal, value));
}

void AbstractMutableRecord::SetValueAsString(ULONG index, BSTR value) {
  SetOwnedValue(index, MakeValue(VT_BSTR, &VARIANT::bstrVal, ExactCopy(value)));
}

}  // namespace brevo
