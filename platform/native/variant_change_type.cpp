// VariantChangeType for the kinds that late-bound calls coerce between: the
// integer, real, boolean, string and object kinds. Currency, date and decimal
// are read as numbers but never produced; they answer DISP_E_TYPEMISMATCH as
// targets, like every kind outside that set.
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "platform/native/oleauto.h"

namespace {

struct Number {
  enum Kind { kSigned, kUnsigned, kReal } kind = kSigned;
  LONGLONG s = 0;
  ULONGLONG u = 0;
  double d = 0;
};

bool IsSpace(OLECHAR c) { return c == u' ' || (c >= u'\t' && c <= u'\r'); }

bool EqualsIgnoringCase(const std::u16string& text, const char* word) {
  if (text.size() != std::strlen(word)) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    OLECHAR c = text[i];
    if (c >= u'A' && c <= u'Z') c = static_cast<OLECHAR>(c + 32);
    if (c != static_cast<OLECHAR>(word[i])) return false;
  }
  return true;
}

// Numbers as the runtime reads them from text: surrounding blanks, a sign,
// digits with optional thousands separators, a fraction and an exponent.
bool ParseNumber(BSTR text, Number& out) {
  const UINT length = SysStringLen(text);
  UINT i = 0;
  while (i < length && IsSpace(text[i])) ++i;
  std::string ascii;
  if (i < length && (text[i] == u'+' || text[i] == u'-')) ascii += static_cast<char>(text[i++]);
  bool digits = false;
  bool integral = true;
  for (; i < length; ++i) {
    const OLECHAR c = text[i];
    if (c >= u'0' && c <= u'9') {
      ascii += static_cast<char>(c);
      digits = true;
    } else if (c == u',' && digits) {
      continue;
    } else {
      break;
    }
  }
  if (i < length && text[i] == u'.') {
    ascii += '.';
    integral = false;
    for (++i; i < length && text[i] >= u'0' && text[i] <= u'9'; ++i) {
      ascii += static_cast<char>(text[i]);
      digits = true;
    }
  }
  if (!digits) return false;
  if (i < length && (text[i] == u'e' || text[i] == u'E')) {
    std::string exponent = "e";
    UINT j = i + 1;
    if (j < length && (text[j] == u'+' || text[j] == u'-')) exponent += static_cast<char>(text[j++]);
    const UINT firstDigit = j;
    while (j < length && text[j] >= u'0' && text[j] <= u'9') exponent += static_cast<char>(text[j++]);
    if (j == firstDigit) return false;
    ascii += exponent;
    integral = false;
    i = j;
  }
  while (i < length && IsSpace(text[i])) ++i;
  if (i != length) return false;

  const char* first = ascii.data();
  const char* last = first + ascii.size();
  if (*first == '+') ++first;
  if (integral) {
    LONGLONG value = 0;
    if (std::from_chars(first, last, value).ec == std::errc()) {
      out = Number{Number::kSigned, value, 0, 0};
      return true;
    }
    ULONGLONG big = 0;
    if (std::from_chars(first, last, big).ec == std::errc()) {
      out = Number{Number::kUnsigned, 0, big, 0};
      return true;
    }
  }
  double real = 0;
  const auto result = std::from_chars(first, last, real);
  if (result.ec == std::errc::result_out_of_range) {
    real = ascii[0] == '-' ? -HUGE_VAL : HUGE_VAL;
  }
  out = Number{Number::kReal, 0, 0, real};
  return true;
}

HRESULT ToNumber(const VARIANT& source, Number& out) {
  switch (source.vt) {
    case VT_EMPTY: out = Number{}; return S_OK;
    case VT_I1: out = Number{Number::kSigned, source.cVal, 0, 0}; return S_OK;
    case VT_I2: out = Number{Number::kSigned, source.iVal, 0, 0}; return S_OK;
    case VT_BOOL: out = Number{Number::kSigned, source.boolVal, 0, 0}; return S_OK;
    case VT_I4: out = Number{Number::kSigned, source.lVal, 0, 0}; return S_OK;
    case VT_INT: out = Number{Number::kSigned, source.intVal, 0, 0}; return S_OK;
    case VT_I8: out = Number{Number::kSigned, source.llVal, 0, 0}; return S_OK;
    case VT_UI1: out = Number{Number::kUnsigned, 0, source.bVal, 0}; return S_OK;
    case VT_UI2: out = Number{Number::kUnsigned, 0, source.uiVal, 0}; return S_OK;
    case VT_UI4: out = Number{Number::kUnsigned, 0, source.ulVal, 0}; return S_OK;
    case VT_UINT: out = Number{Number::kUnsigned, 0, source.uintVal, 0}; return S_OK;
    case VT_UI8: out = Number{Number::kUnsigned, 0, source.ullVal, 0}; return S_OK;
    case VT_R4: out = Number{Number::kReal, 0, 0, source.fltVal}; return S_OK;
    case VT_R8:
    case VT_DATE: out = Number{Number::kReal, 0, 0, source.dblVal}; return S_OK;
    case VT_CY: out = Number{Number::kReal, 0, 0, static_cast<double>(source.cyVal.int64) / 10000.0}; return S_OK;
    case VT_BSTR: {
      if (ParseNumber(source.bstrVal, out)) return S_OK;
      const std::u16string text(source.bstrVal, SysStringLen(source.bstrVal));
      if (EqualsIgnoringCase(text, "true") || EqualsIgnoringCase(text, "false")) {
        out = Number{Number::kSigned, EqualsIgnoringCase(text, "true") ? -1 : 0, 0, 0};
        return S_OK;
      }
      return DISP_E_TYPEMISMATCH;
    }
    default: return DISP_E_TYPEMISMATCH;
  }
}

