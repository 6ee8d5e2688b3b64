// The registry's classes root (HKEY_CLASSES_ROOT on Windows), as registration
// and class lookup use it. Key paths are relative to the root, parts joined by
// "\"; a null value name is the key's default value. Key and value names
// compare without regard to case.
#pragma once

#ifdef _WIN32
#include <wtypes.h>
#else
#include "platform/native/wintypes.h"
#endif

namespace brevo::platform {

// Creates the key (and its parents) as needed.
HRESULT SetRegistryString(const OLECHAR* key, const OLECHAR* name, const OLECHAR* value);
// Creates the key without a value.
HRESULT CreateRegistryKey(const OLECHAR* key);
// Removes the key and everything below it; S_OK when it did not exist.
HRESULT DeleteRegistryTree(const OLECHAR* key);
// S_OK and the value, or S_FALSE and null when the key or the value is missing.
HRESULT GetRegistryString(const OLECHAR* key, const OLECHAR* name, BSTR* value);

// The full path of the module (library or program) that holds address.
BSTR ModuleFileNameOf(const void* address);

// The calling thread's locale, for registration's neutral-locale step.
LCID GetCallingThreadLocale();
void SetCallingThreadLocale(LCID locale);

}  // namespace brevo::platform
