#include "platform/registry.h"

#include <windows.h>

#include "platform/windows/module_handle.h"

namespace brevo::platform {

HRESULT SetRegistryString(const OLECHAR* key, const OLECHAR* name, const OLECHAR* value) {
  HKEY handle = nullptr;
  LONG status = RegCreateKeyExW(HKEY_CLASSES_ROOT, key, 0, nullptr, 0, KEY_WRITE, nullptr, &handle, nullptr);
  if (status == ERROR_SUCCESS) {
    const auto bytes = static_cast<DWORD>((wcslen(value) + 1) * sizeof(wchar_t));
    status = RegSetValueExW(handle, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value), bytes);
    RegCloseKey(handle);
  }
  return HRESULT_FROM_WIN32(status);
}

HRESULT CreateRegistryKey(const OLECHAR* key) {
  HKEY handle = nullptr;
  const LONG status = RegCreateKeyExW(HKEY_CLASSES_ROOT, key, 0, nullptr, 0, KEY_WRITE, nullptr, &handle, nullptr);
  if (status == ERROR_SUCCESS) RegCloseKey(handle);
  return HRESULT_FROM_WIN32(status);
}

HRESULT DeleteRegistryTree(const OLECHAR* key) {
  const LONG status = RegDeleteTreeW(HKEY_CLASSES_ROOT, key);
  return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND ? S_OK : HRESULT_FROM_WIN32(status);
}

HRESULT GetRegistryString(const OLECHAR* key, const OLECHAR* name, BSTR* value) {
  *value = nullptr;
  wchar_t buffer[1024];
  DWORD bytes = sizeof buffer;
  const LONG status = RegGetValueW(HKEY_CLASSES_ROOT, key, name, RRF_RT_REG_SZ, nullptr, buffer, &bytes);
  if (status == ERROR_FILE_NOT_FOUND) return S_FALSE;
  if (status != ERROR_SUCCESS) return HRESULT_FROM_WIN32(status);
  *value = SysAllocString(buffer);
  return *value != nullptr ? S_OK : E_OUTOFMEMORY;
}

BSTR ModuleFileNameOf(const void* address) {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(ModuleHolding(address), path, MAX_PATH);
  return SysAllocString(path);
}

LCID GetCallingThreadLocale() { return GetThreadLocale(); }

void SetCallingThreadLocale(LCID locale) { SetThreadLocale(locale); }

}  // namespace brevo::platform
