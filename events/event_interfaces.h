// The five change events. Object references are IDispatch so that read-only
// views and grouped objects can be sources too; the stopped flags are 16-bit
// 1 / 0 (the columns event runs the other way round: it starts stopped).
#pragma once

#include "core/interface_id.h"

namespace brevo {

struct IRecordChangeEvent : IDispatch {
  STDMETHOD(Initialize)(IDispatch* pSource, LONG index) = 0;
  STDMETHOD(Stop)() = 0;
  STDMETHOD(IsStopped)(VARIANT_BOOL* RetVal) = 0;
  STDMETHOD(GetIndex)(LONG* RetVal) = 0;
  STDMETHOD(GetSource)(IDispatch** RetVal) = 0;
};

struct IColumnsChangeEvent : IDispatch {
  STDMETHOD(Initialize)(IDispatch* pSource, IDispatch* pColumnChanged) = 0;
  STDMETHOD(Stop)() = 0;
  STDMETHOD(IsStopped)(VARIANT_BOOL* RetVal) = 0;
  STDMETHOD(GetColumnChanged)(IDispatch** RetVal) = 0;
  STDMETHOD(GetSource)(IDispatch** RetVal) = 0;
};

struct IRecordListChangeEvent : IDispatch {
  STDMETHOD(Initialize)(IDispatch* pSource, IDispatch* pRecordChanged) = 0;
  STDMETHOD(Stop)() = 0;
  STDMETHOD(IsStopped)(VARIANT_BOOL* RetVal) = 0;
  STDMETHOD(GetRecordChanged)(IDispatch** RetVal) = 0;
  STDMETHOD(GetSource)(IDispatch** RetVal) = 0;
};

struct IRecordListValueChangeEvent : IDispatch {
  STDMETHOD(Initialize)(IDispatch* pSource, IDispatch* pRecordChanged, LONG index) = 0;
  STDMETHOD(Stop)() = 0;
  STDMETHOD(IsStopped)(VARIANT_BOOL* RetVal) = 0;
  STDMETHOD(GetRecordChanged)(IDispatch** RetVal) = 0;
  STDMETHOD(GetIndex)(LONG* RetVal) = 0;
  STDMETHOD(GetSource)(IDispatch** RetVal) = 0;
};

struct IPropertyChangeEvent : IDispatch {
  STDMETHOD(Initialize)(IDispatch* pSource, BSTR propertyName, BSTR oldValue, BSTR newValue) = 0;
  STDMETHOD(GetPropertyName)(BSTR* RetVal) = 0;
  STDMETHOD(GetNewValue)(BSTR* RetVal) = 0;
  STDMETHOD(GetOldValue)(BSTR* RetVal) = 0;
  STDMETHOD(GetPropagationId)(IUnknown** RetVal) = 0;
  STDMETHOD(SetPropagationId)(IUnknown* id) = 0;
  STDMETHOD(GetSource)(IDispatch** RetVal) = 0;
};

}  // namespace brevo

BREVO_INTERFACE_ID(brevo::IRecordChangeEvent, 0xF8A6D1AA, 0x922E, 0x4D4A, 0x8A, 0x9E, 0x92, 0x07, 0x1B, 0xFD, 0x26, 0x83);
BREVO_INTERFACE_ID(brevo::IColumnsChangeEvent, 0xE73801BE, 0x23A4, 0x4420, 0x8D, 0x50, 0x06, 0xAA, 0xA1, 0x96, 0xF8, 0xAD);
BREVO_INTERFACE_ID(brevo::IRecordListChangeEvent, 0xDD47BCDD, 0x2491, 0x49CE, 0x83, 0x7C, 0x1D, 0x33, 0x3A, 0x05, 0x75, 0x6C);
BREVO_INTERFACE_ID(brevo::IRecordListValueChangeEvent, 0x20E73F15, 0x2E19, 0x45A1, 0xA9, 0x65, 0x76, 0x64, 0xC3, 0x83, 0x01, 0xC7);
BREVO_INTERFACE_ID(brevo::IPropertyChangeEvent, 0x38BC59B8, 0xBD8F, 0x4385, 0xA0, 0xC8, 0x2A, 0xC5, 0xD3, 0x23, 0x5F, 0xB4);
