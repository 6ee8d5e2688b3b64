// The column collection as a COM class.
#pragma once

#include "columns/abstract_mutable_columns.h"
#include "core/implements.h"

namespace brevo {

// The collection behind any collection interface (a read-only view leads to
// its collection); a null one is E_POINTER.
com_ptr<IMutableColumnsRaw> RawColumnsOf(IDispatch* columns);

class MutableColumnsImpl : public AbstractMutableColumns {};

class MutableColumns : public implements<MutableColumns, IMutableColumns, IMutableColumnsRaw, IMutableColumnsManager,
                                         IPropertyChangeListener>,
                       public MutableColumnsImpl {
 public:
  static constexpr CLSID kClassId = {0xEFB8E885, 0x66C1, 0x49C5, 0x97, 0x3C, 0x77, 0x36, 0x91, 0x34, 0x7A, 0xB5};

  void FinalRelease() { Detach(); }

  // IMutableColumns
  STDMETHODIMP Clear() override {
    return Call<IMutableColumns>([&] { MutableColumnsImpl::Clear(); });
  }
  STDMETHODIMP CompareTo(IDispatch* Other, LONG* retVal) override {
    return Call<IMutableColumns>(retVal, [&] { *retVal = MutableColumnsImpl::CompareTo(RawColumnsOf(Other).get()); });
  }
  STDMETHODIMP AddColumn(BSTR name, ULONG type, IMutableColumn** RetVal) override {
    return Call<IMutableColumns>(
        RetVal, [&] { *RetVal = MutableColumnsImpl::AddColumn(_bstr_t(name, true), type).detach(); });
  }
  STDMETHODIMP RemoveColumn(ULONG index) override {
    return Call<IMutableColumns>([&] { MutableColumnsImpl::RemoveColumn(index); });
  }
  STDMETHODIMP IndexOf(BSTR name, LONG* RetVal) override {
    return Call<IMutableColumns>(RetVal, [&] { *RetVal = MutableColumnsImpl::IndexOf(_bstr_t(name, true)); });
  }
  STDMETHODIMP get_MutableColumn(ULONG index, IMutableColumn** RetVal) override {
    return Call<IMutableColumns>(RetVal, [&] { *RetVal = MutableColumnsImpl::MutableColumn(index).detach(); });
  }
  STDMETHODIMP get_Columns(IColumns** RetVal) override {
    return Call<IMutableColumns>(RetVal, [&] { *RetVal = MutableColumnsImpl::Columns().detach(); });
  }
  STDMETHODIMP get_Size(LONG* RetVal) override {
    return Call<IMutableColumns>(RetVal, [&] { *RetVal = static_cast<LONG>(MutableColumnsImpl::Size()); });
  }
  STDMETHODIMP EnableMutableColumnsEvents(VARIANT_BOOL flag) override {
    return Call<IMutableColumns>([&] { MutableColumnsImpl::EnableMutableColumnsEvents(flag); });
  }
  STDMETHODIMP AddColumnsChangeListener(IColumnsChangeListener* pVal) override {
    return Call<IMutableColumns>([&] { MutableColumnsImpl::AddColumnsChangeListener(pVal); });
  }
  STDMETHODIMP RemoveColumnsChangeListener(IColumnsChangeListener* pVal) override {
    return Call<IMutableColumns>([&] { MutableColumnsImpl::RemoveColumnsChangeListener(pVal); });
  }
  STDMETHODIMP AddPropertyChangeListener(IPropertyChangeListener* pVal) override {
    return Call<IMutableColumns>([&] { MutableColumnsImpl::AddPropertyChangeListener(pVal); });
  }
  STDMETHODIMP RemovePropertyChangeListener(IPropertyChangeListener* pVal) override {
    return Call<IMutableColumns>([&] { MutableColumnsImpl::RemovePropertyChangeListener(pVal); });
  }

  // IMutableColumnsRaw
  ULONG Size() override { return MutableColumnsImpl::Size(); }
  LONG IndexOf(const _bstr_t& name) override { return MutableColumnsImpl::IndexOf(name); }
  com_ptr<IMutableColumn> MutableColumnAt(ULONG index) override { return MutableColumnsImpl::MutableColumn(index); }
  ULONG ColumnTypeAt(ULONG index) override;
  com_ptr<IMutableColumn> AddColumn(const _bstr_t& name, ULONG type) override {
    return MutableColumnsImpl::AddColumn(name, type);
  }
  void RemoveColumnAt(ULONG index) override { MutableColumnsImpl::RemoveColumn(index); }
  void ClearColumns() override { MutableColumnsImpl::Clear(); }
  LONG CompareTo(IMutableColumnsRaw* other) override { return MutableColumnsImpl::CompareTo(other); }
  com_ptr<IMutableColumns> Clone() override { return MutableColumnsImpl::Clone(); }
  void EnableEvents(VARIANT_BOOL flag) override { MutableColumnsImpl::EnableMutableColumnsEvents(flag); }

  // IMutableColumnsManager
  ULONG GetIndexOfColumn(ULONG index) override { return MutableColumnsImpl::GetIndexOfColumn(index); }
  LONG GetTrueIndexOfColumn(ULONG index) override { return MutableColumnsImpl::GetTrueIndexOfColumn(index); }
  void SetTrueIndexOfColumn(ULONG index, ULONG value) override {
    MutableColumnsImpl::SetTrueIndexOfColumn(index, value);
  }
  LONG GetCloumnIndicesByGroup(const _bstr_t& group, ULONG index) override {
    return MutableColumnsImpl::GetCloumnIndicesByGroup(group, index);
  }

  // IPropertyChangeListener: renames of the collection's own columns.
  STDMETHODIMP PropertyChange(IPropertyChangeEvent* pEvent) override {
    return Call<IPropertyChangeListener>([&] { MutableColumnsImpl::RelayPropertyChange(pEvent); });
  }

 protected:
  IMutableColumns* Self() noexcept override { return this; }
  IPropertyChangeListener* SelfAsPropertyListener() noexcept override { return this; }
};

}  // namespace brevo
