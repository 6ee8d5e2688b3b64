// A script object as the script engines make them: no vtable interface of the
// library, only IDispatch, with methods found by name. Each method is a C++
// function of the arguments. As a VBScript class instance, it answers names
// only through IDispatchEx (GetIDsOfNames and Invoke fail).
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "support/test_support.h"

namespace brevo::testing {

enum class ScriptKind { kDispatch, kDispatchExOnly };

class FakeScript final : public IDispatchEx {
 public:
  // Arguments in call order; answer starts empty.
  using Args = std::vector<unique_variant>;
  using Method = std::function<HRESULT(const Args& args, VARIANT& answer, EXCEPINFO& error)>;

  static com_ptr<FakeScript> Make(ScriptKind kind) { return com_ptr<FakeScript>::attach(new FakeScript(kind)); }

  void Define(const OLECHAR* name, Method method) { methods_.emplace_back(std::move(name), std::move(method)); }

  // One line per call: the method and the kinds of its arguments, e.g.
  // "Evaluate(9)"; a call that was not DISPATCH_METHOD is marked "!".
  std::vector<std::string> calls;
  ULONG refs = 1;

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    *out = nullptr;
    if (iid == iid_of<IUnknown>() || iid == iid_of<IDispatch>() || iid == iid_of<IDispatchEx>()) {
      *out = static_cast<IDispatchEx*>(this);
      AddRef();
      return S_OK;
    }
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++refs; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --refs;
    if (left == 0) delete this;
    return left;
  }

  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
    if (kind_ == ScriptKind::kDispatchExOnly || count != 1) return DISP_E_UNKNOWNNAME;
    return Lookup(names[0], ids);
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* answer, EXCEPINFO* error,
                      UINT*) override {
    if (kind_ == ScriptKind::kDispatchExOnly) return DISP_E_MEMBERNOTFOUND;
    return Run(id, flags, params, answer, error);
  }

  STDMETHODIMP GetDispID(BSTR name, DWORD, DISPID* id) override {
    if (SysStringLen(name) != std::char_traits<OLECHAR>::length(name)) return E_INVALIDARG;  // not a BSTR
    return Lookup(name, id);
  }
  STDMETHODIMP InvokeEx(DISPID id, LCID, WORD flags, DISPPARAMS* params, VARIANT* answer, EXCEPINFO* error,
                        IServiceProvider*) override {
    return Run(id, flags, params, answer, error);
  }
  STDMETHODIMP DeleteMemberByName(BSTR, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP DeleteMemberByDispID(DISPID) override { return E_NOTIMPL; }
  STDMETHODIMP GetMemberProperties(DISPID, DWORD, DWORD*) override { return E_NOTIMPL; }
  STDMETHODIMP GetMemberName(DISPID, BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP GetNextDispID(DWORD, DISPID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP GetNameSpaceParent(IUnknown**) override { return E_NOTIMPL; }

 private:
  explicit FakeScript(ScriptKind kind) : kind_(kind) {}
  ~FakeScript() = default;

  // Case-insensitive, as the engines' lookups; ids start at 100.
  HRESULT Lookup(const OLECHAR* name, DISPID* id) {
    const auto fold = [](OLECHAR c) { return c >= 'A' && c <= 'Z' ? static_cast<OLECHAR>(c + 32) : c; };
    for (std::size_t i = 0; i < methods_.size(); ++i) {
      const std::basic_string<OLECHAR>& own = methods_[i].first;
      std::size_t n = 0;
      while (n < own.size() && name[n] != 0 && fold(own[n]) == fold(name[n])) ++n;
      if (n == own.size() && name[n] == 0) {
        *id = static_cast<DISPID>(100 + i);
        return S_OK;
      }
    }
    *id = DISPID_UNKNOWN;
    return DISP_E_UNKNOWNNAME;
  }

  HRESULT Run(DISPID id, WORD flags, DISPPARAMS* params, VARIANT* answer, EXCEPINFO* error) {
    const std::size_t index = static_cast<std::size_t>(id - 100);
    if (id < 100 || index >= methods_.size()) return DISP_E_MEMBERNOTFOUND;
    Args args;
    std::string line = Narrow(methods_[index].first.c_str()) + (flags == DISPATCH_METHOD ? "(" : "!(");
    for (UINT i = params->cArgs; i-- > 0;) {
      args.emplace_back(params->rgvarg[i]);
      line += std::to_string(params->rgvarg[i].vt) + (i > 0 ? "," : "");
    }
    calls.push_back(line + ")");
    EXCEPINFO ignored{};
    VARIANT unused;
    VariantInit(&unused);
    const HRESULT hr = methods_[index].second(args, answer != nullptr ? *answer : unused, error != nullptr ? *error : ignored);
    VariantClear(&unused);
    return hr;
  }

  ScriptKind kind_;
  std::vector<std::pair<std::basic_string<OLECHAR>, Method>> methods_;
};

// A method that answers value whatever it is given.
inline FakeScript::Method Answer(const unique_variant& value) {
  return [value](const FakeScript::Args&, VARIANT& answer, EXCEPINFO&) {
    return VariantCopy(&answer, const_cast<VARIANT*>(&value.get()));
  };
}

// A method that raises a script error: scode and description, as JScript's
// `throw` and VBScript's Err.Raise fill them in.
inline FakeScript::Method Throw(HRESULT scode, const OLECHAR* description, WORD wCode = 0) {
  return [=](const FakeScript::Args&, VARIANT&, EXCEPINFO& error) {
    error.scode = scode;
    error.wCode = wCode;
    error.bstrSource = SysAllocString(OLESTR("Microsoft JScript runtime error"));
    error.bstrDescription = SysAllocString(description);
    return DISP_E_EXCEPTION;
  };
}

// The script object as a pointer of a callback interface, as a C++ host holding
// a script's IDispatch passes it early-bound.
template <class I>
I* Posing(FakeScript* script) {
  return reinterpret_cast<I*>(static_cast<IDispatch*>(script));
}

// An object as a script passes it: VT_DISPATCH.
inline unique_variant DispatchArg(IDispatch* object) {
  return MakeValue(VT_DISPATCH, &VARIANT::pdispVal, com_ptr<IDispatch>(object).detach());
}

// What a late-bound call gave: its result, its answer and, for a failure,
// the message in its EXCEPINFO.
struct LateCall {
  HRESULT hr = S_OK;
  unique_variant answer;
  std::string description;
};

// Calls method on target late-bound, as a script does, with args in call order.
inline LateCall InvokeByName(IDispatch* target, const OLECHAR* method, std::vector<unique_variant> args = {}) {
  LateCall call;
  const GUID none{};  // IID_NULL
  DISPID id = DISPID_UNKNOWN;
  LPOLESTR names[] = {const_cast<LPOLESTR>(method)};
  call.hr = target->GetIDsOfNames(none, names, 1, 0, &id);
  if (FAILED(call.hr)) return call;
  std::vector<VARIANTARG> reversed;
  for (auto it = args.rbegin(); it != args.rend(); ++it) reversed.push_back(it->get());
  DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  EXCEPINFO error{};
  call.hr = target->Invoke(id, none, 0, DISPATCH_METHOD, &params, call.answer.put(), &error, nullptr);
  if (error.bstrDescription != nullptr) call.description = Narrow(error.bstrDescription);
  SysFreeString(error.bstrSource);
  SysFreeString(error.bstrDescription);
  SysFreeString(error.bstrHelpFile);
  return call;
}

}  // namespace brevo::testing
