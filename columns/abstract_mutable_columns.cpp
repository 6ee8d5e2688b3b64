#include "columns/abstract_mutable_columns.h"

#include <algorithm>

#include "columns/columns_view.h"
#include "columns/mutable_column.h"
#include "columns/mutable_columns.h"
#include "core/checked_access.h"
#include "core/messages.h"
#include "core/room_for.h"
#include "events/change_events.h"
#include "events/lazy_event.h"
#include "events/listener_relay.h"

namespace brevo {

AbstractMutableColumns::AbstractMutableColumns() = default;

AbstractMutableColumns::~AbstractMutableColumns() = default;

void AbstractMutableColumns::Detach() noexcept {
  if (relay_) relay_->Detach();
  views_.OwnerGone();
}

void AbstractMutableColumns::Clear() {
  columns_.clear();
  views_.DropCurrent();
}

LONG AbstractMutableColumns::CompareTo(IMutableColumnsRaw* other) {
  if (other == nullptr) _com_issue_error(E_POINTER);
  const ULONG own = Size();
  const ULONG others = other->Size();
  for (ULONG i = 0; i < own && i < others; ++i) {
    LONG result = 0;
    ThrowIfFailed(MutableColumn(i)->CompareTo(other->MutableColumnAt(i).get(), &result));
    if (result != 0) return -1;
  }
  return own == others ? 0 : -1;
}

LONG AbstractMutableColumns::IndexOf(const _bstr_t& name) {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (columns_[i].raw->ColumnName() == name) return static_cast<LONG>(i);
  }
  return -1;
}

com_ptr<IMutableColumn> AbstractMutableColumns::AddColumn(const _bstr_t& name, ULONG type) {
  if (IndexOf(name) >= 0) throw EBvException(OLESTR("Name property must be unique."));
  auto created = make_object<brevo::MutableColumn>();
  created->MutableColumnImpl::Create(name, type);
  const com_ptr<IMutableColumn> column(created.get());

  auto event = MakeLazyEvent<ColumnsChangeEvent>(
      [&](ColumnsChangeEvent& e) { e.ColumnsChangeEventImpl::Initialize(Self(), column.get()); });
  // The columns event starts stopped: each listener lets the addition go on by
  // calling Stop.
  if (events_.enabled() && !columnsListeners_.NotifyBefore(&IColumnsChangeListener::ColumnBeforeAdd, event)) {
    throw EBvException(OLESTR("Failed to add column."));
  }

  // What can fail comes before the first change; appending and placing the
  // column then cannot.
  if (!relay_) relay_ = make_object<PropertyChangeRelay>(SelfAsPropertyListener());
  ThrowIfFailed(column->AddPropertyChangeListener(relay_.get()));
  RoomFor(columns_, columns_.size() + 1);
  RoomFor(indexMap_, columns_.size() + 2);
  columns_.push_back({column, created.get()});
  PlaceInIndexMap(static_cast<ULONG>(columns_.size() - 1));

  if (events_.enabled()) {
    columnsListeners_.NotifyAfter(&IColumnsChangeListener::ColumnAfterAdd, event);
  } else {
    events_.MarkPending(kAdditions);
  }
  return column;
}

// A free slot at the new position takes it; otherwise the entries from there on
// move one place towards the end to make room.
void AbstractMutableColumns::PlaceInIndexMap(ULONG position) {
  IndexMapChanged();
  while (indexMap_.size() <= position) indexMap_.push_back(kFree);
  if (indexMap_[position] == kFree) {
    indexMap_[position] = position;
    return;
  }
  while (indexMap_.size() <= columns_.size()) indexMap_.push_back(kFree);
  for (std::size_t p = indexMap_.size() - 1; p > position; --p) indexMap_[p] = indexMap_[p - 1];
  indexMap_[position] = position;
}

void AbstractMutableColumns::RemoveColumn(ULONG index) {
  const com_ptr<IMutableColumn> column = CheckedAt(columns_, index).column;
  auto event = MakeLazyEvent<ColumnsChangeEvent>(
      [&](ColumnsChangeEvent& e) { e.ColumnsChangeEventImpl::Initialize(Self(), column.get()); });
  if (events_.enabled() &&
      !columnsListeners_.NotifyBefore(&IColumnsChangeListener::ColumnBeforeRemove, event)) {
    throw EBvException(OLESTR("Failed to remove column."));
  }

  // The map keeps its length; its last entry stays as it was.
  IndexMapChanged();
  for (std::size_t p = index; p + 1 < indexMap_.size(); ++p) indexMap_[p] = indexMap_[p + 1];
  column->RemovePropertyChangeListener(relay_.get());

  if (events_.enabled()) {
    columnsListeners_.NotifyAfter(&IColumnsChangeListener::ColumnAfterRemove, event);
  } else {
    events_.MarkPending(kRemovals);
  }
  // Listeners may have changed the columns meanwhile: the column the events
  // announced is found again, and if it is gone already, so be it.
  const auto at = std::find_if(columns_.begin(), columns_.end(),
                               [&](const Entry& entry) { return entry.column == column; });
  if (at != columns_.end()) columns_.erase(at);
}

