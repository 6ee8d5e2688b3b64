// The read-only view of a column: reads through to its mutable column, which
// owns it, and relays the column's renames to its own listeners.
#pragma once

#include "columns/column_compare.h"
#include "core/implements.h"
#include "events/listener_registry.h"
#include "events/weak_reference.h"

namespace brevo {

class ColumnImpl {
 public:
  virtual ~ColumnImpl() = default;

  // Called once by the parent; the view takes no reference on it, and the
  // parent tells the view when it goes.
  void Create(IMutableColumn* parent);
  void ParentGone() noexcept {
    parent_.reset();
    parentColumn_.reset();
  }
  LONG CompareTo(IColumnRaw* other) { return CompareColumns(*Parent(), *other); }
  _bstr_t DisplayName() { return Parent()->DisplayName(); }
  _bstr_t ColumnName() { return Parent()->ColumnName(); }
  ULONG ColumnType() { return Parent()->ColumnType(); }
  void AddPropertyChangeListener(IPropertyChangeListener* listener) { listeners_.Add(listener); }
  void RemovePropertyChangeListener(IPropertyChangeListener* listener) { listeners_.Remove(listener); }
  void PropertyChange(IPropertyChangeEvent* event) {
    listeners_.NotifyAfter(&IPropertyChangeListener::PropertyChange, event);
  }

 protected:
  virtual IPropertyChangeListener* SelfAsListener() noexcept = 0;

 private:
  IColumnRaw* Parent();

  WeakReference<IMutableColumn> parent_;
  WeakReference<IColumnRaw> parentColumn_;
  ListenerRegistry<IPropertyChangeListener> listeners_{OLESTR("Cannot remove property change listener.")};
};

class Column : public implements<Column, IColumn, IColumnRaw, IPropertyChangeListener>, public ColumnImpl {
 public:
  static constexpr CLSID kClassId = {0xC85EE2B6, 0xA428, 0x484C, 0x97, 0x3E, 0xBE, 0x90, 0xE2, 0x8B, 0x72, 0x5D};

  // IColumn
  STDMETHODIMP CompareTo(IDispatch* Other, LONG* retVal) override {
    return Call<IColumn>(retVal, [&] { *retVal = ColumnImpl::CompareTo(RawColumnOf(Other).get()); });
  }
  STDMETHODIMP get_DisplayName(BSTR* RetVal) override {
    return Call<IColumn>(RetVal, [&] { *RetVal = ColumnImpl::DisplayName().copy(); });
  }
  STDMETHODIMP get_ColumnName(BSTR* RetVal) override {
    return Call<IColumn>(RetVal, [&] { *RetVal = ColumnImpl::ColumnName().copy(); });
  }
  STDMETHODIMP get_ColumnType(ULONG* RetVal) override {
    return Call<IColumn>(RetVal, [&] { *RetVal = ColumnImpl::ColumnType(); });
  }
  STDMETHODIMP AddPropertyChangeListener(IPropertyChangeListener* pVal) override {
    return Call<IColumn>([&] { ColumnImpl::AddPropertyChangeListener(pVal); });
  }
  STDMETHODIMP RemovePropertyChangeListener(IPropertyChangeListener* pVal) override {
    return Call<IColumn>([&] { ColumnImpl::RemovePropertyChangeListener(pVal); });
  }

  // IColumnRaw
  _bstr_t ColumnName() override { return ColumnImpl::ColumnName(); }
  _bstr_t DisplayName() override { return ColumnImpl::DisplayName(); }
  ULONG ColumnType() override { return ColumnImpl::ColumnType(); }

  // IPropertyChangeListener
  STDMETHODIMP PropertyChange(IPropertyChangeEvent* pEvent) override {
    return Call<IPropertyChangeListener>([&] { ColumnImpl::PropertyChange(pEvent); });
  }

 protected:
  IPropertyChangeListener* SelfAsListener() noexcept override { return this; }
};

}  // namespace brevo
