// The runtime's error object, raised for failures of platform calls: an
// HRESULT and, optionally, the error info the failing callee left.
#pragma once

#include "core/bstr_t.h"
#include "core/interface_id.h"
#include "platform/com.h"

namespace brevo {

class _com_error {
 public:
  // Takes ownership of info (may be null).
  explicit _com_error(HRESULT hr, IErrorInfo* info = nullptr) noexcept;
  _com_error(const _com_error& other) noexcept;
  _com_error& operator=(const _com_error& other) noexcept;
  ~_com_error();

  HRESULT Error() const noexcept { return hr_; }
  // The error info's description; null when there is none.
  _bstr_t Description() const;
  _bstr_t Source() const;
  GUID Guid() const noexcept;
  // A new reference for the caller; null when there is none.
  IErrorInfo* ErrorInfo() const noexcept;

 private:
  HRESULT hr_;
  IErrorInfo* info_;
};

[[noreturn]] void _com_issue_error(HRESULT hr);
// Raises hr with the error info that callee left when callee reports error
// info for interface iid.
[[noreturn]] void _com_issue_errorex(HRESULT hr, IUnknown* callee, REFIID iid);

inline void ThrowIfFailed(HRESULT hr) {
  if (FAILED(hr)) _com_issue_error(hr);
}

// A failed call of callee's interface I, raised with the error info callee left.
template <class I>
void ThrowIfFailed(HRESULT hr, I* callee) {
  if (FAILED(hr)) _com_issue_errorex(hr, callee, iid_of<I>());
}

}  // namespace brevo

