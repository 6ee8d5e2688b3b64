#include "grouping/group_mutable_columns.h"

#include "grouping/group_key.h"

namespace brevo {
namespace {

_bstr_t NameOf(IMutableColumn* column) {
  BSTR name = nullptr;
  ThrowIfFailed(column->get_ColumnName(&name));
  return _bstr_t(name, false);
}

}  // namespace

void GroupMutableColumnsImpl::Create(IMutableColumns* source, const _bstr_t& group) {
  if (source == nullptr) _com_issue_error(E_POINTER);
  Detach();
  key_ = GroupKey(group);
  source_ = com_ptr<IMutableColumns>(source);
  grouped_ = com_ptr<IMutableColumns>(make_object<MutableColumns>().get());

  const auto sourceRaw = source_.query<IMutableColumnsRaw>();
  const auto sourceMap = source_.query<IMutableColumnsManager>();
  const ULONG size = sourceRaw->Size();
  for (ULONG i = 0; i < size; ++i) {
    if (sourceMap->GetCloumnIndicesByGroup(key_, i) != -1) CopySourceColumn(sourceRaw->MutableColumnAt(i).get(), i);
  }
  columnsRelay_ = make_object<ColumnsChangeRelay>(SelfAsColumnsListener());
  ThrowIfFailed(source_->AddColumnsChangeListener(columnsRelay_.get()));
  propertyRelay_ = make_object<PropertyChangeRelay>(SelfAsPropertyListener());
  ThrowIfFailed(source_->AddPropertyChangeListener(propertyRelay_.get()));
}

// The grouped collection leaves its source's registries on its last release.
void GroupMutableColumnsImpl::Detach() noexcept {
  if (columnsRelay_) {
    columnsRelay_->Detach();
    source_->RemoveColumnsChangeListener(columnsRelay_.get());
  }
  if (propertyRelay_) {
    propertyRelay_->Detach();
    source_->RemovePropertyChangeListener(propertyRelay_.get());
  }
  columnsRelay_.reset();
  propertyRelay_.reset();
  AbstractMutableColumns::Detach();
}

IMutableColumnsRaw* GroupMutableColumnsImpl::Grouped() {
  if (!grouped_) _com_issue_error(E_POINTER);
  return grouped_.query<IMutableColumnsRaw>().get();
}

IMutableColumnsManager* GroupMutableColumnsImpl::IndexMap() {
  if (!grouped_) _com_issue_error(E_POINTER);
  return grouped_.query<IMutableColumnsManager>().get();
}

com_ptr<IMutableColumn> GroupMutableColumnsImpl::AddColumn(const _bstr_t&, ULONG) {
  throw EBvException(OLESTR("Cannot make add operation on grouped object."));
}

void GroupMutableColumnsImpl::RemoveColumn(ULONG) {
  throw EBvException(OLESTR("Cannot make remove operation on grouped object."));
}

com_ptr<IColumns> GroupMutableColumnsImpl::Columns() {
  Grouped();
  com_ptr<IColumns> view;
  ThrowIfFailed(grouped_->get_Columns(view.put()));
  return view;
}

// Grouped position k stands for the k-th kept source column, under its full name.
void GroupMutableColumnsImpl::CopySourceColumn(IMutableColumn* column, ULONG sourceIndex) {
  ULONG type = 0;
  ThrowIfFailed(column->get_ColumnType(&type));
  BSTR displayName = nullptr;
  ThrowIfFailed(column->get_DisplayName(&displayName));
  const _bstr_t display(displayName, false);
  const auto copy = Grouped()->AddColumn(NameOf(column), type);
  ThrowIfFailed(copy->put_DisplayName(display.GetBSTR()));
  IndexMap()->SetTrueIndexOfColumn(Grouped()->Size() - 1, sourceIndex);
}

template <class Change>
void GroupMutableColumnsImpl::WithGroupedEventsOff(Change&& change) {
  Grouped()->EnableEvents(VARIANT_FALSE);
  try {
    change();
  } catch (...) {
    Grouped()->EnableEvents(VARIANT_TRUE);
    throw;
  }
  Grouped()->EnableEvents(VARIANT_TRUE);
}

void GroupMutableColumnsImpl::ColumnAfterAdd(IColumnsChangeEvent* event) {
  if (event == nullptr) _com_issue_error(E_POINTER);
  WithGroupedEventsOff([&] {
    com_ptr<IDispatch> added;
    ThrowIfFailed(event->GetColumnChanged(added.put()));
    com_ptr<IDispatch> origin;
    ThrowIfFailed(event->GetSource(origin.put()));
    LONG same = -1;
    if (!added || !origin || FAILED(source_->CompareTo(origin.get(), &same)) || same != 0) return;
    const auto column = added.query<IMutableColumn>();
    const _bstr_t name = NameOf(column.get());
    if (FindKey(name, key_) < 0) return;
    const LONG sourceIndex = source_.query<IMutableColumnsRaw>()->IndexOf(name);
    CopySourceColumn(column.get(), static_cast<ULONG>(sourceIndex));
  });
}

void GroupMutableColumnsImpl::ColumnAfterRemove(IColumnsChangeEvent* event) {
  if (event == nullptr) _com_issue_error(E_POINTER);
  WithGroupedEventsOff([&] {
    com_ptr<IDispatch> removed;
    ThrowIfFailed(event->GetColumnChanged(removed.put()));
    if (!removed) return;
    const LONG index = Grouped()->IndexOf(NameOf(removed.query<IMutableColumn>().get()));
    if (index >= 0) Grouped()->RemoveColumnAt(static_cast<ULONG>(index));
  });
}

// Renames arrive before they happen: the source column still has its old
// name. "Display Name" announces a new column name, "Name" a display name.
void GroupMutableColumnsImpl::MirrorRename(IPropertyChangeEvent* event) {
  if (event == nullptr) _com_issue_error(E_POINTER);
  com_ptr<IDispatch> source;
  ThrowIfFailed(event->GetSource(source.put()));
  const auto column = source.try_query<IMutableColumn>();
  if (!column) return;
  const LONG index = Grouped()->IndexOf(NameOf(column.get()));
  if (index < 0) return;
  BSTR property = nullptr;
  BSTR newValue = nullptr;
  ThrowIfFailed(event->GetPropertyName(&property));
  const _bstr_t propertyName(property, false);
  ThrowIfFailed(event->GetNewValue(&newValue));
  const _bstr_t value(newValue, false);
  const auto copy = Grouped()->MutableColumnAt(static_cast<ULONG>(index));
  if (propertyName == _bstr_t(OLESTR("Display Name"))) {
    ThrowIfFailed(copy->put_ColumnName(value.GetBSTR()));
  } else if (propertyName == _bstr_t(OLESTR("Name"))) {
    ThrowIfFailed(copy->put_DisplayName(value.GetBSTR()));
  }
}

}  // namespace brevo