// Reals round half to even before an integer range check, as the runtime does.
template <class T>
HRESULT ToInteger(const Number& n, T& out) {
  using Limits = std::numeric_limits<T>;
  switch (n.kind) {
    case Number::kSigned:
      if constexpr (Limits::is_signed) {
        if (n.s < static_cast<LONGLONG>(Limits::min()) || n.s > static_cast<LONGLONG>(Limits::max())) return DISP_E_OVERFLOW;
      } else {
        if (n.s < 0 || static_cast<ULONGLONG>(n.s) > static_cast<ULONGLONG>(Limits::max())) return DISP_E_OVERFLOW;
      }
      out = static_cast<T>(n.s);
      return S_OK;
    case Number::kUnsigned:
      if (n.u > static_cast<ULONGLONG>(Limits::max())) return DISP_E_OVERFLOW;
      out = static_cast<T>(n.u);
      return S_OK;
    case Number::kReal: {
      const double rounded = std::nearbyint(n.d);
      const double upper = std::ldexp(1.0, Limits::digits);
      const double lower = Limits::is_signed ? -upper : 0.0;
      if (!(rounded >= lower && rounded < upper)) return DISP_E_OVERFLOW;
      out = static_cast<T>(rounded);
      return S_OK;
    }
  }
  return DISP_E_TYPEMISMATCH;
}

double ToDouble(const Number& n) {
  switch (n.kind) {
    case Number::kSigned: return static_cast<double>(n.s);
    case Number::kUnsigned: return static_cast<double>(n.u);
    case Number::kReal: return n.d;
  }
  return 0;
}

bool IsNonZero(const Number& n) {
  return n.kind == Number::kSigned ? n.s != 0 : n.kind == Number::kUnsigned ? n.u != 0 : n.d != 0;
}

std::string FormatReal(double value, int precision) {
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, precision);
  std::string text(buffer, result.ptr);
  for (char& c : text) {
    if (c == 'e') c = 'E';
  }
  return text;
}

HRESULT ToText(const VARIANT& source, USHORT flags, BSTR& out) {
  std::string text;
  switch (source.vt) {
    case VT_EMPTY: break;
    case VT_BOOL:
      if ((flags & VARIANT_ALPHABOOL) != 0) {
        text = source.boolVal != 0 ? "True" : "False";
      } else {
        text = source.boolVal != 0 ? "-1" : "0";
      }
      break;
    case VT_R4: text = FormatReal(source.fltVal, 7); break;
    case VT_R8: text = FormatReal(source.dblVal, 15); break;
    case VT_CY:
    case VT_DATE:
    case VT_BSTR: return DISP_E_TYPEMISMATCH;
    default: {
      Number n;
      const HRESULT hr = ToNumber(source, n);
      if (FAILED(hr)) return hr;
      text = n.kind == Number::kSigned ? std::to_string(n.s) : std::to_string(n.u);
    }
  }
  out = SysAllocStringLen(nullptr, static_cast<UINT>(text.size()));
  if (out == nullptr) return E_OUTOFMEMORY;
  for (std::size_t i = 0; i < text.size(); ++i) out[i] = static_cast<OLECHAR>(text[i]);
  return S_OK;
}

HRESULT ToObject(const VARIANT& source, VARTYPE vt, IUnknown*& out) {
  if (source.vt == VT_EMPTY) {
    out = nullptr;
    return S_OK;
  }
  if (source.vt != VT_UNKNOWN && source.vt != VT_DISPATCH) return DISP_E_TYPEMISMATCH;
  if (source.punkVal == nullptr) {
    out = nullptr;
    return S_OK;
  }
  const HRESULT hr = source.punkVal->QueryInterface(vt == VT_DISPATCH ? IID_IDispatch : IID_IUnknown,
                                                    reinterpret_cast<void**>(&out));
  return hr == E_NOINTERFACE ? DISP_E_TYPEMISMATCH : hr;
}

