#include "lists/const_iterator.h"

namespace brevo {

void ConstIteratorImpl::Create(IRecordListIterator* iterator) {
  if (iterator != wrapped_.get()) wrapped_ = com_ptr<IRecordListIterator>(iterator);
}

com_ptr<IRecordListIterator> ConstIteratorImpl::Wrapped() const {
  if (!wrapped_) _com_issue_error(E_POINTER);
  return wrapped_;
}

VARIANT_BOOL ConstIteratorImpl::Ask(HRESULT (STDMETHODCALLTYPE IRecordListIterator::*method)(VARIANT_BOOL*)) {
  const auto wrapped = Wrapped();
  VARIANT_BOOL result = VARIANT_FALSE;
  ThrowIfFailed((wrapped.get()->*method)(&result), wrapped.get());
  return result;
}

VARIANT_BOOL ConstIteratorImpl::Find(IRecordCondition* condition) {
  const auto wrapped = Wrapped();
  VARIANT_BOOL result = VARIANT_FALSE;
  ThrowIfFailed(wrapped->Find(condition, &result), wrapped.get());
  return result;
}

VARIANT_BOOL ConstIteratorImpl::FindNext() { return Ask(&IRecordListIterator::FindNext); }

VARIANT_BOOL ConstIteratorImpl::HasNext() { return Ask(&IRecordListIterator::HasNext); }

VARIANT_BOOL ConstIteratorImpl::IsSynchronized() { return Ask(&IRecordListIterator::IsSynchronized); }

com_ptr<IRecord> ConstIteratorImpl::Next() {
  const auto wrapped = Wrapped();
  com_ptr<IDispatch> next;
  ThrowIfFailed(wrapped->Next(next.put()), wrapped.get());
  const auto record = next.query<IMutableRecord>();
  com_ptr<IRecord> view;
  ThrowIfFailed(record->get_Record(view.put()), record.get());
  return view;
}

void ConstIteratorImpl::Remove() { throw EBvException(OLESTR("Unsupported Operation Remove.")); }

}  // namespace brevo
