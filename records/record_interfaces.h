// Records: the dual interfaces clients call and the C++-only interfaces
// through which lists, iterators and grouped views reach them.
#pragma once

#include "columns/column_interfaces.h"
#include <vector>

#include "core/unique_variant.h"

namespace brevo {

struct IRecord : IDispatch {
  STDMETHOD(CompareTo)(IDispatch* Other, LONG* retVal) = 0;
  STDMETHOD(get_Columns)(IColumns** RetVal) = 0;
  STDMETHOD(GetValue)(ULONG index, VARIANT* RetVal) = 0;
  STDMETHOD(GetValueAsBoolean)(ULONG index, VARIANT_BOOL* RetVal) = 0;
  STDMETHOD(GetValueAsDouble)(ULONG index, double* RetVal) = 0;
  STDMETHOD(GetValueAsFloat)(ULONG index, float* RetVal) = 0;
  STDMETHOD(GetValueAsInt32)(ULONG index, LONG* RetVal) = 0;
  STDMETHOD(GetValueAsInt16)(ULONG index, SHORT* RetVal) = 0;
  STDMETHOD(GetValueAsInt64)(ULONG index, LONGLONG* RetVal) = 0;
  STDMETHOD(GetValueAsString)(ULONG index, BSTR* RetVal) = 0;
  STDMETHOD(GetValueByName)(BSTR name, VARIANT* RetVal) = 0;
  STDMETHOD(EnableRecordEvents)(VARIANT_BOOL flag) = 0;
  STDMETHOD(AddRecordChangeListener)(IRecordChangeListener* pVal) = 0;
  STDMETHOD(RemoveRecordChangeListener)(IRecordChangeListener* pVal) = 0;
  STDMETHOD(GetValueAsByte)(ULONG index, BYTE* RetVal) = 0;
};

struct IMutableRecord : IDispatch {
  STDMETHOD(Clear)() = 0;
  STDMETHOD(CompareTo)(IDispatch* Other, LONG* retVal) = 0;
  STDMETHOD(get_Record)(IRecord** RetVal) = 0;
  STDMETHOD(GetValue)(ULONG index, VARIANT* RetVal) = 0;
  STDMETHOD(SetValue)(ULONG index, VARIANT newVal) = 0;
  STDMETHOD(GetValueAsBoolean)(ULONG index, VARIANT_BOOL* RetVal) = 0;
  STDMETHOD(SetValueAsBoolean)(ULONG index, VARIANT_BOOL newVal) = 0;
  STDMETHOD(GetValueAsDouble)(ULONG index, double* RetVal) = 0;
  STDMETHOD(SetValueAsDouble)(ULONG index, double newVal) = 0;
  STDMETHOD(GetValueAsFloat)(ULONG index, float* RetVal) = 0;
  STDMETHOD(SetValueAsFloat)(ULONG index, float newVal) = 0;
  STDMETHOD(GetValueAsInt32)(ULONG index, LONG* RetVal) = 0;
  STDMETHOD(SetValueAsInt32)(ULONG index, LONG newVal) = 0;
  STDMETHOD(GetValueAsInt64)(ULONG index, LONGLONG* RetVal) = 0;
  STDMETHOD(SetValueAsInt64)(ULONG index, LONGLONG newVal) = 0;
  STDMETHOD(GetValueAsInt16)(ULONG index, SHORT* RetVal) = 0;
  STDMETHOD(SetValueAsInt16)(ULONG index, SHORT newVal) = 0;
  STDMETHOD(GetValueAsString)(ULONG index, BSTR* RetVal) = 0;
  STDMETHOD(SetValueAsString)(ULONG index, BSTR newVal) = 0;
  STDMETHOD(GetValueByName)(BSTR name, VARIANT* RetVal) = 0;
  STDMETHOD(SetValueByName)(BSTR name, VARIANT newVal) = 0;
  STDMETHOD(get_Columns)(IMutableColumns** RetVal) = 0;
  STDMETHOD(EnableMutableRecordEvents)(VARIANT_BOOL flag) = 0;
  STDMETHOD(AddRecordChangeListener)(IRecordChangeListener* pVal) = 0;
  STDMETHOD(RemoveRecordChangeListener)(IRecordChangeListener* pVal) = 0;
  STDMETHOD(GetValueAsByte)(ULONG index, BYTE* RetVal) = 0;
  STDMETHOD(SetValueAsByte)(ULONG index, BYTE newVal) = 0;
};

// Reading a record of any shape.
struct IRecordRaw : IDispatch {
  // An owned copy of the cell at a column index.
  virtual unique_variant GetValue(ULONG index) = 0;
  // The stored cell itself, with GetValue's checks, or null where the record
  // cannot lend it (then GetValue is the way).
  virtual const VARIANT* PeekValue(ULONG index) = 0;
  virtual ULONG ColumnCount() = 0;
};

// What the list, the factory and iterators do to a mutable record.
struct IMutableRecordRaw : IDispatch {
  // Binds the record to its columns (a new empty collection when null).
  virtual void Create(IMutableColumns* columns) = 0;
  // Replaces the values; values is left empty.
  virtual void AssignValues(std::vector<unique_variant>& values) = 0;
  virtual void SetValue(ULONG index, const VARIANT& newVal) = 0;
};

}  // namespace brevo

BREVO_INTERFACE_ID(brevo::IRecord, 0xBBBBF8A0, 0xE426, 0x4BD3, 0xBA, 0x9D, 0x7C, 0x29, 0x7A, 0x5B, 0x8B, 0x0D);
BREVO_INTERFACE_ID(brevo::IMutableRecord, 0xAC183500, 0xEE51, 0x4056, 0x89, 0x59, 0x12, 0x42, 0x48, 0xD7, 0x81, 0x6E);
BREVO_INTERFACE_ID(brevo::IRecordRaw, 0xD02697EF, 0xB9C1, 0x4C6A, 0xB7, 0x10, 0xDA, 0xB9, 0x7B, 0xC6, 0x9A, 0xC2);
BREVO_INTERFACE_ID(brevo::IMutableRecordRaw, 0x2DEFD51F, 0xB913, 0x459D, 0x8A, 0x11, 0x9D, 0xE9, 0x33, 0xF9, 0x9C, 0x7D);
