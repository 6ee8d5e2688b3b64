#include "core/script_call.h"

#include <cmath>
#include <limits>
#include <type_traits>

#include "core/bstr_t.h"

namespace brevo {
namespace {

constexpr GUID kNoInterface{};  // IID_NULL, which Invoke wants
constexpr LCID kUserLocale = LOCALE_USER_DEFAULT;

bool SameName(const OLECHAR* a, const OLECHAR* b) noexcept {
  for (; *a != 0 && *a == *b; ++a, ++b) {
  }
  return *a == *b;
}

// The exception a failed call filled in; its strings are freed with it.
struct ExceptionInfo : EXCEPINFO {
  ExceptionInfo() noexcept : EXCEPINFO{} {}
  ExceptionInfo(const ExceptionInfo&) = delete;
  ExceptionInfo& operator=(const ExceptionInfo&) = delete;
  ~ExceptionInfo() {
    SysFreeString(bstrSource);
    SysFreeString(bstrDescription);
    SysFreeString(bstrHelpFile);
  }
};

// The code a script error stands for, as the runtime's own wrappers read it:
// scode when given, else wCode mapped into the interface range.
HRESULT CodeOf(const EXCEPINFO& info) noexcept {
  if (FAILED(info.scode)) return info.scode;
  if (info.wCode == 0) return DISP_E_EXCEPTION;
  return info.wCode >= 0xFE00 ? static_cast<HRESULT>(0x8004FFFF) : static_cast<HRESULT>(0x80040200 + info.wCode);
}

// Raises a failed Invoke; a script error carries its code and message.
[[noreturn]] void RaiseFailure(HRESULT hr, ExceptionInfo& info) {
  if (hr != DISP_E_EXCEPTION) _com_issue_error(hr);
  if (info.pfnDeferredFillIn != nullptr) {
    const auto fillIn = std::exchange(info.pfnDeferredFillIn, nullptr);
    fillIn(&info);
  }
  com_ptr<IErrorInfo> error;
  if (info.bstrDescription != nullptr) {
    com_ptr<ICreateErrorInfo> create;
    if (SUCCEEDED(CreateErrorInfo(create.put()))) {
      create->SetDescription(info.bstrDescription);
      if (info.bstrSource != nullptr) create->SetSource(info.bstrSource);
      error = create.try_query<IErrorInfo>();
    }
  }
  throw _com_error(CodeOf(info), error.detach());
}

// An argument as the script receives it: objects as IDispatch where they
// have it, everything else copied.
void ToScript(const VARIANT& source, VARIANT& target) {
  if (source.vt == VT_UNKNOWN) {
    com_ptr<IDispatch> dispatch;
    if (source.punkVal == nullptr ||
        source.punkVal->QueryInterface(iid_of<IDispatch>(), dispatch.put_void()) == S_OK) {
      target.vt = VT_DISPATCH;
      target.pdispVal = dispatch.detach();
      return;
    }
  }
  ThrowIfFailed(VariantCopy(&target, const_cast<VARIANT*>(&source)));  // the source is only read
}

template <class T>
LONG Clamped(T value) noexcept {
  constexpr auto low = std::numeric_limits<LONG>::min();
  constexpr auto high = std::numeric_limits<LONG>::max();
  if constexpr (std::is_signed_v<T>) {
    if (value < low) return low;
  }
  return value > static_cast<T>(high) ? high : static_cast<LONG>(value);
}

LONG RealNumber(double value) noexcept {
  if (std::isnan(value)) return 0;
  if (std::trunc(value) != value) return value > 0 ? 1 : -1;
  if (value <= std::numeric_limits<LONG>::min()) return std::numeric_limits<LONG>::min();
  if (value >= std::numeric_limits<LONG>::max()) return std::numeric_limits<LONG>::max();
  return static_cast<LONG>(value);
}

}  // namespace

ScriptObject::ScriptObject(IDispatch* script) : script_(script), scriptEx_(script_.try_query<IDispatchEx>()) {}

HRESULT ScriptObject::QueryIdentity(void** out) const noexcept {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  return script_ ? script_->QueryInterface(iid_of<IUnknown>(), out) : E_NOINTERFACE;
}

std::optional<DISPID> ScriptObject::Find(const OLECHAR* method) {
  for (const auto& [name, id] : known_) {
    if (SameName(name, method)) return id;
  }
  if (!script_) _com_issue_error(E_POINTER);
  DISPID id = DISPID_UNKNOWN;
  HRESULT hr;
  if (scriptEx_) {
    const _bstr_t name(method);  // the engines read the length prefix
    hr = scriptEx_->GetDispID(name.GetBSTR(), fdexNameCaseInsensitive, &id);
  } else {
    LPOLESTR names[] = {const_cast<LPOLESTR>(method)};  // only read
    hr = script_->GetIDsOfNames(kNoInterface, names, 1, kUserLocale, &id);
  }
  if (hr == DISP_E_UNKNOWNNAME || hr == DISP_E_MEMBERNOTFOUND) return std::nullopt;
  ThrowIfFailed(hr);
  known_.emplace_back(method, id);
  return id;
}

unique_variant ScriptObject::Invoke(DISPID id, std::initializer_list<VARIANT> args) {
  // DISPPARAMS wants the arguments last first; the array owns what it holds.
  // Callbacks take one or two, so a sort's comparator calls stay off the heap.
  constexpr std::size_t kMaxArguments = 2;
  if (args.size() > kMaxArguments) _com_issue_error(E_INVALIDARG);
  struct Arguments {
    VARIANT values[kMaxArguments];
    Arguments() noexcept {
      for (VARIANT& value : values) VariantInit(&value);
    }
    ~Arguments() {
      for (VARIANT& value : values) VariantClear(&value);
    }
  } arguments;
  std::size_t slot = args.size();
  for (const VARIANT& arg : args) ToScript(arg, arguments.values[--slot]);

  DISPPARAMS params{};
  params.rgvarg = arguments.values;
  params.cArgs = static_cast<UINT>(args.size());
  unique_variant answer;
  ExceptionInfo info;
  UINT argErr = 0;
  const HRESULT hr =
      scriptEx_ ? scriptEx_->InvokeEx(id, kUserLocale, DISPATCH_METHOD, &params, answer.put(), &info, nullptr)
                : script_->Invoke(id, kNoInterface, kUserLocale, DISPATCH_METHOD, &params, answer.put(), &info, &argErr);
  if (FAILED(hr)) RaiseFailure(hr, info);
  return answer;
}

unique_variant ScriptObject::Call(const OLECHAR* method, std::initializer_list<VARIANT> args) {
  const auto id = Find(method);
  if (!id) _com_issue_error(DISP_E_UNKNOWNNAME);
  return Invoke(*id, args);
}

void ScriptObject::CallIfPresent(const OLECHAR* method, std::initializer_list<VARIANT> args) {
  if (const auto id = Find(method)) Invoke(*id, args);
}

VARIANT LentObject(IUnknown* object) noexcept {
  VARIANT lent;
  VariantInit(&lent);
  lent.vt = VT_UNKNOWN;
  lent.punkVal = object;
  return lent;
}

LONG ScriptNumber(const VARIANT& answer) {
  if ((answer.vt & VT_BYREF) != 0) {
    unique_variant value;
    ThrowIfFailed(VariantCopyInd(&value.get(), const_cast<VARIANT*>(&answer)));  // only read
    return ScriptNumber(value.get());
  }
  switch (answer.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return 0;
    case VT_BOOL:
      return answer.boolVal;
    case VT_I1:
      return answer.cVal;
    case VT_I2:
      return answer.iVal;
    case VT_I4:
      return answer.lVal;
    case VT_INT:
      return answer.intVal;
    case VT_I8:
      return Clamped(answer.llVal);
    case VT_UI1:
      return answer.bVal;
    case VT_UI2:
      return answer.uiVal;
    case VT_UI4:
      return Clamped(answer.ulVal);
    case VT_UINT:
      return Clamped(answer.uintVal);
    case VT_UI8:
      return Clamped(answer.ullVal);
    case VT_R4:
      return RealNumber(answer.fltVal);
    case VT_R8:
      return RealNumber(answer.dblVal);
    default:
      _com_issue_error(DISP_E_TYPEMISMATCH);
  }
}

VARIANT_BOOL ScriptBoolean(const VARIANT& answer) {
  const LONG number = ScriptNumber(answer);
  if (number < std::numeric_limits<VARIANT_BOOL>::min()) return std::numeric_limits<VARIANT_BOOL>::min();
  if (number > std::numeric_limits<VARIANT_BOOL>::max()) return std::numeric_limits<VARIANT_BOOL>::max();
  return static_cast<VARIANT_BOOL>(number);
}

}  // namespace brevo
