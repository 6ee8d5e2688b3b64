#include "records/abstract_record_read_only.h"

#include <optional>
#include <utility>

#include "core/bv_exception.h"
#include "core/cell_conversions.h"

namespace brevo {
namespace {

// Whatever goes wrong while converting, the caller sees the getter's own
// message; failures of GetValue itself pass through untouched.
template <class Result>
Result Read(const unique_variant& value, std::optional<Result> (*convert)(const VARIANT&), const OLECHAR* message) {
  try {
    if (auto result = convert(value.get())) return std::move(*result);
  } catch (...) {
  }
  throw EBvException(message);
}

}  // namespace

VARIANT_BOOL AbstractRecordReadOnly::GetValueAsBoolean(ULONG index) {
  return Read(GetValue(index), &cell::AsBoolean, OLESTR("Cannot convert to boolean."));
}

double AbstractRecordReadOnly::GetValueAsDouble(ULONG index) {
  return Read(GetValue(index), &cell::AsDouble, OLESTR("Cannot convert to double."));
}

float AbstractRecordReadOnly::GetValueAsFloat(ULONG index) {
  return Read(GetValue(index), &cell::AsFloat, OLESTR("Cannot convert to float."));
}

LONG AbstractRecordReadOnly::GetValueAsInt32(ULONG index) {
  return Read(GetValue(index), &cell::AsInt32, OLESTR("Cannot convert to int."));
}

SHORT AbstractRecordReadOnly::GetValueAsInt16(ULONG index) {
  return Read(GetValue(index), &cell::AsInt16, OLESTR("Cannot convert to short."));
}

LONGLONG AbstractRecordReadOnly::GetValueAsInt64(ULONG index) {
  return Read(GetValue(index), &cell::AsInt64, OLESTR("Cannot convert to long."));
}

BYTE AbstractRecordReadOnly::GetValueAsByte(ULONG index) {
  return Read(GetValue(index), &cell::AsByte, OLESTR("Cannot convert to byte."));
}

_bstr_t AbstractRecordReadOnly::GetValueAsString(ULONG index) {
  return Read(GetValue(index), &cell::AsString, OLESTR("Cannot convert to string."));
}

}  // namespace brevo
