// A back link that takes no reference, from a dependent object to the object it
// belongs to or mirrors. The owner outlives the dependent or clears the link.
#pragma once

namespace brevo {

template <class T>
class WeakReference {
 public:
  WeakReference() noexcept = default;
  explicit WeakReference(T* target) noexcept : target_(target) {}
  virtual ~WeakReference() = default;

  T* get() const noexcept { return target_; }
  T* operator->() const noexcept { return target_; }
  explicit operator bool() const noexcept { return target_ != nullptr; }
  void reset(T* target = nullptr) noexcept { target_ = target; }

 private:
  T* target_ = nullptr;
};

}  // namespace brevo
