// What every read-only list shape shares: its two listener registries, its
// events switch, and passing a source's events on to its own listeners.
#pragma once

#include "events/summaries.h"
#include "lists/list_interfaces.h"

namespace brevo {

class AbstractRecordList {
 public:
  // The read-only shapes and the mutable ones word a failed removal from the
  // value registry differently.
  explicit AbstractRecordList(const OLECHAR* valueRemovalMessage = OLESTR("Cannot remove record value change listener."))
      : valueListeners_(valueRemovalMessage) {}
  virtual ~AbstractRecordList() = default;

  void EnableRecordListEvents(VARIANT_BOOL flag) {
    SwitchRecordListEvents(events_, flag, SelfAsSource(), listListeners_, valueListeners_);
  }
  void AddRecordListChangeListener(IRecordListChangeListener* listener) { listListeners_.Add(listener); }
  void RemoveRecordListChangeListener(IRecordListChangeListener* listener) { listListeners_.Remove(listener); }
  void AddRecordListValueChangeListener(IRecordListValueChangeListener* listener) { valueListeners_.Add(listener); }
  void RemoveRecordListValueChangeListener(IRecordListValueChangeListener* listener) {
    valueListeners_.Remove(listener);
  }

 protected:
  virtual IDispatch* SelfAsSource() noexcept = 0;

  EventsSwitch<2>& Events() noexcept { return events_; }
  ListenerRegistry<IRecordListChangeListener>& ListListeners() noexcept { return listListeners_; }
  ListenerRegistry<IRecordListValueChangeListener>& ValueListeners() noexcept { return valueListeners_; }

 private:
  EventsSwitch<2> events_;
  ListenerRegistry<IRecordListChangeListener> listListeners_{OLESTR("Cannot remove recordlist change listener.")};
  ListenerRegistry<IRecordListValueChangeListener> valueListeners_;
};

}  // namespace brevo
