// VARIANT lifetime: init, clear, copy and copy-with-dereference, with the
// runtime's type validation.
#include <cstring>

#include "platform/native/oleauto.h"

namespace {

constexpr VARTYPE kClsid = 72;

// Base kinds a VARIANT may carry; by-reference and array forms of EMPTY and NULL
// do not exist, nor does kind 15.
HRESULT ValidateType(VARTYPE vt) {
  const VARTYPE extra = vt & ~VT_TYPEMASK;
  const VARTYPE base = vt & VT_TYPEMASK;
  if ((extra & ~(VT_BYREF | VT_ARRAY)) != 0) return DISP_E_BADVARTYPE;
  if (base == 15) return DISP_E_BADVARTYPE;
  if (base >= VT_VOID && base != VT_RECORD && base != kClsid) return DISP_E_BADVARTYPE;
  if (extra != 0 && base <= VT_NULL) return DISP_E_BADVARTYPE;
  return S_OK;
}

// The payload's size for a by-reference value of the given base kind.
std::size_t PayloadSize(VARTYPE base) {
  switch (base) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      return 4;
    default:
      return 8;
  }
}

}  // namespace

extern "C" {

void VariantInit(VARIANTARG* pvarg) {
  pvarg->vt = VT_EMPTY;
  pvarg->wReserved1 = pvarg->wReserved2 = pvarg->wReserved3 = 0;
}

HRESULT VariantClear(VARIANTARG* pvarg) {
  const HRESULT hr = ValidateType(pvarg->vt);
  if (FAILED(hr)) return hr;
  if ((pvarg->vt & VT_BYREF) == 0) {
    if (pvarg->vt == VT_BSTR) {
      SysFreeString(pvarg->bstrVal);
    } else if (pvarg->vt == VT_UNKNOWN || pvarg->vt == VT_DISPATCH) {
      if (pvarg->punkVal != nullptr) pvarg->punkVal->Release();
    }
  }
  pvarg->vt = VT_EMPTY;
  return S_OK;
}

HRESULT VariantCopy(VARIANTARG* pvargDest, VARIANTARG* pvargSrc) {
  if (pvargSrc->vt == kClsid || FAILED(ValidateType(pvargSrc->vt))) return DISP_E_BADVARTYPE;
  if (pvargSrc == pvargDest) return S_OK;
  const HRESULT hr = VariantClear(pvargDest);
  if (FAILED(hr)) return hr;
  std::memcpy(static_cast<void*>(pvargDest), pvargSrc, sizeof(VARIANT));
  if ((pvargSrc->vt & VT_BYREF) != 0) return S_OK;
  // A null string copies to an empty one, as the system's VariantCopy does.
  if (pvargSrc->vt == VT_BSTR) {
    pvargDest->bstrVal = SysAllocStringByteLen(reinterpret_cast<const char*>(pvargSrc->bstrVal),
                                               SysStringByteLen(pvargSrc->bstrVal));
    if (pvargDest->bstrVal == nullptr) {
      pvargDest->vt = VT_EMPTY;
      return E_OUTOFMEMORY;
    }
  } else if (pvargSrc->vt == VT_UNKNOWN || pvargSrc->vt == VT_DISPATCH) {
    if (pvargSrc->punkVal != nullptr) pvargSrc->punkVal->AddRef();
  }
  return S_OK;
}

HRESULT VariantCopyInd(VARIANT* pvarDest, VARIANTARG* pvargSrc) {
  if ((pvargSrc->vt & VT_BYREF) == 0) return VariantCopy(pvarDest, pvargSrc);
  if (FAILED(ValidateType(pvargSrc->vt))) return DISP_E_BADVARTYPE;
  const VARTYPE base = pvargSrc->vt & ~VT_BYREF;
  if ((base & VT_ARRAY) != 0 || base == VT_RECORD) return E_INVALIDARG;  // never built here

  VARIANT source;
  VariantInit(&source);
  if (base == VT_VARIANT) {
    const VARIANT* inner = pvargSrc->pvarVal;
    if ((inner->vt & VT_BYREF) != 0 || inner->vt == VT_VARIANT) return E_INVALIDARG;
    std::memcpy(static_cast<void*>(&source), inner, sizeof(VARIANT));
  } else if (base == VT_DECIMAL) {
    source.decVal = *pvargSrc->pdecVal;
    source.vt = VT_DECIMAL;
  } else {
    source.vt = base;
    std::memcpy(&source.llVal, pvargSrc->byref, PayloadSize(base));
  }
  VARIANT result;
  VariantInit(&result);
  const HRESULT hr = VariantCopy(&result, &source);
  if (FAILED(hr)) return hr;
  const HRESULT cleared = pvarDest == pvargSrc ? S_OK : VariantClear(pvarDest);
  if (FAILED(cleared)) {
    VariantClear(&result);
    return cleared;
  }
  std::memcpy(static_cast<void*>(pvarDest), &result, sizeof(VARIANT));
  return S_OK;
}

}  // extern "C"
