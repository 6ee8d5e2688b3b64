#include "bench/memory.h"

#include <malloc.h>

#include <atomic>

// The executable's malloc comes first in symbol lookup, so the calls of the
// shared libraries (the platform layer's strings, Qt, SQLite, libstdc++'s
// operator new) are counted here before glibc serves them.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
}

namespace {
std::atomic<std::uint64_t> calls{0};
}

extern "C" {
void* malloc(std::size_t size) {
  calls.fetch_add(1, std::memory_order_relaxed);
  return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
  calls.fetch_add(1, std::memory_order_relaxed);
  return __libc_calloc(count, size);
}
void* realloc(void* block, std::size_t size) {
  calls.fetch_add(1, std::memory_order_relaxed);
  return __libc_realloc(block, size);
}
}

namespace bench {

std::size_t BytesInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

std::uint64_t MallocCalls() { return calls.load(std::memory_order_relaxed); }

}  // namespace bench
