// BrevoRecordListCallbacks.h: the objects BrevoRecordList calls back, made
// from C++ lambdas. Header only; needs C++17 and BrevoRecordList.h.
//
// Listeners: one handler per event method you care about, named by the
// interface's own method; the methods you leave out do nothing and return
// S_OK. The handler's parameters are the method's (the event), and it returns
// void (S_OK) or an HRESULT.
//
//   using brevo::sdk::On;
//   brevo::sdk::com_ptr<IRecordListChangeListener> listener = brevo::sdk::MakeListener(
//       On<&IRecordListChangeListener::RecordBeforeAdd>([](IRecordListChangeEvent* e) { return e->Stop(); }),
//       On<&IRecordListChangeListener::RecordAfterAdd>([&](IRecordListChangeEvent*) { ++added; }));
//   list->AddRecordListChangeListener(listener.get());
//
// A "Before" listener refuses a change by calling the event's Stop. Column
// events go the other way: ColumnBeforeAdd and ColumnBeforeRemove must call
// Stop to let the change go on. So that leaving them out never refuses column
// changes, an IColumnsChangeListener without a handler for one of them calls
// Stop for you.
//
// Conditions take the record and return bool:
//   auto cheap = brevo::sdk::MakeCondition([](IMutableRecord* r) { ... return price < 1; });
// Comparators take two records and return an integer; a positive answer puts
// the first record first. Declare the records as IMutableRecord* or IRecord*
// (the helper asks each record for that interface, and a mutable record for
// its read-only Record view), or take the raw VARIANTs:
//   auto byName = brevo::sdk::MakeComparator([](IMutableRecord* a, IMutableRecord* b) { ... });
//   auto raw = brevo::sdk::MakeComparator([](const VARIANT& a, const VARIANT& b) { ... });
//
// Each Make... returns com_ptr, an owning reference: pass .get() to the
// library, which takes its own. The lambda lives as long as the object, that
// is until both you and the library have let it go. No C++ exception leaves a
// callback: std::bad_alloc becomes E_OUTOFMEMORY, anything else E_FAIL. The
// objects count their references atomically and answer IDispatch without
// type information, so the library always calls them through their vtable.
// From a multithreaded apartment the calls arrive through the type library's
// marshaler on a thread of the runtime's: a lambda that shares state with
// other threads guards it.
#pragma once

#include <atomic>
#include <cstddef>
#include <new>
#include <tuple>
#include <type_traits>
#include <utility>

#include "BrevoRecordList.h"

namespace brevo::sdk {

// An owning interface reference.
template <class T>
class com_ptr {
 public:
  com_ptr() noexcept = default;
  com_ptr(std::nullptr_t) noexcept {}
  // Takes a new reference of its own.
  explicit com_ptr(T* p) noexcept : p_(p) {
    if (p_) p_->AddRef();
  }
  com_ptr(const com_ptr& other) noexcept : com_ptr(other.p_) {}
  com_ptr(com_ptr&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
  com_ptr& operator=(com_ptr other) noexcept {
    std::swap(p_, other.p_);
    return *this;
  }
  ~com_ptr() { reset(); }

  // Takes over a reference the caller already owns.
  static com_ptr adopt(T* p) noexcept {
    com_ptr result;
    result.p_ = p;
    return result;
  }

  T* get() const noexcept { return p_; }
  T* operator->() const noexcept { return p_; }
  explicit operator bool() const noexcept { return p_ != nullptr; }
  void reset() noexcept {
    if (T* p = std::exchange(p_, nullptr)) p->Release();
  }
  // For [out] parameters: drops what it held and lends its slot.
  T** put() noexcept {
    reset();
    return &p_;
  }
  void** put_void() noexcept { return reinterpret_cast<void**>(put()); }

  // The object's interface U, or null when it has none.
  template <class U>
  com_ptr<U> as() const noexcept {
    com_ptr<U> result;
    if (p_) p_->QueryInterface(__uuidof(U), result.put_void());
    return result;
  }

 private:
  T* p_ = nullptr;
};

namespace detail {

template <class Body>
HRESULT Guarded(Body&& body) noexcept {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_FAIL;
  }
}

// IUnknown and an IDispatch without type information for one interface I.
template <class I>
class Object : public I {
 public:
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    if (out == nullptr) return E_POINTER;
    if (iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch) || iid == __uuidof(I)) {
      *out = static_cast<I*>(this);
      this->AddRef();
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    return DISP_E_BADINDEX;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT count, LCID, DISPID* ids) override {
    if (ids != nullptr)
      for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return DISP_E_MEMBERNOTFOUND;
  }

