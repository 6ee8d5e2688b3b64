// Where the native runtime's allocations consult the test hook.
#pragma once

#include "platform/allocation_failure.h"

namespace brevo::platform {

bool AllocationShouldFail();

}  // namespace brevo::platform
