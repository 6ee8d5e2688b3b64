// The in-process class registry: ProgID <-> CLSID, empty until registration.
#include <algorithm>
#include <cstring>
#include <map>
#include <string>

#include "platform/class_registry.h"
#include "platform/native/oleauto.h"

namespace {

struct GuidLess {
  bool operator()(const GUID& a, const GUID& b) const { return std::memcmp(&a, &b, sizeof(GUID)) < 0; }
};

// ProgIDs are registry key names, which compare without regard to case.
struct ProgIdLess {
  static char16_t Fold(char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c; }
  bool operator()(const std::u16string& a, const std::u16string& b) const {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [](char16_t x, char16_t y) { return Fold(x) < Fold(y); });
  }
};

struct Registry {
  std::map<GUID, std::u16string, GuidLess> progIdByClass;
  std::map<std::u16string, GUID, ProgIdLess> classByProgId;
};

Registry& TheRegistry() {
  static Registry registry;
  return registry;
}

}  // namespace

namespace brevo::platform {

HRESULT RegisterProgId(REFCLSID clsid, const OLECHAR* progId) {
  if (progId == nullptr) return E_INVALIDARG;
  Registry& registry = TheRegistry();
  registry.progIdByClass[clsid] = progId;
  registry.classByProgId[progId] = clsid;
  return S_OK;
}

HRESULT UnregisterProgId(REFCLSID clsid, const OLECHAR* progId) {
  Registry& registry = TheRegistry();
  registry.progIdByClass.erase(clsid);
  if (progId != nullptr) registry.classByProgId.erase(progId);
  return S_OK;
}

}  // namespace brevo::platform

extern "C" {

HRESULT ProgIDFromCLSID(REFCLSID clsid, LPOLESTR* lplpszProgID) {
  if (lplpszProgID == nullptr) return E_INVALIDARG;
  *lplpszProgID = nullptr;
  const Registry& registry = TheRegistry();
  const auto found = registry.progIdByClass.find(clsid);
  if (found == registry.progIdByClass.end()) return REGDB_E_CLASSNOTREG;
  const std::size_t bytes = (found->second.size() + 1) * sizeof(OLECHAR);
  auto* text = static_cast<LPOLESTR>(CoTaskMemAlloc(bytes));
  if (text == nullptr) return E_OUTOFMEMORY;
  std::memcpy(text, found->second.c_str(), bytes);
  *lplpszProgID = text;
  return S_OK;
}

HRESULT CLSIDFromProgID(LPCOLESTR lpszProgID, CLSID* lpclsid) {
  if (lpszProgID == nullptr || lpclsid == nullptr) return E_INVALIDARG;
  const Registry& registry = TheRegistry();
  const auto found = registry.classByProgId.find(lpszProgID);
  if (found == registry.classByProgId.end()) {
    *lpclsid = GUID_NULL;
    return CO_E_CLASSSTRING;
  }
  *lpclsid = found->second;
  return S_OK;
}

}  // extern "C"
