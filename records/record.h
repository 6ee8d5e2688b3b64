// The read-only view of a mutable record: reads through to it, and passes its
// value events on to the view's own listeners. The record owns the view; the
// view holds the record without a count and is told when it goes.
#pragma once

#include "events/events_switch.h"
#include "events/listener_registry.h"
#include "records/abstract_record_read_only.h"
#include "records/record_reader.h"

namespace brevo {

class RecordImpl : public AbstractRecordReadOnly {
 public:
  // Called once by the record.
  void Create(IMutableRecord* parent);
  void ParentGone() noexcept { parent_ = nullptr; }

  unique_variant GetValue(ULONG index) override { return Parent()->GetValue(index); }
  const VARIANT* PeekValue(ULONG index) override { return Parent()->PeekValue(index); }
  unique_variant GetValueByName(const _bstr_t& name);
  LONG CompareTo(IRecordRaw* other);
  ULONG ColumnCount() { return Parent()->ColumnCount(); }
  com_ptr<IColumns> Columns();
  void EnableRecordEvents(VARIANT_BOOL flag);
  void AddRecordChangeListener(IRecordChangeListener* listener) { listeners_.Add(listener); }
  void RemoveRecordChangeListener(IRecordChangeListener* listener) { listeners_.Remove(listener); }
  void ValueBeforeChange(IRecordChangeEvent* event);
  void ValueAfterChange(IRecordChangeEvent* event);

 protected:
  virtual IRecordChangeListener* SelfAsListener() noexcept = 0;
  virtual IRecord* Self() noexcept = 0;

 private:
  IRecordRaw* Parent();

  IMutableRecord* parent_ = nullptr;
  IRecordRaw* parentRaw_ = nullptr;  // the same object
  EventsSwitch<1> events_;
  ListenerRegistry<IRecordChangeListener> listeners_{OLESTR("Cannot remove record change listener.")};
};

class Record : public RecordReader<Record, IRecord, RecordImpl, IRecordRaw, IRecordChangeListener> {
 public:
  static constexpr CLSID kClassId = {0xF5AD714E, 0x2147, 0x4E90, 0x90, 0xF6, 0x62, 0x45, 0xD6, 0x2B, 0x16, 0x0A};

  STDMETHODIMP get_Columns(IColumns** RetVal) override {
    return Read(RetVal, [&] { *RetVal = RecordImpl::Columns().detach(); });
  }
  STDMETHODIMP EnableRecordEvents(VARIANT_BOOL flag) override {
    return Read([&] { RecordImpl::EnableRecordEvents(flag); });
  }

  // IRecordChangeListener: the parent's value events.
  STDMETHODIMP ValueBeforeChange(IRecordChangeEvent* pEvent) override {
    return Call<IRecordChangeListener>([&] { RecordImpl::ValueBeforeChange(pEvent); });
  }
  STDMETHODIMP ValueAfterChange(IRecordChangeEvent* pEvent) override {
    return Call<IRecordChangeListener>([&] { RecordImpl::ValueAfterChange(pEvent); });
  }

 protected:
  IRecordChangeListener* SelfAsListener() noexcept override { return this; }
  IRecord* Self() noexcept override { return this; }
};

}  // namespace brevo
