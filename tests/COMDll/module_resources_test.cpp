// The resources the module carries, read through the platform layer from the
// module itself (on the native build, from the table linked into it).
#include "COMDll/resource_ids.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

TEST(ModuleResources, AreTheAppIdScriptAndTheProjectName) {
  const void* module = platform::FindLibraryEntry("BrevoRecordList", "DllRegisterServer");
  ASSERT_NE(module, nullptr) << "the module beside the tests";
  const std::string_view script = platform::ModuleResource(module, "REGISTRY", 101);
  EXPECT_EQ(script.substr(0, 4), "HKCR");
  EXPECT_NE(script.find("NoRemove AppID"), std::string_view::npos);
  EXPECT_NE(script.find("val AppID = s '%APPID%'"), std::string_view::npos);
  EXPECT_EQ(Narrow(std::basic_string<OLECHAR>(platform::ModuleString(module, IDS_PROJECT_NAME)).c_str()),
            "BrevoRecordList");

  EXPECT_TRUE(platform::ModuleResource(module, "REGISTRY", 102).empty());
  EXPECT_TRUE(platform::ModuleResource(module, "TYPELIB", 1).empty()) << "the type library is a file beside the module";
  EXPECT_TRUE(platform::ModuleString(module, IDS_PROJECT_NAME + 1).empty());
}

}  // namespace
}  // namespace brevo::testing
