// The object frame. A COM class lists its interfaces once,
//
//   class MutableColumns : public implements<MutableColumns, IMutableColumns, IMutableColumnsRaw>,
//                          public MutableColumnsImpl { ... };
//
// and gets QueryInterface over that list, ISupportErrorInfo for its own
// (non-callback) interfaces, its share of the module lock count, and Call<I>(),
// the one error wrapper of every interface method. A creatable class also
// lists IProvideClassInfo and gets it answered from its kClassId. The live object is
// CComObject<X> (single-threaded count) or, inside an aggregate,
// CComAggObject<X>, which holds X as a CComContainedObject<X>.
#pragma once

#include <tuple>
#include <type_traits>
#include <utility>

#include "core/com_ptr.h"
#include "core/dispatch.h"
#include "core/error_reporting.h"
#include "core/interface_id.h"
#include "core/module_lock.h"

namespace brevo {

namespace detail {

// IUnknown and ISupportErrorInfo over the class's interface list.
// One interface of the class. A dual interface answers late-bound calls through
// its own vtable with its own name table (a listener interface with the
// listener's names); one that has no table, such as a library-internal
// interface, answers as the class's main interface.
template <class Derived, class Main, class I, bool Dual = std::is_base_of_v<IDispatch, I>>
class interface_face : public I {};

template <class Derived, class Main, class I>
class interface_face<Derived, Main, I, true> : public I {
 public:
  STDMETHODIMP GetTypeInfoCount(UINT* count) override { return DispatchGetTypeInfoCount(Iid(), count); }
  STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
    return DispatchGetTypeInfo(Iid(), index, info);
  }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
    return DispatchGetIDsOfNames(Table(), names, count, ids);
  }
  STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                      EXCEPINFO* excepInfo, UINT* argErr) override {
    IDispatch* target = OwnTable() != nullptr ? static_cast<IDispatch*>(static_cast<I*>(this))
                                              : static_cast<IDispatch*>(static_cast<Main*>(static_cast<Derived*>(this)));
    return DispatchInvoke(Table(), target, member, flags, params, result, excepInfo, argErr);
  }

 private:
  static const DispatchTable* OwnTable() noexcept {
    static const DispatchTable* const table = FindDispatchTable(iid_of<I>());
    return table;
  }
  static const DispatchTable* Table() noexcept {
    static const DispatchTable* const table = OwnTable() != nullptr ? OwnTable() : FindDispatchTable(iid_of<Main>());
    return table;
  }
  static const IID& Iid() noexcept { return OwnTable() != nullptr ? iid_of<I>() : iid_of<Main>(); }
};

template <class Derived, class First, class... Rest>
class object_root : public interface_face<Derived, First, First>,
                    public interface_face<Derived, First, Rest>...,
                    public ISupportErrorInfo {
 public:
  // Declared once here so that every interface's slots share one overrider.
  STDMETHOD(QueryInterface)(REFIID iid, void** out) override = 0;
  STDMETHOD_(ULONG, AddRef)() override = 0;
  STDMETHOD_(ULONG, Release)() override = 0;

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override {
    return IsOwn<First>(iid) || (IsOwn<Rest>(iid) || ...) ? S_OK : S_FALSE;
  }

  // The non-delegating lookup behind every QueryInterface.
  HRESULT InternalQueryInterface(REFIID iid, void** out) noexcept {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (iid == iid_of<IUnknown>()) {
      *out = GetIdentity();
    } else if (iid == iid_of<ISupportErrorInfo>()) {
      *out = static_cast<ISupportErrorInfo*>(this);
    } else if (!(Find<First>(iid, out) || (Find<Rest>(iid, out) || ...)) && iid == iid_of<IDispatch>()) {
      (FindDispatch<First>(out) || (FindDispatch<Rest>(out) || ...));
    }
    if (*out == nullptr) return E_NOINTERFACE;
    static_cast<IUnknown*>(*out)->AddRef();
    return S_OK;
  }

  // The identity of the object (its IUnknown through the first interface).
  IUnknown* GetIdentity() noexcept { return static_cast<First*>(this); }

  // Runs when the last reference goes, while the object is still whole: work
  // that may hand out `this` (raising events, detaching from others) belongs
  // here rather than in a destructor. Classes hide it with their own.
  void FinalRelease() {}

 private:
  unsigned callsInProgress_ = 0;
  bool releaseWaiting_ = false;

 protected:
  object_root() noexcept { ModuleLock::Increment(); }
  object_root(const object_root&) = delete;
  object_root& operator=(const object_root&) = delete;
  virtual ~object_root() { ModuleLock::Decrement(); }

  // The error wrapper: runs body for interface I of this class.
  template <class I, class Body>
  HRESULT Call(Body&& body) noexcept {
    // A client may drop its last reference to this object from a callback
    // the body makes: the object stays whole until its calls are done (the
    // last release waits for them; an aggregate's outer object is held).
    const com_ptr<IUnknown> outer(outerDuringCalls_);
    ++callsInProgress_;
    const HRESULT hr = GuardedCall(Derived::kClassId, iid_of<I>(), std::forward<Body>(body));
    if (--callsInProgress_ == 0 && releaseWaiting_) {
      releaseWaiting_ = false;
      FinishRelease();
    }
    return hr;
  }

  // Called by the live object when its count reaches zero: false while a call
  // is in progress, which finishes the release itself.
  bool ReleaseNow() noexcept {
    if (callsInProgress_ == 0) return true;
    releaseWaiting_ = true;
    return false;
  }
  // The release that waited for the calls in progress, if nothing took a new
  // reference meanwhile.
  virtual void FinishRelease() noexcept {}

  IUnknown* outerDuringCalls_ = nullptr;
  // The same for a method with an out-parameter, which must be given: it is
  // checked before body makes anything that could be lost.
  template <class I, class T, class Body>
  HRESULT Call(T* out, Body&& body) noexcept {
    return Call<I>([&] {
      if (out == nullptr) _com_issue_error(E_POINTER);
      body();
    });
  }

 private:
  template <class I>
  static bool IsOwn(REFIID iid) noexcept {
    return !is_callback_interface<I> && !std::is_same_v<I, IProvideClassInfo> && iid == iid_of<I>();
  }
  template <class I>
  bool Find(REFIID iid, void** out) noexcept {
    if (!(iid == iid_of<I>())) return false;
    *out = static_cast<I*>(this);
    return true;
  }
  template <class I>
  bool FindDispatch(void** out) noexcept {
    if constexpr (std::is_base_of_v<IDispatch, I>) {
      *out = static_cast<IDispatch*>(static_cast<I*>(this));
      return true;
    } else {
      (void)out;
      return false;
    }
  }
};

