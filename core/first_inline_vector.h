// A sequence whose first element lives inside the object: most holders keep
// exactly one (a record's registry holds just its list's relay), and that one
// then costs no allocation of its own.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace brevo {

template <class T>
class FirstInlineVector {
 public:
  bool empty() const noexcept { return size_ == 0; }
  std::size_t size() const noexcept { return size_; }

  T& operator[](std::size_t i) noexcept { return i == 0 ? first_ : rest_[i - 1]; }
  const T& operator[](std::size_t i) const noexcept { return i == 0 ? first_ : rest_[i - 1]; }

  void push_back(T value) {
    if (size_ == 0) {
      first_ = std::move(value);
    } else {
      rest_.push_back(std::move(value));
    }
    ++size_;
  }

  // Later elements move up one place and keep their order.
  void erase(std::size_t i) {
    for (; i + 1 < size_; ++i) (*this)[i] = std::move((*this)[i + 1]);
    if (size_ > 1) {
      rest_.pop_back();
    } else {
      first_ = T();
    }
    --size_;
  }

 private:
  T first_{};
  std::vector<T> rest_;
  std::size_t size_ = 0;
};

}  // namespace brevo