 protected:
  Object() noexcept = default;
  virtual ~Object() = default;

 private:
  std::atomic<ULONG> references_{1};
};

// The class that declares a member: the interface a method pointer names.
template <class C, class T>
C* DeclaringClass(T C::*);

template <auto Method>
struct MethodTag {};

template <auto Method>
inline constexpr bool kIsMemberFunction = std::is_member_function_pointer_v<decltype(Method)>;

template <auto A, auto B>
inline constexpr bool kSameMethod = std::is_same_v<MethodTag<A>, MethodTag<B>>;

template <auto Method, class... H>
inline constexpr std::size_t kHandlerCount = (std::size_t{kSameMethod<Method, H::kMethod>} + ... + 0);

template <class F, class... Args>
HRESULT CallHandler(F& function, Args... args) {
  using Result = std::invoke_result_t<F&, Args...>;
  if constexpr (std::is_void_v<Result>) {
    function(args...);
    return S_OK;
  } else {
    static_assert(std::is_convertible_v<Result, HRESULT> && !std::is_same_v<Result, bool>,
                  "a listener handler returns void or an HRESULT");
    return static_cast<HRESULT>(function(args...));
  }
}

}  // namespace detail

// A handler for the listener method Method (see MakeListener).
template <auto Method, class F>
struct Handler {
  static_assert(detail::kIsMemberFunction<Method>, "On<&IListener::Method>: name a listener's method");
  using Interface = std::remove_pointer_t<decltype(detail::DeclaringClass(Method))>;
  static constexpr auto kMethod = Method;
  F function;
};

template <auto Method, class F>
Handler<Method, std::decay_t<F>> On(F&& function) {
  return {std::forward<F>(function)};
}

namespace detail {

template <class... H>
class Handlers {
 public:
  explicit Handlers(H... handlers) : handlers_(std::move(handlers)...) {}

  template <auto Method>
  static constexpr bool kHandles = (kSameMethod<Method, H::kMethod> || ...);

  // The handler for Method, or S_OK when there is none.
  template <auto Method, class... Args>
  HRESULT Fire(Args... args) noexcept {
    return Guarded([&] { return FireFrom<Method, 0>(args...); });
  }

 private:
  template <auto Method, std::size_t K, class... Args>
  HRESULT FireFrom(Args... args) {
    if constexpr (K == sizeof...(H)) {
      return S_OK;
    } else if constexpr (kSameMethod<Method, std::tuple_element_t<K, std::tuple<H...>>::kMethod>) {
      return CallHandler(std::get<K>(handlers_).function, args...);
    } else {
      return FireFrom<Method, K + 1>(args...);
    }
  }

  std::tuple<H...> handlers_;
};

// The listener object for interface I; H holds its handlers.
template <class I, class H>
class ListenerObject;

template <class I, class H>
class ListenerBase : public Object<I> {
 public:
  explicit ListenerBase(H handlers) : on_(std::move(handlers)) {}

 protected:
  template <auto Method, class Event>
  HRESULT Fire(Event* e) noexcept {
    return on_.template Fire<Method>(e);
  }

 private:
  H on_;
};

template <class H>
class ListenerObject<IRecordChangeListener, H> final : public ListenerBase<IRecordChangeListener, H> {
  using I = IRecordChangeListener;

 public:
  using ListenerBase<I, H>::ListenerBase;
  HRESULT STDMETHODCALLTYPE ValueBeforeChange(IRecordChangeEvent* e) override {
    return this->template Fire<&I::ValueBeforeChange>(e);
  }
  HRESULT STDMETHODCALLTYPE ValueAfterChange(IRecordChangeEvent* e) override {
    return this->template Fire<&I::ValueAfterChange>(e);
  }
};

// A column event refuses the change unless a listener calls Stop, so a Before
// method without a handler calls it.
template <class H>
class ListenerObject<IColumnsChangeListener, H> final : public ListenerBase<IColumnsChangeListener, H> {
  using I = IColumnsChangeListener;

