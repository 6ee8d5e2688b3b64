// An owning interface pointer: one reference held, released on destruction.
#pragma once

#include <utility>

#include "core/com_error.h"
#include "core/interface_id.h"

namespace brevo {

template <class T>
class com_ptr {
 public:
  com_ptr() noexcept = default;
  com_ptr(std::nullptr_t) noexcept {}
  // Takes a new reference on ptr.
  explicit com_ptr(T* ptr) noexcept : ptr_(ptr) { AddRefIfAny(); }
  com_ptr(const com_ptr& other) noexcept : ptr_(other.ptr_) { AddRefIfAny(); }
  com_ptr(com_ptr&& other) noexcept : ptr_(std::exchange(other.ptr_, nullptr)) {}
  template <class U>
  com_ptr(const com_ptr<U>& other) noexcept : ptr_(other.get()) {
    AddRefIfAny();
  }
  com_ptr& operator=(com_ptr other) noexcept {
    std::swap(ptr_, other.ptr_);
    return *this;
  }
  ~com_ptr() { reset(); }

  // Adopts a reference the caller already owns.
  static com_ptr attach(T* ptr) noexcept {
    com_ptr result;
    result.ptr_ = ptr;
    return result;
  }

  T* get() const noexcept { return ptr_; }
  T* operator->() const noexcept { return ptr_; }
  T& operator*() const noexcept { return *ptr_; }
  explicit operator bool() const noexcept { return ptr_ != nullptr; }

  void reset() noexcept {
    if (T* old = std::exchange(ptr_, nullptr)) old->Release();
  }
  // Hands the reference to the caller.
  T* detach() noexcept { return std::exchange(ptr_, nullptr); }
  // For out-parameters: releases what is held and returns the slot.
  T** put() noexcept {
    reset();
    return &ptr_;
  }
  void** put_void() noexcept { return reinterpret_cast<void**>(put()); }
  // Gives the caller its own reference through an out-parameter.
  void copy_to(T** out) const noexcept {
    *out = ptr_;
    AddRefIfAny();
  }

  // A reference to another interface of the same object, or null.
  template <class U>
  com_ptr<U> try_query() const noexcept {
    com_ptr<U> result;
    if (ptr_ != nullptr) ptr_->QueryInterface(iid_of<U>(), result.put_void());
    return result;
  }
  // As try_query, but a missing interface is raised as the runtime error.
  template <class U>
  com_ptr<U> query() const {
    if (ptr_ == nullptr) _com_issue_error(E_POINTER);
    com_ptr<U> result;
    ThrowIfFailed(ptr_->QueryInterface(iid_of<U>(), result.put_void()));
    return result;
  }

  friend bool operator==(const com_ptr& a, const com_ptr& b) noexcept { return a.ptr_ == b.ptr_; }

 private:
  void AddRefIfAny() const noexcept {
    if (ptr_ != nullptr) ptr_->AddRef();
  }

  T* ptr_ = nullptr;
};

// The COM identity of an object: its IUnknown.
template <class T>
com_ptr<IUnknown> identity_of(T* object) noexcept {
  return com_ptr<T>(object).template try_query<IUnknown>();
}

}  // namespace brevo
