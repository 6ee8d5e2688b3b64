// The system's runtime allocates on its own; there is nothing to hook.
#include "platform/allocation_failure.h"

namespace brevo::platform {

AllocationFailureHook SetAllocationFailureHook(AllocationFailureHook) { return nullptr; }

bool AllocationFailureHookSupported() { return false; }

}  // namespace brevo::platform
