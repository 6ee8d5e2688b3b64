// What the process's heap holds, for tests that check memory stays flat.
#pragma once

#include <cstddef>

namespace brevo::platform {

// Bytes the process has allocated and not freed (an estimate the allocator
// keeps; zero where it keeps none, as under a sanitizer's allocator).
std::size_t HeapBytesInUse();

}  // namespace brevo::platform
