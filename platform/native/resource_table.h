// The native build's stand-in for a module's resources. There are no PE
// resources here, so each module links a table generated from the files the
// Windows resource script names; a module's code reads the table linked
// beside it, which is the module that holds the code.
#pragma once

#include <span>
#include <string_view>

#include "platform/native/wintypes.h"

namespace brevo::platform {

struct ResourceEntry {
  const char* type;
  unsigned id;
  std::string_view bytes;
};

struct StringEntry {
  unsigned id;
  std::basic_string_view<OLECHAR> text;
};

struct ResourceTable {
  std::span<const ResourceEntry> resources;
  std::span<const StringEntry> strings;
};

// Defined by the module's generated source.
const ResourceTable& TheResourceTable();

}  // namespace brevo::platform
