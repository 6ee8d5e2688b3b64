// Columns and column collections: the dual interfaces clients call, and the
// C++-only interfaces through which other objects of the library reach them.
#pragma once

#include "core/bstr_t.h"
#include "core/com_ptr.h"
#include "events/listener_interfaces.h"

namespace brevo {

struct IColumn : IDispatch {
  STDMETHOD(CompareTo)(IDispatch* Other, LONG* retVal) = 0;
  STDMETHOD(get_DisplayName)(BSTR* RetVal) = 0;
  STDMETHOD(get_ColumnName)(BSTR* RetVal) = 0;
  STDMETHOD(get_ColumnType)(ULONG* RetVal) = 0;
  STDMETHOD(AddPropertyChangeListener)(IPropertyChangeListener* pVal) = 0;
  STDMETHOD(RemovePropertyChangeListener)(IPropertyChangeListener* pVal) = 0;
};

struct IMutableColumn : IDispatch {
  STDMETHOD(Create)(BSTR name, ULONG type) = 0;
  STDMETHOD(CompareTo)(IDispatch* Other, LONG* retVal) = 0;
  STDMETHOD(get_DisplayName)(BSTR* RetVal) = 0;
  STDMETHOD(put_DisplayName)(BSTR newVal) = 0;
  STDMETHOD(get_Column)(IColumn** RetVal) = 0;
  STDMETHOD(get_ColumnName)(BSTR* RetVal) = 0;
  STDMETHOD(put_ColumnName)(BSTR newVal) = 0;
  STDMETHOD(get_ColumnType)(ULONG* RetVal) = 0;
  STDMETHOD(AddPropertyChangeListener)(IPropertyChangeListener* pVal) = 0;
  STDMETHOD(RemovePropertyChangeListener)(IPropertyChangeListener* pVal) = 0;
};

// What every column shape answers, read-only.
struct IColumnRaw : IDispatch {
  virtual _bstr_t ColumnName() = 0;
  virtual _bstr_t DisplayName() = 0;
  virtual ULONG ColumnType() = 0;
};

struct IMutableColumnRaw : IDispatch {
  virtual void Create(const _bstr_t& name, ULONG type) = 0;
  virtual void SetColumnName(const _bstr_t& name) = 0;
  virtual void SetDisplayName(const _bstr_t& name) = 0;
  // A new, independent column with this one's names and type.
  virtual com_ptr<IMutableColumn> Clone() = 0;
};

struct IColumns : IDispatch {
  STDMETHOD(CompareTo)(IDispatch* Other, LONG* retVal) = 0;
  STDMETHOD(IndexOf)(BSTR name, LONG* RetVal) = 0;
  STDMETHOD(get_Column)(ULONG index, IColumn** RetVal) = 0;
  STDMETHOD(get_Size)(LONG* RetVal) = 0;
  STDMETHOD(EnableColumnsEvents)(VARIANT_BOOL flag) = 0;
  STDMETHOD(AddColumnsChangeListener)(IColumnsChangeListener* pVal) = 0;
  STDMETHOD(RemoveColumnsChangeListener)(IColumnsChangeListener* pVal) = 0;
  STDMETHOD(AddPropertyChangeListener)(IPropertyChangeListener* pVal) = 0;
  STDMETHOD(RemovePropertyChangeListener)(IPropertyChangeListener* pVal) = 0;
};

struct IMutableColumns : IDispatch {
  STDMETHOD(Clear)() = 0;
  STDMETHOD(CompareTo)(IDispatch* Other, LONG* retVal) = 0;
  STDMETHOD(AddColumn)(BSTR name, ULONG type, IMutableColumn** RetVal) = 0;
  STDMETHOD(RemoveColumn)(ULONG index) = 0;
  STDMETHOD(IndexOf)(BSTR name, LONG* RetVal) = 0;
  STDMETHOD(get_MutableColumn)(ULONG index, IMutableColumn** RetVal) = 0;
  STDMETHOD(get_Columns)(IColumns** RetVal) = 0;
  STDMETHOD(get_Size)(LONG* RetVal) = 0;
  STDMETHOD(EnableMutableColumnsEvents)(VARIANT_BOOL flag) = 0;
  STDMETHOD(AddColumnsChangeListener)(IColumnsChangeListener* pVal) = 0;
  STDMETHOD(RemoveColumnsChangeListener)(IColumnsChangeListener* pVal) = 0;
  STDMETHOD(AddPropertyChangeListener)(IPropertyChangeListener* pVal) = 0;
  STDMETHOD(RemovePropertyChangeListener)(IPropertyChangeListener* pVal) = 0;
};

// The collection as records, lists and grouped views reach it. (Names differ
// from the dual interface's where the arguments would be the same.)
struct IMutableColumnsRaw : IDispatch {
  virtual ULONG Size() = 0;
  virtual LONG IndexOf(const _bstr_t& name) = 0;
  // The column at a visible position; an index equal to the size aborts.
  virtual com_ptr<IMutableColumn> MutableColumnAt(ULONG index) = 0;
  virtual ULONG ColumnTypeAt(ULONG index) = 0;
  virtual com_ptr<IMutableColumn> AddColumn(const _bstr_t& name, ULONG type) = 0;
  virtual void RemoveColumnAt(ULONG index) = 0;
  virtual void ClearColumns() = 0;
  // 0 when both hold pairwise equal columns, -1 otherwise.
  virtual LONG CompareTo(IMutableColumnsRaw* other) = 0;
  virtual com_ptr<IMutableColumns> Clone() = 0;
  virtual void EnableEvents(VARIANT_BOOL flag) = 0;
};

// The read-only view leads to the collection it shows.
struct IColumnsRaw : IDispatch {
  virtual com_ptr<IMutableColumns> GetMutableColumns() = 0;
};

// The index map between visible column positions and storage positions.
struct IMutableColumnsManager : IDispatch {
  virtual ULONG GetIndexOfColumn(ULONG index) = 0;
  // The first position whose entry is index, or -1.
  virtual LONG GetTrueIndexOfColumn(ULONG index) = 0;
  virtual void SetTrueIndexOfColumn(ULONG index, ULONG value) = 0;
  // index when the column it maps to has a non-empty name containing group,
  // -1 otherwise.
  virtual LONG GetCloumnIndicesByGroup(const _bstr_t& group, ULONG index) = 0;
};

}  // namespace brevo

