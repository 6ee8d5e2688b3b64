// A listener that writes each call into a shared transcript and can stop the
// event, fail (leaving error info), or run extra work during the call.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/error_reporting.h"
#include "events/listener_interfaces.h"
#include "support/test_support.h"

namespace brevo::testing {

using Transcript = std::vector<std::string>;

class ScriptedListener
    : public implements<ScriptedListener, IPropertyChangeListener, IColumnsChangeListener, IRecordChangeListener> {
 public:
  static constexpr CLSID kClassId = {0x1B7E40D2, 0x5C31, 0x4F0A, {0x8E, 0x6B, 0x27, 0x90, 0xC4, 0x1D, 0x3A, 0x55}};

  ScriptedListener(Transcript& transcript, std::string name) : transcript_(transcript), name_(std::move(name)) {}
  bool stop = false;
  HRESULT result = S_OK;
  const OLECHAR* errorText = nullptr;
  bool supportsErrorInfo = false;  // listener interfaces are callbacks: no by default
  std::function<void()> during;
  IUnknown* lastSource = nullptr;  // identity only: a reference would keep the raiser alive

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID) override { return supportsErrorInfo ? S_OK : S_FALSE; }
  STDMETHODIMP PropertyChange(IPropertyChangeEvent* e) override {
    BSTR name = nullptr, oldValue = nullptr, newValue = nullptr;
    e->GetPropertyName(&name);
    e->GetOldValue(&oldValue);
    e->GetNewValue(&newValue);
    const _bstr_t n(name, false), o(oldValue, false), v(newValue, false);
    com_ptr<IDispatch> source;
    e->GetSource(source.put());
    lastSource = identity_of(source.get()).get();
    return Heard("PropertyChange(" + Narrow(n) + ": " + Narrow(o) + " -> " + Narrow(v) + ")", e);
  }
  STDMETHODIMP ColumnBeforeAdd(IColumnsChangeEvent* e) override { return Heard("ColumnBeforeAdd", e); }
  STDMETHODIMP ColumnAfterAdd(IColumnsChangeEvent* e) override { return Heard("ColumnAfterAdd", e); }
  STDMETHODIMP ColumnBeforeRemove(IColumnsChangeEvent* e) override { return Heard("ColumnBeforeRemove", e); }
  STDMETHODIMP ColumnAfterRemove(IColumnsChangeEvent* e) override { return Heard("ColumnAfterRemove", e); }
  STDMETHODIMP ValueBeforeChange(IRecordChangeEvent* e) override { return Heard("ValueBeforeChange", e); }
  STDMETHODIMP ValueAfterChange(IRecordChangeEvent* e) override { return Heard("ValueAfterChange", e); }

 private:
  // Record events add the index they carry: "ValueBeforeChange(2)".
  template <class Event>
  HRESULT Heard(std::string what, Event* e) {
    if constexpr (std::is_same_v<Event, IRecordChangeEvent>) {
      LONG index = -1;
      e->GetIndex(&index);
      what += "(" + std::to_string(index) + ")";
    }
    transcript_.push_back(name_ + "." + what);
    if (during) during();
    if constexpr (!std::is_same_v<Event, IPropertyChangeEvent>) {
      if (stop) e->Stop();
    }
    return FAILED(result) && errorText != nullptr ? ReportError(kClassId, errorText, GUID{}, result) : result;
  }

  Transcript& transcript_;
  std::string name_;
};

inline com_ptr<CComObject<ScriptedListener>> MakeScripted(Transcript& transcript, std::string name) {
  return make_object<ScriptedListener>(transcript, std::move(name));
}

}  // namespace brevo::testing
