// ProgID registration in the classes root, where ProgIDFromCLSID and
// CLSIDFromProgID look.
#include "platform/class_registry.h"

#include <string>

#include "platform/com.h"

namespace brevo::platform {
namespace {

std::basic_string<OLECHAR> ClassKey(REFCLSID clsid) {
  OLECHAR text[40] = {};
  StringFromGUID2(clsid, text, 40);
  return std::basic_string<OLECHAR>(OLESTR("CLSID\\")) + text;
}

}  // namespace

HRESULT RegisterProgId(REFCLSID clsid, const OLECHAR* progId) {
  if (progId == nullptr) return E_INVALIDARG;
  OLECHAR clsidText[40] = {};
  StringFromGUID2(clsid, clsidText, 40);
  HRESULT hr = SetRegistryString((ClassKey(clsid) + OLESTR("\\ProgID")).c_str(), nullptr, progId);
  if (SUCCEEDED(hr)) hr = SetRegistryString((std::basic_string<OLECHAR>(progId) + OLESTR("\\CLSID")).c_str(), nullptr, clsidText);
  return hr;
}

HRESULT UnregisterProgId(REFCLSID clsid, const OLECHAR* progId) {
  DeleteRegistryTree(ClassKey(clsid).c_str());
  if (progId != nullptr) DeleteRegistryTree(progId);
  return S_OK;
}

}  // namespace brevo::platform
