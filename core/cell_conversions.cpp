#include "core/cell_conversions.h"

#include <string>

#include "core/bv_exception.h"
#include "core/number_text.h"

namespace brevo::cell {
namespace {

bool IsNoValue(VARTYPE vt) { return vt == VT_EMPTY || vt == VT_NULL || vt == VT_UNKNOWN; }
bool IsReal(VARTYPE vt) { return vt == VT_R4 || vt == VT_R8; }

double RealOf(const VARIANT& value) { return value.vt == VT_R4 ? value.fltVal : value.dblVal; }

// The value of an integer kind (VT_BOOL included), widened by its own sign.
struct Integer {
  LONGLONG bits;
  bool isUnsigned;
};

std::optional<Integer> IntegerOf(const VARIANT& value) {
  switch (value.vt) {
    case VT_I2: return Integer{value.iVal, false};
    case VT_BOOL: return Integer{value.boolVal, false};
    case VT_I4: return Integer{value.lVal, false};
    case VT_INT: return Integer{value.intVal, false};
    case VT_I8: return Integer{value.llVal, false};
    case VT_UI1: return Integer{value.bVal, true};
    case VT_UI2: return Integer{value.uiVal, true};
    case VT_UI4: return Integer{value.ulVal, true};
    case VT_UINT: return Integer{value.uintVal, true};
    case VT_UI8: return Integer{static_cast<LONGLONG>(value.ullVal), true};
    default: return std::nullopt;
  }
}

std::string NarrowOf(BSTR text) { return platform::WideToAnsi(text, SysStringLen(text)); }

// The text a number reads as, for the kinds that have one.
std::optional<std::string> TextOf(const VARIANT& value) {
  switch (value.vt) {
    case VT_I2: return FormatInteger(value.iVal);
    case VT_BOOL: return FormatInteger(value.boolVal);
    case VT_I4: return FormatInteger(value.lVal);
    case VT_INT: return FormatInteger(value.intVal);
    case VT_UI1: return FormatUnsigned(value.bVal);
    case VT_UI2: return FormatUnsigned(value.uiVal);
    case VT_UI4: return FormatUnsigned(value.ulVal);
    case VT_UINT: return FormatUnsigned(value.uintVal);
    case VT_R4: return FormatFixed(value.fltVal);
    case VT_R8: return FormatFixed(value.dblVal);
    default: return std::nullopt;
  }
}

BYTE FirstByte(const std::string& text) { return static_cast<BYTE>(text.empty() ? 0 : text[0]); }

}  // namespace

std::optional<VARIANT_BOOL> AsBoolean(const VARIANT& value) {
  if (IsNoValue(value.vt) || value.vt == VT_BSTR) return VARIANT_BOOL{0};
  if (IsReal(value.vt)) return static_cast<VARIANT_BOOL>(TruncateToInt32(RealOf(value)));
  if (value.vt == VT_UI1) return std::nullopt;
  if (const auto integer = IntegerOf(value)) return static_cast<VARIANT_BOOL>(integer->bits);
  return std::nullopt;
}

std::optional<double> AsDouble(const VARIANT& value) {
  if (IsNoValue(value.vt)) return 0.0;
  if (IsReal(value.vt)) return RealOf(value);
  if (value.vt == VT_BSTR) return ParseDouble(NarrowOf(value.bstrVal).c_str());
  if (const auto integer = IntegerOf(value)) {
    return integer->isUnsigned ? static_cast<double>(static_cast<ULONGLONG>(integer->bits))
                               : static_cast<double>(integer->bits);
  }
  return std::nullopt;
}

std::optional<float> AsFloat(const VARIANT& value) {
  if (IsNoValue(value.vt)) return 0.0f;
  if (IsReal(value.vt)) return static_cast<float>(RealOf(value));
  if (value.vt == VT_BSTR) return static_cast<float>(ParseDouble(NarrowOf(value.bstrVal).c_str()));
  if (const auto integer = IntegerOf(value)) {
    return integer->isUnsigned ? static_cast<float>(static_cast<ULONGLONG>(integer->bits))
                               : static_cast<float>(integer->bits);
  }
  return std::nullopt;
}

std::optional<LONG> AsInt32(const VARIANT& value) {
  if (IsNoValue(value.vt)) return LONG{0};
  if (IsReal(value.vt)) return TruncateToInt32(RealOf(value));
  if (value.vt == VT_BSTR) return ParseInt32(NarrowOf(value.bstrVal).c_str());
  if (const auto integer = IntegerOf(value)) return static_cast<LONG>(integer->bits);
  return std::nullopt;
}

std::optional<SHORT> AsInt16(const VARIANT& value) {
  if (const auto wide = AsInt32(value)) return static_cast<SHORT>(*wide);
  return std::nullopt;
}

std::optional<LONGLONG> AsInt64(const VARIANT& value) {
  if (IsNoValue(value.vt)) return LONGLONG{0};
  if (IsReal(value.vt)) return TruncateToInt64(RealOf(value));
  if (value.vt == VT_BSTR) return LONGLONG{ParseInt32(NarrowOf(value.bstrVal).c_str())};
  if (const auto integer = IntegerOf(value)) return integer->bits;
  return std::nullopt;
}

std::optional<BYTE> AsByte(const VARIANT& value) {
  switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_UNKNOWN: return BYTE{0};
    case VT_UI1: return value.bVal;
    case VT_BSTR: return FirstByte(NarrowOf(value.bstrVal));
    case VT_INT:
    case VT_UINT: return std::nullopt;
    default:
      if (const auto text = TextOf(value)) return FirstByte(*text);
      return std::nullopt;
  }
}

std::optional<unique_bstr> AsString(const VARIANT& value) {
  switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_UNKNOWN: return unique_bstr();
    case VT_BSTR:
      if (value.bstrVal == nullptr) return unique_bstr();
      return unique_bstr(ExactCopy(value.bstrVal));
    case VT_BOOL: throw EBvException(OLESTR("Cannot convert from boolean to string."));
    default:
      if (const auto text = TextOf(value)) return unique_bstr(CheckedAllocation(platform::AnsiToBstr(text->c_str(), text->size())));
      return std::nullopt;
  }
}

}  // namespace brevo::cell
