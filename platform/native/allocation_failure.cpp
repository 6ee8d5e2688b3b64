#include <utility>

#include "platform/native/allocation_failure_point.h"

namespace brevo::platform {
namespace {
AllocationFailureHook g_hook = nullptr;
}  // namespace

AllocationFailureHook SetAllocationFailureHook(AllocationFailureHook hook) { return std::exchange(g_hook, hook); }

bool AllocationFailureHookSupported() { return true; }

bool AllocationShouldFail() { return g_hook != nullptr && g_hook(); }

}  // namespace brevo::platform
