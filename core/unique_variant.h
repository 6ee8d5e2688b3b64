// An owned cell value: initialised empty, cleared on destruction, deep-copied
// with VariantCopy.
#pragma once

#include <utility>

#include "core/com_error.h"
#include "platform/com.h"

namespace brevo {

class unique_variant {
 public:
  unique_variant() noexcept { VariantInit(&value_); }
  // A copy of source (strings duplicated, objects referenced again).
  explicit unique_variant(const VARIANT& source) : unique_variant() {
    ThrowIfFailed(VariantCopy(&value_, const_cast<VARIANT*>(&source)));  // the source is only read
  }
  unique_variant(const unique_variant& other) : unique_variant(other.value_) {}
  unique_variant(unique_variant&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
  unique_variant& operator=(const unique_variant& other) {
    if (this != &other) ThrowIfFailed(VariantCopy(&value_, const_cast<VARIANT*>(&other.value_)));
    return *this;
  }
  unique_variant& operator=(unique_variant&& other) noexcept {
    if (this != &other) {
      reset();
      value_ = other.value_;
      VariantInit(&other.value_);
    }
    return *this;
  }
  ~unique_variant() { VariantClear(&value_); }

  // Adopts a value the caller owns; the source is left empty.
  static unique_variant attach(VARIANT& source) noexcept {
    unique_variant result;
    result.value_ = source;
    VariantInit(&source);
    return result;
  }

  const VARIANT& get() const noexcept { return value_; }
  VARIANT& get() noexcept { return value_; }
  const VARIANT* operator->() const noexcept { return &value_; }
  VARIANT* operator->() noexcept { return &value_; }
  VARTYPE vt() const noexcept { return value_.vt; }

  void reset() noexcept { VariantClear(&value_); }
  // For out-parameters: clears and returns the slot.
  VARIANT* put() noexcept {
    reset();
    return &value_;
  }
  // Hands the value to the caller; this one is left empty.
  VARIANT release() noexcept {
    VARIANT result = value_;
    VariantInit(&value_);
    return result;
  }

 private:
  VARIANT value_;
};

}  // namespace brevo
