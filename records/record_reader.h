// The read side that every record COM class shares: the typed getters and
// GetValue/GetValueByName of its dual interface, over an implementation
// derived from AbstractRecordReadOnly.
#pragma once

#include "core/implements.h"
#include "records/record_interfaces.h"

namespace brevo {

template <class Derived, class Interface, class Impl, class... Others>
class RecordReader : public implements<Derived, Interface, Others...>, public Impl {
 public:
  STDMETHODIMP GetValue(ULONG index, VARIANT* RetVal) override {
    return Read(RetVal, [&] { *RetVal = Impl::GetValue(index).release(); });
  }
  STDMETHODIMP GetValueAsBoolean(ULONG index, VARIANT_BOOL* RetVal) override {
    return Read(RetVal, [&] { *RetVal = Impl::GetValueAsBoolean(index); });
  }
  STDMETHODIMP GetValueAsDouble(ULONG index, double* RetVal) override {
    return Read(RetVal, [&] { *RetVal = Impl::GetValueAsDouble(index); });
  }
  STDMETHODIMP GetValueAsFloat(ULONG index, float* RetVal) override {
    return Read(RetVal, [&] { *RetVal = Impl::GetValueAsFloat(index); });
  }
  STDMETHODIMP GetValueAsInt32(ULONG index, LONG* RetVal) override {
    return Read(RetVal, [&] { *RetVal = Impl::GetValueAsInt32(index); });
  }
  STDMETHODIMP GetValueAsInt16(ULONG index, SHORT* RetVal) override {
    return Read(RetVal, [&] { *RetVal = Impl::GetValueAsInt16(index); });
  }
  STDMETHODIMP GetValueAsInt64(ULONG index, LONGLONG* RetVal) override {
    return Read(RetVal, [&] { *RetVal = Impl::GetValueAsInt64(index); });
  }
  STDMETHODIMP GetValueAsString(ULONG index, BSTR* RetVal) override {
    return Read(RetVal, [&] { *RetVal = Impl::GetValueAsString(index).release(); });
  }
  STDMETHODIMP GetValueAsByte(ULONG index, BYTE* RetVal) override {
    return Read(RetVal, [&] { *RetVal = Impl::GetValueAsByte(index); });
  }
  STDMETHODIMP GetValueByName(BSTR name, VARIANT* RetVal) override {
    return Read(RetVal, [&] { *RetVal = Impl::GetValueByName(_bstr_t(name, true)).release(); });
  }
  STDMETHODIMP CompareTo(IDispatch* Other, LONG* retVal) override {
    return Read(retVal, [&] { *retVal = Impl::CompareTo(RawRecordOf(Other).get()); });
  }
  STDMETHODIMP AddRecordChangeListener(IRecordChangeListener* pVal) override {
    return Read([&] { Impl::AddRecordChangeListener(pVal); });
  }
  STDMETHODIMP RemoveRecordChangeListener(IRecordChangeListener* pVal) override {
    return Read([&] { Impl::RemoveRecordChangeListener(pVal); });
  }

  // IRecordRaw
  unique_variant GetValue(ULONG index) override { return Impl::GetValue(index); }
  const VARIANT* PeekValue(ULONG index) override { return Impl::PeekValue(index); }
  ULONG ColumnCount() override { return Impl::ColumnCount(); }

  // The record behind any record interface; a null one is E_POINTER.
  static com_ptr<IRecordRaw> RawRecordOf(IDispatch* record) {
    if (record == nullptr) _com_issue_error(E_POINTER);
    return com_ptr<IDispatch>(record).query<IRecordRaw>();
  }

 protected:
  template <class Body>
  HRESULT Read(Body&& body) noexcept {
    return this->template Call<Interface>(std::forward<Body>(body));
  }
  template <class T, class Body>
  HRESULT Read(T* out, Body&& body) noexcept {
    return this->template Call<Interface>(out, std::forward<Body>(body));
  }
};

}  // namespace brevo
