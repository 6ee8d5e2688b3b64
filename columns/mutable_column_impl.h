// One column of a schema: name, display name and a fixed type code. Renames
// are announced to property-change listeners before they take effect, with
// the property names crossed on purpose ("Display Name" for the column name,
// "Name" for the display name).
#pragma once

#include "columns/column_interfaces.h"
#include "events/listener_registry.h"

namespace brevo {

class MutableColumnImpl {
 public:
  virtual ~MutableColumnImpl() = default;

  void Create(const _bstr_t& name, ULONG type);
  // 0 when type, display name and name all match, 1 otherwise.
  LONG CompareTo(IColumnRaw* other);
  const _bstr_t& DisplayName() const noexcept { return displayName_; }
  const _bstr_t& ColumnName() const noexcept { return columnName_; }
  ULONG ColumnType() const noexcept { return type_; }
  void SetDisplayName(const _bstr_t& name);
  void SetColumnName(const _bstr_t& name);
  // The read-only view, made on first request and kept.
  com_ptr<IColumn> Column();
  com_ptr<IMutableColumn> Clone();
  void AddPropertyChangeListener(IPropertyChangeListener* listener) { listeners_.Add(listener); }
  void RemovePropertyChangeListener(IPropertyChangeListener* listener) { listeners_.Remove(listener); }

 protected:
  // Runs on the last release: a view that outlives its column must know.
  void Detach() noexcept;

  // The COM object this implementation belongs to: the events' source and the
  // view's parent.
  virtual IMutableColumn* Self() noexcept = 0;

 private:
  void Rename(_bstr_t& field, const _bstr_t& value, const OLECHAR* announcedProperty);

  _bstr_t displayName_;
  _bstr_t columnName_;
  ULONG type_ = 0;
  com_ptr<IColumn> view_;
  ListenerRegistry<IPropertyChangeListener> listeners_{OLESTR("Cannot remove property change listener.")};
};

}  // namespace brevo
