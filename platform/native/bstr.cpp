// BSTR: a byte-length prefix, the UTF-16 text, and a terminating null char.
#include <cstdlib>
#include <cstring>

#include "platform/native/allocation_failure_point.h"
#include "platform/native/oleauto.h"

namespace {

constexpr std::size_t kPrefix = sizeof(std::uint32_t);

std::uint32_t* PrefixOf(BSTR text) {
  return reinterpret_cast<std::uint32_t*>(reinterpret_cast<char*>(text) - kPrefix);
}

// Allocates room for byteLength bytes of text plus the terminator; the text
// bytes are copied from source when given, zeroed otherwise. An odd length
// gets one more zero byte, so that read as characters the text still ends in
// a whole null character inside the block.
BSTR Allocate(const void* source, std::size_t byteLength) {
  if (byteLength > 0xFFFFFFF0u || brevo::platform::AllocationShouldFail()) return nullptr;
  const std::size_t tail = sizeof(OLECHAR) + byteLength % sizeof(OLECHAR);
  auto* block = static_cast<char*>(std::malloc(kPrefix + byteLength + tail));
  if (block == nullptr) return nullptr;
  const auto length32 = static_cast<std::uint32_t>(byteLength);
  std::memcpy(block, &length32, kPrefix);
  char* text = block + kPrefix;
  if (source != nullptr) {
    std::memcpy(text, source, byteLength);
  } else {
    std::memset(text, 0, byteLength);
  }
  std::memset(text + byteLength, 0, tail);
  return reinterpret_cast<BSTR>(text);
}

}  // namespace

extern "C" {

BSTR SysAllocString(const OLECHAR* psz) {
  if (psz == nullptr) return nullptr;
  std::size_t length = 0;
  while (psz[length] != 0) ++length;
  return Allocate(psz, length * sizeof(OLECHAR));
}

BSTR SysAllocStringLen(const OLECHAR* strIn, UINT ui) {
  return Allocate(strIn, static_cast<std::size_t>(ui) * sizeof(OLECHAR));
}

BSTR SysAllocStringByteLen(const char* psz, UINT len) { return Allocate(psz, len); }

void SysFreeString(BSTR bstrString) {
  if (bstrString != nullptr) std::free(PrefixOf(bstrString));
}

UINT SysStringByteLen(BSTR bstr) { return bstr == nullptr ? 0 : *PrefixOf(bstr); }

UINT SysStringLen(BSTR pbstr) { return SysStringByteLen(pbstr) / sizeof(OLECHAR); }

LPVOID CoTaskMemAlloc(std::size_t cb) { return std::malloc(cb == 0 ? 1 : cb); }

void CoTaskMemFree(LPVOID pv) { std::free(pv); }

}  // extern "C"
