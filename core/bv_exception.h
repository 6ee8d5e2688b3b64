// The library's own failure: a fixed message and a result code.
#pragma once

#include "core/bstr_t.h"

namespace brevo {

class EBvException {
 public:
  // A non-zero code becomes an interface-specific error: code | 0x80040000.
  explicit EBvException(const _bstr_t& description, HRESULT code = 0)
      : description_(description), code_(code == 0 ? 0 : static_cast<HRESULT>(code | 0x80040000)) {}

  HRESULT GetCode() const noexcept { return code_; }
  // Null when the description is null.
  const OLECHAR* GetDescription() const noexcept { return description_; }

 private:
  _bstr_t description_;
  HRESULT code_;
};

}  // namespace brevo
