// Listeners that pass notifications on to a target without keeping it alive.
// An object that must hear the objects it owns registers a relay rather than
// itself, so that owner and owned never hold each other; the owner detaches
// the relay before it goes, and a detached relay ignores what it hears.
#pragma once

#include "core/implements.h"
#include "events/event_demand.h"
#include "events/listener_interfaces.h"

namespace brevo {

template <class Derived, class Listener, class... Others>
class ListenerRelay : public implements<Derived, Listener, Others...> {
 public:
  explicit ListenerRelay(Listener* target) noexcept : target_(target) {}
  void Detach() noexcept { target_ = nullptr; }
  bool Detached() const noexcept { return target_ == nullptr; }

 protected:
  template <class Event>
  HRESULT Forward(HRESULT (STDMETHODCALLTYPE Listener::*method)(Event*), Event* event) {
    if (target_ == nullptr) return S_OK;
    const com_ptr<Listener> target(target_);  // the target may let its last reference go meanwhile
    return (target.get()->*method)(event);
  }

 private:
  Listener* target_;
};

class PropertyChangeRelay : public ListenerRelay<PropertyChangeRelay, IPropertyChangeListener> {
 public:
  static constexpr CLSID kClassId = {0x0CFFB4BB, 0xED0B, 0x4F8B, 0x9A, 0x4F, 0x24, 0xD4, 0x5C, 0xE8, 0xDE, 0x3C};
  using ListenerRelay::ListenerRelay;

  STDMETHODIMP PropertyChange(IPropertyChangeEvent* e) override {
    return Forward(&IPropertyChangeListener::PropertyChange, e);
  }
};

// Asks its owner, if it has one to ask, whether a change needs an event.
class RecordChangeRelay : public ListenerRelay<RecordChangeRelay, IRecordChangeListener, IEventDemand> {
 public:
  static constexpr CLSID kClassId = {0x7E3DDE40, 0x54EA, 0x4F37, 0xB3, 0xC1, 0x32, 0x46, 0x4A, 0x21, 0xB9, 0xC9};
  explicit RecordChangeRelay(IRecordChangeListener* target, EventDemand* owner = nullptr) noexcept
      : ListenerRelay(target), owner_(owner) {}

  bool WantsEvent() noexcept override { return !Detached() && (owner_ == nullptr || owner_->WantsEvent()); }
  void Skipped(bool before) noexcept override {
    if (!Detached() && owner_ != nullptr) owner_->Skipped(before);
  }

  STDMETHODIMP ValueBeforeChange(IRecordChangeEvent* e) override {
    return Forward(&IRecordChangeListener::ValueBeforeChange, e);
  }
  STDMETHODIMP ValueAfterChange(IRecordChangeEvent* e) override {
    return Forward(&IRecordChangeListener::ValueAfterChange, e);
  }

 private:
  EventDemand* owner_;
};

class ColumnsChangeRelay : public ListenerRelay<ColumnsChangeRelay, IColumnsChangeListener> {
 public:
  static constexpr CLSID kClassId = {0x9458A017, 0x00DE, 0x48B7, 0xAC, 0x0B, 0x49, 0x41, 0x17, 0x0A, 0x22, 0x00};
  using ListenerRelay::ListenerRelay;

  STDMETHODIMP ColumnBeforeAdd(IColumnsChangeEvent* e) override {
    return Forward(&IColumnsChangeListener::ColumnBeforeAdd, e);
  }
  STDMETHODIMP ColumnAfterAdd(IColumnsChangeEvent* e) override {
    return Forward(&IColumnsChangeListener::ColumnAfterAdd, e);
  }
  STDMETHODIMP ColumnBeforeRemove(IColumnsChangeEvent* e) override {
    return Forward(&IColumnsChangeListener::ColumnBeforeRemove, e);
  }
  STDMETHODIMP ColumnAfterRemove(IColumnsChangeEvent* e) override {
    return Forward(&IColumnsChangeListener::ColumnAfterRemove, e);
  }
};

// A list's read-only view hears the list through these: a view that Clear
// dropped dies with its last client reference.
class RecordListChangeRelay : public ListenerRelay<RecordListChangeRelay, IRecordListChangeListener> {
 public:
  static constexpr CLSID kClassId = {0x2B9C61E4, 0x7A35, 0x4F0D, 0x8E, 0x5A, 0x61, 0xC3, 0x0F, 0x92, 0xD4, 0x17};
  using ListenerRelay::ListenerRelay;

  STDMETHODIMP RecordBeforeAdd(IRecordListChangeEvent* e) override {
    return Forward(&IRecordListChangeListener::RecordBeforeAdd, e);
  }
  STDMETHODIMP RecordAfterAdd(IRecordListChangeEvent* e) override {
    return Forward(&IRecordListChangeListener::RecordAfterAdd, e);
  }
  STDMETHODIMP RecordBeforeRemove(IRecordListChangeEvent* e) override {
    return Forward(&IRecordListChangeListener::RecordBeforeRemove, e);
  }
  STDMETHODIMP RecordAfterRemove(IRecordListChangeEvent* e) override {
    return Forward(&IRecordListChangeListener::RecordAfterRemove, e);
  }
};

class RecordListValueChangeRelay : public ListenerRelay<RecordListValueChangeRelay, IRecordListValueChangeListener> {
 public:
  static constexpr CLSID kClassId = {0x6F1D0A93, 0xC84B, 0x4E52, 0xA7, 0x3E, 0x0B, 0x5D, 0x28, 0xE1, 0x9C, 0x46};
  using ListenerRelay::ListenerRelay;

  STDMETHODIMP ValueBeforeChange(IRecordListValueChangeEvent* e) override {
    return Forward(&IRecordListValueChangeListener::ValueBeforeChange, e);
  }
  STDMETHODIMP ValueAfterChange(IRecordListValueChangeEvent* e) override {
    return Forward(&IRecordListValueChangeListener::ValueAfterChange, e);
  }
};

}  // namespace brevo
