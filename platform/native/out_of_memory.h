// The runtime's functions answer a failed allocation with E_OUTOFMEMORY; the
// C++ containers the native layer keeps its data in throw instead.
#pragma once

#include <new>

#include "platform/native/oleauto.h"

namespace brevo::platform {

template <class Body>
HRESULT OutOfMemoryAsResult(Body&& body) noexcept {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace brevo::platform
