// Linked into each module with its generated table (not into the platform
// library), so that "the module that holds the address" is this one.
#include "platform/module_resources.h"

#include <algorithm>
#include <cctype>

#include "platform/native/resource_table.h"

namespace brevo::platform {
namespace {

template <class Entry, class Match>
const Entry* Find(std::span<const Entry> entries, Match match) {
  const auto found = std::find_if(entries.begin(), entries.end(), match);
  return found != entries.end() ? &*found : nullptr;
}

// Resource type names compare without regard to case, as on Windows.
bool SameType(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return std::toupper(static_cast<unsigned char>(x)) == std::toupper(static_cast<unsigned char>(y)); });
}

}  // namespace

std::string_view ModuleResource(const void*, const char* type, unsigned id) {
  const auto* entry = Find(TheResourceTable().resources,
                           [&](const ResourceEntry& e) { return e.id == id && SameType(e.type, type); });
  return entry != nullptr ? entry->bytes : std::string_view();
}

std::basic_string_view<OLECHAR> ModuleString(const void*, unsigned id) {
  const auto* entry = Find(TheResourceTable().strings, [&](const StringEntry& e) { return e.id == id; });
  return entry != nullptr ? entry->text : std::basic_string_view<OLECHAR>();
}

}  // namespace brevo::platform
