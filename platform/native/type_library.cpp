#include "platform/type_library.h"

namespace brevo::platform {

HRESULT GetLibraryTypeInfo(REFGUID, WORD, WORD, const wchar_t*, REFGUID, ITypeInfo** info) {
  if (info != nullptr) *info = nullptr;
  return E_NOTIMPL;
}

}  // namespace brevo::platform
