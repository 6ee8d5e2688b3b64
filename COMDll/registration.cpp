// What DllRegisterServer writes and DllUnregisterServer removes: the
// application identifier entries, from the module's registration script, and
// for every creatable class its two ProgIDs and its class key.
#include "COMDll/object_map.h"
#include "COMDll/registry_script.h"
#include "COMDll/registry_writer.h"
#include "COMDll/resource_ids.h"
#include "core/bstr_t.h"

namespace brevo {
namespace {

using Text = WideText;

Text GuidText(REFGUID guid) {
  OLECHAR text[40] = {};
  StringFromGUID2(guid, text, 40);
  return text;
}

// The script comes from the resources of the module that holds this code.
HRESULT RunAppIdScript(ScriptMode mode) {
  const std::string_view script =
      platform::ModuleResource(reinterpret_cast<const void*>(&RegisterModule), "REGISTRY", IDR_APPID_SCRIPT);
  if (script.empty()) return HRESULT_FROM_WIN32(ERROR_RESOURCE_NAME_NOT_FOUND);
  const Text appId = GuidText(kApplicationId);
  const ScriptVariable variables[] = {{OLESTR("APPID"), appId}};
  return RunRegistryScript(script, variables, mode);
}

void RegisterClass(RegistryWriter& writer, const CreatableClass& entry, const Text& modulePath) {
  const Text clsid = GuidText(*entry.clsid);
  const Text progId = entry.progId;
  const Text independent = entry.versionIndependentProgId;
  writer.Set(progId, nullptr, entry.friendlyName);
  writer.Set(progId + OLESTR("\\CLSID"), nullptr, clsid);
  writer.Set(independent, nullptr, entry.friendlyName);
  writer.Set(independent + OLESTR("\\CLSID"), nullptr, clsid);
  writer.Set(independent + OLESTR("\\CurVer"), nullptr, progId);
  const Text classKey = OLESTR("CLSID\\") + clsid;
  writer.Set(classKey, nullptr, entry.friendlyName);
  writer.Set(classKey, OLESTR("AppID"), GuidText(kApplicationId));
  writer.Set(classKey + OLESTR("\\ProgID"), nullptr, progId);
  writer.Set(classKey + OLESTR("\\VersionIndependentProgID"), nullptr, independent);
  writer.Key(classKey + OLESTR("\\Programmable"));
  writer.Set(classKey + OLESTR("\\InprocServer32"), nullptr, modulePath);
  writer.Set(classKey + OLESTR("\\InprocServer32"), OLESTR("ThreadingModel"), OLESTR("apartment"));
  writer.Set(classKey + OLESTR("\\TypeLib"), nullptr, GuidText(kTypeLibraryId));
}

// Registration runs under the system default locale with neutral language.
template <class Steps>
HRESULT UnderNeutralLocale(Steps&& steps) {
  const LCID previous = platform::GetCallingThreadLocale();
  platform::SetCallingThreadLocale(0x0800);
  const HRESULT hr = steps();
  platform::SetCallingThreadLocale(previous);
  return hr;
}

}  // namespace

HRESULT RegisterModule() noexcept {
  return UnderNeutralLocale([] {
    RegistryWriter writer;
    writer.Run([] { return RunAppIdScript(ScriptMode::kRegister); });
    const _bstr_t modulePath(platform::ModuleFileNameOf(reinterpret_cast<const void*>(&RegisterModule)), false);
    const Text path = modulePath.is_null() ? Text() : Text(modulePath);
    const ObjectMap& map = TheObjectMap();
    for (std::size_t i = 0; i < map.count; ++i) RegisterClass(writer, map.classes[i], path);
    return writer.Result();
  });
}

HRESULT UnregisterModule() noexcept {
  return UnderNeutralLocale([] {
    RegistryWriter writer;
    const ObjectMap& map = TheObjectMap();
    for (std::size_t i = 0; i < map.count; ++i) {
      const CreatableClass& entry = map.classes[i];
      writer.Delete(OLESTR("CLSID\\") + GuidText(*entry.clsid));
      writer.Delete(entry.progId);
      writer.Delete(entry.versionIndependentProgId);
    }
    writer.Run([] { return RunAppIdScript(ScriptMode::kUnregister); });
    return writer.Result();
  });
}

}  // namespace brevo
