// Windows build only: the DLL's resource directory holds a string table with
// one string and the registration script, nothing else (no type library).
#include <windows.h>

#include <algorithm>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "support/test_support.h"

namespace brevo::testing {
namespace {

using Names = std::vector<std::string>;

const LPCWSTR kStringTable = MAKEINTRESOURCEW(6);  // RT_STRING

// "#n" for a numbered resource type or name.
std::string NameOf(LPCWSTR name) {
  return IS_INTRESOURCE(name) ? "#" + std::to_string(reinterpret_cast<ULONG_PTR>(name)) : Narrow(name);
}

BOOL CALLBACK AddType(HMODULE, LPWSTR type, LONG_PTR names) {
  reinterpret_cast<Names*>(names)->push_back(NameOf(type));
  return TRUE;
}

BOOL CALLBACK AddName(HMODULE, LPCWSTR, LPWSTR name, LONG_PTR names) {
  reinterpret_cast<Names*>(names)->push_back(NameOf(name));
  return TRUE;
}

// The strings of one string-table block: sixteen counted strings, empty ones
// standing for unused identifiers.
Names BlockStrings(HMODULE module, LPCWSTR block) {
  const HRSRC found = FindResourceW(module, block, kStringTable);
  const auto* at = static_cast<const WCHAR*>(LockResource(LoadResource(module, found)));
  Names strings;
  for (int i = 0; at != nullptr && i < 16; ++i, at += 1 + *at) {
    if (*at != 0) strings.push_back(Narrow(std::wstring(at + 1, *at).c_str()));
  }
  return strings;
}

TEST(ResourceDirectory, HoldsOneStringAndRegistryScriptsNothingElse) {
  const std::unique_ptr<std::remove_pointer_t<HMODULE>, decltype(&FreeLibrary)> module(
      LoadLibraryExW(L"BrevoRecordList.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE), &FreeLibrary);
  ASSERT_NE(module, nullptr);
  Names types;
  EnumResourceTypesW(module.get(), &AddType, reinterpret_cast<LONG_PTR>(&types));
  std::sort(types.begin(), types.end());
  EXPECT_EQ(types, (Names{"#6", "REGISTRY"})) << "#6 is the string table; no TYPELIB";

  Names blocks;
  EnumResourceNamesW(module.get(), kStringTable, &AddName, reinterpret_cast<LONG_PTR>(&blocks));
  ASSERT_EQ(blocks.size(), 1u);
  EXPECT_EQ(BlockStrings(module.get(), MAKEINTRESOURCEW(std::stoul(blocks[0].substr(1)))), Names{"BrevoRecordList"});
}

}  // namespace
}  // namespace brevo::testing
