// The mutable column as a COM class.
#pragma once

#include "columns/column_compare.h"
#include "columns/mutable_column_impl.h"
#include "core/implements.h"

namespace brevo {

class MutableColumn : public implements<MutableColumn, IMutableColumn, IMutableColumnRaw, IColumnRaw>,
                      public MutableColumnImpl {
 public:
  void FinalRelease() { Detach(); }

  static constexpr CLSID kClassId = {0xEC63C7D8, 0x19BA, 0x46D1, 0xB1, 0x4C, 0xBC, 0x1B, 0xA2, 0x8B, 0xBA, 0xD2};

  // IMutableColumn
  STDMETHODIMP Create(BSTR name, ULONG type) override {
    return Call<IMutableColumn>([&] { MutableColumnImpl::Create(_bstr_t(name, true), type); });
  }
  STDMETHODIMP CompareTo(IDispatch* Other, LONG* retVal) override {
    return Call<IMutableColumn>(retVal, [&] { *retVal = MutableColumnImpl::CompareTo(RawColumnOf(Other).get()); });
  }
  STDMETHODIMP get_DisplayName(BSTR* RetVal) override {
    return Call<IMutableColumn>(RetVal, [&] { *RetVal = MutableColumnImpl::DisplayName().copy(); });
  }
  STDMETHODIMP put_DisplayName(BSTR newVal) override {
    return Call<IMutableColumn>([&] { MutableColumnImpl::SetDisplayName(_bstr_t(newVal, true)); });
  }
  STDMETHODIMP get_Column(IColumn** RetVal) override {
    return Call<IMutableColumn>(RetVal, [&] { *RetVal = MutableColumnImpl::Column().detach(); });
  }
  STDMETHODIMP get_ColumnName(BSTR* RetVal) override {
    return Call<IMutableColumn>(RetVal, [&] { *RetVal = MutableColumnImpl::ColumnName().copy(); });
  }
  STDMETHODIMP put_ColumnName(BSTR newVal) override {
    return Call<IMutableColumn>([&] { MutableColumnImpl::SetColumnName(_bstr_t(newVal, true)); });
  }
  STDMETHODIMP get_ColumnType(ULONG* RetVal) override {
    return Call<IMutableColumn>(RetVal, [&] { *RetVal = MutableColumnImpl::ColumnType(); });
  }
  STDMETHODIMP AddPropertyChangeListener(IPropertyChangeListener* pVal) override {
    return Call<IMutableColumn>([&] { MutableColumnImpl::AddPropertyChangeListener(pVal); });
  }
  STDMETHODIMP RemovePropertyChangeListener(IPropertyChangeListener* pVal) override {
    return Call<IMutableColumn>([&] { MutableColumnImpl::RemovePropertyChangeListener(pVal); });
  }

  // IMutableColumnRaw
  void Create(const _bstr_t& name, ULONG type) override { MutableColumnImpl::Create(name, type); }
  void SetColumnName(const _bstr_t& name) override { MutableColumnImpl::SetColumnName(name); }
  void SetDisplayName(const _bstr_t& name) override { MutableColumnImpl::SetDisplayName(name); }
  com_ptr<IMutableColumn> Clone() override { return MutableColumnImpl::Clone(); }

  // IColumnRaw
  _bstr_t ColumnName() override { return MutableColumnImpl::ColumnName(); }
  _bstr_t DisplayName() override { return MutableColumnImpl::DisplayName(); }
  ULONG ColumnType() override { return MutableColumnImpl::ColumnType(); }

 protected:
  IMutableColumn* Self() noexcept override { return this; }
};

}  // namespace brevo
