#include "records/abstract_record_read_only.h"

#include <utility>

#include "core/bv_exception.h"
#include "core/cell_conversions.h"

namespace brevo {
namespace {

// Whatever goes wrong while converting, the caller sees the getter's own
// message; failures of reading the cell itself pass through untouched.
template <class Result>
Result Convert(const VARIANT& value, std::optional<Result> (*convert)(const VARIANT&), const OLECHAR* message) {
  try {
    if (auto result = convert(value)) return std::move(*result);
  } catch (...) {
  }
  throw EBvException(message);
}

}  // namespace

template <class Result>
Result AbstractRecordReadOnly::ReadAs(ULONG index, std::optional<Result> (*convert)(const VARIANT&),
                                      const OLECHAR* message) {
  if (const VARIANT* stored = PeekValue(index)) return Convert(*stored, convert, message);
  const unique_variant copy = GetValue(index);
  return Convert(copy.get(), convert, message);
}

VARIANT_BOOL AbstractRecordReadOnly::GetValueAsBoolean(ULONG index) {
  return ReadAs(index, &cell::AsBoolean, OLESTR("Cannot convert to boolean."));
}

double AbstractRecordReadOnly::GetValueAsDouble(ULONG index) {
  return ReadAs(index, &cell::AsDouble, OLESTR("Cannot convert to double."));
}

float AbstractRecordReadOnly::GetValueAsFloat(ULONG index) {
  return ReadAs(index, &cell::AsFloat, OLESTR("Cannot convert to float."));
}

LONG AbstractRecordReadOnly::GetValueAsInt32(ULONG index) {
  return ReadAs(index, &cell::AsInt32, OLESTR("Cannot convert to int."));
}

SHORT AbstractRecordReadOnly::GetValueAsInt16(ULONG index) {
  return ReadAs(index, &cell::AsInt16, OLESTR("Cannot convert to short."));
}

LONGLONG AbstractRecordReadOnly::GetValueAsInt64(ULONG index) {
  return ReadAs(index, &cell::AsInt64, OLESTR("Cannot convert to long."));
}

BYTE AbstractRecordReadOnly::GetValueAsByte(ULONG index) {
  return ReadAs(index, &cell::AsByte, OLESTR("Cannot convert to byte."));
}

unique_bstr AbstractRecordReadOnly::GetValueAsString(ULONG index) {
  return ReadAs(index, &cell::AsString, OLESTR("Cannot convert to string."));
}

}  // namespace brevo
