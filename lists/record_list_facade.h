// The COM face of a read-only list shape: IRecordList over an implementation
// derived from AbstractRecordList.
#pragma once

#include "core/implements.h"
#include "lists/abstract_record_list.h"

namespace brevo {

template <class Derived, class Impl, class... Others>
class RecordListFacade : public implements<Derived, IRecordList, Others...>, public Impl {
 public:
  STDMETHODIMP CompareTo(IDispatch* other, LONG* retVal) override {
    return List(retVal, [&] { *retVal = Impl::CompareTo(other); });
  }
  STDMETHODIMP get_Columns(IColumns** RetVal) override {
    return List(RetVal, [&] { *RetVal = Impl::Columns().detach(); });
  }
  STDMETHODIMP get_Size(ULONG* RetVal) override {
    return List(RetVal, [&] { *RetVal = Impl::Size(); });
  }
  STDMETHODIMP GetIterator(VARIANT_BOOL synchronized, IRecordListIterator** RetVal) override {
    return List(RetVal, [&] { *RetVal = Impl::GetIterator(synchronized).detach(); });
  }
  STDMETHODIMP GetFilteredIterator(IRecordCondition* condition, VARIANT_BOOL synchronized,
                                   IRecordListIterator** RetVal) override {
    return List(RetVal, [&] { *RetVal = Impl::GetFilteredIterator(condition, synchronized).detach(); });
  }
  STDMETHODIMP GetSortedIterator(IRecordComparator* comparator, VARIANT_BOOL synchronized,
                                 IRecordListIterator** RetVal) override {
    return List(RetVal, [&] { *RetVal = Impl::GetSortedIterator(comparator, synchronized).detach(); });
  }
  STDMETHODIMP EnableRecordListEvents(VARIANT_BOOL flag) override {
    return List([&] { Impl::EnableRecordListEvents(flag); });
  }
  STDMETHODIMP AddRecordListChangeListener(IRecordListChangeListener* pVal) override {
    return List([&] { Impl::AddRecordListChangeListener(pVal); });
  }
  STDMETHODIMP RemoveRecordListChangeListener(IRecordListChangeListener* pVal) override {
    return List([&] { Impl::RemoveRecordListChangeListener(pVal); });
  }
  STDMETHODIMP AddRecordListValueChangeListener(IRecordListValueChangeListener* pVal) override {
    return List([&] { Impl::AddRecordListValueChangeListener(pVal); });
  }
  STDMETHODIMP RemoveRecordListValueChangeListener(IRecordListValueChangeListener* pVal) override {
    return List([&] { Impl::RemoveRecordListValueChangeListener(pVal); });
  }

 protected:
  IDispatch* SelfAsSource() noexcept override { return static_cast<IRecordList*>(this); }

  template <class Body>
  HRESULT List(Body&& body) noexcept {
    return this->template Call<IRecordList>(std::forward<Body>(body));
  }
  template <class T, class Body>
  HRESULT List(T* out, Body&& body) noexcept {
    return this->template Call<IRecordList>(out, std::forward<Body>(body));
  }
};

}  // namespace brevo
