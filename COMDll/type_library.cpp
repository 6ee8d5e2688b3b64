// Where the library's type information comes from: the type library made from
// idl/BrevoRecordList.idl, registered or lying beside the module.
#include "COMDll/object_map.h"
#include "core/dispatch.h"

namespace brevo {

HRESULT LibraryTypeInfo(REFGUID guid, ITypeInfo** info) noexcept {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  // The version of the idl's library block; the file widl makes from it.
  return platform::GetLibraryTypeInfo(kTypeLibraryId, 1, 0, L"BrevoRecordList.tlb", guid, info);
}

}  // namespace brevo
