// A listener of every kind that writes each call into a shared transcript, and
// can be told to stop the event or to fail.
#pragma once

#include <string>
#include <vector>

#include "core/implements.h"
#include "events/listener_interfaces.h"
#include "support/test_support.h"

namespace brevo::testing {

using Transcript = std::vector<std::string>;

class RecordingListener
    : public implements<RecordingListener, IColumnsChangeListener, IPropertyChangeListener, IRecordChangeListener,
                        IRecordListChangeListener, IRecordListValueChangeListener> {
 public:
  static constexpr CLSID kClassId = {0x0B7E5D31, 0x5C2A, 0x4F0E, {0x9A, 0x41, 0x13, 0x77, 0x2C, 0x60, 0xD2, 0x10}};

  // Transcript lines read "<name>.<Method>" plus what the event carried.
  RecordingListener(std::string name, Transcript& transcript) : name_(std::move(name)), transcript_(transcript) {}

  bool stop = false;          // calls Stop on events that have it
  HRESULT result = S_OK;      // what every method returns

  STDMETHODIMP ColumnBeforeAdd(IColumnsChangeEvent* e) override { return Columns("ColumnBeforeAdd", e); }
  STDMETHODIMP ColumnAfterAdd(IColumnsChangeEvent* e) override { return Columns("ColumnAfterAdd", e); }
  STDMETHODIMP ColumnBeforeRemove(IColumnsChangeEvent* e) override { return Columns("ColumnBeforeRemove", e); }
  STDMETHODIMP ColumnAfterRemove(IColumnsChangeEvent* e) override { return Columns("ColumnAfterRemove", e); }
  STDMETHODIMP PropertyChange(IPropertyChangeEvent* e) override;
  STDMETHODIMP ValueBeforeChange(IRecordChangeEvent* e) override { return Indexed("ValueBeforeChange", e); }
  STDMETHODIMP ValueAfterChange(IRecordChangeEvent* e) override { return Indexed("ValueAfterChange", e); }
  STDMETHODIMP RecordBeforeAdd(IRecordListChangeEvent* e) override { return Records("RecordBeforeAdd", e); }
  STDMETHODIMP RecordAfterAdd(IRecordListChangeEvent* e) override { return Records("RecordAfterAdd", e); }
  STDMETHODIMP RecordBeforeRemove(IRecordListChangeEvent* e) override { return Records("RecordBeforeRemove", e); }
  STDMETHODIMP RecordAfterRemove(IRecordListChangeEvent* e) override { return Records("RecordAfterRemove", e); }
  STDMETHODIMP ValueBeforeChange(IRecordListValueChangeEvent* e) override { return Indexed("ListValueBeforeChange", e); }
  STDMETHODIMP ValueAfterChange(IRecordListValueChangeEvent* e) override { return Indexed("ListValueAfterChange", e); }

 private:
  template <class Event>
  HRESULT Finish(const std::string& line, Event* event) {
    transcript_.push_back(name_ + "." + line);
    if (stop) event->Stop();
    return result;
  }
  HRESULT Columns(const char* method, IColumnsChangeEvent* event);
  HRESULT Records(const char* method, IRecordListChangeEvent* event);
  template <class Event>
  HRESULT Indexed(const char* method, Event* event) {
    LONG index = 0;
    event->GetIndex(&index);
    return Finish(std::string(method) + "(" + std::to_string(index) + ")", event);
  }

  std::string name_;
  Transcript& transcript_;
};

// A new listener, as its object and as a listener of kind L.
inline com_ptr<CComObject<RecordingListener>> MakeRecorder(const std::string& name, Transcript& transcript) {
  return make_object<RecordingListener>(name, transcript);
}

}  // namespace brevo::testing