// Between the signed and unsigned kind of one width the runtime keeps the bits
// and checks no range (INT and UINT count as I4 and UI4).
bool IsSignChange(VARTYPE from, VARTYPE to) {
  constexpr VARTYPE kPairs[][2] = {{VT_I1, VT_UI1}, {VT_I2, VT_UI2}, {VT_I4, VT_UI4}, {VT_I8, VT_UI8}};
  const auto canonical = [](VARTYPE vt) -> VARTYPE {
    if (vt == VT_INT) return VT_I4;
    return vt == VT_UINT ? VARTYPE{VT_UI4} : vt;
  };
  from = canonical(from);
  to = canonical(to);
  for (const auto& pair : kPairs) {
    if ((from == pair[0] && to == pair[1]) || (from == pair[1] && to == pair[0])) return true;
  }
  return false;
}

// Converts a by-value source into result, which starts empty.
HRESULT Convert(const VARIANT& source, USHORT flags, VARTYPE vt, VARIANT& result) {
  if (source.vt == vt) return VariantCopy(&result, const_cast<VARIANT*>(&source));
  // Every plain kind but an error code can be emptied or made null; a null
  // value cannot be emptied.
  if (vt == VT_EMPTY || vt == VT_NULL) {
    if (source.vt == VT_ERROR || source.vt > VT_UINT || (vt == VT_EMPTY && source.vt == VT_NULL)) {
      return DISP_E_TYPEMISMATCH;
    }
    result.vt = vt;
    return S_OK;
  }
  if (IsSignChange(source.vt, vt)) {
    result = source;
    result.vt = vt;
    return S_OK;
  }
  if (source.vt == VT_NULL) return DISP_E_TYPEMISMATCH;
  if (vt == VT_BSTR) {
    BSTR text = nullptr;
    const HRESULT hr = ToText(source, flags, text);
    if (SUCCEEDED(hr)) {
      result.vt = VT_BSTR;
      result.bstrVal = text;
    }
    return hr;
  }
  if (vt == VT_UNKNOWN || vt == VT_DISPATCH) {
    IUnknown* object = nullptr;
    const HRESULT hr = ToObject(source, vt, object);
    if (SUCCEEDED(hr)) {
      result.vt = vt;
      result.punkVal = object;
    }
    return hr;
  }
  Number n;
  HRESULT hr = ToNumber(source, n);
  if (FAILED(hr)) return hr;
  switch (vt) {
    case VT_I1: hr = ToInteger(n, result.cVal); break;
    case VT_I2: hr = ToInteger(n, result.iVal); break;
    case VT_I4: hr = ToInteger(n, result.lVal); break;
    case VT_INT: hr = ToInteger(n, result.intVal); break;
    case VT_I8: hr = ToInteger(n, result.llVal); break;
    case VT_UI1: hr = ToInteger(n, result.bVal); break;
    case VT_UI2: hr = ToInteger(n, result.uiVal); break;
    case VT_UI4: hr = ToInteger(n, result.ulVal); break;
    case VT_UINT: hr = ToInteger(n, result.uintVal); break;
    case VT_UI8: hr = ToInteger(n, result.ullVal); break;
    case VT_R8: result.dblVal = ToDouble(n); break;
    case VT_R4: {
      const double value = ToDouble(n);
      if (std::isfinite(value) && std::fabs(value) > std::numeric_limits<float>::max()) return DISP_E_OVERFLOW;
      result.fltVal = static_cast<float>(value);
      break;
    }
    case VT_BOOL: result.boolVal = IsNonZero(n) ? VARIANT_TRUE : VARIANT_FALSE; break;
    default: return DISP_E_TYPEMISMATCH;
  }
  if (SUCCEEDED(hr)) result.vt = vt;
  return hr;
}

bool IsKnownTarget(VARTYPE vt) {
  return (vt & ~VT_TYPEMASK) == 0 && vt != 15 && (vt < VT_VOID || vt == VT_RECORD);
}

}  // namespace

extern "C" HRESULT VariantChangeType(VARIANTARG* pvargDest, VARIANTARG* pvarSrc, USHORT wFlags, VARTYPE vt) {
  if (pvargDest == nullptr || pvarSrc == nullptr) return E_INVALIDARG;
  if (!IsKnownTarget(vt)) return DISP_E_BADVARTYPE;
  VARIANT source;
  VariantInit(&source);
  HRESULT hr = VariantCopyInd(&source, pvarSrc);
  if (FAILED(hr)) return hr;
  VARIANT result;
  VariantInit(&result);
  hr = Convert(source, wFlags, vt, result);
  VariantClear(&source);
  if (FAILED(hr)) {
    VariantClear(&result);
    return hr;
  }
  hr = VariantClear(pvargDest);
  if (FAILED(hr)) {
    VariantClear(&result);
    return hr;
  }
  std::memcpy(static_cast<void*>(pvargDest), &result, sizeof(VARIANT));
  return S_OK;
}
