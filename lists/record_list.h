// The read-only view of a mutable list: its rows, columns and iterators
// without the mutators, iterators handing out read-only records. It listens
// to its list and passes the list's events on to its own listeners.
#pragma once

#include "core/view_set.h"
#include "events/listener_relay.h"
#include "lists/record_list_facade.h"

namespace brevo {

class RecordListImpl;
using RecordListViews = ViewSet<RecordListImpl, IRecordList>;

class RecordListImpl : public AbstractRecordList {
 public:
  // Called once by the list, which knows the view without a count; the view
  // hears the list through relays, so that it dies with its last client
  // reference.
  void Create(IMutableRecordList* parent, RecordListViews* views);
  // The list is going; the view then answers E_POINTER.
  void ParentGone() noexcept;
  // The view's last release: it leaves the list.
  void Detach() noexcept;

  LONG CompareTo(IDispatch* other);
  com_ptr<IColumns> Columns();
  ULONG Size();
  com_ptr<IRecordListIterator> GetIterator(VARIANT_BOOL synchronized);
  com_ptr<IRecordListIterator> GetFilteredIterator(IRecordCondition* condition, VARIANT_BOOL synchronized);
  com_ptr<IRecordListIterator> GetSortedIterator(IRecordComparator* comparator, VARIANT_BOOL synchronized);
  IMutableRecordList* Parent();

  // The list's events, passed on while the view's events are on.
  template <class Event>
  void PassBefore(HRESULT (STDMETHODCALLTYPE IRecordListChangeListener::*method)(Event*), Event* event) {
    if (Events().enabled()) {
      ListListeners().NotifyBefore(method, event);
    } else {
      Events().MarkPending(kRecordsPending);
    }
  }
  template <class Event>
  void PassAfter(HRESULT (STDMETHODCALLTYPE IRecordListChangeListener::*method)(Event*), Event* event) {
    if (Events().enabled()) ListListeners().NotifyAfter(method, event);
  }
  void PassValueBefore(IRecordListValueChangeEvent* event);
  void PassValueAfter(IRecordListValueChangeEvent* event);

 private:
  com_ptr<IRecordListIterator> ReadOnly(com_ptr<IRecordListIterator> iterator);

  IMutableRecordList* parent_ = nullptr;
  RecordListViews* views_ = nullptr;
  com_ptr<RecordListChangeRelay> changeRelay_;
  com_ptr<RecordListValueChangeRelay> valueRelay_;
};

class RecordList : public RecordListFacade<RecordList, RecordListImpl, IRecordListRaw, IRecordListChangeListener,
                                           IRecordListValueChangeListener> {
 public:
  static constexpr CLSID kClassId = {0xD07CB243, 0xB927, 0x4F96, 0xBB, 0x31, 0xD7, 0xC6, 0xF9, 0xEC, 0xB5, 0xA9};

  void FinalRelease() { Detach(); }

  // IRecordListRaw
  com_ptr<IMutableRecordList> GetMutableRecordList() override { return com_ptr<IMutableRecordList>(Parent()); }

  // The list's own events.
  STDMETHODIMP RecordBeforeAdd(IRecordListChangeEvent* e) override {
    return Call<IRecordListChangeListener>([&] { PassBefore(&IRecordListChangeListener::RecordBeforeAdd, e); });
  }
  STDMETHODIMP RecordAfterAdd(IRecordListChangeEvent* e) override {
    return Call<IRecordListChangeListener>([&] { PassAfter(&IRecordListChangeListener::RecordAfterAdd, e); });
  }
  STDMETHODIMP RecordBeforeRemove(IRecordListChangeEvent* e) override {
    return Call<IRecordListChangeListener>([&] { PassBefore(&IRecordListChangeListener::RecordBeforeRemove, e); });
  }
  STDMETHODIMP RecordAfterRemove(IRecordListChangeEvent* e) override {
    return Call<IRecordListChangeListener>([&] { PassAfter(&IRecordListChangeListener::RecordAfterRemove, e); });
  }
  STDMETHODIMP ValueBeforeChange(IRecordListValueChangeEvent* e) override {
    return Call<IRecordListValueChangeListener>([&] { PassValueBefore(e); });
  }
  STDMETHODIMP ValueAfterChange(IRecordListValueChangeEvent* e) override {
    return Call<IRecordListValueChangeListener>([&] { PassValueAfter(e); });
  }
};

}  // namespace brevo