 public:
  using ListenerBase<I, H>::ListenerBase;
  HRESULT STDMETHODCALLTYPE ColumnBeforeAdd(IColumnsChangeEvent* e) override {
    return Before<&I::ColumnBeforeAdd>(e);
  }
  HRESULT STDMETHODCALLTYPE ColumnAfterAdd(IColumnsChangeEvent* e) override {
    return this->template Fire<&I::ColumnAfterAdd>(e);
  }
  HRESULT STDMETHODCALLTYPE ColumnBeforeRemove(IColumnsChangeEvent* e) override {
    return Before<&I::ColumnBeforeRemove>(e);
  }
  HRESULT STDMETHODCALLTYPE ColumnAfterRemove(IColumnsChangeEvent* e) override {
    return this->template Fire<&I::ColumnAfterRemove>(e);
  }

 private:
  template <auto Method>
  HRESULT Before(IColumnsChangeEvent* e) noexcept {
    if constexpr (H::template kHandles<Method>) {
      return this->template Fire<Method>(e);
    } else {
      return e ? e->Stop() : E_POINTER;
    }
  }
};

template <class H>
class ListenerObject<IRecordListChangeListener, H> final : public ListenerBase<IRecordListChangeListener, H> {
  using I = IRecordListChangeListener;

 public:
  using ListenerBase<I, H>::ListenerBase;
  HRESULT STDMETHODCALLTYPE RecordBeforeAdd(IRecordListChangeEvent* e) override {
    return this->template Fire<&I::RecordBeforeAdd>(e);
  }
  HRESULT STDMETHODCALLTYPE RecordAfterAdd(IRecordListChangeEvent* e) override {
    return this->template Fire<&I::RecordAfterAdd>(e);
  }
  HRESULT STDMETHODCALLTYPE RecordBeforeRemove(IRecordListChangeEvent* e) override {
    return this->template Fire<&I::RecordBeforeRemove>(e);
  }
  HRESULT STDMETHODCALLTYPE RecordAfterRemove(IRecordListChangeEvent* e) override {
    return this->template Fire<&I::RecordAfterRemove>(e);
  }
};

template <class H>
class ListenerObject<IRecordListValueChangeListener, H> final
    : public ListenerBase<IRecordListValueChangeListener, H> {
  using I = IRecordListValueChangeListener;

 public:
  using ListenerBase<I, H>::ListenerBase;
  HRESULT STDMETHODCALLTYPE ValueBeforeChange(IRecordListValueChangeEvent* e) override {
    return this->template Fire<&I::ValueBeforeChange>(e);
  }
  HRESULT STDMETHODCALLTYPE ValueAfterChange(IRecordListValueChangeEvent* e) override {
    return this->template Fire<&I::ValueAfterChange>(e);
  }
};

template <class H>
class ListenerObject<IPropertyChangeListener, H> final : public ListenerBase<IPropertyChangeListener, H> {
 public:
  using ListenerBase<IPropertyChangeListener, H>::ListenerBase;
  HRESULT STDMETHODCALLTYPE PropertyChange(IPropertyChangeEvent* e) override {
    return this->template Fire<&IPropertyChangeListener::PropertyChange>(e);
  }
};

template <class F>
class ConditionObject final : public Object<IRecordCondition> {
 public:
  explicit ConditionObject(F function) : function_(std::move(function)) {}
  HRESULT STDMETHODCALLTYPE Evaluate(IMutableRecord* record, VARIANT_BOOL* result) override {
    if (result == nullptr) return E_POINTER;
    *result = VARIANT_FALSE;
    return Guarded([&] {
      *result = function_(record) ? VARIANT_TRUE : VARIANT_FALSE;
      return S_OK;
    });
  }

