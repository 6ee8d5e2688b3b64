// The typed readings of a cell value behind the records' GetValueAs... getters
// and the values their SetValueAs... setters build. The readings are loose on
// purpose (a string reads as false, a byte is the first character of the
// value's text); each returns nothing for a kind it cannot read.
#pragma once

#include <optional>

#include "core/bstr_t.h"
#include "platform/com.h"

namespace brevo::cell {

std::optional<VARIANT_BOOL> AsBoolean(const VARIANT& value);
std::optional<double> AsDouble(const VARIANT& value);
std::optional<float> AsFloat(const VARIANT& value);
std::optional<LONG> AsInt32(const VARIANT& value);
std::optional<SHORT> AsInt16(const VARIANT& value);
std::optional<LONGLONG> AsInt64(const VARIANT& value);
std::optional<BYTE> AsByte(const VARIANT& value);
// Raises for a boolean; the record's guard reports its own message.
std::optional<unique_bstr> AsString(const VARIANT& value);

}  // namespace brevo::cell
