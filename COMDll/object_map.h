// The classes a client can create, with what registration writes for each.
#pragma once

#include <cstddef>

#include "platform/com.h"

namespace brevo {

struct CreatableClass {
  const CLSID* clsid;
  const OLECHAR* friendlyName;
  const OLECHAR* progId;                    // version-dependent
  const OLECHAR* versionIndependentProgId;
  IClassFactory* factory;                   // cached, lives as long as the module
};

struct ObjectMap {
  const CreatableClass* classes;
  std::size_t count;
};

const ObjectMap& TheObjectMap() noexcept;

inline constexpr GUID kTypeLibraryId = {0x8EB89B7E, 0x1627, 0x4935, {0x8B, 0x42, 0xA0, 0x30, 0xB7, 0x5E, 0x26, 0xD3}};
inline constexpr GUID kApplicationId = {0xECE52369, 0xBA81, 0x468F, {0xBD, 0xF9, 0x39, 0x79, 0x30, 0x5F, 0x95, 0x24}};

HRESULT RegisterModule() noexcept;
HRESULT UnregisterModule() noexcept;

}  // namespace brevo
