#include "records/mutable_record_impl.h"

#include "columns/mutable_columns.h"
#include "core/cell_value.h"
#include "core/checked_access.h"
#include "core/messages.h"
#include "events/change_events.h"
#include "events/lazy_event.h"
#include "events/summaries.h"
#include "records/record.h"
#include "records/record_compare.h"

namespace brevo {

void MutableRecordImpl::Create(IMutableColumns* columns) {
  columns_ = columns != nullptr ? com_ptr<IMutableColumns>(columns)
                                : com_ptr<IMutableColumns>(make_object<MutableColumns>().get());
  columnsRaw_ = columns_.query<IMutableColumnsRaw>().get();
  indexMap_ = columns_.query<IMutableColumnsManager>().get();
  events_ = EventsSwitch<1>();
}

void MutableRecordImpl::Detach() noexcept {
  try {
    Clear();
  } catch (...) {
  }
  if (view_) static_cast<brevo::Record*>(view_.get())->ParentGone();
}

LONG MutableRecordImpl::StoragePosition(ULONG index) {
  if (indexMap_ == nullptr) _com_issue_error(E_POINTER);
  return indexMap_->GetTrueIndexOfColumn(index);
}

unique_variant MutableRecordImpl::SelfReference() {
  unique_variant self;
  self->vt = VT_UNKNOWN;
  self->punkVal = com_ptr<IUnknown>(Self()).detach();
  return self;
}

std::size_t MutableRecordImpl::ElementOf(ULONG index) {
  std::size_t element = 0;
  try {
    element = static_cast<std::size_t>(StoragePosition(index)) + 1;  // -1 reads element 0
  } catch (...) {
    throw EBvException(MessageWithIndex("Cannot acsses the spasfic value in position : ", index));
  }
  Reach(element);
  return element;
}

void MutableRecordImpl::Reach(std::size_t element) {
  if (element >= values_.size() && !values_.empty()) values_.resize(element + 1);
}

// Element 0, when it stands for the record itself, has no stored cell to lend.
const VARIANT* MutableRecordImpl::Lend(std::size_t element) {
  const unique_variant& stored = CheckedAt(values_, element);
  return element == 0 && selfInElementZero_ ? nullptr : &stored.get();
}

const VARIANT* MutableRecordImpl::PeekValue(ULONG index) { return Lend(ElementOf(index)); }

unique_variant MutableRecordImpl::GetValue(ULONG index) {
  const VARIANT* stored = PeekValue(index);
  try {
    return stored != nullptr ? unique_variant(*stored) : SelfReference();
  } catch (...) {
    throw EBvException(MessageWithIndex("Cannot acsses the spasfic value in position : ", index));
  }
}

void MutableRecordImpl::SetValue(ULONG index, const VARIANT& newVal) { Store(index, newVal, nullptr); }

void MutableRecordImpl::SetOwnedValue(ULONG index, unique_variant newVal) { Store(index, newVal.get(), &newVal); }

void MutableRecordImpl::Store(ULONG index, const VARIANT& newVal, unique_variant* owned) {
  const LONG position = StoragePosition(index);
  const ULONG type = columnsRaw_->ColumnTypeAt(static_cast<ULONG>(position));
  if (!FitsColumnType(newVal, type)) {
    throw EBvException(OLESTR("New value class type doesn't match the column type."));
  }
  const std::size_t element = static_cast<std::size_t>(position) + 1;
  Reach(element);
  if (const VARIANT* stored = Lend(element)) {
    if (CellValuesEqual(newVal, stored)) return;
  } else if (CellValuesEqual(newVal, &SelfReference().get())) {
    return;
  }

  auto event = MakeLazyEvent<RecordChangeEvent>(
      [&](RecordChangeEvent& e) { e.RecordChangeEventImpl::Initialize(Self(), position); });
  if (events_.enabled() && !listeners_.NotifyBefore(&IRecordChangeListener::ValueBeforeChange, event)) {
    throw EBvException(OLESTR("Failed to change value."));
  }
  // A listener may have emptied the record meanwhile: greater is refused;
  // equal reaches the array's own bounds check.
  if (element > values_.size()) throw EBvException(OLESTR("The index is bigger then the size of the array."));
  CheckedAt(values_, element) = owned != nullptr ? std::move(*owned) : unique_variant(newVal);
  if (element == 0) selfInElementZero_ = false;

  if (events_.enabled()) {
    listeners_.NotifyAfter(&IRecordChangeListener::ValueAfterChange, event);
  } else {
    events_.MarkPending(0);
  }
}

unique_variant MutableRecordImpl::GetValueByName(const _bstr_t& name) {
  const LONG index = columnsRaw_ != nullptr ? columnsRaw_->IndexOf(name) : -1;
  return index >= 0 ? GetValue(static_cast<ULONG>(index)) : unique_variant();
}

void MutableRecordImpl::SetValueByName(const _bstr_t& name, const VARIANT& newVal) {
  const LONG index = columnsRaw_ != nullptr ? columnsRaw_->IndexOf(name) : -1;
  if (index < 0) throw EBvException(OLESTR("Column name doesn't found."));
  SetValue(static_cast<ULONG>(index), newVal);
}

ULONG MutableRecordImpl::ColumnCount() {
  if (columnsRaw_ == nullptr) _com_issue_error(E_POINTER);
  return columnsRaw_->Size();
}

LONG MutableRecordImpl::CompareTo(IRecordRaw* other) {
  if (other == nullptr) _com_issue_error(E_POINTER);
  return CompareRecords(*com_ptr<IMutableRecord>(Self()).query<IRecordRaw>(), *other);
}

void MutableRecordImpl::Clear() {
  values_.clear();
  selfInElementZero_ = false;
  if (columnsRaw_ != nullptr) columnsRaw_->ClearColumns();
}

void MutableRecordImpl::AssignValues(std::vector<unique_variant>& values) {
  const bool self = !values.empty() && values[0].vt() == VT_UNKNOWN &&
                    values[0]->punkVal == static_cast<IUnknown*>(Self());
  values_ = std::move(values);
  values.clear();
  if (self) values_[0].reset();
  selfInElementZero_ = self;
}

com_ptr<IRecord> MutableRecordImpl::Record() {
  if (!view_) {
    auto view = make_object<brevo::Record>();
    view->RecordImpl::Create(Self());
    view_ = com_ptr<IRecord>(view.get());
  }
  return view_;
}

void MutableRecordImpl::EnableMutableRecordEvents(VARIANT_BOOL flag) {
  SwitchRecordEvents(events_, flag, Self(), listeners_);
}

}  // namespace brevo
