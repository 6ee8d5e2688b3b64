#include "core/bstr_t.h"

#include <cstring>
#include <new>
#include <string>

#include "core/com_error.h"

namespace brevo {
namespace {

std::size_t WideLength(const OLECHAR* text) {
  std::size_t length = 0;
  while (text[length] != 0) ++length;
  return length;
}

}  // namespace

BSTR CheckedAllocation(BSTR text) {
  if (text == nullptr) _com_issue_error(E_OUTOFMEMORY);
  return text;
}

BSTR ExactCopy(BSTR text) {
  return CheckedAllocation(SysAllocStringByteLen(reinterpret_cast<const char*>(text), SysStringByteLen(text)));
}

_bstr_t::Data* _bstr_t::Adopt(BSTR text) {
  auto* data = new (std::nothrow) Data{text};
  if (data == nullptr) {
    SysFreeString(text);
    _com_issue_error(E_OUTOFMEMORY);
  }
  return data;
}

_bstr_t::_bstr_t(const OLECHAR* text) {
  if (text != nullptr) {
    data_ = Adopt(CheckedAllocation(SysAllocStringLen(text, static_cast<UINT>(WideLength(text)))));
  }
}

_bstr_t::_bstr_t(const char* text) {
  if (text != nullptr) data_ = Adopt(CheckedAllocation(platform::AnsiToBstr(text, std::strlen(text))));
}

_bstr_t::_bstr_t(BSTR text, bool copy) {
  if (text == nullptr) return;
  data_ = Adopt(copy ? ExactCopy(text) : text);
}

_bstr_t::_bstr_t(const _bstr_t& other) noexcept : data_(other.data_) {
  if (data_ != nullptr) data_->refs.fetch_add(1, std::memory_order_relaxed);
}

_bstr_t::_bstr_t(_bstr_t&& other) noexcept : data_(other.data_) { other.data_ = nullptr; }

_bstr_t& _bstr_t::operator=(const _bstr_t& other) noexcept {
  if (data_ != other.data_) {
    _bstr_t copy(other);
    std::swap(data_, copy.data_);
  }
  return *this;
}

_bstr_t& _bstr_t::operator=(_bstr_t&& other) noexcept {
  if (this != &other) {
    Drop();
    data_ = other.data_;
    other.data_ = nullptr;
  }
  return *this;
}

_bstr_t::~_bstr_t() { Drop(); }

void _bstr_t::Drop() noexcept {
  if (data_ != nullptr && data_->refs.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    SysFreeString(data_->wide);
    delete[] data_->narrow;
    delete data_;
  }
  data_ = nullptr;
}

_bstr_t::operator const char*() const {
  if (data_ == nullptr) return nullptr;
  if (data_->narrow == nullptr) {
    const std::string text = platform::WideToAnsi(data_->wide, SysStringLen(data_->wide));
    auto* narrow = new (std::nothrow) char[text.size() + 1];
    if (narrow == nullptr) _com_issue_error(E_OUTOFMEMORY);
    std::memcpy(narrow, text.c_str(), text.size() + 1);
    data_->narrow = narrow;
  }
  return data_->narrow;
}

BSTR _bstr_t::copy() const {
  const BSTR wide = GetBSTR();
  if (wide == nullptr) return nullptr;
  return ExactCopy(wide);
}

void _bstr_t::Attach(BSTR text) {
  Drop();
  if (text != nullptr) data_ = Adopt(text);
}

// Hands the BSTR over when this object is its only owner, a copy otherwise.
BSTR _bstr_t::Detach() {
  if (data_ == nullptr) return nullptr;
  if (data_->refs.load(std::memory_order_acquire) != 1) {
    BSTR result = copy();
    Drop();
    return result;
  }
  BSTR result = data_->wide;
  data_->wide = nullptr;
  Drop();
  return result;
}

bool operator==(const _bstr_t& a, const _bstr_t& b) noexcept { return SameText(a.GetBSTR(), b.GetBSTR()); }

bool SameText(const OLECHAR* a, const OLECHAR* b) noexcept {
  if (a == b) return true;
  if (a == nullptr || b == nullptr) return false;
  const UINT length = SysStringByteLen(const_cast<BSTR>(a));
  return length == SysStringByteLen(const_cast<BSTR>(b)) && std::memcmp(a, b, length) == 0;
}

}  // namespace brevo