 private:
  F function_;
};

template <class F>
class ComparatorObject final : public Object<IRecordComparator> {
 public:
  explicit ComparatorObject(F function) : function_(std::move(function)) {}
  HRESULT STDMETHODCALLTYPE Compare(VARIANT first, VARIANT second, LONG* result) override {
    if (result == nullptr) return E_POINTER;
    *result = 0;
    return Guarded([&] {
      if constexpr (std::is_invocable_v<F&, IMutableRecord*, IMutableRecord*>) {
        return CompareAs<IMutableRecord>(first, second, *result);
      } else if constexpr (std::is_invocable_v<F&, IRecord*, IRecord*>) {
        return CompareAs<IRecord>(first, second, *result);
      } else {
        static_assert(std::is_invocable_v<F&, const VARIANT&, const VARIANT&>,
                      "a comparator takes (IMutableRecord*, IMutableRecord*), (IRecord*, IRecord*) or two VARIANTs");
        *result = Answer(function_(first, second));
        return S_OK;
      }
    });
  }

 private:
  template <class R>
  static com_ptr<R> RecordIn(const VARIANT& value) {
    const bool object = value.vt == VT_UNKNOWN || value.vt == VT_DISPATCH;
    if (!object || value.punkVal == nullptr) return {};
    com_ptr<R> record = com_ptr<IUnknown>(value.punkVal).template as<R>();
    if constexpr (std::is_same_v<R, IRecord>) {
      // A list's rows are mutable records, which show themselves read-only
      // through their Record view.
      if (!record) {
        if (const auto mutableRecord = com_ptr<IUnknown>(value.punkVal).template as<IMutableRecord>())
          mutableRecord->get_Record(record.put());
      }
    }
    return record;
  }

  template <class R>
  HRESULT CompareAs(const VARIANT& first, const VARIANT& second, LONG& result) {
    const com_ptr<R> a = RecordIn<R>(first);
    const com_ptr<R> b = RecordIn<R>(second);
    if (!a || !b) return E_INVALIDARG;
    result = Answer(function_(a.get(), b.get()));
    return S_OK;
  }

  template <class N>
  static LONG Answer(N answer) {
    static_assert(std::is_integral_v<N> && !std::is_same_v<N, bool>, "a comparator returns an integer");
    return static_cast<LONG>(answer);
  }

  F function_;
};

}  // namespace detail

// A listener object for the interface whose methods the handlers name
// (On<&IRecordChangeListener::ValueAfterChange>(...), ...).
template <class First, class... Rest>
com_ptr<typename First::Interface> MakeListener(First first, Rest... rest) {
  using I = typename First::Interface;
  static_assert((std::is_same_v<I, typename Rest::Interface> && ...), "every handler names a method of one listener");
  static_assert(((detail::kHandlerCount<First::kMethod, First, Rest...> == 1) && ... &&
                 (detail::kHandlerCount<Rest::kMethod, First, Rest...> == 1)),
                "one handler per method");
  static_assert(std::is_same_v<I, IRecordChangeListener> || std::is_same_v<I, IColumnsChangeListener> ||
                    std::is_same_v<I, IRecordListChangeListener> || std::is_same_v<I, IRecordListValueChangeListener> ||
                    std::is_same_v<I, IPropertyChangeListener>,
                "On<&I::Method>: I is one of the five listener interfaces");
  using Set = detail::Handlers<First, Rest...>;
  return com_ptr<I>::adopt(new detail::ListenerObject<I, Set>(Set(std::move(first), std::move(rest)...)));
}

template <class F>
com_ptr<IRecordCondition> MakeCondition(F&& function) {
  using Function = std::decay_t<F>;
  static_assert(std::is_convertible_v<std::invoke_result_t<Function&, IMutableRecord*>, bool>,
                "a condition takes an IMutableRecord* and returns bool");
  return com_ptr<IRecordCondition>::adopt(new detail::ConditionObject<Function>(std::forward<F>(function)));
}

template <class F>
com_ptr<IRecordComparator> MakeComparator(F&& function) {
  return com_ptr<IRecordComparator>::adopt(new detail::ComparatorObject<std::decay_t<F>>(std::forward<F>(function)));
}

}  // namespace brevo::sdk
