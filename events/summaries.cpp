#include "events/summaries.h"

#include "events/change_events.h"
#include "events/lazy_event.h"

namespace brevo {

void SwitchRecordListEvents(EventsSwitch<2>& events, VARIANT_BOOL flag, IDispatch* source,
                            ListenerRegistry<IRecordListChangeListener>& listListeners,
                            ListenerRegistry<IRecordListValueChangeListener>& valueListeners) {
  events.Switch(flag, [&](std::size_t pending) {
    if (pending == kRecordsPending) {
      auto summary = MakeLazyEvent<RecordListChangeEvent>(
          [&](RecordListChangeEvent& e) { e.RecordListChangeEventImpl::Initialize(source, nullptr); });
      listListeners.NotifyAfter(&IRecordListChangeListener::RecordAfterAdd, summary);
      listListeners.NotifyAfter(&IRecordListChangeListener::RecordAfterRemove, summary);
    } else {
      auto summary = MakeLazyEvent<RecordListValueChangeEvent>([&](RecordListValueChangeEvent& e) {
        e.RecordListValueChangeEventImpl::Initialize(source, nullptr, -1);
      });
      valueListeners.NotifyAfter(&IRecordListValueChangeListener::ValueAfterChange, summary);
    }
  });
}

void SwitchRecordEvents(EventsSwitch<1>& events, VARIANT_BOOL flag, IDispatch* source,
                        ListenerRegistry<IRecordChangeListener>& listeners) {
  events.Switch(flag, [&](std::size_t) {
    auto summary = MakeLazyEvent<RecordChangeEvent>(
        [&](RecordChangeEvent& e) { e.RecordChangeEventImpl::Initialize(source, -1); });
    listeners.NotifyAfter(&IRecordChangeListener::ValueAfterChange, summary);
  });
}

}  // namespace brevo
