// A mutable record list seen through one column group: the grouped list over a
// mutable source, handing out writable grouped records. Records are added to
// the source; the schema and the rows are the source's to change, so Create
// and Clear are refused.
#pragma once

#include "grouping/group_record_list.h"
#include "lists/record_list.h"

namespace brevo {

class GroupMutableRecordListImpl : public GroupRecordListImpl {
 public:
  GroupMutableRecordListImpl() : GroupRecordListImpl(OLESTR("Cannot remove recordList value change listener.")) {}

  void Create(IMutableColumns*) { throw EBvException(OLESTR("Cannot make add operation on grouped object.")); }
  void Clear() { throw EBvException(OLESTR("Cannot make remove operation on grouped object.")); }
  com_ptr<IDispatch> AddRecord() { return Wrap(Source().AddRecord().get()); }
  com_ptr<IRecordList> RecordList();

 protected:
  bool Writable() const noexcept override { return true; }
  com_ptr<IRecordListIterator> Present(com_ptr<IRecordListIterator> iterator) override;
  virtual IMutableRecordList* SelfAsMutableList() noexcept = 0;
  void DetachView() noexcept;

 private:
  RecordListViews views_;
};

class GroupMutableRecordList;

// The interfaces and the implementation, for the listening layer to sit on.
class GroupMutableRecordListBase
    : public implements<GroupMutableRecordList, IMutableRecordList, IGroupRecordListRaw, IRecordListChangeListener,
                        IRecordListValueChangeListener, IColumnsChangeListener, IProvideClassInfo>,
      public GroupMutableRecordListImpl {};

class GroupMutableRecordList : public GroupListListening<GroupMutableRecordList, GroupMutableRecordListBase> {
 public:
  static constexpr CLSID kClassId = {0x0D07F54B, 0xB9BB, 0x4C02, 0xA7, 0x14, 0x16, 0xBC, 0x4A, 0x42, 0x9C, 0x05};

  void FinalRelease() { DetachView(); }

  STDMETHODIMP Create(IMutableColumns* columns) override {
    return List([&] { GroupMutableRecordListImpl::Create(columns); });
  }
  STDMETHODIMP AddRecord(IMutableRecord** RetVal) override {
    return List(RetVal, [&] { *RetVal = GroupMutableRecordListImpl::AddRecord().query<IMutableRecord>().detach(); });
  }
  STDMETHODIMP Clear() override {
    return List([&] { GroupMutableRecordListImpl::Clear(); });
  }
  STDMETHODIMP CompareTo(IMutableRecordList* other, LONG* retVal) override {
    return List(retVal, [&] { *retVal = GroupMutableRecordListImpl::CompareTo(other); });
  }
  STDMETHODIMP get_Columns(IMutableColumns** RetVal) override {
    return List(RetVal, [&] { *RetVal = OwnColumns().detach(); });
  }
  STDMETHODIMP get_RecordList(IRecordList** RetVal) override {
    return List(RetVal, [&] { *RetVal = GroupMutableRecordListImpl::RecordList().detach(); });
  }
  STDMETHODIMP get_Size(ULONG* RetVal) override {
    return List(RetVal, [&] { *RetVal = GroupMutableRecordListImpl::Size(); });
  }
  STDMETHODIMP GetIterator(VARIANT_BOOL synchronized, IRecordListIterator** RetVal) override {
    return List(RetVal, [&] { *RetVal = GroupMutableRecordListImpl::GetIterator(synchronized).detach(); });
  }
  STDMETHODIMP GetFilteredIterator(IRecordCondition* condition, VARIANT_BOOL synchronized,
                                   IRecordListIterator** RetVal) override {
    return List(RetVal,
                [&] { *RetVal = GroupMutableRecordListImpl::GetFilteredIterator(condition, synchronized).detach(); });
  }
  STDMETHODIMP GetSortedIterator(IRecordComparator* comparator, VARIANT_BOOL synchronized,
                                 IRecordListIterator** RetVal) override {
    return List(RetVal,
                [&] { *RetVal = GroupMutableRecordListImpl::GetSortedIterator(comparator, synchronized).detach(); });
  }
  STDMETHODIMP EnableMutableRecordListEvents(VARIANT_BOOL flag) override {
    return List([&] { GroupMutableRecordListImpl::EnableRecordListEvents(flag); });
  }
  STDMETHODIMP AddRecordListChangeListener(IRecordListChangeListener* pVal) override {
    return List([&] { GroupMutableRecordListImpl::AddRecordListChangeListener(pVal); });
  }
  STDMETHODIMP RemoveRecordListChangeListener(IRecordListChangeListener* pVal) override {
    return List([&] { GroupMutableRecordListImpl::RemoveRecordListChangeListener(pVal); });
  }
  STDMETHODIMP AddRecordListValueChangeListener(IRecordListValueChangeListener* pVal) override {
    return List([&] { GroupMutableRecordListImpl::AddRecordListValueChangeListener(pVal); });
  }
  STDMETHODIMP RemoveRecordListValueChangeListener(IRecordListValueChangeListener* pVal) override {
    return List([&] { GroupMutableRecordListImpl::RemoveRecordListValueChangeListener(pVal); });
  }

 protected:
  IDispatch* SelfAsSource() noexcept override { return static_cast<IMutableRecordList*>(this); }
  IMutableRecordList* SelfAsMutableList() noexcept override { return this; }

 private:
  template <class Body>
  HRESULT List(Body&& body) noexcept {
    return Call<IMutableRecordList>(std::forward<Body>(body));
  }
  template <class T, class Body>
  HRESULT List(T* out, Body&& body) noexcept {
    return Call<IMutableRecordList>(out, std::forward<Body>(body));
  }
};

}  // namespace brevo
