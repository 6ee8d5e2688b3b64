// A module's own resources: what the resource compiler put into the DLL on
// Windows, a table generated from the same files and linked into the module
// on the native build.
#pragma once

#include <string_view>

#ifdef _WIN32
#include <wtypes.h>
#else
#include "platform/native/wintypes.h"
#endif

namespace brevo::platform {

// The bytes of resource `id` of `type` in the module that holds address;
// empty when it has none. They live as long as the module.
std::string_view ModuleResource(const void* address, const char* type, unsigned id);
// String `id` of that module's string table; empty when it has none.
std::basic_string_view<OLECHAR> ModuleString(const void* address, unsigned id);

}  // namespace brevo::platform
