// The library's type information, for callers that ask a dispatch interface
// or a class for it.
#pragma once

#ifdef _WIN32
#include <oaidl.h>
#else
#include "platform/native/oleauto.h"
#endif

namespace brevo::platform {

// The type information of guid (an interface or a class) in the type library
// `library` of the given version: the registered one, else the file `fileName`
// in the folder of the module that holds this code. The type library is loaded
// once per process (a module has one).
// Where there is none (the native build has no type libraries) the result is
// E_NOTIMPL.
HRESULT GetLibraryTypeInfo(REFGUID library, WORD major, WORD minor, const wchar_t* fileName, REFGUID guid,
                           ITypeInfo** info);

}  // namespace brevo::platform
