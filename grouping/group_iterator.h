// An iterator over a source list's rows that hands out each record as its
// grouped, writable view.
#pragma once

#include "lists/const_iterator.h"

namespace brevo {

class GroupIteratorImpl : public ConstIteratorImpl {
 public:
  void Bind(IMutableColumns* columns, const _bstr_t& group);
  com_ptr<IDispatch> Next();
  void Remove();

 private:
  com_ptr<IMutableColumns> columns_;
  _bstr_t group_;
};

class GroupIterator : public implements<GroupIterator, IRecordListIterator>, public GroupIteratorImpl {
 public:
  static constexpr CLSID kClassId = {0x7F7C7AE8, 0x8D33, 0x4AD7, 0xAA, 0xF4, 0x72, 0x04, 0x97, 0xE8, 0x24, 0x83};

  STDMETHODIMP Find(IRecordCondition* Condition, VARIANT_BOOL* RetVal) override {
    return Call<IRecordListIterator>(RetVal, [&] { *RetVal = GroupIteratorImpl::Find(Condition); });
  }
  STDMETHODIMP FindNext(VARIANT_BOOL* pVal) override {
    return Call<IRecordListIterator>(pVal, [&] { *pVal = GroupIteratorImpl::FindNext(); });
  }
  STDMETHODIMP HasNext(VARIANT_BOOL* RetVal) override {
    return Call<IRecordListIterator>(RetVal, [&] { *RetVal = GroupIteratorImpl::HasNext(); });
  }
  STDMETHODIMP Next(IDispatch** RetVal) override {
    return Call<IRecordListIterator>(RetVal, [&] { *RetVal = GroupIteratorImpl::Next().detach(); });
  }
  STDMETHODIMP Remove() override {
    return Call<IRecordListIterator>([&] { GroupIteratorImpl::Remove(); });
  }
  STDMETHODIMP IsSynchronized(VARIANT_BOOL* RetVal) override {
    return Call<IRecordListIterator>(RetVal, [&] { *RetVal = GroupIteratorImpl::IsSynchronized(); });
  }
};

}  // namespace brevo
