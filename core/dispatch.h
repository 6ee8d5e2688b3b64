// Late binding without a type library: each dual interface has one constant
// table of its names and dispatch ids, and each entry an invoker generated
// from the interface method itself, so that a late-bound call runs the same
// wrapper, with the same result and error info, as an early-bound one.
#pragma once

#include <span>
#include <tuple>
#include <type_traits>
#include <utility>

#include "core/com_ptr.h"
#include "core/script_call.h"
#include "core/unique_variant.h"

namespace brevo {

// Calls one method on target (the dual interface the table belongs to) with
// arguments in call order; writes the result, if the method has one.
using DispatchInvoker = HRESULT (*)(IDispatch* target, VARIANTARG** args, UINT count, VARIANT* result,
                                    UINT* argErr);

struct DispatchMember {
  DISPID id;
  const OLECHAR* names[3];   // the member and its get_/put_ spellings
  const OLECHAR* params[4];  // parameter names, by position
  DispatchInvoker call;      // method or property get
  DispatchInvoker put;       // property put, or null
  UINT inputs;               // arguments the call takes
  bool anyArguments = false; // takes any number and kind of arguments, and uses none
};

struct DispatchTable {
  const IID* iid;
  const DispatchMember* members;
  std::size_t count;
};

// The table of a dual interface (defined with the module's late-bound layer);
// a class answers late-bound calls through the table of its first interface.
const DispatchTable* FindDispatchTable(REFIID iid) noexcept;
// Every table, for checks against the type library.
std::span<const DispatchTable> DispatchTables() noexcept;

// The type information of one of the library's interfaces or classes, from
// the module's type library (defined with the module); fails, with *info
// null, where there is none.
HRESULT LibraryTypeInfo(REFGUID guid, ITypeInfo** info) noexcept;

// IDispatch's type information for a dual interface: one when the type
// library is at hand, none otherwise.
HRESULT DispatchGetTypeInfoCount(REFIID iid, UINT* count) noexcept;
HRESULT DispatchGetTypeInfo(REFIID iid, UINT index, ITypeInfo** info) noexcept;
// Late binding through a dual interface's table (null: the interface has none).
HRESULT DispatchGetIDsOfNames(const DispatchTable* table, LPOLESTR* names, UINT count, DISPID* ids) noexcept;
HRESULT DispatchInvoke(const DispatchTable* table, IDispatch* target, DISPID member, WORD flags,
                       DISPPARAMS* params, VARIANT* result, EXCEPINFO* excepInfo, UINT* argErr) noexcept;

namespace dispatch {

template <class T>
inline constexpr bool is_interface_v = std::is_class_v<T> && std::is_base_of_v<IUnknown, T>;

// An out-parameter: a pointer to anything but a character or an interface.
template <class T>
struct is_out : std::false_type {};
template <class T>
struct is_out<T*> : std::bool_constant<!is_interface_v<T> && !std::is_same_v<T, OLECHAR>> {};

// One argument converted from its VARIANT to the parameter's type.
template <class T, class Enable = void>
struct Argument;

template <class T>
struct Scalar {
  unique_variant value;
  HRESULT Load(VARIANTARG* source, VARTYPE vt) {
    // A number of the parameter's own kind is taken as it is: nothing to convert.
    if (source->vt == vt && vt != VT_BSTR) {
      value.get() = *source;
      return S_OK;
    }
    // The index every script passes: a 32-bit integer for an unsigned one,
    // refused when negative exactly as the runtime's coercion refuses it.
    if (source->vt == VT_I4 && vt == VT_UI4) {
      if (source->lVal < 0) return DISP_E_OVERFLOW;
      value->vt = VT_UI4;
      value->ulVal = static_cast<ULONG>(source->lVal);
      return S_OK;
    }
    return VariantChangeType(&value.get(), source, 0, vt);
  }
};

#define BREVO_SCALAR_ARGUMENT(Type, vt, field)                              \
  template <>                                                               \
  struct Argument<Type> : Scalar<Type> {                                    \
    HRESULT Load(VARIANTARG* source) { return Scalar::Load(source, vt); }   \
    Type Get() const { return static_cast<Type>(value.get().field); }       \
  }
BREVO_SCALAR_ARGUMENT(LONG, VT_I4, lVal);
BREVO_SCALAR_ARGUMENT(ULONG, VT_UI4, ulVal);
BREVO_SCALAR_ARGUMENT(SHORT, VT_I2, iVal);
BREVO_SCALAR_ARGUMENT(BYTE, VT_UI1, bVal);
BREVO_SCALAR_ARGUMENT(LONGLONG, VT_I8, llVal);
BREVO_SCALAR_ARGUMENT(double, VT_R8, dblVal);
BREVO_SCALAR_ARGUMENT(float, VT_R4, fltVal);
BREVO_SCALAR_ARGUMENT(BSTR, VT_BSTR, bstrVal);
#undef BREVO_SCALAR_ARGUMENT

// VARIANT_BOOL is SHORT: a boolean argument arrives as its 16 bits (a script's
// true is -1, its 1 stays 1), as the contract wants of SetValueAsBoolean.
template <>
struct Argument<VARIANT> {
  unique_variant value;
  HRESULT Load(VARIANTARG* source) { return VariantCopyInd(&value.get(), source); }
  VARIANT Get() const { return value.get(); }
};

// Empty and null stand for a null interface. A script object passed for a
// callback interface has only IDispatch: it is called by name instead.
template <class I>
struct Argument<I*, std::enable_if_t<is_interface_v<I>>> {
  com_ptr<I> value;
  HRESULT Load(VARIANTARG* source) {
    const VARIANT* v = (source->vt & VT_BYREF) != 0 && (source->vt & VT_TYPEMASK) == VT_VARIANT ? source->pvarVal
                                                                                             : source;
    VARTYPE vt = v->vt;
    IUnknown* object = nullptr;
    if (vt == VT_EMPTY || vt == VT_NULL) return S_OK;
    if (vt == VT_UNKNOWN || vt == VT_DISPATCH) object = v->punkVal;
    else if (vt == (VT_BYREF | VT_UNKNOWN) || vt == (VT_BYREF | VT_DISPATCH)) object = *v->ppunkVal;
    else return DISP_E_TYPEMISMATCH;
    if (object == nullptr) return S_OK;
    if constexpr (is_callback_interface<I>) {
      value = AsCallback<I>(object);
      return value ? S_OK : DISP_E_TYPEMISMATCH;
    } else {
      return object->QueryInterface(iid_of<I>(), value.put_void()) == S_OK ? S_OK : DISP_E_TYPEMISMATCH;
    }
  }
  I* Get() const { return value.get(); }
};

// The result of an out-parameter, as a VARIANT.
template <class T>
struct Result;

#define BREVO_SCALAR_RESULT(Type, vt_, field)                     \
  template <>                                                     \
  struct Result<Type> {                                           \
    Type value{};                                                 \
    Type* Slot() { return &value; }                               \
    void Store(VARIANT& out) {                                    \
      out.vt = vt_;                                               \
      out.field = value;                                          \
    }                                                             \
  }
BREVO_SCALAR_RESULT(LONG, VT_I4, lVal);
BREVO_SCALAR_RESULT(SHORT, VT_I2, iVal);
BREVO_SCALAR_RESULT(ULONG, VT_UI4, ulVal);
BREVO_SCALAR_RESULT(BYTE, VT_UI1, bVal);
BREVO_SCALAR_RESULT(LONGLONG, VT_I8, llVal);
BREVO_SCALAR_RESULT(double, VT_R8, dblVal);
BREVO_SCALAR_RESULT(float, VT_R4, fltVal);
#undef BREVO_SCALAR_RESULT

template <>
struct Result<BSTR> {
  BSTR value = nullptr;
  ~Result() { SysFreeString(value); }
  BSTR* Slot() { return &value; }
  void Store(VARIANT& out) {
    out.vt = VT_BSTR;
    out.bstrVal = std::exchange(value, nullptr);
  }
};

template <>
struct Result<VARIANT> {
  unique_variant value;
  VARIANT* Slot() { return value.put(); }
  void Store(VARIANT& out) { out = value.release(); }
};

// Objects go to scripts as IDispatch where they have it.
template <class I>
struct Result<I*> {
  com_ptr<I> value;
  I** Slot() { return value.put(); }
  void Store(VARIANT& out) {
    if (auto dispatch = value.template try_query<IDispatch>()) {
      out.vt = VT_DISPATCH;
      out.pdispVal = dispatch.detach();
    } else {
      out.vt = VT_UNKNOWN;
      out.punkVal = value.detach();
    }
  }
};

template <auto Method, bool BoolResult>
struct Invoker;

template <class I, class... A, HRESULT (STDMETHODCALLTYPE I::*Method)(A...), bool BoolResult>
struct Invoker<Method, BoolResult> {
  using Params = std::tuple<A...>;
  static constexpr std::size_t kParams = sizeof...(A);
  static constexpr bool kHasOut = [] {
    if constexpr (kParams == 0) {
      return false;
    } else {
      return is_out<std::tuple_element_t<kParams - 1, Params>>::value;
    }
  }();
  static constexpr UINT kInputs = static_cast<UINT>(kParams - (kHasOut ? 1 : 0));

