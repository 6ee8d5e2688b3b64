#include "platform/library_loader.h"

#include <windows.h>

#include <string>

namespace brevo::platform {

void* FindLibraryEntry(const char* baseName, const char* entry) {
  HMODULE module = LoadLibraryA((std::string(baseName) + ".dll").c_str());
  return module != nullptr ? reinterpret_cast<void*>(GetProcAddress(module, entry)) : nullptr;
}

}  // namespace brevo::platform
