// A shared, reference-counted wide string: copies share one BSTR, a null
// string differs from an empty one, and the narrow form (ANSI code page) is
// made on first use and kept.
#pragma once

#include <atomic>
#include <cstddef>

#include "platform/com.h"

namespace brevo {

class _bstr_t {
 public:
  _bstr_t() noexcept = default;
  _bstr_t(std::nullptr_t) noexcept {}
  _bstr_t(const OLECHAR* text);
  _bstr_t(const char* text);
  // Takes ownership of text when copy is false.
  _bstr_t(BSTR text, bool copy);
  _bstr_t(const _bstr_t& other) noexcept;
  _bstr_t(_bstr_t&& other) noexcept;
  _bstr_t& operator=(const _bstr_t& other) noexcept;
  _bstr_t& operator=(_bstr_t&& other) noexcept;
  ~_bstr_t();

  // The shared BSTR; null for a null string. Still owned by this object.
  operator const OLECHAR*() const noexcept { return data_ != nullptr ? data_->wide : nullptr; }
  BSTR GetBSTR() const noexcept { return data_ != nullptr ? data_->wide : nullptr; }
  // The narrow copy; null for a null string.
  operator const char*() const;
  const char* narrow() const { return static_cast<const char*>(*this); }

  // In characters.
  unsigned int length() const noexcept { return SysStringLen(GetBSTR()); }
  bool is_null() const noexcept { return data_ == nullptr; }
  // A new BSTR for the caller; null for a null string.
  BSTR copy() const;
  void Attach(BSTR text);
  BSTR Detach();

  // Exact equality: both null, or the same UTF-16 code units.
  friend bool operator==(const _bstr_t& a, const _bstr_t& b) noexcept;
  friend bool operator!=(const _bstr_t& a, const _bstr_t& b) noexcept { return !(a == b); }

 private:
  struct Data {
    BSTR wide;
    mutable char* narrow = nullptr;
    std::atomic<unsigned> refs{1};
  };

  static Data* Adopt(BSTR text);
  void Drop() noexcept;

  Data* data_ = nullptr;
};

// text itself; a null text (an allocation that failed) raises E_OUTOFMEMORY.
BSTR CheckedAllocation(BSTR text);
// A new BSTR with text's bytes, an odd byte length included; a null text
// gives an empty string.
BSTR ExactCopy(BSTR text);

// The sole owner of one BSTR on its way to a caller: nothing shared, no
// narrow copy, so handing it out costs no allocation beyond the string.
class unique_bstr {
 public:
  unique_bstr() noexcept = default;
  explicit unique_bstr(BSTR text) noexcept : text_(text) {}
  unique_bstr(unique_bstr&& other) noexcept : text_(other.release()) {}
  unique_bstr& operator=(unique_bstr&& other) noexcept {
    if (this != &other) {
      SysFreeString(text_);
      text_ = other.release();
    }
    return *this;
  }
  ~unique_bstr() { SysFreeString(text_); }

  BSTR get() const noexcept { return text_; }
  BSTR release() noexcept {
    const BSTR text = text_;
    text_ = nullptr;
    return text;
  }

 private:
  BSTR text_ = nullptr;
};

// Exact, case-sensitive equality of two wide strings as held in BSTRs:
// both null, or the same length and code units.
bool SameText(const OLECHAR* a, const OLECHAR* b) noexcept;

}  // namespace brevo
