// The table: rows in order of addition over one column collection, record-list
// events around additions, the records' value changes passed on to value
// listeners, and the filter and sort workspaces that iterators walk.
#pragma once

#include "events/event_demand.h"
#include "events/summaries.h"
#include "lists/list_interfaces.h"

namespace brevo {

class RecordChangeRelay;

class AbstractMutableRecordList : public EventDemand {
 public:
  AbstractMutableRecordList();
  virtual ~AbstractMutableRecordList();

  void EnableMutableRecordListEvents(VARIANT_BOOL flag);
  void AddRecordListChangeListener(IRecordListChangeListener* listener) { listListeners_.Add(listener); }
  void RemoveRecordListChangeListener(IRecordListChangeListener* listener) { listListeners_.Remove(listener); }
  void AddRecordListValueChangeListener(IRecordListValueChangeListener* listener) { valueListeners_.Add(listener); }
  void RemoveRecordListValueChangeListener(IRecordListValueChangeListener* listener) {
    valueListeners_.Remove(listener);
  }
  // A value change in one of the list's records.
  void ValueBeforeChange(IRecordChangeEvent* event);
  void ValueAfterChange(IRecordChangeEvent* event);
  // Without value listeners, or with events off, a record's change needs no
  // event on its way to the list.
  bool WantsEvent() noexcept override { return events_.enabled() && !valueListeners_.empty(); }
  void Skipped(bool before) noexcept override {
    if (before && !events_.enabled()) events_.MarkPending(kValuesPending);
  }

 protected:

  // The COM object: the events' source.
  virtual IMutableRecordList* Self() noexcept = 0;
  bool EventsEnabled() const noexcept { return events_.enabled(); }
  void MarkPending(RecordListPending kind) noexcept { events_.MarkPending(kind); }
  ListenerRegistry<IRecordListChangeListener>& ListListeners() noexcept { return listListeners_; }
  // What the list registers on its records to hear their value changes.
  IRecordChangeListener* RecordRelay();
  void DetachRelay() noexcept;

 private:
  void PassOn(IRecordChangeEvent* event, HRESULT (STDMETHODCALLTYPE IRecordListValueChangeListener::*method)(
                                              IRecordListValueChangeEvent*));

  EventsSwitch<2> events_;
  ListenerRegistry<IRecordListChangeListener> listListeners_{OLESTR("Cannot remove recordlist change listener.")};
  ListenerRegistry<IRecordListValueChangeListener> valueListeners_{
      OLESTR("Cannot remove recordList value change listener.")};
  com_ptr<RecordChangeRelay> relay_;
};

}  // namespace brevo
