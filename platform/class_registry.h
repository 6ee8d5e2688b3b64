// The class registry behind ProgIDFromCLSID / CLSIDFromProgID. It starts empty,
// as on a machine where nothing is registered; the module's registration and
// the tests fill it through these calls.
#pragma once

#ifdef _WIN32
#include <wtypes.h>
#else
#include "platform/native/wintypes.h"
#endif

namespace brevo::platform {

// Maps the class to the ProgID and the ProgID back to the class.
HRESULT RegisterProgId(REFCLSID clsid, const OLECHAR* progId);
// Removes both directions of the mapping; S_OK when nothing was registered.
HRESULT UnregisterProgId(REFCLSID clsid, const OLECHAR* progId);

}  // namespace brevo::platform
