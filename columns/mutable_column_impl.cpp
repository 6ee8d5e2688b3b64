#include "columns/mutable_column_impl.h"

#include "columns/column.h"
#include "columns/column_compare.h"
#include "columns/mutable_column.h"
#include "events/change_events.h"
#include "events/lazy_event.h"

namespace brevo {

void MutableColumnImpl::Create(const _bstr_t& name, ULONG type) {
  columnName_ = name;
  type_ = type;
}

LONG MutableColumnImpl::CompareTo(IColumnRaw* other) {
  if (other == nullptr) _com_issue_error(E_POINTER);
  return CompareColumns(*com_ptr<IMutableColumn>(Self()).query<IColumnRaw>(), *other);
}

void MutableColumnImpl::SetDisplayName(const _bstr_t& name) { Rename(displayName_, name, OLESTR("Name")); }

void MutableColumnImpl::SetColumnName(const _bstr_t& name) { Rename(columnName_, name, OLESTR("Display Name")); }

// Listeners hear of the change while the old value is still in place; one that
// fails stops it.
void MutableColumnImpl::Rename(_bstr_t& field, const _bstr_t& value, const OLECHAR* announcedProperty) {
  if (field == value) return;
  auto event = MakeLazyEvent<PropertyChangeEvent>([&](PropertyChangeEvent& e) {
    e.PropertyChangeEventImpl::Initialize(Self(), _bstr_t(announcedProperty), field, value);
  });
  listeners_.NotifyAfter(&IPropertyChangeListener::PropertyChange, event);
  field = value;
}

com_ptr<IColumn> MutableColumnImpl::Column() {
  if (!view_) {
    auto view = make_object<brevo::Column>();
    view->ColumnImpl::Create(Self());
    view_ = com_ptr<IColumn>(view.get());
  }
  return view_;
}

void MutableColumnImpl::Detach() noexcept {
  if (view_) static_cast<brevo::Column*>(view_.get())->ParentGone();
}

com_ptr<IMutableColumn> MutableColumnImpl::Clone() {
  auto clone = make_object<MutableColumn>();
  clone->MutableColumnImpl::Create(columnName_, type_);
  clone->MutableColumnImpl::SetDisplayName(displayName_);
  return com_ptr<IMutableColumn>(clone.get());
}

}  // namespace brevo
