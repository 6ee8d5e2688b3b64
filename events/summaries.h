// The events switches of records and record lists, with the summaries they
// deliver when switched back on. Every record and list shape uses these.
#pragma once

#include "events/events_switch.h"
#include "events/listener_interfaces.h"
#include "events/listener_registry.h"

namespace brevo {

enum RecordListPending : std::size_t { kRecordsPending, kValuesPending };

// Records added or removed while off sum up as one "after add" and one "after
// remove" with no record; value changes as one "after change" with index -1.
void SwitchRecordListEvents(EventsSwitch<2>& events, VARIANT_BOOL flag, IDispatch* source,
                            ListenerRegistry<IRecordListChangeListener>& listListeners,
                            ListenerRegistry<IRecordListValueChangeListener>& valueListeners);

// Value changes while off sum up as one "after change" with index -1.
void SwitchRecordEvents(EventsSwitch<1>& events, VARIANT_BOOL flag, IDispatch* source,
                        ListenerRegistry<IRecordChangeListener>& listeners);

}  // namespace brevo
