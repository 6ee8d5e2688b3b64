#include "platform/type_library.h"

namespace brevo::platform {

HRESULT GetLibraryTypeInfo(REFGUID, WORD, WORD, REFGUID, ITypeInfo** info) {
  if (info != nullptr) *info = nullptr;
  return E_NOTIMPL;
}

}  // namespace brevo::platform
