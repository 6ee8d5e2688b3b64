// An event object made on first use, so that a change nobody listens to
// creates none.
#pragma once

#include <new>
#include <utility>

#include "core/com_error.h"
#include "core/implements.h"

namespace brevo {

template <class Event, class Init>
class LazyEvent {
 public:
  explicit LazyEvent(Init init) : init_(std::move(init)) {}

  // Making an event object is the runtime's object creation, which reports
  // running out of memory as E_OUTOFMEMORY.
  CComObject<Event>* get() {
    if (!event_) {
      try {
        event_ = make_object<Event>();
      } catch (const std::bad_alloc&) {
        _com_issue_error(E_OUTOFMEMORY);
      }
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
