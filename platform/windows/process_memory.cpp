#include "platform/process_memory.h"

#include <windows.h>
#include <psapi.h>

namespace brevo::platform {

std::size_t HeapBytesInUse() {
  PROCESS_MEMORY_COUNTERS_EX counters{};
  counters.cb = sizeof counters;
  if (!K32GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                               sizeof counters)) {
    return 0;
  }
  return counters.PrivateUsage;
}

}  // namespace brevo::platform
