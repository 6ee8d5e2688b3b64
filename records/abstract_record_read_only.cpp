#include "records/abstract_record_read_only.h"

#include <utility>

#include "core/bv_exception.h"
#include "core/cell_conversions.h"

namespace brevo {
namespace {

// Whatever goes wrong while converting, the caller sees the getter's own
// message; failures of reading the cell itself pass through untouched.
template <auto convert>
auto Convert(const VARIANT& value, const OLECHAR* message) {
  try {
    if (auto result = convert(value)) return std::move(*result);
  } catch (...) {
  }
  throw EBvException(message);
}

}  // namespace

// The converter is a template argument so that it is inlined into the getter.
template <auto convert>
auto AbstractRecordReadOnly::ReadAs(ULONG index, const OLECHAR* message) {
  if (const VARIANT* stored = PeekValue(index)) return Convert<convert>(*stored, message);
  const unique_variant copy = GetValue(index);
  return Convert<convert>(copy.get(), message);
}

VARIANT_BOOL AbstractRecordReadOnly::GetValueAsBoolean(ULONG index) {
  return ReadAs<&cell::AsBoolean>(index, OLESTR("Cannot convert to boolean."));
}

double AbstractRecordReadOnly::GetValueAsDouble(ULONG index) {
  return ReadAs<&cell::AsDouble>(index, OLESTR("Cannot convert to double."));
}

float AbstractRecordReadOnly::GetValueAsFloat(ULONG index) {
  return ReadAs<&cell::AsFloat>(index, OLESTR("Cannot convert to float."));
}

LONG AbstractRecordReadOnly::GetValueAsInt32(ULONG index) {
  return ReadAs<&cell::AsInt32>(index, OLESTR("Cannot convert to int."));
}

SHORT AbstractRecordReadOnly::GetValueAsInt16(ULONG index) {
  return ReadAs<&cell::AsInt16>(index, OLESTR("Cannot convert to short."));
}

LONGLONG AbstractRecordReadOnly::GetValueAsInt64(ULONG index) {
  return ReadAs<&cell::AsInt64>(index, OLESTR("Cannot convert to long."));
}

BYTE AbstractRecordReadOnly::GetValueAsByte(ULONG index) {
  return ReadAs<&cell::AsByte>(index, OLESTR("Cannot convert to byte."));
}

unique_bstr AbstractRecordReadOnly::GetValueAsString(ULONG index) {
  return ReadAs<&cell::AsString>(index, OLESTR("Cannot convert to string."));
}

}  // namespace brevo
