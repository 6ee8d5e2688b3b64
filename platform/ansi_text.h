// Conversion between wide text and the process's ANSI code page, which is
// Windows-1252 on every build we ship (Wine runs under a pinned 1252 locale).
#pragma once

#include <cstddef>
#include <string>

#ifdef _WIN32
#include <wtypes.h>
#else
#include "platform/native/wintypes.h"
#endif

namespace brevo::platform {

// Characters without a mapping become '?'.
std::string WideToAnsi(const OLECHAR* text, std::size_t length);

// A new BSTR holding the widened text, or null when allocation fails.
BSTR AnsiToBstr(const char* text, std::size_t length);

}  // namespace brevo::platform
