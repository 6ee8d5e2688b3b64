// An in-memory classes root: keys by path, each with named string values.
// Names compare without regard to case, as the system registry's do.
#include "platform/registry.h"

#include <dlfcn.h>

#include <algorithm>
#include <map>
#include <string>

#include "platform/native/oleauto.h"

namespace brevo::platform {
namespace {

using Text = std::u16string;

Text Folded(const OLECHAR* text) {
  Text result = text != nullptr ? Text(text) : Text();
  for (char16_t& c : result) {
    if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c + 32);
  }
  return result;
}

struct Key {
  std::map<Text, Text> values;  // by folded name; "" is the default value
};

std::map<Text, Key>& Keys() {
  static std::map<Text, Key> keys;
  return keys;
}

// Creates the key and each of its parents.
Key& Create(const Text& path) {
  for (std::size_t at = path.find(u'\\'); at != Text::npos; at = path.find(u'\\', at + 1)) {
    Keys()[path.substr(0, at)];
  }
  return Keys()[path];
}

LCID g_locale = 0x0409;

}  // namespace

HRESULT SetRegistryString(const OLECHAR* key, const OLECHAR* name, const OLECHAR* value) {
  if (key == nullptr || value == nullptr) return E_INVALIDARG;
  Create(Folded(key)).values[Folded(name)] = value;
  return S_OK;
}

HRESULT CreateRegistryKey(const OLECHAR* key) {
  if (key == nullptr) return E_INVALIDARG;
  Create(Folded(key));
  return S_OK;
}

HRESULT DeleteRegistryTree(const OLECHAR* key) {
  if (key == nullptr) return E_INVALIDARG;
  const Text path = Folded(key);
  auto& keys = Keys();
  for (auto it = keys.begin(); it != keys.end();) {
    const bool below = it->first == path || (it->first.size() > path.size() && it->first.compare(0, path.size(), path) == 0 &&
                                             it->first[path.size()] == u'\\');
    it = below ? keys.erase(it) : std::next(it);
  }
  return S_OK;
}

HRESULT GetRegistryString(const OLECHAR* key, const OLECHAR* name, BSTR* value) {
  if (key == nullptr || value == nullptr) return E_INVALIDARG;
  *value = nullptr;
  const auto found = Keys().find(Folded(key));
  if (found == Keys().end()) return S_FALSE;
  const auto entry = found->second.values.find(Folded(name));
  if (entry == found->second.values.end()) return S_FALSE;
  *value = SysAllocStringLen(entry->second.data(), static_cast<UINT>(entry->second.size()));
  return *value != nullptr ? S_OK : E_OUTOFMEMORY;
}

BSTR ModuleFileNameOf(const void* address) {
  Dl_info info{};
  if (dladdr(address, &info) == 0 || info.dli_fname == nullptr) return nullptr;
  char* resolved = realpath(info.dli_fname, nullptr);
  const std::string path = resolved != nullptr ? resolved : info.dli_fname;
  std::free(resolved);
  BSTR result = SysAllocStringLen(nullptr, static_cast<UINT>(path.size()));
  if (result != nullptr) std::copy(path.begin(), path.end(), result);
  return result;
}

LCID GetCallingThreadLocale() { return g_locale; }

void SetCallingThreadLocale(LCID locale) { g_locale = locale; }

}  // namespace brevo::platform
