// The column collection as a COM class.
#pragma once

#include "columns/abstract_mutable_columns.h"
#include "core/implements.h"

namespace brevo {

// The collection behind any collection interface (a read-only view leads to
// its collection); a null one is E_POINTER.
com_ptr<IMutableColumnsRaw> RawColumnsOf(IDispatch* columns);

// The COM face of a column collection, plain or grouped: IMutableColumns, the
// raw collection and the index map over an implementation derived from
// AbstractMutableColumns.
template <class Derived, class Impl, class... Others>
class ColumnsFacade : public implements<Derived, IMutableColumns, IMutableColumnsRaw, IMutableColumnsManager, Others...>,
                      public Impl {
 public:
  void FinalRelease() { this->Detach(); }

  // IMutableColumns
  STDMETHODIMP Clear() override {
    return this->template Call<IMutableColumns>([&] { Impl::Clear(); });
  }
  STDMETHODIMP CompareTo(IDispatch* Other, LONG* retVal) override {
    return this->template Call<IMutableColumns>(retVal, [&] { *retVal = Impl::CompareTo(RawColumnsOf(Other).get()); });
  }
  STDMETHODIMP AddColumn(BSTR name, ULONG type, IMutableColumn** RetVal) override {
    return this->template Call<IMutableColumns>(
        RetVal, [&] { *RetVal = Impl::AddColumn(_bstr_t(name, true), type).detach(); });
  }
  STDMETHODIMP RemoveColumn(ULONG index) override {
    return this->template Call<IMutableColumns>([&] { Impl::RemoveColumn(index); });
  }
  STDMETHODIMP IndexOf(BSTR name, LONG* RetVal) override {
    return this->template Call<IMutableColumns>(RetVal, [&] { *RetVal = Impl::IndexOf(_bstr_t(name, true)); });
  }
  STDMETHODIMP get_MutableColumn(ULONG index, IMutableColumn** RetVal) override {
    return this->template Call<IMutableColumns>(RetVal, [&] { *RetVal = Impl::MutableColumn(index).detach(); });
  }
  STDMETHODIMP get_Columns(IColumns** RetVal) override {
    return this->template Call<IMutableColumns>(RetVal, [&] { *RetVal = Impl::Columns().detach(); });
  }
  STDMETHODIMP get_Size(LONG* RetVal) override {
    return this->template Call<IMutableColumns>(RetVal, [&] { *RetVal = static_cast<LONG>(Impl::Size()); });
  }
  STDMETHODIMP EnableMutableColumnsEvents(VARIANT_BOOL flag) override {
    return this->template Call<IMutableColumns>([&] { Impl::EnableMutableColumnsEvents(flag); });
  }
  STDMETHODIMP AddColumnsChangeListener(IColumnsChangeListener* pVal) override {
    return this->template Call<IMutableColumns>([&] { Impl::AddColumnsChangeListener(pVal); });
  }
  STDMETHODIMP RemoveColumnsChangeListener(IColumnsChangeListener* pVal) override {
    return this->template Call<IMutableColumns>([&] { Impl::RemoveColumnsChangeListener(pVal); });
  }
  STDMETHODIMP AddPropertyChangeListener(IPropertyChangeListener* pVal) override {
    return this->template Call<IMutableColumns>([&] { Impl::AddPropertyChangeListener(pVal); });
  }
  STDMETHODIMP RemovePropertyChangeListener(IPropertyChangeListener* pVal) override {
    return this->template Call<IMutableColumns>([&] { Impl::RemovePropertyChangeListener(pVal); });
  }

  // IMutableColumnsRaw
  ULONG Size() override { return Impl::Size(); }
  LONG IndexOf(const _bstr_t& name) override { return Impl::IndexOf(name); }
  com_ptr<IMutableColumn> MutableColumnAt(ULONG index) override { return Impl::MutableColumn(index); }
  ULONG ColumnTypeAt(ULONG index) override { return Impl::ColumnTypeAt(index); }
  com_ptr<IMutableColumn> AddColumn(const _bstr_t& name, ULONG type) override {
    return Impl::AddColumn(name, type);
  }
  void RemoveColumnAt(ULONG index) override { Impl::RemoveColumn(index); }
  void ClearColumns() override { Impl::Clear(); }
  LONG CompareTo(IMutableColumnsRaw* other) override { return Impl::CompareTo(other); }
  com_ptr<IMutableColumns> Clone() override { return Impl::Clone(); }
  void EnableEvents(VARIANT_BOOL flag) override { Impl::EnableMutableColumnsEvents(flag); }

  // IMutableColumnsManager
  ULONG GetIndexOfColumn(ULONG index) override { return Impl::GetIndexOfColumn(index); }
  LONG GetTrueIndexOfColumn(ULONG index) override { return Impl::GetTrueIndexOfColumn(index); }
  void SetTrueIndexOfColumn(ULONG index, ULONG value) override {
    Impl::SetTrueIndexOfColumn(index, value);
  }
  LONG GetCloumnIndicesByGroup(const _bstr_t& group, ULONG index) override {
    return Impl::GetCloumnIndicesByGroup(group, index);
  }

 protected:
  IMutableColumns* Self() noexcept override { return this; }
};

class MutableColumnsImpl : public AbstractMutableColumns {};

class MutableColumns
    : public ColumnsFacade<MutableColumns, MutableColumnsImpl, IPropertyChangeListener, IProvideClassInfo> {
 public:
  static constexpr CLSID kClassId = {0xEFB8E885, 0x66C1, 0x49C5, 0x97, 0x3C, 0x77, 0x36, 0x91, 0x34, 0x7A, 0xB5};

  // IPropertyChangeListener: renames of the collection's own columns.
  STDMETHODIMP PropertyChange(IPropertyChangeEvent* pEvent) override {
    return Call<IPropertyChangeListener>([&] { MutableColumnsImpl::RelayPropertyChange(pEvent); });
  }

 protected:
  IPropertyChangeListener* SelfAsPropertyListener() noexcept override { return this; }
};

}  // namespace brevo
