#include "grouping/list_source.h"

namespace brevo {
namespace {

// The mutable list behind any list interface.
com_ptr<IMutableRecordList> MutableListOf(IDispatch* list) {
  const com_ptr<IDispatch> object(list);
  if (!object) _com_issue_error(E_POINTER);
  if (auto found = object.try_query<IMutableRecordList>()) return found;
  return object.query<IRecordListRaw>()->GetMutableRecordList();
}

}  // namespace

void ListSource::Bind(IDispatch* source) {
  object_ = com_ptr<IDispatch>(source);
  if (!object_) _com_issue_error(E_POINTER);
  mutable_ = object_.try_query<IMutableRecordList>();
  if (!mutable_) readOnly_ = object_.query<IRecordList>();
}

void ListSource::Check(HRESULT hr) {
  if (FAILED(hr)) {
    _com_issue_errorex(hr, object_.get(), mutable_ ? iid_of<IMutableRecordList>() : iid_of<IRecordList>());
  }
}

ULONG ListSource::Size() {
  if (!object_) _com_issue_error(E_POINTER);
  ULONG size = 0;
  Check(mutable_ ? mutable_->get_Size(&size) : readOnly_->get_Size(&size));
  return size;
}

com_ptr<IColumns> ListSource::Columns() {
  if (!object_) _com_issue_error(E_POINTER);
  com_ptr<IColumns> view;
  if (mutable_) {
    com_ptr<IMutableColumns> columns;
    Check(mutable_->get_Columns(columns.put()));
    if (!columns) _com_issue_error(E_POINTER);
    ThrowIfFailed(columns->get_Columns(view.put()));
  } else {
    Check(readOnly_->get_Columns(view.put()));
  }
  if (!view) _com_issue_error(E_POINTER);
  return view;
}

LONG ListSource::CompareTo(IDispatch* other) {
  if (!object_) _com_issue_error(E_POINTER);
  LONG result = 0;
  Check(mutable_ ? mutable_->CompareTo(MutableListOf(other).get(), &result) : readOnly_->CompareTo(other, &result));
  return result;
}

com_ptr<IRecordListIterator> ListSource::GetIterator(VARIANT_BOOL synchronized) {
  if (!object_) _com_issue_error(E_POINTER);
  com_ptr<IRecordListIterator> iterator;
  Check(mutable_ ? mutable_->GetIterator(synchronized, iterator.put())
                 : readOnly_->GetIterator(synchronized, iterator.put()));
  return iterator;
}

com_ptr<IRecordListIterator> ListSource::GetFilteredIterator(IRecordCondition* condition, VARIANT_BOOL synchronized) {
  if (!object_) _com_issue_error(E_POINTER);
  com_ptr<IRecordListIterator> iterator;
  Check(mutable_ ? mutable_->GetFilteredIterator(condition, synchronized, iterator.put())
                 : readOnly_->GetFilteredIterator(condition, synchronized, iterator.put()));
  return iterator;
}

com_ptr<IRecordListIterator> ListSource::GetSortedIterator(IRecordComparator* comparator, VARIANT_BOOL synchronized) {
  if (!object_) _com_issue_error(E_POINTER);
  com_ptr<IRecordListIterator> iterator;
  Check(mutable_ ? mutable_->GetSortedIterator(comparator, synchronized, iterator.put())
                 : readOnly_->GetSortedIterator(comparator, synchronized, iterator.put()));
  return iterator;
}

com_ptr<IMutableRecord> ListSource::AddRecord() {
  if (!mutable_) _com_issue_error(E_POINTER);
  com_ptr<IMutableRecord> record;
  const HRESULT hr = mutable_->AddRecord(record.put());
  Check(hr);
  return record;
}

void ListSource::Listen(IRecordListChangeListener* records, IRecordListValueChangeListener* values) {
  if (!object_) _com_issue_error(E_POINTER);
  if (mutable_) {
    Check(mutable_->AddRecordListValueChangeListener(values));
    Check(mutable_->AddRecordListChangeListener(records));
  } else {
    Check(readOnly_->AddRecordListValueChangeListener(values));
    Check(readOnly_->AddRecordListChangeListener(records));
  }
}

void ListSource::StopListening(IRecordListChangeListener* records, IRecordListValueChangeListener* values) noexcept {
  if (mutable_) {
    mutable_->RemoveRecordListValueChangeListener(values);
    mutable_->RemoveRecordListChangeListener(records);
  } else if (readOnly_) {
    readOnly_->RemoveRecordListValueChangeListener(values);
    readOnly_->RemoveRecordListChangeListener(records);
  }
}

}  // namespace brevo
