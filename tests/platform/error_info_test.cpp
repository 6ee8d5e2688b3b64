// What the error path stands on: the per-thread error slot, the ProgID lookups
// that name an error's source, and the invalid-parameter abort. The error
// objects' own fields are checked through the error path (core tests).
#include <string>
#include <thread>

#include "support/test_support.h"

namespace brevo::testing {
namespace {

com_ptr<IErrorInfo> MakeError(const OLECHAR* description) {
  com_ptr<ICreateErrorInfo> creator;
  EXPECT_EQ(CreateErrorInfo(creator.put()), S_OK);
  creator->SetDescription(const_cast<LPOLESTR>(description));
  return creator.query<IErrorInfo>();
}

// The current count, read the only way COM offers.
ULONG RefsOf(IUnknown* object) {
  object->AddRef();
  return object->Release();
}

TEST(ErrorInfoTest, SlotHoldsItsOwnReferenceAndHandsItOver) {
  ClearErrorInfo();
  const com_ptr<IErrorInfo> error = MakeError(OLESTR("older"));
  IErrorInfo* taken = error.get();  // an empty slot must overwrite it
  EXPECT_EQ(GetErrorInfo(0, &taken), S_FALSE);
  EXPECT_EQ(taken, nullptr);
  ASSERT_EQ(SetErrorInfo(0, error.get()), S_OK);
  EXPECT_EQ(RefsOf(error.get()), 2u);
  ASSERT_EQ(GetErrorInfo(0, &taken), S_OK);
  EXPECT_EQ(taken, error.get());
  EXPECT_EQ(RefsOf(error.get()), 2u);  // the slot's reference is now ours
  taken->Release();
  EXPECT_FALSE(TakeErrorInfo().present);
  ASSERT_EQ(SetErrorInfo(0, error.get()), S_OK);
  ASSERT_EQ(SetErrorInfo(0, MakeError(OLESTR("newer")).get()), S_OK);
  EXPECT_EQ(RefsOf(error.get()), 1u);  // replaced, so released
  EXPECT_EQ(TakeErrorInfo().description, "newer");
  ASSERT_EQ(SetErrorInfo(0, error.get()), S_OK);
  ASSERT_EQ(SetErrorInfo(0, nullptr), S_OK);
  EXPECT_EQ(RefsOf(error.get()), 1u);
  EXPECT_FALSE(TakeErrorInfo().present);
}

TEST(ErrorInfoTest, EachThreadHasItsOwnSlot) {
  ASSERT_EQ(SetErrorInfo(0, MakeError(OLESTR("main")).get()), S_OK);
  const com_ptr<IErrorInfo> workerError = MakeError(OLESTR("worker"));
  bool workerSawOne = true;
  std::thread([&] {
    workerSawOne = TakeErrorInfo().present;
    SetErrorInfo(0, workerError.get());  // left behind when the thread ends
  }).join();
  EXPECT_FALSE(workerSawOne);
  EXPECT_EQ(RefsOf(workerError.get()), 1u) << "the ended thread's slot still holds its error";
  EXPECT_EQ(TakeErrorInfo().description, "main");
}

// Identifiers of our own, so that nothing installed on the machine answers.
constexpr CLSID kWidget = {0xB74C19E2, 0x6D03, 0x4A8E, {0xA5, 0x1F, 0x3C, 0x92, 0x7E, 0x40, 0xD8, 0x6B}};

std::string ProgIdOf(REFCLSID clsid) {
  LPOLESTR text = nullptr;
  const HRESULT hr = ProgIDFromCLSID(clsid, &text);
  const std::string result = hr == S_OK ? Narrow(text) : hr == REGDB_E_CLASSNOTREG ? "not registered" : "failed";
  CoTaskMemFree(text);
  return result;
}

TEST(ClassRegistryTest, RegistrationMapsBothWaysUntilUndone) {
  CLSID found{};
  {
    const ScopedProgId widget(kWidget, OLESTR("Brevo.PlatformTest.Widget"));
    EXPECT_EQ(ProgIdOf(kWidget), "Brevo.PlatformTest.Widget");
    // ProgIDs are registry key names, which ignore case.
    for (const OLECHAR* spelling : {OLESTR("Brevo.PlatformTest.Widget"), OLESTR("brevo.PLATFORMTEST.widget")}) {
      EXPECT_EQ(CLSIDFromProgID(spelling, &found), S_OK);
      EXPECT_TRUE(IsEqualCLSID(found, kWidget)) << Narrow(spelling);
    }
  }
  EXPECT_EQ(ProgIdOf(kWidget), "not registered");
  EXPECT_EQ(CLSIDFromProgID(OLESTR("Brevo.PlatformTest.Widget"), &found), CO_E_CLASSSTRING);
}

TEST(InvalidParameterDeathTest, EndsTheProcessUnlessAHandlerIsInstalled) {
  {
    const ScopedThrowingInvalidParameter outer;
    { const ScopedThrowingInvalidParameter inner; }
    // The inner scope put back the outer one's handler, not the default.
    EXPECT_THROW(platform::InvalidParameter(), InvalidParameterRaised);
  }
  EXPECT_DEATH(platform::InvalidParameter(), "");
}

}  // namespace
}  // namespace brevo::testing
