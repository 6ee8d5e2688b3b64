#include "platform/module_resources.h"

#include "platform/windows/module_handle.h"

namespace brevo::platform {

std::string_view ModuleResource(const void* address, const char* type, unsigned id) {
  const HMODULE module = ModuleHolding(address);
  const HRSRC found = FindResourceA(module, MAKEINTRESOURCEA(id), type);
  const HGLOBAL loaded = found != nullptr ? LoadResource(module, found) : nullptr;
  const void* bytes = loaded != nullptr ? LockResource(loaded) : nullptr;
  if (bytes == nullptr) return {};
  return {static_cast<const char*>(bytes), SizeofResource(module, found)};
}

std::basic_string_view<OLECHAR> ModuleString(const void* address, unsigned id) {
  // A zero length asks for the resource's own read-only text.
  const wchar_t* text = nullptr;
  const int length = LoadStringW(ModuleHolding(address), id, reinterpret_cast<LPWSTR>(&text), 0);
  if (length <= 0 || text == nullptr) return {};
  return {text, static_cast<std::size_t>(length)};
}

}  // namespace brevo::platform
