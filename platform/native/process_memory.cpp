#include "platform/process_memory.h"

#include <malloc.h>

namespace brevo::platform {

std::size_t HeapBytesInUse() { return mallinfo2().uordblks; }

}  // namespace brevo::platform
