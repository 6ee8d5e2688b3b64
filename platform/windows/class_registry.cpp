// ProgID registration in the classes root of the registry, where
// ProgIDFromCLSID and CLSIDFromProgID look.
#include "platform/class_registry.h"

#include <windows.h>
#include <objbase.h>

#include <string>

namespace {

std::wstring ClassKey(REFCLSID clsid) {
  wchar_t text[40] = {};
  StringFromGUID2(clsid, text, 40);
  return std::wstring(L"CLSID\\") + text;
}

HRESULT SetDefault(const std::wstring& key, const wchar_t* value) {
  HKEY handle = nullptr;
  LONG status = RegCreateKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &handle, nullptr);
  if (status == ERROR_SUCCESS) {
    const auto bytes = static_cast<DWORD>((wcslen(value) + 1) * sizeof(wchar_t));
    status = RegSetValueExW(handle, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(value), bytes);
    RegCloseKey(handle);
  }
  return HRESULT_FROM_WIN32(status);
}

}  // namespace

namespace brevo::platform {

HRESULT RegisterProgId(REFCLSID clsid, const OLECHAR* progId) {
  if (progId == nullptr) return E_INVALIDARG;
  wchar_t clsidText[40] = {};
  StringFromGUID2(clsid, clsidText, 40);
  HRESULT hr = SetDefault(ClassKey(clsid) + L"\\ProgID", progId);
  if (SUCCEEDED(hr)) hr = SetDefault(std::wstring(progId) + L"\\CLSID", clsidText);
  return hr;
}

HRESULT UnregisterProgId(REFCLSID clsid, const OLECHAR* progId) {
  RegDeleteTreeW(HKEY_CLASSES_ROOT, ClassKey(clsid).c_str());
  if (progId != nullptr) RegDeleteTreeW(HKEY_CLASSES_ROOT, progId);
  return S_OK;
}

}  // namespace brevo::platform
