// One registry per listener kind on every raising object: counted references
// in order of addition, no duplicate or null checks, removal by pointer or COM
// identity, and the "Before" (may veto) and "After" notification loops.
#pragma once

#include "core/bv_exception.h"
#include "core/call_out.h"
#include "core/com_ptr.h"
#include "core/first_inline_vector.h"
#include "core/script_call.h"
#include "events/event_demand.h"

namespace brevo {

template <class Listener>
class ListenerRegistry {
 public:
  template <class Event>
  using Method = HRESULT (STDMETHODCALLTYPE Listener::*)(Event*);

  // message: what a failed removal reports, fixed per registry.
  explicit ListenerRegistry(const OLECHAR* removalMessage) noexcept : removalMessage_(removalMessage) {}

  bool empty() const noexcept { return listeners_.empty(); }
  std::size_t size() const noexcept { return listeners_.size(); }

  // A script object that has only IDispatch is kept as an adapter that calls
  // it by name; the adapter answers for the script object's identity.
  void Add(Listener* listener) {
    Entry entry{AsCallback<Listener>(listener), nullptr};
    if (entry.listener) {
      com_ptr<IEventDemand> demand;
      // The entry's own reference keeps the object alive.
      if (entry.listener->QueryInterface(iid_of<IEventDemand>(), demand.put_void()) == S_OK) entry.demand = demand.get();
    }
    listeners_.push_back(std::move(entry));
  }

  // Erases the first entry that is listener itself or the same COM object.
  void Remove(Listener* listener) {
    try {
      for (std::size_t i = 0; i < listeners_.size(); ++i) {
        if (Matches(listeners_[i].listener.get(), listener)) {
          const com_ptr<Listener> removed = std::move(listeners_[i].listener);  // released after the erase
          listeners_.erase(i);
          return;
        }
      }
    } catch (...) {
    }
    throw EBvException(removalMessage_);
  }

  // Calls method on each listener in order, re-reading the length every step so
  // that a listener added during the pass is called too; ends after the first
  // listener after which the event reports stopped. Returns false on a veto.
  // The event (anything with get() giving it, such as a LazyEvent) is only
  // asked for when there is a listener.
  template <class Event, class EventSource>
  bool NotifyBefore(Method<Event> method, EventSource&& source) {
    for (std::size_t i = 0; i < listeners_.size(); ++i) {
      if (Skips(i, true)) continue;
      Event* event = Resolve(source);
      CallOne(i, method, event);
      // A null event, passed on as it came, cannot be stopped.
      VARIANT_BOOL stopped = 0;
      if (event != nullptr) ThrowIfFailed(event->IsStopped(&stopped));
      if (stopped != 0) return false;
    }
    return true;
  }

  // Calls method on every listener in order; an error ends the loop.
  template <class Event, class EventSource>
  void NotifyAfter(Method<Event> method, EventSource&& source) {
    for (std::size_t i = 0; i < listeners_.size(); ++i) {
      if (!Skips(i, false)) CallOne<Event>(i, method, Resolve(source));
    }
  }

 private:
  template <class T>
  static T* Resolve(T* event) noexcept {
    return event;
  }
  template <class Source>
  static auto Resolve(Source& source) {
    return source.get();
  }

  static bool Matches(Listener* entry, Listener* listener) {
    if (entry == listener) return true;
    if (entry == nullptr || listener == nullptr) return false;
    com_ptr<IUnknown> a;
    com_ptr<IUnknown> b;
    ThrowIfFailed(entry->QueryInterface(iid_of<IUnknown>(), a.put_void()));
    ThrowIfFailed(listener->QueryInterface(iid_of<IUnknown>(), b.put_void()));
    return a == b;
  }

  bool Skips(std::size_t i, bool before) noexcept {
    IEventDemand* demand = listeners_[i].demand;
    if (demand == nullptr || demand->WantsEvent()) return false;
    demand->Skipped(before);
    return true;
  }

  template <class Event>
  void CallOne(std::size_t i, Method<Event> method, Event* event) {
    const com_ptr<Listener> listener = listeners_[i].listener;  // may remove itself meanwhile
    if (!listener) _com_issue_error(E_POINTER);
    const CallOutLevel level;
    ThrowIfFailed((listener.get()->*method)(event), listener.get());
  }

  struct Entry {
    com_ptr<Listener> listener;
    IEventDemand* demand;  // the listener's, when it can do without events
  };
  FirstInlineVector<Entry> listeners_;
  const OLECHAR* removalMessage_;
};

}  // namespace brevo
