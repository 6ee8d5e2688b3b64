// Class lookup: ProgID <-> CLSID through the registry, and class objects from
// the module that the registry names for a class (loaded on first use and
// kept, as the runtime keeps in-process servers).
#include <dlfcn.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "platform/native/oleauto.h"
#include "platform/native/out_of_memory.h"
#include "platform/registry.h"

namespace {

using Text = std::u16string;

Text ClassKey(REFCLSID clsid) {
  OLECHAR text[40] = {};
  StringFromGUID2(clsid, text, 40);
  return Text(u"CLSID\\") + text;
}

// The registry's string, or empty when missing.
Text Read(const Text& key, const OLECHAR* name) {
  BSTR value = nullptr;
  if (brevo::platform::GetRegistryString(key.c_str(), name, &value) != S_OK) return {};
  Text result(value, SysStringLen(value));
  SysFreeString(value);
  return result;
}

using GetClassObjectFunction = HRESULT (*)(REFCLSID, REFIID, void**);

}  // namespace

extern "C" {

int StringFromGUID2(REFGUID guid, LPOLESTR text, int size) {
  char narrow[40];
  std::snprintf(narrow, sizeof narrow, "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                static_cast<unsigned>(guid.Data1), guid.Data2, guid.Data3, guid.Data4[0], guid.Data4[1], guid.Data4[2],
                guid.Data4[3], guid.Data4[4], guid.Data4[5], guid.Data4[6], guid.Data4[7]);
  if (text == nullptr || size < 39) return 0;
  for (int i = 0; i < 39; ++i) text[i] = static_cast<OLECHAR>(narrow[i]);
  return 39;
}

HRESULT CLSIDFromString(LPCOLESTR text, CLSID* clsid) {
  if (text == nullptr || clsid == nullptr) return E_INVALIDARG;
  char narrow[40] = {};
  for (int i = 0; i < 39 && text[i] != 0; ++i) narrow[i] = static_cast<char>(text[i]);
  unsigned d1 = 0, d2 = 0, d3 = 0, b[8] = {};
  char close = 0;
  if (std::strlen(narrow) != 38 ||
      std::sscanf(narrow, "{%8x-%4x-%4x-%2x%2x-%2x%2x%2x%2x%2x%2x%c", &d1, &d2, &d3, &b[0], &b[1], &b[2], &b[3], &b[4],
                  &b[5], &b[6], &b[7], &close) != 12 ||
      close != '}') {
    return CO_E_CLASSSTRING;
  }
  *clsid = GUID{d1, static_cast<std::uint16_t>(d2), static_cast<std::uint16_t>(d3), {}};
  for (int i = 0; i < 8; ++i) clsid->Data4[i] = static_cast<std::uint8_t>(b[i]);
  return S_OK;
}

HRESULT ProgIDFromCLSID(REFCLSID clsid, LPOLESTR* lplpszProgID) {
  if (lplpszProgID == nullptr) return E_INVALIDARG;
  *lplpszProgID = nullptr;
  return brevo::platform::OutOfMemoryAsResult([&] {
    const Text progId = Read(ClassKey(clsid) + u"\\ProgID", nullptr);
    if (progId.empty()) return REGDB_E_CLASSNOTREG;
    const std::size_t bytes = (progId.size() + 1) * sizeof(OLECHAR);
    auto* text = static_cast<LPOLESTR>(CoTaskMemAlloc(bytes));
    if (text == nullptr) return E_OUTOFMEMORY;
    std::memcpy(text, progId.c_str(), bytes);
    *lplpszProgID = text;
    return S_OK;
  });
}

HRESULT CLSIDFromProgID(LPCOLESTR lpszProgID, CLSID* lpclsid) {
  if (lpszProgID == nullptr || lpclsid == nullptr) return E_INVALIDARG;
  *lpclsid = GUID_NULL;
  return brevo::platform::OutOfMemoryAsResult([&] {
    const Text clsid = Read(Text(lpszProgID) + u"\\CLSID", nullptr);
    return clsid.empty() ? CO_E_CLASSSTRING : CLSIDFromString(clsid.c_str(), lpclsid);
  });
}

HRESULT CoInitialize(LPVOID) { return S_OK; }

void CoUninitialize() {}

HRESULT CoGetClassObject(REFCLSID clsid, DWORD, LPVOID, REFIID iid, LPVOID* out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  const Text path = Read(ClassKey(clsid) + u"\\InprocServer32", nullptr);
  if (path.empty()) return REGDB_E_CLASSNOTREG;
  const std::string narrow(path.begin(), path.end());
  void* module = dlopen(narrow.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) return CO_E_DLLNOTFOUND;
  const auto getClassObject = reinterpret_cast<GetClassObjectFunction>(dlsym(module, "DllGetClassObject"));
  if (getClassObject == nullptr) return CO_E_ERRORINDLL;
  return getClassObject(clsid, iid, out);
}

HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid, LPVOID* out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  IClassFactory* factory = nullptr;
  HRESULT hr = CoGetClassObject(clsid, context, nullptr, IID_IClassFactory, reinterpret_cast<void**>(&factory));
  if (FAILED(hr)) return hr;
  hr = factory->CreateInstance(outer, iid, out);
  factory->Release();
  return hr;
}

}  // extern "C"
