#include "lists/script_callback.h"

namespace brevo {

VARIANT_BOOL ScriptCallbackImpl::Evaluate(IMutableRecord* record) {
  return ScriptBoolean(script_.Call(OLESTR("Evaluate"), {LentObject(record)}).get());
}

LONG ScriptCallbackImpl::Compare(const VARIANT& first, const VARIANT& second) {
  return ScriptNumber(script_.Call(OLESTR("Compare"), {first, second}).get());
}

void ScriptCallbackImpl::Notify(const OLECHAR* method, IUnknown* event) {
  script_.CallIfPresent(method, {LentObject(event)});
}

HRESULT WrapScript(IDispatch* script, REFIID iid, void** out) noexcept {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (iid == iid_of<IUnknown>()) return E_NOINTERFACE;  // would be the script itself
  try {
    return make_object<ScriptCallback>(script)->QueryInterface(iid, out);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace brevo