// IProvideClassInfo, where the class lists it: its class in the type library.
template <bool ClassInfo, class Derived, class Base>
class class_info_layer : public Base {};

template <class Derived, class Base>
class class_info_layer<true, Derived, Base> : public Base {
 public:
  STDMETHODIMP GetClassInfo(ITypeInfo** info) override { return LibraryTypeInfo(Derived::kClassId, info); }
};

}  // namespace detail

template <class Derived, class... Interfaces>
class implements
    : public detail::class_info_layer<
          (std::is_same_v<IProvideClassInfo, Interfaces> || ...), Derived,
          detail::object_root<Derived, Interfaces...>> {};

// A stand-alone object with its own plain (apartment) reference count.
template <class T>
class CComObject final : public T {
 public:
  template <class... Args>
  explicit CComObject(Args&&... args) : T(std::forward<Args>(args)...) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override { return this->InternalQueryInterface(iid, out); }
  STDMETHODIMP_(ULONG) AddRef() override { return ++refs_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --refs_;
    if (left == 0 && this->ReleaseNow()) Destroy();
    return left;
  }

 protected:
  void FinishRelease() noexcept override {
    if (refs_ == 0) Destroy();
  }

 private:
  void Destroy() noexcept {
    refs_ = 1;  // references taken and dropped while dying must not delete again
    this->FinalRelease();
    delete this;
  }

  ULONG refs_ = 0;
};

// The inner object of an aggregate: its interfaces answer for the outer one.
template <class T>
class CComContainedObject final : public T {
 public:
  template <class... Args>
  explicit CComContainedObject(IUnknown* outer, Args&&... args) : T(std::forward<Args>(args)...), outer_(outer) {
    this->outerDuringCalls_ = outer;
  }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override { return outer_->QueryInterface(iid, out); }
  STDMETHODIMP_(ULONG) AddRef() override { return outer_->AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return outer_->Release(); }

 private:
  IUnknown* outer_;
};

// The non-delegating IUnknown that the outer object of an aggregate holds.
template <class T>
class CComAggObject final : public IUnknown {
 public:
  template <class... Args>
  explicit CComAggObject(IUnknown* outer, Args&&... args) : contained_(outer, std::forward<Args>(args)...) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    if (out == nullptr) return E_POINTER;
    if (iid == iid_of<IUnknown>()) {
      *out = static_cast<IUnknown*>(this);
      AddRef();
      return S_OK;
    }
    return contained_.InternalQueryInterface(iid, out);
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++refs_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --refs_;
    if (left == 0) {
      refs_ = 1;
      contained_.FinalRelease();
      delete this;
    }
    return left;
  }

 private:
  ULONG refs_ = 0;
  CComContainedObject<T> contained_;
};

// A new stand-alone object of class T, holding the caller's one reference.
template <class T, class... Args>
com_ptr<CComObject<T>> make_object(Args&&... args) {
  return com_ptr<CComObject<T>>(new CComObject<T>(std::forward<Args>(args)...));
}

// A new object of class T for a class factory: stand-alone when outer is null,
// else the inner part of outer's aggregate (then only IUnknown may be asked).
template <class T>
HRESULT CreateInstance(IUnknown* outer, REFIID iid, void** out) noexcept {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (outer != nullptr && !(iid == iid_of<IUnknown>())) return CLASS_E_NOAGGREGATION;
  try {
    if (outer == nullptr) return make_object<T>()->QueryInterface(iid, out);
    const com_ptr<IUnknown> inner(new CComAggObject<T>(outer));
    return inner->QueryInterface(iid, out);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace brevo
