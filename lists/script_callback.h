// A script object as a condition, comparator or listener: each method calls
// the script's method of the same name (see core/script_call.h).
#pragma once

#include "core/implements.h"
#include "core/script_call.h"
#include "events/listener_interfaces.h"
#include "lists/list_interfaces.h"

namespace brevo {

class ScriptCallbackImpl {
 public:
  explicit ScriptCallbackImpl(IDispatch* script) : script_(script) {}

  VARIANT_BOOL Evaluate(IMutableRecord* record);
  LONG Compare(const VARIANT& first, const VARIANT& second);
  // A listener method; one that the script leaves out does nothing, so that a
  // script listener only writes the notifications it wants.
  void Notify(const OLECHAR* method, IUnknown* event);

 protected:
  ScriptObject& Script() noexcept { return script_; }

 private:
  ScriptObject script_;
};

class ScriptCallback
    : public implements<ScriptCallback, IRecordCondition, IRecordComparator, IRecordChangeListener,
                        IColumnsChangeListener, IRecordListChangeListener, IRecordListValueChangeListener,
                        IPropertyChangeListener>,
      public ScriptCallbackImpl {
 public:
  static constexpr CLSID kClassId = {0x73EE18A0, 0x2AAD, 0x41D3, {0x8E, 0x2A, 0x71, 0xE9, 0xE9, 0xD2, 0x4F, 0xCB}};

  using ScriptCallbackImpl::ScriptCallbackImpl;

  // The adapter is the script object as far as identity goes: a registry
  // finds a script listener by the object the client passed, wrapped or not.
  HRESULT InternalQueryInterface(REFIID iid, void** out) noexcept {
    if (out != nullptr && iid == iid_of<IUnknown>()) return Script().QueryIdentity(out);
    return implements::InternalQueryInterface(iid, out);
  }
  // The script's message is what a failed call leaves: callers pick it up.
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID) override { return S_OK; }

  // IRecordCondition, IRecordComparator
  STDMETHODIMP Evaluate(IMutableRecord* record, VARIANT_BOOL* RetVal) override {
    return Call<IRecordCondition>(RetVal, [&] { *RetVal = ScriptCallbackImpl::Evaluate(record); });
  }
  STDMETHODIMP Compare(VARIANT first, VARIANT second, LONG* RetVal) override {
    return Call<IRecordComparator>(RetVal, [&] { *RetVal = ScriptCallbackImpl::Compare(first, second); });
  }

  // The listener interfaces
  STDMETHODIMP ValueBeforeChange(IRecordChangeEvent* pEvent) override {
    return Call<IRecordChangeListener>([&] { Notify(OLESTR("ValueBeforeChange"), pEvent); });
  }
  STDMETHODIMP ValueAfterChange(IRecordChangeEvent* pEvent) override {
    return Call<IRecordChangeListener>([&] { Notify(OLESTR("ValueAfterChange"), pEvent); });
  }
  STDMETHODIMP ColumnBeforeAdd(IColumnsChangeEvent* pEvent) override {
    return Call<IColumnsChangeListener>([&] { Notify(OLESTR("ColumnBeforeAdd"), pEvent); });
  }
  STDMETHODIMP ColumnAfterAdd(IColumnsChangeEvent* pEvent) override {
    return Call<IColumnsChangeListener>([&] { Notify(OLESTR("ColumnAfterAdd"), pEvent); });
  }
  STDMETHODIMP ColumnBeforeRemove(IColumnsChangeEvent* pEvent) override {
    return Call<IColumnsChangeListener>([&] { Notify(OLESTR("ColumnBeforeRemove"), pEvent); });
  }
  STDMETHODIMP ColumnAfterRemove(IColumnsChangeEvent* pEvent) override {
    return Call<IColumnsChangeListener>([&] { Notify(OLESTR("ColumnAfterRemove"), pEvent); });
  }
  STDMETHODIMP RecordBeforeAdd(IRecordListChangeEvent* pEvent) override {
    return Call<IRecordListChangeListener>([&] { Notify(OLESTR("RecordBeforeAdd"), pEvent); });
  }
  STDMETHODIMP RecordAfterAdd(IRecordListChangeEvent* pEvent) override {
    return Call<IRecordListChangeListener>([&] { Notify(OLESTR("RecordAfterAdd"), pEvent); });
  }
  STDMETHODIMP RecordBeforeRemove(IRecordListChangeEvent* pEvent) override {
    return Call<IRecordListChangeListener>([&] { Notify(OLESTR("RecordBeforeRemove"), pEvent); });
  }
  STDMETHODIMP RecordAfterRemove(IRecordListChangeEvent* pEvent) override {
    return Call<IRecordListChangeListener>([&] { Notify(OLESTR("RecordAfterRemove"), pEvent); });
  }
  STDMETHODIMP ValueBeforeChange(IRecordListValueChangeEvent* pEvent) override {
    return Call<IRecordListValueChangeListener>([&] { Notify(OLESTR("ValueBeforeChange"), pEvent); });
  }
  STDMETHODIMP ValueAfterChange(IRecordListValueChangeEvent* pEvent) override {
    return Call<IRecordListValueChangeListener>([&] { Notify(OLESTR("ValueAfterChange"), pEvent); });
  }
  STDMETHODIMP PropertyChange(IPropertyChangeEvent* pEvent) override {
    return Call<IPropertyChangeListener>([&] { Notify(OLESTR("PropertyChange"), pEvent); });
  }
};

}  // namespace brevo
