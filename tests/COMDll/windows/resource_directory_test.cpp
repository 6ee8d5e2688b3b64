// Windows build only: the DLL's resource directory holds a string table with
// one string, the registration script and the version, nothing else (no type
// library).
#include <windows.h>

#include <algorithm>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/test_support.h"

namespace brevo::testing {
namespace {

using Names = std::vector<std::string>;

const LPCWSTR kStringTable = MAKEINTRESOURCEW(6);  // RT_STRING
constexpr WCHAR kModule[] = L"BrevoRecordList.dll";

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
      LoadLibraryExW(kModule, nullptr, LOAD_LIBRARY_AS_DATAFILE), &FreeLibrary);
  ASSERT_NE(module, nullptr);
  Names types;
  EnumResourceTypesW(module.get(), &AddType, reinterpret_cast<LONG_PTR>(&types));
  std::sort(types.begin(), types.end());
  EXPECT_EQ(types, (Names{"#16", "#6", "REGISTRY"})) << "#16 is the version, #6 the string table; no TYPELIB";

  Names blocks;
  EnumResourceNamesW(module.get(), kStringTable, &AddName, reinterpret_cast<LONG_PTR>(&blocks));
  ASSERT_EQ(blocks.size(), 1u);
  EXPECT_EQ(BlockStrings(module.get(), MAKEINTRESOURCEW(std::stoul(blocks[0].substr(1)))), Names{"BrevoRecordList"});
}

// What Explorer's properties page and installers read: the release number
// the build was made with, in the fixed part and in the strings.
TEST(ResourceDirectory, VersionIsTheReleaseNumber) {
  std::vector<BYTE> info(GetFileVersionInfoSizeW(kModule, nullptr));
  ASSERT_FALSE(info.empty());
  ASSERT_TRUE(GetFileVersionInfoW(kModule, 0, static_cast<DWORD>(info.size()), info.data()));
  VS_FIXEDFILEINFO* fixed = nullptr;
  UINT size = 0;
  ASSERT_TRUE(VerQueryValueW(info.data(), L"\\", reinterpret_cast<void**>(&fixed), &size));
  const std::string version = std::to_string(HIWORD(fixed->dwFileVersionMS)) + "." +
                              std::to_string(LOWORD(fixed->dwFileVersionMS)) + "." +
                              std::to_string(HIWORD(fixed->dwFileVersionLS));
  EXPECT_EQ(version, BREVO_VERSION);
  EXPECT_EQ(fixed->dwFileType, static_cast<DWORD>(VFT_DLL));
  const std::pair<const WCHAR*, std::string> strings[] = {{L"FileVersion", BREVO_VERSION},
                                                           {L"ProductVersion", BREVO_VERSION},
                                                           {L"OriginalFilename", "BrevoRecordList.dll"},
                                                           {L"ProductName", "BrevoRecordList"}};
  for (const auto& [name, expected] : strings) {
    WCHAR* value = nullptr;
    ASSERT_TRUE(VerQueryValueW(info.data(), (std::wstring(L"\\StringFileInfo\\040904b0\\") + name).c_str(),
                               reinterpret_cast<void**>(&value), &size))
        << Narrow(name);
    EXPECT_EQ(Narrow(value), expected) << Narrow(name);
  }
}

}  // namespace
}  // namespace brevo::testing
