// The module's five entry points.
#include "COMDll/object_map.h"
#include "core/module_lock.h"
#include "core/interface_id.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) {
  // Nothing can fail at start-up: the object map and the class objects are
  // made on first use.
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID rclsid, REFIID riid, LPVOID* ppv) {
  if (ppv == nullptr) return E_POINTER;
  *ppv = nullptr;
  const brevo::ObjectMap& map = brevo::TheObjectMap();
  for (std::size_t i = 0; i < map.count; ++i) {
    if (*map.classes[i].clsid == rclsid) return map.classes[i].factory->QueryInterface(riid, ppv);
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() { return brevo::ModuleLock::Count() == 0 ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return brevo::RegisterModule(); }

STDAPI DllUnregisterServer() { return brevo::UnregisterModule(); }
