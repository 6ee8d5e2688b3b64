#include "fuzz/support/fuzz_values.h"

#include <cstring>
#include <limits>

namespace brevo::fuzz {
namespace {

// Every base kind a VARIANT may carry on its own.
constexpr VARTYPE kKinds[] = {VT_EMPTY, VT_NULL, VT_I2,   VT_I4,  VT_R4,      VT_R8,   VT_CY,  VT_DATE,
                              VT_BSTR,  VT_DISPATCH, VT_ERROR, VT_BOOL, VT_UNKNOWN, VT_DECIMAL, VT_I1, VT_UI1,
                              VT_UI2,   VT_UI4,  VT_I8,   VT_UI8, VT_INT,     VT_UINT, VT_RECORD};
// Kinds the runtime refuses: the hole at 15, kinds meant for type descriptions
// only (pointer, safe array, wide text), VT_CLSID, and flags outside
// by-reference and array.
constexpr VARTYPE kRefused[] = {15, VT_VOID, VT_HRESULT, 26, 27, 31, 72, 0xFFF,
                                VT_BSTR | 0x1000, VT_I4 | 0x8000, VT_VARIANT};

constexpr double kReals[] = {0.0, -0.0, 1.5, -1e308, 1e-320, 2147483648.0, -2147483649.0, 9.3e18};
constexpr LONGLONG kInt64s[] = {0, 1, -1, std::numeric_limits<LONGLONG>::min(), std::numeric_limits<LONGLONG>::max(),
                                0x80000000LL, -0x80000001LL, 0x100000000LL};
constexpr LONG kInt32s[] = {0, 1, -1, std::numeric_limits<LONG>::min(), std::numeric_limits<LONG>::max(), 32768, 255, 256};

}  // namespace

double ValueMaker::Real() {
  switch (in_.Pick(6)) {
    case 0: return std::numeric_limits<double>::quiet_NaN();
    case 1: return -std::numeric_limits<double>::infinity();
    case 2: return std::numeric_limits<double>::infinity();
    case 3: return kReals[in_.Pick(std::size(kReals))];
    default: return in_.Number<double>();  // any bit pattern, signalling NaNs included
  }
}

float ValueMaker::Single() {
  switch (in_.Pick(4)) {
    case 0: return std::numeric_limits<float>::quiet_NaN();
    case 1: return std::numeric_limits<float>::infinity();
    case 2: return static_cast<float>(kReals[in_.Pick(std::size(kReals))]);
    default: return in_.Number<float>();
  }
}

LONGLONG ValueMaker::Int64() { return in_.Pick(2) == 0 ? kInt64s[in_.Pick(std::size(kInt64s))] : in_.Number<LONGLONG>(); }

LONG ValueMaker::Int32() { return in_.Pick(2) == 0 ? kInt32s[in_.Pick(std::size(kInt32s))] : in_.Number<LONG>(); }

SHORT ValueMaker::Int16() { return in_.Number<SHORT>(); }

VARIANT_BOOL ValueMaker::Boolean() {
  constexpr VARIANT_BOOL kBooleans[] = {VARIANT_TRUE, VARIANT_FALSE, 1, 2};
  return kBooleans[in_.Pick(4)];
}

_bstr_t ValueMaker::Text() {
  const std::string bytes = in_.Bytes();
  if (bytes.empty() && in_.Pick(2) == 0) return _bstr_t();  // the null string
  // Any byte length, odd ones included: a BSTR need not hold whole characters.
  _bstr_t text;
  text.Attach(SysAllocStringByteLen(bytes.data(), static_cast<UINT>(bytes.size())));
  return text;
}

com_ptr<IUnknown> ValueMaker::Object() {
  const std::size_t choice = in_.Pick(objects_.size() + 1);
  if (choice == objects_.size()) return nullptr;
  const com_ptr<IUnknown>& object = objects_[choice];
  bool known = false;
  for (const com_ptr<IUnknown>& handed : handed_) known = known || handed == object;
  if (!known) handed_.push_back(object);
  return object;
}

void ValueMaker::FillPlain(VARIANT& value, VARTYPE base) {
  switch (base) {
    case VT_I1: case VT_UI1: value.bVal = in_.Byte(); break;
    case VT_I2: case VT_UI2: value.iVal = Int16(); break;
    case VT_BOOL: value.boolVal = Boolean(); break;
    case VT_I4: case VT_UI4: case VT_INT: case VT_UINT: case VT_ERROR: value.lVal = Int32(); break;
    case VT_I8: case VT_UI8: case VT_CY: value.llVal = Int64(); break;
    case VT_R4: value.fltVal = Single(); break;
    case VT_R8: case VT_DATE: value.dblVal = Real(); break;
    case VT_BSTR: value.bstrVal = Text().Detach(); break;
    case VT_DISPATCH: case VT_UNKNOWN: {
      // A VT_DISPATCH value carries the object's IDispatch, as callers pass it.
      const com_ptr<IUnknown> object = Object();
      if (base == VT_DISPATCH) value.pdispVal = object.try_query<IDispatch>().detach();
      else value.punkVal = com_ptr<IUnknown>(object).detach();
      break;
    }
    case VT_DECIMAL:
      // The decimal overlays the whole VARIANT, its kind included.
      for (std::size_t i = 0; i < sizeof(DECIMAL); ++i) reinterpret_cast<unsigned char*>(&value.decVal)[i] = in_.Byte();
      break;
    default: break;  // empty, null, record: no payload
  }
  value.vt = base;
}

void ValueMaker::PointAt(VARIANT& value, VARTYPE base) {
  if (base == VT_BSTR || base == VT_UNKNOWN || base == VT_DISPATCH || base == VT_VARIANT) {
    unique_variant& pointee = pointees_.emplace_back();
    if (base == VT_VARIANT) {
      FillPlain(pointee.get(), kKinds[in_.Pick(std::size(kKinds))]);
      value.pvarVal = &pointee.get();
    } else {
      FillPlain(pointee.get(), base);
      value.byref = &pointee.get().bstrVal;  // the payload slot, whichever member it is
    }
  } else {
    std::array<unsigned char, 16>& bytes = raw_.emplace_back();
    for (unsigned char& b : bytes) b = in_.Byte();
    value.byref = bytes.data();
  }
  value.vt = base | VT_BYREF;
}

unique_variant ValueMaker::Value() {
  unique_variant value;
  const std::uint8_t form = in_.Byte();
  if (form >= 0xE0) {
    value->vt = kRefused[in_.Pick(std::size(kRefused))];
    value->llVal = 0;
    return value;
  }
  VARTYPE base = kKinds[in_.Pick(std::size(kKinds))];
  if (form >= 0xC0) {
    // A by-reference or array form; the empty and null kinds have none.
    if (base <= VT_NULL) base = VT_VARIANT;
    if (form & 1) {
      PointAt(value.get(), base);
    } else {
      value->parray = nullptr;
      value->vt = base | VT_ARRAY;
    }
    return value;
  }
  FillPlain(value.get(), base);
  return value;
}

}  // namespace brevo::fuzz
