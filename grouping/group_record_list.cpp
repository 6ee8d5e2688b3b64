#include "grouping/group_record_list.h"

#include <new>

#include "columns/mutable_columns.h"
#include "events/change_events.h"
#include "events/lazy_event.h"
#include "grouping/group_key.h"
#include "grouping/group_record.h"

namespace brevo {
namespace {

_bstr_t Text(HRESULT (STDMETHODCALLTYPE IColumn::*getter)(BSTR*), IColumn* column) {
  BSTR text = nullptr;
  ThrowIfFailed((column->*getter)(&text));
  return _bstr_t(text, false);
}

template <class Column>
_bstr_t NameOf(Column* column) {
  BSTR text = nullptr;
  ThrowIfFailed(column->get_ColumnName(&text));
  return _bstr_t(text, false);
}

}  // namespace

void GroupRecordListImpl::Create(IDispatch* source, const _bstr_t& group) {
  key_ = GroupKey(group);
  group_ = group;
  source_.Bind(source);
  columns_ = com_ptr<IMutableColumns>(make_object<MutableColumns>().get());
  Events() = EventsSwitch<2>();
  // No step undoes an earlier one: a list refused by the group check, or by a
  // failure of its source, keeps its registrations, as the contract has it.
  // Only running out of memory takes them back, so that the failed call
  // leaves the source as it was.
  bool inGroup = true;
  try {
    source_.Listen(SelfAsListListener(), SelfAsValueListener());
    sourceColumns_ = source_.Columns();
    ThrowIfFailed(sourceColumns_->AddColumnsChangeListener(SelfAsColumnsListener()));

    // Every source column must belong to the group.
    LONG size = 0;
    ThrowIfFailed(sourceColumns_->get_Size(&size));
    const auto sourceMap = sourceColumns_.query<IMutableColumnsManager>();
    std::vector<ULONG> sourceIndices(static_cast<std::size_t>(size));
    for (ULONG i = 0; inGroup && i < sourceIndices.size(); ++i) {
      const LONG found = sourceMap->GetCloumnIndicesByGroup(key_, i);
      inGroup = found != -1;
      sourceIndices[i] = static_cast<ULONG>(found);
    }
    if (inGroup) CopyColumns(sourceIndices);
  } catch (const std::bad_alloc&) {
    Unregister();
    throw;
  } catch (const _com_error& e) {
    // A callee that ran out of C++ memory answers E_UNEXPECTED.
    if (e.Error() == E_OUTOFMEMORY || e.Error() == E_UNEXPECTED) Unregister();
    throw;
  }
  if (!inGroup) throw EBvException(OLESTR("No such group found in recordlist."));
}

void GroupRecordListImpl::CopyColumns(const std::vector<ULONG>& sourceIndices) {
  const auto own = columns_.query<IMutableColumnsRaw>();
  const auto ownMap = columns_.query<IMutableColumnsManager>();
  for (ULONG i = 0; i < sourceIndices.size(); ++i) {
    com_ptr<IColumn> column;
    ThrowIfFailed(sourceColumns_->get_Column(sourceIndices[i], column.put()));
    ULONG type = 0;
    ThrowIfFailed(column->get_ColumnType(&type));
    const auto copy = own->AddColumn(Text(&IColumn::get_ColumnName, column.get()), type);
    ThrowIfFailed(copy->put_DisplayName(Text(&IColumn::get_DisplayName, column.get()).GetBSTR()));
    ownMap->SetTrueIndexOfColumn(i, sourceIndices[i]);
  }
}

void GroupRecordListImpl::Unregister() noexcept {
  source_.StopListening(SelfAsListListener(), SelfAsValueListener());
  if (sourceColumns_) sourceColumns_->RemoveColumnsChangeListener(SelfAsColumnsListener());
}

com_ptr<IMutableColumns> GroupRecordListImpl::OwnColumns() {
  if (!columns_) _com_issue_error(E_POINTER);
  return columns_;
}

com_ptr<IColumns> GroupRecordListImpl::Columns() {
  com_ptr<IColumns> view;
  ThrowIfFailed(OwnColumns()->get_Columns(view.put()));
  return view;
}

com_ptr<IDispatch> GroupRecordListImpl::Wrap(IDispatch* record) {
  return WrapRecord(record, OwnColumns().get(), group_, Writable());
}

void GroupRecordListImpl::RaiseRecordEvent(
    IRecordListChangeEvent* incoming,
    HRESULT (STDMETHODCALLTYPE IRecordListChangeListener::*method)(IRecordListChangeEvent*)) {
  com_ptr<IDispatch> record;
  if (incoming != nullptr) ThrowIfFailed(incoming->GetRecordChanged(record.put()));
  // Nobody listening: nothing to make, so nothing that can fail the source's change.
  auto own = MakeLazyEvent<RecordListChangeEvent>([&](RecordListChangeEvent& e) {
    e.RecordListChangeEventImpl::Initialize(SelfAsSource(), Wrap(record.get()).get());
  });
  ListListeners().NotifyAfter(method, own);
}

// Both "before" notifications reach the own listeners as "after add", whatever
// the switch says.
void GroupRecordListImpl::RecordBefore(IRecordListChangeEvent* event) {
  RaiseRecordEvent(event, &IRecordListChangeListener::RecordAfterAdd);
}

void GroupRecordListImpl::RecordAfterAdd(IRecordListChangeEvent* event) {
  if (!Events().enabled()) return Events().MarkPending(kRecordsPending);
  if (event == nullptr) return ListListeners().NotifyAfter(&IRecordListChangeListener::RecordAfterAdd, event);
  RaiseRecordEvent(event, &IRecordListChangeListener::RecordAfterAdd);
}

// Only a summary (null) removal stays a removal; a record removed becomes an
// "after add" of its grouped view.
void GroupRecordListImpl::RecordAfterRemove(IRecordListChangeEvent* event) {
  if (!Events().enabled()) return Events().MarkPending(kRecordsPending);
  if (event == nullptr) return ListListeners().NotifyAfter(&IRecordListChangeListener::RecordAfterRemove, event);
  RaiseRecordEvent(event, &IRecordListChangeListener::RecordAfterAdd);
}

com_ptr<IRecordListValueChangeEvent> GroupRecordListImpl::OwnValueEvent(IRecordListValueChangeEvent* incoming) {
  com_ptr<IDispatch> record;
  LONG index = -1;
  if (incoming != nullptr) {
    ThrowIfFailed(incoming->GetRecordChanged(record.put()));
    ThrowIfFailed(incoming->GetIndex(&index));
  }
  auto own = make_object<RecordListValueChangeEvent>();
  own->RecordListValueChangeEventImpl::Initialize(SelfAsSource(), Wrap(record.get()).get(), index);
  return com_ptr<IRecordListValueChangeEvent>(own.get());
}

// A veto of the own listeners stays with them: the source's change goes on.
void GroupRecordListImpl::ValueBeforeChange(IRecordListValueChangeEvent* event) {
  if (!Events().enabled()) return Events().MarkPending(kValuesPending);
  const auto own = OwnValueEvent(event);
  ValueListeners().NotifyBefore(&IRecordListValueChangeListener::ValueBeforeChange, own.get());
}

void GroupRecordListImpl::ValueAfterChange(IRecordListValueChangeEvent* event) {
  if (!Events().enabled()) return Events().MarkPending(kValuesPending);
  const auto own = OwnValueEvent(event);
  ValueListeners().NotifyAfter(&IRecordListValueChangeListener::ValueAfterChange, own.get());
}

// An added column is copied from the group key on (the whole name when the key
// is not in it); the own columns' listeners hear nothing of it.
void GroupRecordListImpl::ColumnAfterAdd(IColumnsChangeEvent* event) {
  if (event == nullptr) _com_issue_error(E_POINTER);
  const auto own = OwnColumns();
  ThrowIfFailed(own->EnableMutableColumnsEvents(VARIANT_FALSE));
  try {
    com_ptr<IDispatch> added;
    ThrowIfFailed(event->GetColumnChanged(added.put()));
    if (added) {
      const auto column = added.query<IMutableColumn>();
      ULONG type = 0;
      ThrowIfFailed(column->get_ColumnType(&type));
      BSTR display = nullptr;
      ThrowIfFailed(column->get_DisplayName(&display));
      const _bstr_t displayName(display, false);
      const auto copy = own.query<IMutableColumnsRaw>()->AddColumn(CutAtKey(NameOf(column.get()), key_), type);
      ThrowIfFailed(copy->put_DisplayName(CutAtKey(displayName, key_).GetBSTR()));
    }
  } catch (...) {
    own->EnableMutableColumnsEvents(VARIANT_TRUE);
    throw;
  }
  ThrowIfFailed(own->EnableMutableColumnsEvents(VARIANT_TRUE));
}

// A removed column outside the group is ignored.
void GroupRecordListImpl::ColumnAfterRemove(IColumnsChangeEvent* event) {
  if (event == nullptr) _com_issue_error(E_POINTER);
  const auto own = OwnColumns();
  ThrowIfFailed(own->EnableMutableColumnsEvents(VARIANT_FALSE));
  try {
    com_ptr<IDispatch> removed;
    ThrowIfFailed(event->GetColumnChanged(removed.put()));
    if (removed) {
      const _bstr_t name = NameOf(removed.query<IMutableColumn>().get());
      if (FindKey(name, key_) >= 0) {
        const auto raw = own.query<IMutableColumnsRaw>();
        const LONG index = raw->IndexOf(CutAtKey(name, key_));
        if (index >= 0) raw->RemoveColumnAt(static_cast<ULONG>(index));
      }
    }
  } catch (...) {
    own->EnableMutableColumnsEvents(VARIANT_TRUE);
    throw;
  }
  ThrowIfFailed(own->EnableMutableColumnsEvents(VARIANT_TRUE));
}

}  // namespace brevo