  static HRESULT Call(IDispatch* target, VARIANTARG** args, UINT count, VARIANT* result, UINT* argErr) {
    if (count != kInputs) return DISP_E_BADPARAMCOUNT;
    return Run(static_cast<I*>(target), args, result, argErr, std::make_index_sequence<kInputs>{});
  }

 private:
  template <std::size_t N>
  using Param = std::remove_cv_t<std::tuple_element_t<N, Params>>;

  template <std::size_t... N>
  static HRESULT Run(I* object, VARIANTARG** args, VARIANT* result, UINT* argErr, std::index_sequence<N...>) {
    std::tuple<Argument<Param<N>>...> inputs;
    HRESULT hr = S_OK;
    UINT failed = 0;
    ((SUCCEEDED(hr) && FAILED(hr = std::get<N>(inputs).Load(args[N])) ? (failed = static_cast<UINT>(N), 0) : 0), ...);
    if (FAILED(hr)) {
      if (argErr != nullptr) *argErr = kInputs - 1 - failed;
      return hr;
    }
    if constexpr (kHasOut) {
      Result<std::remove_pointer_t<Param<kParams - 1>>> out;
      hr = (object->*Method)(std::get<N>(inputs).Get()..., out.Slot());
      if (SUCCEEDED(hr) && result != nullptr) {
        out.Store(*result);
        if constexpr (BoolResult) result->vt = VT_BOOL;
      }
    } else {
      hr = (object->*Method)(std::get<N>(inputs).Get()...);
    }
    return hr;
  }
};

// A member whose call is method.
template <auto Method, bool BoolResult = false>
constexpr DispatchInvoker Call() {
  return &Invoker<Method, BoolResult>::Call;
}
// A member that accepts whatever it is given late-bound and calls method with
// empty arguments (it uses none of them).
template <auto Method>
struct IgnoringInvoker;

template <class I, class... A, HRESULT (STDMETHODCALLTYPE I::*Method)(A...)>
struct IgnoringInvoker<Method> {
  static HRESULT Call(IDispatch* target, VARIANTARG**, UINT, VARIANT*, UINT*) {
    return (static_cast<I*>(target)->*Method)(A{}...);
  }
};

template <auto Method>
constexpr DispatchInvoker CallIgnoringArguments() {
  return &IgnoringInvoker<Method>::Call;
}
template <auto Method>
constexpr UINT Inputs() {
  return Invoker<Method, false>::kInputs;
}

}  // namespace dispatch
}  // namespace brevo
