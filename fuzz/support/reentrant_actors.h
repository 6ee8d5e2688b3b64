// Callbacks that hand every call back to the fuzz session, which may re-enter
// the library from inside it: a C++ object with every callback interface, and
// a script-like object that has only IDispatch and is called by method name.
#pragma once

#include "core/implements.h"
#include "events/listener_interfaces.h"
#include "lists/list_interfaces.h"

namespace brevo::fuzz {

enum class Cue { kCondition, kComparator, kBefore, kAfter, kColumnRemove, kProperty };

struct Reply {
  LONG value = 0;  // the condition's or comparator's answer
  HRESULT hr = S_OK;
};

// The session side. Subject is the event, or the record a condition tests.
class Stage {
 public:
  virtual Reply React(Cue cue, IUnknown* subject) = 0;

 protected:
  ~Stage() = default;
};

class Actor : public implements<Actor, IRecordCondition, IRecordComparator, IRecordChangeListener,
                                IColumnsChangeListener, IRecordListChangeListener, IRecordListValueChangeListener,
                                IPropertyChangeListener> {
 public:
  explicit Actor(Stage* stage) : stage(stage) {}
  // Null once the session is gone: a registry may outlive it briefly.
  Stage* stage;

  STDMETHODIMP Evaluate(IMutableRecord* record, VARIANT_BOOL* RetVal) override {
    const Reply reply = Ask(Cue::kCondition, record);
    *RetVal = reply.value != 0 ? VARIANT_TRUE : VARIANT_FALSE;
    return reply.hr;
  }
  STDMETHODIMP Compare(VARIANT, VARIANT, LONG* RetVal) override {
    const Reply reply = Ask(Cue::kComparator, nullptr);
    *RetVal = reply.value;
    return reply.hr;
  }
  STDMETHODIMP ValueBeforeChange(IRecordChangeEvent* e) override { return Ask(Cue::kBefore, e).hr; }
  STDMETHODIMP ValueAfterChange(IRecordChangeEvent* e) override { return Ask(Cue::kAfter, e).hr; }
  STDMETHODIMP ColumnBeforeAdd(IColumnsChangeEvent* e) override { return Ask(Cue::kBefore, e).hr; }
  STDMETHODIMP ColumnAfterAdd(IColumnsChangeEvent* e) override { return Ask(Cue::kAfter, e).hr; }
  STDMETHODIMP ColumnBeforeRemove(IColumnsChangeEvent* e) override { return Ask(Cue::kColumnRemove, e).hr; }
  STDMETHODIMP ColumnAfterRemove(IColumnsChangeEvent* e) override { return Ask(Cue::kColumnRemove, e).hr; }
  STDMETHODIMP RecordBeforeAdd(IRecordListChangeEvent* e) override { return Ask(Cue::kBefore, e).hr; }
  STDMETHODIMP RecordAfterAdd(IRecordListChangeEvent* e) override { return Ask(Cue::kAfter, e).hr; }
  STDMETHODIMP RecordBeforeRemove(IRecordListChangeEvent* e) override { return Ask(Cue::kBefore, e).hr; }
  STDMETHODIMP RecordAfterRemove(IRecordListChangeEvent* e) override { return Ask(Cue::kAfter, e).hr; }
  STDMETHODIMP ValueBeforeChange(IRecordListValueChangeEvent* e) override { return Ask(Cue::kBefore, e).hr; }
  STDMETHODIMP ValueAfterChange(IRecordListValueChangeEvent* e) override { return Ask(Cue::kAfter, e).hr; }
  STDMETHODIMP PropertyChange(IPropertyChangeEvent* e) override { return Ask(Cue::kProperty, e).hr; }

 private:
  Reply Ask(Cue cue, IUnknown* subject) { return stage != nullptr ? stage->React(cue, subject) : Reply{}; }
};

// As a script engine's object: IDispatch only, methods found by name; records
// and events arrive as VT_DISPATCH.
class ScriptActor final : public IDispatch {
 public:
  static com_ptr<ScriptActor> Make(Stage* stage) { return com_ptr<ScriptActor>::attach(new ScriptActor(stage)); }
  Stage* stage;

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++refs_; }
  STDMETHODIMP_(ULONG) Release() override;
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* answer, EXCEPINFO* error,
                      UINT*) override;

 private:
  explicit ScriptActor(Stage* stage) : stage(stage) {}
  ~ScriptActor() = default;

  ULONG refs_ = 1;
};

}  // namespace brevo::fuzz
