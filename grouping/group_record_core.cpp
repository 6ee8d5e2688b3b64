#include "grouping/group_record_core.h"

#include "events/change_events.h"
#include "events/lazy_event.h"
#include "records/record_compare.h"

namespace brevo {
namespace {

// Registers or unregisters a listener on a record of either shape.
HRESULT Listen(IDispatch* record, IRecordChangeListener* listener, bool add) {
  const com_ptr<IDispatch> object(record);
  if (const auto mutableRecord = object.try_query<IMutableRecord>()) {
    return add ? mutableRecord->AddRecordChangeListener(listener) : mutableRecord->RemoveRecordChangeListener(listener);
  }
  const auto readOnly = object.query<IRecord>();
  return add ? readOnly->AddRecordChangeListener(listener) : readOnly->RemoveRecordChangeListener(listener);
}

}  // namespace

void GroupRecordCore::Create(IDispatch* source, IMutableColumns* columns, const _bstr_t& group) {
  if (source == nullptr || columns == nullptr) _com_issue_error(E_POINTER);
  if (source_.get() != source) {
    Detach();
    source_ = com_ptr<IDispatch>(source);
    sourceRaw_ = source_.query<IRecordRaw>().get();
    relay_ = make_object<RecordChangeRelay>(SelfAsListener());
    ThrowIfFailed(Listen(source, relay_.get(), true));
  }
  if (columns_.get() != columns) {
    columns_ = com_ptr<IMutableColumns>(columns);
    columnsRaw_ = columns_.query<IMutableColumnsRaw>().get();
    indexMap_ = columns_.query<IMutableColumnsManager>().get();
  }
  group_ = group;
}

// A grouped record made per notification must not stay registered on its
// source once nobody holds it.
void GroupRecordCore::Detach() noexcept {
  if (!relay_) return;
  relay_->Detach();
  Listen(source_.get(), relay_.get(), false);
  relay_.reset();
}

IDispatch* GroupRecordCore::Source() {
  if (!source_ || indexMap_ == nullptr) _com_issue_error(E_POINTER);
  return source_.get();
}

ULONG GroupRecordCore::SourceIndex(ULONG index) {
  Source();
  return indexMap_->GetIndexOfColumn(index);
}

unique_variant GroupRecordCore::ReadSource(ULONG index) { return sourceRaw_->GetValue(SourceIndex(index)); }

const VARIANT* GroupRecordCore::PeekSource(ULONG index) { return sourceRaw_->PeekValue(SourceIndex(index)); }

unique_variant GroupRecordCore::GetValueByName(const _bstr_t& name) {
  Source();
  const LONG index = columnsRaw_->IndexOf(name);
  return index >= 0 ? ReadSource(static_cast<ULONG>(index)) : unique_variant();
}

LONG GroupRecordCore::CompareTo(IRecordRaw* other) {
  if (other == nullptr) _com_issue_error(E_POINTER);
  return CompareRecords(*SelfAsRecord(), *other);
}

ULONG GroupRecordCore::ColumnCount() {
  Source();
  return columnsRaw_->Size();
}

// The grouped position of the source column an event is about, or -1 when the
// column is outside the group.
LONG GroupRecordCore::GroupedPosition(IRecordChangeEvent* event) {
  if (event == nullptr) _com_issue_error(E_POINTER);
  LONG index = 0;
  ThrowIfFailed(event->GetIndex(&index));
  if (index < 0 || indexMap_ == nullptr) return -1;
  return indexMap_->GetTrueIndexOfColumn(static_cast<ULONG>(index));
}

void GroupRecordCore::ValueBeforeChange(IRecordChangeEvent* event) {
  const LONG position = GroupedPosition(event);
  if (position < 0) return;
  if (!events_.enabled()) {
    events_.MarkPending(0);
    return;
  }
  auto own = MakeLazyEvent<RecordChangeEvent>(
      [&](RecordChangeEvent& e) { e.RecordChangeEventImpl::Initialize(SelfAsSource(), position); });
  // A veto of the own listeners is the source's veto: the change is the source's.
  if (!listeners_.NotifyBefore(&IRecordChangeListener::ValueBeforeChange, own)) ThrowIfFailed(event->Stop());
}

void GroupRecordCore::ValueAfterChange(IRecordChangeEvent* event) {
  const LONG position = GroupedPosition(event);
  if (position < 0 || !events_.enabled()) return;
  auto own = MakeLazyEvent<RecordChangeEvent>(
      [&](RecordChangeEvent& e) { e.RecordChangeEventImpl::Initialize(SelfAsSource(), position); });
  listeners_.NotifyAfter(&IRecordChangeListener::ValueAfterChange, own);
}

}  // namespace brevo
