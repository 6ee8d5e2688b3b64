// Script clients cannot implement vtable interfaces: a condition, comparator
// or listener that only has IDispatch is called by method name instead, with
// the same arguments and the same result rules as the vtable call.
#pragma once

#include <initializer_list>
#include <optional>
#include <utility>
#include <vector>

#include "core/com_ptr.h"
#include "core/unique_variant.h"

namespace brevo {

// A client's script object, called by method name with DISPATCH_METHOD.
// Names are looked up through IDispatchEx when the object has it (VBScript
// class instances answer nothing else), else through GetIDsOfNames. Objects
// in the arguments travel as VT_DISPATCH: VBScript cannot call methods on
// VT_UNKNOWN.
class ScriptObject {
 public:
  explicit ScriptObject(IDispatch* script);

  // The script object's own IUnknown.
  HRESULT QueryIdentity(void** out) const noexcept;

  // Calls method with args (in call order) and returns its answer. A missing
  // method or a script error is thrown as _com_error carrying the script's
  // code and, as error info, its message.
  unique_variant Call(const OLECHAR* method, std::initializer_list<VARIANT> args);
  // The same for a method the object may leave out: then nothing is called.
  void CallIfPresent(const OLECHAR* method, std::initializer_list<VARIANT> args);

 private:
  std::optional<DISPID> Find(const OLECHAR* method);
  unique_variant Invoke(DISPID id, std::initializer_list<VARIANT> args);

  com_ptr<IDispatch> script_;
  com_ptr<IDispatchEx> scriptEx_;
  // Ids found so far; names not found are asked again, since scripts may add
  // methods to an object later.
  std::vector<std::pair<const OLECHAR*, DISPID>> known_;
};

// An object argument as the caller lends it (no reference taken).
VARIANT LentObject(IUnknown* object) noexcept;

// A script's answer as a number, read by its kind rather than through a
// boolean: VT_BOOL keeps its 16 bits (true is -1), integers keep their value
// (clamped to 32 bits), a real counts by its sign unless whole, VT_EMPTY
// and VT_NULL (a function that returns nothing) are 0. Anything else fails
// with DISP_E_TYPEMISMATCH.
LONG ScriptNumber(const VARIANT& answer);
// The same, clamped to the 16 bits of a boolean answer.
VARIANT_BOOL ScriptBoolean(const VARIANT& answer);

// Gives a script object callback interface iid (one of the condition,
// comparator and listener interfaces) through an adapter.
HRESULT WrapScript(IDispatch* script, REFIID iid, void** out) noexcept;

// The callback behind an object a client passed: the object itself when it
// implements I, else an adapter calling its IDispatch by name; null when it
// has neither (or is null).
template <class I>
com_ptr<I> AsCallback(IUnknown* object) {
  com_ptr<I> callback;
  if (object == nullptr || object->QueryInterface(iid_of<I>(), callback.put_void()) == S_OK) return callback;
  com_ptr<IDispatch> script;
  if (object->QueryInterface(iid_of<IDispatch>(), script.put_void()) == S_OK) {
    WrapScript(script.get(), iid_of<I>(), callback.put_void());
  }
  return callback;
}

}  // namespace brevo
