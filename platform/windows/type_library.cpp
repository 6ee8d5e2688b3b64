#include "platform/type_library.h"

#include <windows.h>

#include <memory>
#include <string>

namespace brevo::platform {
namespace {

struct Releaser {
  void operator()(IUnknown* object) const noexcept { object->Release(); }
};
using TypeLibrary = std::unique_ptr<ITypeLib, Releaser>;

// fileName in the folder of this module.
std::wstring FileBesideModule(const wchar_t* fileName) {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&FileBesideModule), &module);
  wchar_t path[MAX_PATH] = {};
  const DWORD length = GetModuleFileNameW(module, path, MAX_PATH);
  if (length == 0 || length == MAX_PATH) return {};
  std::wstring file(path, length);
  file.resize(file.find_last_of(L"\\/") + 1);
  return file + fileName;
}

struct Loaded {
  TypeLibrary library;
  HRESULT hr;
};

Loaded Load(REFGUID id, WORD major, WORD minor, const wchar_t* fileName) {
  ITypeLib* library = nullptr;
  if (SUCCEEDED(LoadRegTypeLib(id, major, minor, LOCALE_NEUTRAL, &library))) return {TypeLibrary(library), S_OK};
  const std::wstring file = FileBesideModule(fileName);
  const HRESULT hr = file.empty() ? TYPE_E_CANTLOADLIBRARY : LoadTypeLibEx(file.c_str(), REGKIND_NONE, &library);
  return {TypeLibrary(SUCCEEDED(hr) ? library : nullptr), hr};
}

}  // namespace

HRESULT GetLibraryTypeInfo(REFGUID library, WORD major, WORD minor, const wchar_t* fileName, REFGUID guid,
                           ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  // The outcome of the first look-up stands for the life of the process.
  static const Loaded loaded = Load(library, major, minor, fileName);
  if (!loaded.library) return loaded.hr;
  return loaded.library->GetTypeInfoOfGuid(guid, info);
}

}  // namespace brevo::platform
