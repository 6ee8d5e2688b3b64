// An event object made on first use, so that a change nobody listens to
// creates none.
#pragma once

#include <utility>

#include "core/implements.h"

namespace brevo {

template <class Event, class Init>
class LazyEvent {
 public:
  explicit LazyEvent(Init init) : init_(std::move(init)) {}

  CComObject<Event>* get() {
    if (!event_) {
      event_ = make_object<Event>();
      init_(*event_);
    }
    return event_.get();
  }

 private:
  Init init_;
  com_ptr<CComObject<Event>> event_;
};

template <class Event, class Init>
LazyEvent<Event, Init> MakeLazyEvent(Init init) {
  return LazyEvent<Event, Init>(std::move(init));
}

}  // namespace brevo
