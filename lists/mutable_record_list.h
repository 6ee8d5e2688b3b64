// The mutable record list as a COM class.
#pragma once

#include "core/implements.h"
#include "lists/abstract_mutable_record_list.h"
#include "lists/record_list.h"

namespace brevo {

class MutableRecordListImpl : public AbstractMutableRecordList {
 public:
  void Create(IMutableColumns* columns);
  // The new record is handed out before any event, so a vetoed addition still
  // returns it.
  void AddRecord(IMutableRecord** result);
  void Clear();
  // Columns (from the other list's side), then the row count (this list's,
  // not a sign), then record by record.
  LONG CompareTo(IMutableRecordList* other);
  com_ptr<IMutableColumns> Columns() const { return columns_; }
  com_ptr<IRecordList> RecordList();
  ULONG Size() const noexcept { return static_cast<ULONG>(rows_.size()); }
  com_ptr<IRecordListIterator> GetIterator(VARIANT_BOOL synchronized);
  com_ptr<IRecordListIterator> GetFilteredIterator(IRecordCondition* condition, VARIANT_BOOL synchronized);
  com_ptr<IRecordListIterator> GetSortedIterator(IRecordComparator* comparator, VARIANT_BOOL synchronized);

 protected:
  // The last release: relays and views must not outlive the list's promise.
  void Detach() noexcept;

 private:
  com_ptr<IRecordListIterator> IterateOver(RowSequence& sequence, VARIANT_BOOL synchronized,
                                           IRecordCondition* condition);

  RowSequence filterResult_;
  com_ptr<IRecordCondition> filterCondition_;
  RowSequence sortResult_;
  com_ptr<IRecordComparator> sortComparator_;
  RowSequence rows_;
  com_ptr<IMutableColumns> columns_;
  RecordListViews views_;
};

class MutableRecordList
    : public implements<MutableRecordList, IMutableRecordList, IRecordChangeListener, IProvideClassInfo>,
      public MutableRecordListImpl {
 public:
  static constexpr CLSID kClassId = {0xA65952AD, 0xCC2E, 0x4B35, 0xB9, 0x78, 0xDC, 0x7F, 0x3F, 0xD0, 0xB1, 0x54};

  void FinalRelease() { Detach(); }

  STDMETHODIMP Create(IMutableColumns* columns) override {
    return Call<IMutableRecordList>([&] { MutableRecordListImpl::Create(columns); });
  }
  STDMETHODIMP AddRecord(IMutableRecord** RetVal) override {
    return Call<IMutableRecordList>(RetVal, [&] { MutableRecordListImpl::AddRecord(RetVal); });
  }
  STDMETHODIMP Clear() override {
    return Call<IMutableRecordList>([&] { MutableRecordListImpl::Clear(); });
  }
  STDMETHODIMP CompareTo(IMutableRecordList* other, LONG* retVal) override {
    return Call<IMutableRecordList>(retVal, [&] { *retVal = MutableRecordListImpl::CompareTo(other); });
  }
  STDMETHODIMP get_Columns(IMutableColumns** RetVal) override {
    return Call<IMutableRecordList>(RetVal, [&] { *RetVal = MutableRecordListImpl::Columns().detach(); });
  }
  STDMETHODIMP get_RecordList(IRecordList** RetVal) override {
    return Call<IMutableRecordList>(RetVal, [&] { *RetVal = MutableRecordListImpl::RecordList().detach(); });
  }
  STDMETHODIMP get_Size(ULONG* RetVal) override {
    return Call<IMutableRecordList>(RetVal, [&] { *RetVal = MutableRecordListImpl::Size(); });
  }
  STDMETHODIMP GetIterator(VARIANT_BOOL synchronized, IRecordListIterator** RetVal) override {
    return Call<IMutableRecordList>(RetVal, [&] { *RetVal = MutableRecordListImpl::GetIterator(synchronized).detach(); });
  }
  STDMETHODIMP GetFilteredIterator(IRecordCondition* condition, VARIANT_BOOL synchronized,
                                   IRecordListIterator** RetVal) override {
    return Call<IMutableRecordList>(
        RetVal, [&] { *RetVal = MutableRecordListImpl::GetFilteredIterator(condition, synchronized).detach(); });
  }
  STDMETHODIMP GetSortedIterator(IRecordComparator* comparator, VARIANT_BOOL synchronized,
                                 IRecordListIterator** RetVal) override {
    return Call<IMutableRecordList>(
        RetVal, [&] { *RetVal = MutableRecordListImpl::GetSortedIterator(comparator, synchronized).detach(); });
  }
  STDMETHODIMP EnableMutableRecordListEvents(VARIANT_BOOL flag) override {
    return Call<IMutableRecordList>([&] { MutableRecordListImpl::EnableMutableRecordListEvents(flag); });
  }
  STDMETHODIMP AddRecordListChangeListener(IRecordListChangeListener* pVal) override {
    return Call<IMutableRecordList>([&] { MutableRecordListImpl::AddRecordListChangeListener(pVal); });
  }
  STDMETHODIMP RemoveRecordListChangeListener(IRecordListChangeListener* pVal) override {
    return Call<IMutableRecordList>([&] { MutableRecordListImpl::RemoveRecordListChangeListener(pVal); });
  }
  STDMETHODIMP AddRecordListValueChangeListener(IRecordListValueChangeListener* pVal) override {
    return Call<IMutableRecordList>([&] { MutableRecordListImpl::AddRecordListValueChangeListener(pVal); });
  }
  STDMETHODIMP RemoveRecordListValueChangeListener(IRecordListValueChangeListener* pVal) override {
    return Call<IMutableRecordList>([&] { MutableRecordListImpl::RemoveRecordListValueChangeListener(pVal); });
  }

  // IRecordChangeListener: value changes of the list's records, through the relay.
  STDMETHODIMP ValueBeforeChange(IRecordChangeEvent* pEvent) override {
    return Call<IRecordChangeListener>([&] { MutableRecordListImpl::ValueBeforeChange(pEvent); });
  }
  STDMETHODIMP ValueAfterChange(IRecordChangeEvent* pEvent) override {
    return Call<IRecordChangeListener>([&] { MutableRecordListImpl::ValueAfterChange(pEvent); });
  }

 protected:
  IMutableRecordList* Self() noexcept override { return this; }
};

}  // namespace brevo
