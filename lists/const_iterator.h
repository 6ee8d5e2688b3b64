// The read-only face of an iterator: the same walk, records handed out as
// their read-only views, and no removal.
#pragma once

#include "core/implements.h"
#include "lists/list_interfaces.h"

namespace brevo {

class ConstIteratorImpl {
 public:
  void Create(IRecordListIterator* iterator);
  VARIANT_BOOL Find(IRecordCondition* condition);
  VARIANT_BOOL FindNext();
  VARIANT_BOOL HasNext();
  com_ptr<IRecord> Next();
  [[noreturn]] void Remove();
  VARIANT_BOOL IsSynchronized();

 protected:
  // A counted hold for the length of one call; E_POINTER before Create.
  com_ptr<IRecordListIterator> Wrapped() const;

 private:
  VARIANT_BOOL Ask(HRESULT (STDMETHODCALLTYPE IRecordListIterator::*method)(VARIANT_BOOL*));

  com_ptr<IRecordListIterator> wrapped_;
};

class ConstIterator : public implements<ConstIterator, IRecordListIterator, IConstIteratorRaw>,
                      public ConstIteratorImpl {
 public:
  static constexpr CLSID kClassId = {0x9C8AFD18, 0x2E41, 0x4113, 0x86, 0x17, 0x34, 0x80, 0x26, 0x4D, 0x5F, 0xB3};

  // IRecordListIterator
  STDMETHODIMP Find(IRecordCondition* Condition, VARIANT_BOOL* RetVal) override {
    return Call<IRecordListIterator>(RetVal, [&] { *RetVal = ConstIteratorImpl::Find(Condition); });
  }
  STDMETHODIMP FindNext(VARIANT_BOOL* pVal) override {
    return Call<IRecordListIterator>(pVal, [&] { *pVal = ConstIteratorImpl::FindNext(); });
  }
  STDMETHODIMP HasNext(VARIANT_BOOL* RetVal) override {
    return Call<IRecordListIterator>(RetVal, [&] { *RetVal = ConstIteratorImpl::HasNext(); });
  }
  STDMETHODIMP Next(IDispatch** RetVal) override {
    return Call<IRecordListIterator>(RetVal, [&] { *RetVal = ConstIteratorImpl::Next().detach(); });
  }
  STDMETHODIMP Remove() override {
    return Call<IRecordListIterator>([&] { ConstIteratorImpl::Remove(); });
  }
  STDMETHODIMP IsSynchronized(VARIANT_BOOL* RetVal) override {
    return Call<IRecordListIterator>(RetVal, [&] { *RetVal = ConstIteratorImpl::IsSynchronized(); });
  }

  // IConstIteratorRaw
  void Create(IRecordListIterator* iterator) override { ConstIteratorImpl::Create(iterator); }
};

}  // namespace brevo
