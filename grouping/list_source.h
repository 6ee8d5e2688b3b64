// The source of a grouped list, read-only or mutable, reached the same way.
// Every failure of the source is raised with the called interface's identity.
#pragma once

#include "lists/list_interfaces.h"

namespace brevo {

class ListSource {
 public:
  void Bind(IDispatch* source);
  explicit operator bool() const noexcept { return static_cast<bool>(object_); }
  com_ptr<IDispatch> Object() const { return object_; }
  bool IsMutable() const noexcept { return static_cast<bool>(mutable_); }

  ULONG Size();
  // The source's read-only column view (which forwards to its collection).
  com_ptr<IColumns> Columns();
  LONG CompareTo(IDispatch* other);
  com_ptr<IRecordListIterator> GetIterator(VARIANT_BOOL synchronized);
  com_ptr<IRecordListIterator> GetFilteredIterator(IRecordCondition* condition, VARIANT_BOOL synchronized);
  com_ptr<IRecordListIterator> GetSortedIterator(IRecordComparator* comparator, VARIANT_BOOL synchronized);
  com_ptr<IMutableRecord> AddRecord();
  void Listen(IRecordListChangeListener* records, IRecordListValueChangeListener* values);
  // Leaves what Listen joined; failures are ignored (the listener may have
  // been removed by the client already).
  void StopListening(IRecordListChangeListener* records, IRecordListValueChangeListener* values) noexcept;

 private:
  void Check(HRESULT hr);

  com_ptr<IDispatch> object_;
  com_ptr<IMutableRecordList> mutable_;
  com_ptr<IRecordList> readOnly_;
};

}  // namespace brevo
