// For tests: a hook the runtime's own allocations (strings, and the strings
// that variant copies make) ask before allocating; when it answers true the
// allocation fails as it would when memory runs out. The system's runtime
// offers no such point, so there the hook is never asked.
#pragma once

namespace brevo::platform {

using AllocationFailureHook = bool (*)();

// Returns the previous hook; null removes it.
AllocationFailureHook SetAllocationFailureHook(AllocationFailureHook hook);

// Whether the runtime of this build asks the hook.
bool AllocationFailureHookSupported();

}  // namespace brevo::platform
