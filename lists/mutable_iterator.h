// The iterator over a list's rows, handing out the mutable records. It walks
// one of the list's sequences in place (synchronized) or its own copy.
#pragma once

#include <cstddef>
#include <vector>

#include "core/implements.h"
#include "lists/list_interfaces.h"

namespace brevo {

class MutableIteratorImpl {
 public:
  MutableIteratorImpl() = default;
  MutableIteratorImpl(const MutableIteratorImpl&) = delete;
  MutableIteratorImpl& operator=(const MutableIteratorImpl&) = delete;
  virtual ~MutableIteratorImpl() = default;

  // Only VARIANT_TRUE walks sequence in place; any other value walks a copy.
  void Bind(RowSequence& sequence, VARIANT_BOOL synchronized, IUnknown* owner);
  // Keeps the condition for FindNext and goes back to the first row.
  void Create(IRecordCondition* condition);
  VARIANT_BOOL HasNext();
  com_ptr<IMutableRecord> Next();
  // Searches from the first row; only a VARIANT_TRUE answer matches.
  VARIANT_BOOL Find(IRecordCondition* condition);
  VARIANT_BOOL FindNext();
  // No events: the list does not hear of it.
  void Remove();
  VARIANT_BOOL IsSynchronized() const noexcept { return synchronized_; }
  void AddToList(IMutableRecord* record);

 private:
  RowSequence& Walked() noexcept { return *walked_; }

  std::size_t cursor_ = 0;
  RowSequence* walked_ = &copy_;
  RowSequence copy_;
  // Consulted by Next, though nothing fills it.
  std::vector<LONG> found_;
  std::size_t foundPosition_ = 0;
  VARIANT_BOOL pendingFirst_ = VARIANT_TRUE;
  VARIANT_BOOL started_ = VARIANT_FALSE;
  VARIANT_BOOL synchronized_ = VARIANT_FALSE;
  com_ptr<IRecordCondition> condition_;
  // The owner of the walked sequence, while walking it in place.
  com_ptr<IUnknown> owner_;
};

class MutableIterator : public implements<MutableIterator, IRecordListIterator, IMutableIteratorRaw, IAddToList>,
                        public MutableIteratorImpl {
 public:
  static constexpr CLSID kClassId = {0x0FD16561, 0x1F9C, 0x4474, 0xAE, 0xBB, 0x84, 0x9D, 0x43, 0xC3, 0x2C, 0xD8};

  // IRecordListIterator
  STDMETHODIMP Find(IRecordCondition* Condition, VARIANT_BOOL* RetVal) override {
    return Call<IRecordListIterator>(RetVal, [&] { *RetVal = MutableIteratorImpl::Find(Condition); });
  }
  STDMETHODIMP FindNext(VARIANT_BOOL* pVal) override {
    return Call<IRecordListIterator>(pVal, [&] { *pVal = MutableIteratorImpl::FindNext(); });
  }
  STDMETHODIMP HasNext(VARIANT_BOOL* RetVal) override {
    return Call<IRecordListIterator>(RetVal, [&] { *RetVal = MutableIteratorImpl::HasNext(); });
  }
  STDMETHODIMP Next(IDispatch** RetVal) override {
    return Call<IRecordListIterator>(RetVal, [&] { *RetVal = MutableIteratorImpl::Next().detach(); });
  }
  STDMETHODIMP Remove() override {
    return Call<IRecordListIterator>([&] { MutableIteratorImpl::Remove(); });
  }
  STDMETHODIMP IsSynchronized(VARIANT_BOOL* RetVal) override {
    return Call<IRecordListIterator>(RetVal, [&] { *RetVal = MutableIteratorImpl::IsSynchronized(); });
  }

  // IMutableIteratorRaw
  void Bind(RowSequence& sequence, VARIANT_BOOL synchronized, IUnknown* owner) override {
    MutableIteratorImpl::Bind(sequence, synchronized, owner);
  }
  void Create(IRecordCondition* condition) override { MutableIteratorImpl::Create(condition); }

  // IAddToList
  STDMETHODIMP AddToList(IMutableRecord* record) override {
    return Call<IAddToList>([&] { MutableIteratorImpl::AddToList(record); });
  }
};

}  // namespace brevo
