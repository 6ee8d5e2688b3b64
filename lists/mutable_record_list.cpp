#include "lists/mutable_record_list.h"

#include "core/room_for.h"
#include "events/change_events.h"
#include "events/lazy_event.h"
#include "lists/mutable_iterator.h"
#include "lists/record_list.h"
#include "lists/row_sort.h"
#include "records/mutable_record.h"

namespace brevo {

void MutableRecordListImpl::Detach() noexcept {
  DetachRelay();
  views_.OwnerGone();
}

void MutableRecordListImpl::Create(IMutableColumns* columns) {
  if (columns != columns_.get()) columns_ = com_ptr<IMutableColumns>(columns);
}

void MutableRecordListImpl::AddRecord(IMutableRecord** result) {
  *result = nullptr;
  if (!columns_) _com_issue_error(E_POINTER);
  LONG size = 0;
  ThrowIfFailed(columns_->get_Size(&size));
  if (size == 0) throw EBvException(OLESTR("Cannot add record becasue is columns are empty."));

  // A record let go clears its columns, so whatever can run out of memory
  // happens before the record exists or, for its event, before it is handed
  // out (a failure then discards it without that clearing).
  std::vector<unique_variant> cells(static_cast<std::size_t>(size) + 1);
  RoomFor(rows_, rows_.size() + 1);
  IRecordChangeListener* relay = RecordRelay();
  auto made = make_object<MutableRecord>();
  const com_ptr<IMutableRecord> record(made.get());
  made->MutableRecordImpl::Create(columns_.get());
  cells[0]->vt = VT_UNKNOWN;
  cells[0]->punkVal = com_ptr<IUnknown>(record.get()).detach();
  made->MutableRecordImpl::AssignValues(cells);
  auto event = MakeLazyEvent<RecordListChangeEvent>(
      [&](RecordListChangeEvent& e) { e.RecordListChangeEventImpl::Initialize(Self(), record.get()); });
  if (EventsEnabled() && !ListListeners().empty()) {
    try {
      event.get();
    } catch (...) {
      made->MutableRecordImpl::Discard();
      throw;
    }
  }
  record.copy_to(result);

  if (EventsEnabled() && !ListListeners().NotifyBefore(&IRecordListChangeListener::RecordBeforeAdd, event)) {
    throw EBvException(OLESTR("Failed to add record."));
  }
  // The list hears the record's value changes from now on.
  made->MutableRecordImpl::AddRecordChangeListener(relay);
  rows_.push_back(record);
  if (EventsEnabled()) {
    ListListeners().NotifyAfter(&IRecordListChangeListener::RecordAfterAdd, event);
  } else {
    MarkPending(kRecordsPending);
  }
}

void MutableRecordListImpl::Clear() {
  if (columns_) ThrowIfFailed(columns_->Clear());
  if (rows_.empty()) return;
  rows_.clear();
  views_.DropCurrent();
}

LONG MutableRecordListImpl::CompareTo(IMutableRecordList* other) {
  if (other == nullptr || !columns_) _com_issue_error(E_POINTER);
  com_ptr<IMutableColumns> otherColumns;
  ThrowIfFailed(other->get_Columns(otherColumns.put()));
  if (!otherColumns) _com_issue_error(E_POINTER);
  LONG result = 0;
  ThrowIfFailed(otherColumns->CompareTo(columns_.get(), &result));
  if (result != 0) return result;

  ULONG otherSize = 0;
  ThrowIfFailed(other->get_Size(&otherSize));
  if (Size() != otherSize) return static_cast<LONG>(Size());

  const auto mine = GetIterator(VARIANT_TRUE);
  com_ptr<IRecordListIterator> theirs;
  ThrowIfFailed(other->GetIterator(VARIANT_TRUE, theirs.put()));
  for (ULONG i = 0; i < Size(); ++i) {
    com_ptr<IDispatch> theirRecord;
    ThrowIfFailed(theirs->Next(theirRecord.put()));
    com_ptr<IDispatch> myRecord;
    ThrowIfFailed(mine->Next(myRecord.put()));
    ThrowIfFailed(myRecord.query<IMutableRecord>()->CompareTo(theirRecord.get(), &result));
    if (result != 0) return result;
  }
  return 0;
}

com_ptr<IRecordList> MutableRecordListImpl::RecordList() {
  return views_.Current([&] {
    auto view = make_object<brevo::RecordList>();
    view->RecordListImpl::Create(Self(), &views_);
    return view;
  });
}

com_ptr<IRecordListIterator> MutableRecordListImpl::IterateOver(RowSequence& sequence, VARIANT_BOOL synchronized,
                                                                IRecordCondition* condition) {
  auto iterator = make_object<MutableIterator>();
  IMutableIteratorRaw* raw = iterator.get();
  raw->Bind(sequence, synchronized, Self());
  raw->Create(condition);
  return com_ptr<IRecordListIterator>(iterator.get());
}

com_ptr<IRecordListIterator> MutableRecordListImpl::GetIterator(VARIANT_BOOL synchronized) {
  return IterateOver(rows_, synchronized, nullptr);
}

com_ptr<IRecordListIterator> MutableRecordListImpl::GetFilteredIterator(IRecordCondition* condition,
                                                                        VARIANT_BOOL synchronized) {
  const auto callback = AsCallback<IRecordCondition>(condition);
  FilterRows(rows_, callback.get(), filterResult_);
  if (callback) filterCondition_ = callback;
  return IterateOver(filterResult_, synchronized, callback.get());
}

com_ptr<IRecordListIterator> MutableRecordListImpl::GetSortedIterator(IRecordComparator* comparator,
                                                                      VARIANT_BOOL synchronized) {
  // The comparator may ask this list for another sort while it runs, which
  // replaces the stored one: the pass keeps its own reference.
  const auto callback = AsCallback<IRecordComparator>(comparator);
  sortResult_ = rows_;
  sortComparator_ = callback;
  SortRows(sortResult_, callback.get());
  return IterateOver(sortResult_, synchronized, nullptr);
}

}  // namespace brevo
