#include "platform/library_loader.h"

#include <dlfcn.h>
#include <unistd.h>

#include <string>

namespace brevo::platform {

void* FindLibraryEntry(const char* baseName, const char* entry) {
  char program[4096] = {};
  const ssize_t length = readlink("/proc/self/exe", program, sizeof program - 1);
  if (length <= 0) return nullptr;
  std::string path(program, static_cast<std::size_t>(length));
  path = path.substr(0, path.rfind('/') + 1) + baseName + ".so";
  void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  return module != nullptr ? dlsym(module, entry) : nullptr;
}

}  // namespace brevo::platform