BREVO_INTERFACE_ID(brevo::IColumn, 0x22C1C657, 0x696B, 0x47C7, 0x96, 0xD9, 0xDA, 0xAC, 0x40, 0x9F, 0x5B, 0xFC);
BREVO_INTERFACE_ID(brevo::IMutableColumn, 0xB788C60C, 0x7291, 0x4CD7, 0xB1, 0x00, 0x00, 0xCE, 0xD8, 0x51, 0x36, 0xB5);
BREVO_INTERFACE_ID(brevo::IColumnRaw, 0x8F36EB56, 0xD954, 0x4524, 0x94, 0xE6, 0x44, 0xAD, 0x6A, 0x11, 0x9C, 0x71);
BREVO_INTERFACE_ID(brevo::IMutableColumnRaw, 0x738C990C, 0x1937, 0x48FB, 0x82, 0x42, 0x8D, 0x81, 0xB8, 0xA7, 0x0C, 0x0B);
BREVO_INTERFACE_ID(brevo::IColumns, 0xF8243264, 0x640F, 0x4125, 0x9C, 0xC2, 0xD0, 0x3C, 0x75, 0x0D, 0x1D, 0x3E);
BREVO_INTERFACE_ID(brevo::IMutableColumns, 0xE13D321A, 0x4278, 0x421A, 0xAF, 0xCD, 0x7B, 0x7D, 0x3F, 0xDB, 0xD9, 0xCB);
BREVO_INTERFACE_ID(brevo::IColumnsRaw, 0xB9060EFA, 0xE943, 0x417D, 0x9F, 0x79, 0x63, 0x89, 0x2B, 0x95, 0x6C, 0xE6);
BREVO_INTERFACE_ID(brevo::IMutableColumnsRaw, 0x5A2B67EA, 0x1C8D, 0x46C5, 0x82, 0x07, 0x64, 0x61, 0xAA, 0xA9, 0x84, 0x02);
BREVO_INTERFACE_ID(brevo::IMutableColumnsManager, 0xB4B08060, 0xAB27, 0x4AA1, 0x81, 0x49, 0xC2, 0x71, 0xD8, 0x99, 0x5F, 0x2D);
