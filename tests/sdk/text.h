// BSTRs for the SDK tests: made owned, and read from out-parameters.
#pragma once

#include <memory>
#include <string>

#include "BrevoRecordList.h"

namespace sdk_test {

struct FreeBstr {
  void operator()(OLECHAR* text) const noexcept { SysFreeString(text); }
};
using OwnedBstr = std::unique_ptr<OLECHAR, FreeBstr>;

inline OwnedBstr Bstr(const wchar_t* text) { return OwnedBstr(SysAllocString(text)); }

// The text a getter hands out through its BSTR* parameter ("" on a failure).
template <class Getter>
std::wstring ReadText(Getter&& get) {
  BSTR out = nullptr;
  const HRESULT hr = get(&out);
  const OwnedBstr owned(out);
  return SUCCEEDED(hr) && owned ? std::wstring(owned.get(), SysStringLen(owned.get())) : std::wstring();
}

}  // namespace sdk_test
