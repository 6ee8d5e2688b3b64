#include "lists/record_list.h"

#include "events/summaries.h"
#include "lists/const_iterator.h"

namespace brevo {

void RecordListImpl::Create(IMutableRecordList* parent, RecordListViews* views) {
  parent_ = parent;
  views_ = views;
  const com_ptr<IDispatch> self(SelfAsSource());
  changeRelay_ = make_object<RecordListChangeRelay>(self.query<IRecordListChangeListener>().get());
  valueRelay_ = make_object<RecordListValueChangeRelay>(self.query<IRecordListValueChangeListener>().get());
  ThrowIfFailed(parent->AddRecordListChangeListener(changeRelay_.get()));
  ThrowIfFailed(parent->AddRecordListValueChangeListener(valueRelay_.get()));
}

void RecordListImpl::ParentGone() noexcept {
  parent_ = nullptr;
  views_ = nullptr;
  if (changeRelay_) changeRelay_->Detach();
  if (valueRelay_) valueRelay_->Detach();
}

void RecordListImpl::Detach() noexcept {
  if (parent_ != nullptr) {
    // Failures are ignored: a relay that never joined cannot leave.
    if (changeRelay_) parent_->RemoveRecordListChangeListener(changeRelay_.get());
    if (valueRelay_) parent_->RemoveRecordListValueChangeListener(valueRelay_.get());
  }
  if (views_ != nullptr) views_->Forget(this);
  ParentGone();
}

IMutableRecordList* RecordListImpl::Parent() {
  if (parent_ == nullptr) _com_issue_error(E_POINTER);
  return parent_;
}

LONG RecordListImpl::CompareTo(IDispatch* other) {
  const com_ptr<IDispatch> object(other);
  if (!object) _com_issue_error(E_POINTER);
  auto list = object.try_query<IMutableRecordList>();
  if (!list) list = object.query<IRecordListRaw>()->GetMutableRecordList();
  LONG result = 0;
  ThrowIfFailed(Parent()->CompareTo(list.get(), &result), parent_);
  return result;
}

com_ptr<IColumns> RecordListImpl::Columns() {
  com_ptr<IMutableColumns> columns;
  ThrowIfFailed(Parent()->get_Columns(columns.put()));
  com_ptr<IColumns> view;
  if (columns) ThrowIfFailed(columns->get_Columns(view.put()));
  return view;
}

ULONG RecordListImpl::Size() {
  ULONG size = 0;
  ThrowIfFailed(Parent()->get_Size(&size));
  return size;
}

com_ptr<IRecordListIterator> RecordListImpl::ReadOnly(com_ptr<IRecordListIterator> iterator) {
  auto wrapper = make_object<ConstIterator>();
  static_cast<IConstIteratorRaw*>(wrapper.get())->Create(iterator.get());
  return com_ptr<IRecordListIterator>(wrapper.get());
}

com_ptr<IRecordListIterator> RecordListImpl::GetIterator(VARIANT_BOOL synchronized) {
  com_ptr<IRecordListIterator> iterator;
  ThrowIfFailed(Parent()->GetIterator(synchronized, iterator.put()), parent_);
  return ReadOnly(iterator);
}

com_ptr<IRecordListIterator> RecordListImpl::GetFilteredIterator(IRecordCondition* condition,
                                                                 VARIANT_BOOL synchronized) {
  com_ptr<IRecordListIterator> iterator;
  ThrowIfFailed(Parent()->GetFilteredIterator(condition, synchronized, iterator.put()), parent_);
  return ReadOnly(iterator);
}

com_ptr<IRecordListIterator> RecordListImpl::GetSortedIterator(IRecordComparator* comparator,
                                                               VARIANT_BOOL synchronized) {
  com_ptr<IRecordListIterator> iterator;
  ThrowIfFailed(Parent()->GetSortedIterator(comparator, synchronized, iterator.put()), parent_);
  return ReadOnly(iterator);
}

void RecordListImpl::PassValueBefore(IRecordListValueChangeEvent* event) {
  if (Events().enabled()) {
    ValueListeners().NotifyAfter(&IRecordListValueChangeListener::ValueBeforeChange, event);
  } else {
    Events().MarkPending(kValuesPending);
  }
}

void RecordListImpl::PassValueAfter(IRecordListValueChangeEvent* event) {
  if (Events().enabled()) ValueListeners().NotifyAfter(&IRecordListValueChangeListener::ValueAfterChange, event);
}

}  // namespace brevo
