#include "core/module_lock.h"

#include <atomic>

namespace brevo {
namespace {

// Objects of different apartments share it, so it is the one atomic count.
std::atomic<long> g_lockCount{0};

}  // namespace

void ModuleLock::Increment() noexcept { g_lockCount.fetch_add(1, std::memory_order_relaxed); }

void ModuleLock::Decrement() noexcept { g_lockCount.fetch_sub(1, std::memory_order_relaxed); }

long ModuleLock::Count() noexcept { return g_lockCount.load(std::memory_order_relaxed); }

}  // namespace brevo
