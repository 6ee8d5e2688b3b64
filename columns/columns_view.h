// The read-only view of a column collection: every query forwards to the
// collection, which owns the view; the view holds the collection without a
// count and is told when it goes.
#pragma once

#include "columns/abstract_mutable_columns.h"
#include "core/implements.h"

namespace brevo {

class ColumnsImpl {
 public:
  virtual ~ColumnsImpl();

  // Called once by the collection, which tells the view when it goes.
  void Create(IMutableColumns* parent, ViewSet<ColumnsImpl, IColumns>* views);
  void ParentGone() noexcept;

  LONG CompareTo(IMutableColumnsRaw* other) { return Parent()->CompareTo(other); }
  LONG IndexOf(const _bstr_t& name) { return Parent()->IndexOf(name); }
  com_ptr<IColumn> Column(ULONG index);
  ULONG Size() { return Parent()->Size(); }
  void EnableColumnsEvents(VARIANT_BOOL flag) { Parent()->EnableEvents(flag); }
  IMutableColumns* Collection();
  IMutableColumnsRaw* Parent();
  IMutableColumnsManager* Manager();

 private:
  ViewSet<ColumnsImpl, IColumns>* views_ = nullptr;
  IMutableColumns* collection_ = nullptr;
  IMutableColumnsRaw* raw_ = nullptr;
  IMutableColumnsManager* manager_ = nullptr;
};

class Columns : public implements<Columns, IColumns, IColumnsRaw, IMutableColumnsManager>, public ColumnsImpl {
 public:
  static constexpr CLSID kClassId = {0x48F1FEDF, 0xC20A, 0x47C2, 0xBB, 0x00, 0xE3, 0x4B, 0xD5, 0xB6, 0x25, 0xD4};

  // IColumns
  STDMETHODIMP CompareTo(IDispatch* Other, LONG* retVal) override;
  STDMETHODIMP IndexOf(BSTR name, LONG* RetVal) override {
    return Call<IColumns>(RetVal, [&] { *RetVal = ColumnsImpl::IndexOf(_bstr_t(name, true)); });
  }
  STDMETHODIMP get_Column(ULONG index, IColumn** RetVal) override {
    return Call<IColumns>(RetVal, [&] { *RetVal = ColumnsImpl::Column(index).detach(); });
  }
  STDMETHODIMP get_Size(LONG* RetVal) override {
    return Call<IColumns>(RetVal, [&] { *RetVal = static_cast<LONG>(ColumnsImpl::Size()); });
  }
  STDMETHODIMP EnableColumnsEvents(VARIANT_BOOL flag) override {
    return Call<IColumns>([&] { ColumnsImpl::EnableColumnsEvents(flag); });
  }
  STDMETHODIMP AddColumnsChangeListener(IColumnsChangeListener* pVal) override {
    return Call<IColumns>([&] { ThrowIfFailed(Collection()->AddColumnsChangeListener(pVal), Collection()); });
  }
  STDMETHODIMP RemoveColumnsChangeListener(IColumnsChangeListener* pVal) override {
    return Call<IColumns>([&] { ThrowIfFailed(Collection()->RemoveColumnsChangeListener(pVal), Collection()); });
  }
  STDMETHODIMP AddPropertyChangeListener(IPropertyChangeListener* pVal) override {
    return Call<IColumns>([&] { ThrowIfFailed(Collection()->AddPropertyChangeListener(pVal), Collection()); });
  }
  STDMETHODIMP RemovePropertyChangeListener(IPropertyChangeListener* pVal) override {
    return Call<IColumns>([&] { ThrowIfFailed(Collection()->RemovePropertyChangeListener(pVal), Collection()); });
  }

  // IColumnsRaw
  com_ptr<IMutableColumns> GetMutableColumns() override { return com_ptr<IMutableColumns>(Collection()); }

  // IMutableColumnsManager
  ULONG GetIndexOfColumn(ULONG index) override { return Manager()->GetIndexOfColumn(index); }
  LONG GetTrueIndexOfColumn(ULONG index) override { return Manager()->GetTrueIndexOfColumn(index); }
  void SetTrueIndexOfColumn(ULONG index, ULONG value) override { Manager()->SetTrueIndexOfColumn(index, value); }
  LONG GetCloumnIndicesByGroup(const _bstr_t& group, ULONG index) override {
    return Manager()->GetCloumnIndicesByGroup(group, index);
  }
};

}  // namespace brevo
