// The loaded module that holds an address (a DLL's code finds its own module).
#pragma once

#include <windows.h>

namespace brevo::platform {

inline HMODULE ModuleHolding(const void* address) {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     static_cast<LPCWSTR>(address), &module);
  return module;
}

}  // namespace brevo::platform
