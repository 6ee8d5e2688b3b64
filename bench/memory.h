// Memory accounting from the allocator itself, so that the library, the floor
// and both peers (whose allocations go through malloc too) are counted alike.
#pragma once

#include <cstddef>
#include <cstdint>

namespace bench {

// Bytes the allocator has handed out and not yet taken back.
std::size_t BytesInUse();
// malloc, calloc and realloc calls so far, from any library in the process.
std::uint64_t MallocCalls();

}  // namespace bench
