#include "allocation_countdown.h"

#include <cstdlib>
#include <new>

#include "platform/allocation_failure.h"

namespace brevo::testing {
namespace {

long g_remaining = 0;  // 0: disarmed
std::size_t g_size = 0;  // 0: any size counts
bool g_fired = false;
bool g_firedInRuntime = false;
bool g_paused = false;
long g_live = 0;

// True when this allocation is the one that must fail. The runtime's own
// allocations have no size here.
bool Countdown(std::size_t size) {
  if (g_paused || g_remaining == 0 || (g_size != 0 && size != g_size)) return false;
  if (--g_remaining != 0) return false;
  g_fired = true;
  return true;
}

const bool g_hooked = [] {
  platform::SetAllocationFailureHook([] {
    const bool fails = Countdown(0);
    g_firedInRuntime = g_firedInRuntime || fails;
    return fails;
  });
  return platform::AllocationFailureHookSupported();
}();

void* Allocate(std::size_t size) {
  if (Countdown(size)) throw std::bad_alloc();
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  ++g_live;
  return block;
}

void Free(void* block) noexcept {
  if (block == nullptr) return;
  --g_live;
  std::free(block);
}

}  // namespace

void AllocationCountdown::Arm(long k) {
  g_remaining = k;
  g_size = 0;
  g_fired = false;
  g_firedInRuntime = false;
}
void AllocationCountdown::ArmForSize(std::size_t size) {
  Arm(1);
  g_size = size;
}
void AllocationCountdown::Disarm() { g_remaining = 0; }
bool AllocationCountdown::Fired() { return g_fired; }
bool AllocationCountdown::FiredInRuntime() { return g_firedInRuntime; }
long AllocationCountdown::LiveBlocks() { return g_live; }
bool AllocationCountdown::RuntimeHooked() { return g_hooked; }

PausedCountdown::PausedCountdown(bool paused) : wasPaused_(g_paused) { g_paused = paused; }
PausedCountdown::~PausedCountdown() { g_paused = wasPaused_; }

}  // namespace brevo::testing

// The replacements serve the whole test program, library included.
void* operator new(std::size_t size) { return brevo::testing::Allocate(size); }
void* operator new[](std::size_t size) { return brevo::testing::Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return brevo::testing::Allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void* operator new[](std::size_t size, const std::nothrow_t& nothrow) noexcept { return operator new(size, nothrow); }
void operator delete(void* block) noexcept { brevo::testing::Free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { brevo::testing::Free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { brevo::testing::Free(block); }
void operator delete[](void* block) noexcept { brevo::testing::Free(block); }
void operator delete(void* block, std::size_t) noexcept { brevo::testing::Free(block); }
void operator delete[](void* block, std::size_t) noexcept { brevo::testing::Free(block); }
