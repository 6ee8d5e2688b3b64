// Record lists, their iterators and the client callbacks that filter and sort.
#pragma once

#include "records/record_interfaces.h"

namespace brevo {

// Client callbacks.
struct IRecordCondition : IDispatch {
  STDMETHOD(Evaluate)(IMutableRecord* record, VARIANT_BOOL* RetVal) = 0;
};

// Both records arrive as VT_UNKNOWN variants.
struct IRecordComparator : IDispatch {
  STDMETHOD(Compare)(VARIANT first, VARIANT second, LONG* RetVal) = 0;
};

struct IRecordListIterator : IDispatch {
  STDMETHOD(Find)(IRecordCondition* Condition, VARIANT_BOOL* RetVal) = 0;
  STDMETHOD(FindNext)(VARIANT_BOOL* pVal) = 0;
  STDMETHOD(HasNext)(VARIANT_BOOL* RetVal) = 0;
  // An IMutableRecord from a mutable iterator, an IRecord from a const one.
  STDMETHOD(Next)(IDispatch** RetVal) = 0;
  STDMETHOD(Remove)() = 0;
  STDMETHOD(IsSynchronized)(VARIANT_BOOL* RetVal) = 0;
};

struct IRecordList : IDispatch {
  STDMETHOD(CompareTo)(IDispatch* other, LONG* retVal) = 0;
  STDMETHOD(get_Columns)(IColumns** RetVal) = 0;
  STDMETHOD(get_Size)(ULONG* RetVal) = 0;
  STDMETHOD(GetIterator)(VARIANT_BOOL synchronized, IRecordListIterator** RetVal) = 0;
  STDMETHOD(GetFilteredIterator)(IRecordCondition* condition, VARIANT_BOOL synchronized,
                                 IRecordListIterator** RetVal) = 0;
  STDMETHOD(GetSortedIterator)(IRecordComparator* comparator, VARIANT_BOOL synchronized,
                               IRecordListIterator** RetVal) = 0;
  STDMETHOD(EnableRecordListEvents)(VARIANT_BOOL flag) = 0;
  STDMETHOD(AddRecordListChangeListener)(IRecordListChangeListener* pVal) = 0;
  STDMETHOD(RemoveRecordListChangeListener)(IRecordListChangeListener* pVal) = 0;
  STDMETHOD(AddRecordListValueChangeListener)(IRecordListValueChangeListener* pVal) = 0;
  STDMETHOD(RemoveRecordListValueChangeListener)(IRecordListValueChangeListener* pVal) = 0;
};

struct IMutableRecordList : IDispatch {
  STDMETHOD(Create)(IMutableColumns* columns) = 0;
  STDMETHOD(AddRecord)(IMutableRecord** RetVal) = 0;
  STDMETHOD(Clear)() = 0;
  STDMETHOD(CompareTo)(IMutableRecordList* other, LONG* retVal) = 0;
  STDMETHOD(get_Columns)(IMutableColumns** RetVal) = 0;
  STDMETHOD(get_RecordList)(IRecordList** RetVal) = 0;
  STDMETHOD(get_Size)(ULONG* RetVal) = 0;
  STDMETHOD(GetIterator)(VARIANT_BOOL synchronized, IRecordListIterator** RetVal) = 0;
  STDMETHOD(GetFilteredIterator)(IRecordCondition* condition, VARIANT_BOOL synchronized,
                                 IRecordListIterator** RetVal) = 0;
  STDMETHOD(GetSortedIterator)(IRecordComparator* comparator, VARIANT_BOOL synchronized,
                               IRecordListIterator** RetVal) = 0;
  STDMETHOD(EnableMutableRecordListEvents)(VARIANT_BOOL flag) = 0;
  STDMETHOD(AddRecordListChangeListener)(IRecordListChangeListener* pVal) = 0;
  STDMETHOD(RemoveRecordListChangeListener)(IRecordListChangeListener* pVal) = 0;
  STDMETHOD(AddRecordListValueChangeListener)(IRecordListValueChangeListener* pVal) = 0;
  STDMETHOD(RemoveRecordListValueChangeListener)(IRecordListValueChangeListener* pVal) = 0;
};

// A row: element 0 is the record. The cells of a row are the record's own;
// a row therefore only needs its record.
using Row = com_ptr<IMutableRecord>;
using RowSequence = std::vector<Row>;

// The read-only list leads to the list it shows.
struct IRecordListRaw : IDispatch {
  virtual com_ptr<IMutableRecordList> GetMutableRecordList() = 0;
};

// An iterator walks one of a list's sequences in place (synchronized) or its
// own copy of it; `owner` is kept alive while the iterator walks it in place.
struct IMutableIteratorRaw : IDispatch {
  virtual void Bind(RowSequence& sequence, VARIANT_BOOL synchronized, IUnknown* owner) = 0;
  virtual void Create(IRecordCondition* condition) = 0;
};

struct IAddToList : IDispatch {
  STDMETHOD(AddToList)(IMutableRecord* record) = 0;
};

struct IConstIteratorRaw : IDispatch {
  virtual void Create(IRecordListIterator* iterator) = 0;
};

}  // namespace brevo

BREVO_INTERFACE_ID(brevo::IRecordCondition, 0x41D74769, 0x7E95, 0x4EC1, 0xA1, 0xE6, 0xAF, 0xB8, 0xE6, 0xA0, 0xFD, 0x21);
BREVO_INTERFACE_ID(brevo::IRecordComparator, 0xB7362E29, 0x946F, 0x40F8, 0x99, 0xB0, 0x25, 0xB8, 0x96, 0x5C, 0xBE, 0x67);
BREVO_INTERFACE_ID(brevo::IRecordListIterator, 0xC25D7835, 0xBF2D, 0x4474, 0x84, 0x62, 0x42, 0x9A, 0x23, 0x04, 0xAC, 0x4E);
BREVO_INTERFACE_ID(brevo::IRecordList, 0x09A424C2, 0x1555, 0x49DA, 0x96, 0x75, 0x54, 0x9A, 0xAA, 0x69, 0xF7, 0xEA);
BREVO_INTERFACE_ID(brevo::IMutableRecordList, 0x7C5AB789, 0x580C, 0x49F7, 0xB9, 0xC1, 0x49, 0x80, 0xA2, 0xB1, 0x20, 0xC5);
BREVO_INTERFACE_ID(brevo::IRecordListRaw, 0x4A65BFBA, 0xB9E2, 0x4B13, 0xAD, 0x7B, 0xC8, 0x56, 0x96, 0x08, 0x40, 0xA6);
BREVO_INTERFACE_ID(brevo::IMutableIteratorRaw, 0xE748B509, 0xA222, 0x46FC, 0x80, 0xD5, 0x46, 0x7C, 0x07, 0x37, 0x86, 0x84);
BREVO_INTERFACE_ID(brevo::IAddToList, 0xB9F2D4A6, 0xA342, 0x41BE, 0xBA, 0x84, 0x97, 0xF2, 0xBA, 0x23, 0x9C, 0xAE);
BREVO_INTERFACE_ID(brevo::IConstIteratorRaw, 0xEC054CD9, 0x816E, 0x4A75, 0x80, 0xCB, 0x2A, 0x9B, 0xED, 0x6E, 0xFF, 0x58);

template <>
inline constexpr bool brevo::is_callback_interface<brevo::IRecordCondition> = true;
template <>
inline constexpr bool brevo::is_callback_interface<brevo::IRecordComparator> = true;
