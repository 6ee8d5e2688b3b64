// ProgID <-> CLSID lookups, which creating an object by name goes through.
#include <memory>
#include <string>

#include "support/test_support.h"

namespace brevo::testing {
namespace {

// Identifiers of our own, so that nothing installed on the machine answers.
constexpr CLSID kNeverRegistered = {0x5E1D7A3C, 0x02B8, 0x4F61, {0x9D, 0x47, 0xA3, 0x18, 0xC6, 0x5B, 0x2E, 0x90}};
constexpr CLSID kWidget = {0xB74C19E2, 0x6D03, 0x4A8E, {0xA5, 0x1F, 0x3C, 0x92, 0x7E, 0x40, 0xD8, 0x6B}};
constexpr CLSID kGadget = {0x2F8A6D51, 0xC3E7, 0x41B9, {0x8E, 0x04, 0x71, 0xDA, 0x5C, 0x39, 0xF2, 0xA7}};

struct FreeTaskMem {
  void operator()(OLECHAR* text) const { CoTaskMemFree(text); }
};

// The class's ProgID, or "" when the lookup fails with `failure`.
std::string ProgIdOf(REFCLSID clsid, HRESULT failure = S_OK) {
  LPOLESTR text = nullptr;
  const HRESULT hr = ProgIDFromCLSID(clsid, &text);
  const std::unique_ptr<OLECHAR, FreeTaskMem> owned(text);
  EXPECT_EQ(hr, failure);
  return SUCCEEDED(hr) ? Narrow(text) : std::string();
}

TEST(ClassRegistryTest, UnknownClassesAndNamesFail) {
  EXPECT_EQ(ProgIdOf(kNeverRegistered, REGDB_E_CLASSNOTREG), "");
  CLSID found{};
  EXPECT_EQ(CLSIDFromProgID(OLESTR("Brevo.PlatformTest.Missing"), &found), CO_E_CLASSSTRING);
}

TEST(ClassRegistryTest, RegistrationMapsBothWaysUntilUndone) {
  {
    const ScopedProgId widget(kWidget, OLESTR("Brevo.PlatformTest.Widget"));
    const ScopedProgId gadget(kGadget, OLESTR("Brevo.PlatformTest.Gadget"));
    EXPECT_EQ(ProgIdOf(kWidget), "Brevo.PlatformTest.Widget");
    EXPECT_EQ(ProgIdOf(kGadget), "Brevo.PlatformTest.Gadget");
    // ProgIDs are registry key names, which ignore case.
    for (const OLECHAR* spelling : {OLESTR("Brevo.PlatformTest.Widget"), OLESTR("brevo.platformtest.widget"),
                                    OLESTR("BREVO.PLATFORMTEST.WIDGET")}) {
      SCOPED_TRACE(Narrow(spelling));
      CLSID found{};
      EXPECT_EQ(CLSIDFromProgID(spelling, &found), S_OK);
      EXPECT_TRUE(IsEqualCLSID(found, kWidget));
    }
  }
  EXPECT_EQ(ProgIdOf(kWidget, REGDB_E_CLASSNOTREG), "");
  CLSID found{};
  EXPECT_EQ(CLSIDFromProgID(OLESTR("Brevo.PlatformTest.Widget"), &found), CO_E_CLASSSTRING);
}

}  // namespace
}  // namespace brevo::testing