com_ptr<IMutableColumn> AbstractMutableColumns::MutableColumn(ULONG index) {
  if (index > columns_.size()) throw EBvException(MessageWithIndex("There is no such index : ", index));
  return CheckedAt(columns_, index).column;
}

ULONG AbstractMutableColumns::ColumnTypeAt(ULONG index) {
  if (index > columns_.size()) throw EBvException(MessageWithIndex("There is no such index : ", index));
  return CheckedAt(columns_, index).raw->ColumnType();
}

com_ptr<IColumns> AbstractMutableColumns::Columns() {
  return views_.Current([&] {
    auto view = make_object<brevo::Columns>();
    view->ColumnsImpl::Create(Self(), &views_);
    return view;
  });
}

ULONG AbstractMutableColumns::Size() { return static_cast<ULONG>(columns_.size()); }

com_ptr<IMutableColumns> AbstractMutableColumns::Clone() {
  return com_ptr<IMutableColumns>(make_object<MutableColumns>().get());
}

void AbstractMutableColumns::EnableMutableColumnsEvents(VARIANT_BOOL flag) {
  events_.Switch(flag, [&](std::size_t pending) { DeliverSummary(pending); });
}

// One summary per kind of change missed while events were off. The property
// summary goes through the relay, which still sees events off: it is not
// delivered, and the marker it sets again is cleared by the switch.
void AbstractMutableColumns::DeliverSummary(std::size_t pending) {
  if (pending == kPropertyChanges) {
    auto summary = make_object<PropertyChangeEvent>();
    summary->PropertyChangeEventImpl::Initialize(nullptr, _bstr_t(OLESTR("")), _bstr_t(OLESTR("")),
                                                 _bstr_t(OLESTR("")));
    RelayPropertyChange(summary.get());
    return;
  }
  auto event = MakeLazyEvent<ColumnsChangeEvent>(
      [&](ColumnsChangeEvent& e) { e.ColumnsChangeEventImpl::Initialize(Self(), nullptr); });
  columnsListeners_.NotifyAfter(
      pending == kAdditions ? &IColumnsChangeListener::ColumnAfterAdd : &IColumnsChangeListener::ColumnAfterRemove,
      event);
}

void AbstractMutableColumns::RelayPropertyChange(IPropertyChangeEvent* event) {
  if (events_.enabled()) {
    propertyListeners_.NotifyAfter(&IPropertyChangeListener::PropertyChange, event);
  } else {
    events_.MarkPending(kPropertyChanges);
  }
}

ULONG AbstractMutableColumns::GetIndexOfColumn(ULONG index) { return CheckedAt(indexMap_, index); }

LONG AbstractMutableColumns::GetTrueIndexOfColumn(ULONG index) {
  if (!inverseValid_) {
    inverse_.assign(indexMap_.size(), -1);
    for (std::size_t p = indexMap_.size(); p-- > 0;) {
      if (indexMap_[p] < inverse_.size()) inverse_[indexMap_[p]] = static_cast<LONG>(p);
    }
    inverseValid_ = true;
  }
  if (index < inverse_.size()) return inverse_[index];
  for (std::size_t p = 0; p < indexMap_.size(); ++p) {
    if (indexMap_[p] == index) return static_cast<LONG>(p);
  }
  return -1;
}

void AbstractMutableColumns::SetTrueIndexOfColumn(ULONG index, ULONG value) {
  CheckedAt(indexMap_, index) = value;
  IndexMapChanged();
}

LONG AbstractMutableColumns::GetCloumnIndicesByGroup(const _bstr_t& group, ULONG index) {
  const auto position = static_cast<ULONG>(GetTrueIndexOfColumn(index));
  const _bstr_t name = CheckedAt(columns_, position).raw->ColumnName();
  if (name.length() == 0) return -1;
  const std::basic_string_view<OLECHAR> text(name, name.length());
  const std::basic_string_view<OLECHAR> key(group.is_null() ? OLESTR("") : static_cast<const OLECHAR*>(group),
                                            group.length());
  return text.find(key) != std::basic_string_view<OLECHAR>::npos ? static_cast<LONG>(index) : -1;
}

}  // namespace brevo
