// A record list seen through one column group: every record of the source,
// through columns of its own copied from the source's group, following the
// source's changes and re-raising them to its own listeners. The source and
// its columns hold the grouped list as a listener and the grouped list holds
// the source: the pair lives until the client removes the grouped list from
// the source's two list registries and from the source columns' registry.
#pragma once

#include <vector>

#include "grouping/group_interfaces.h"
#include "grouping/list_source.h"
#include "lists/record_list_facade.h"

namespace brevo {

class GroupRecordListImpl : public AbstractRecordList {
 public:
  using AbstractRecordList::AbstractRecordList;

  // Registrations first, then the group check: a refusal leaves them in
  // place, and the half-built list keeps following its source safely.
  void Create(IDispatch* source, const _bstr_t& group);
  com_ptr<IDispatch> GetSource() const { return source_.Object(); }
  void Unregister() noexcept;

  LONG CompareTo(IDispatch* other) { return source_.CompareTo(other); }
  com_ptr<IColumns> Columns();
  ULONG Size() { return source_.Size(); }
  com_ptr<IRecordListIterator> GetIterator(VARIANT_BOOL synchronized) { return Present(source_.GetIterator(synchronized)); }
  com_ptr<IRecordListIterator> GetFilteredIterator(IRecordCondition* condition, VARIANT_BOOL synchronized) {
    return Present(source_.GetFilteredIterator(condition, synchronized));
  }
  com_ptr<IRecordListIterator> GetSortedIterator(IRecordComparator* comparator, VARIANT_BOOL synchronized) {
    return Present(source_.GetSortedIterator(comparator, synchronized));
  }

  // The source's notifications.
  void RecordBefore(IRecordListChangeEvent* event);
  void RecordAfterAdd(IRecordListChangeEvent* event);
  void RecordAfterRemove(IRecordListChangeEvent* event);
  void ValueBeforeChange(IRecordListValueChangeEvent* event);
  void ValueAfterChange(IRecordListValueChangeEvent* event);
  void ColumnAfterAdd(IColumnsChangeEvent* event);
  void ColumnAfterRemove(IColumnsChangeEvent* event);

 protected:
  virtual IRecordListChangeListener* SelfAsListListener() noexcept = 0;
  virtual IRecordListValueChangeListener* SelfAsValueListener() noexcept = 0;
  virtual IColumnsChangeListener* SelfAsColumnsListener() noexcept = 0;
  // Whether records are wrapped for writing.
  virtual bool Writable() const noexcept { return false; }
  // How the source's iterators are handed out.
  virtual com_ptr<IRecordListIterator> Present(com_ptr<IRecordListIterator> iterator) { return iterator; }

  com_ptr<IDispatch> Wrap(IDispatch* record);
  ListSource& Source() noexcept { return source_; }
  com_ptr<IMutableColumns> OwnColumns();
  const _bstr_t& Group() const noexcept { return group_; }

 private:
  void CopyColumns(const std::vector<ULONG>& sourceIndices);
  void RaiseRecordEvent(IRecordListChangeEvent* incoming,
                        HRESULT (STDMETHODCALLTYPE IRecordListChangeListener::*method)(IRecordListChangeEvent*));
  com_ptr<IRecordListValueChangeEvent> OwnValueEvent(IRecordListValueChangeEvent* incoming);

  ListSource source_;
  com_ptr<IColumns> sourceColumns_;
  com_ptr<IMutableColumns> columns_;
  _bstr_t key_;
  _bstr_t group_;
};

// The listener methods of both grouped lists, routed to the implementation.
template <class Derived, class Base>
class GroupListListening : public Base {
 public:
  STDMETHODIMP RecordBeforeAdd(IRecordListChangeEvent* e) override { return Route([&] { this->RecordBefore(e); }); }
  STDMETHODIMP RecordAfterAdd(IRecordListChangeEvent* e) override {
    return Route([&] { GroupRecordListImpl::RecordAfterAdd(e); });
  }
  STDMETHODIMP RecordBeforeRemove(IRecordListChangeEvent* e) override {
    return Route([&] { this->RecordBefore(e); });
  }
  STDMETHODIMP RecordAfterRemove(IRecordListChangeEvent* e) override {
    return Route([&] { GroupRecordListImpl::RecordAfterRemove(e); });
  }
  STDMETHODIMP ValueBeforeChange(IRecordListValueChangeEvent* e) override {
    return Route([&] { GroupRecordListImpl::ValueBeforeChange(e); });
  }
  STDMETHODIMP ValueAfterChange(IRecordListValueChangeEvent* e) override {
    return Route([&] { GroupRecordListImpl::ValueAfterChange(e); });
  }
  STDMETHODIMP ColumnBeforeAdd(IColumnsChangeEvent*) override { return S_OK; }
  STDMETHODIMP ColumnAfterAdd(IColumnsChangeEvent* e) override {
    return Route([&] { GroupRecordListImpl::ColumnAfterAdd(e); });
  }
  STDMETHODIMP ColumnBeforeRemove(IColumnsChangeEvent*) override { return S_OK; }
  STDMETHODIMP ColumnAfterRemove(IColumnsChangeEvent* e) override {
    return Route([&] { GroupRecordListImpl::ColumnAfterRemove(e); });
  }

  // IGroupRecordListRaw
  void Create(IDispatch* source, const _bstr_t& group) override { GroupRecordListImpl::Create(source, group); }
  com_ptr<IDispatch> GetSource() override { return GroupRecordListImpl::GetSource(); }
  void Unregister() override { GroupRecordListImpl::Unregister(); }

 protected:
  IRecordListChangeListener* SelfAsListListener() noexcept override { return this; }
  IRecordListValueChangeListener* SelfAsValueListener() noexcept override { return this; }
  IColumnsChangeListener* SelfAsColumnsListener() noexcept override { return this; }

 private:
  template <class Body>
  HRESULT Route(Body&& body) noexcept {
    return this->template Call<IRecordListChangeListener>(std::forward<Body>(body));
  }
};

class GroupRecordList
    : public GroupListListening<GroupRecordList,
                                RecordListFacade<GroupRecordList, GroupRecordListImpl, IGroupRecordListRaw,
                                                 IRecordListChangeListener, IRecordListValueChangeListener,
                                                 IColumnsChangeListener>> {
 public:
  static constexpr CLSID kClassId = {0x5629DA59, 0x0E5E, 0x4642, 0xB9, 0x6B, 0x3F, 0xF6, 0x0C, 0x07, 0xE9, 0x8E};
};

}  // namespace brevo
