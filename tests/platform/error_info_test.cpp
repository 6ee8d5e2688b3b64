// What the error path stands on: the per-thread error slot and the ProgID lookups
// that name an error's source. The error objects' own fields are checked through
// the error path (core tests); the invalid-parameter abort by the bounds tests.
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
  bool workerSawOne = true;  // each thread has a slot of its own
  std::thread([&] { workerSawOne = TakeErrorInfo().present; }).join();
  EXPECT_FALSE(workerSawOne);
  ASSERT_EQ(SetErrorInfo(0, MakeError(OLESTR("newer")).get()), S_OK);
  EXPECT_EQ(RefsOf(error.get()), 1u);  // replaced, so released
  EXPECT_EQ(TakeErrorInfo().description, "newer");
}

// ProgIDs are registry key names, which ignore case. Unregistering: the module's tests.
TEST(ClassRegistryTest, ProgIdsMapBothWaysIgnoringCase) {
  // An identifier of our own, so that nothing installed on the machine answers.
  constexpr CLSID kWidget = {0xB74C19E2, 0x6D03, 0x4A8E, {0xA5, 0x1F, 0x3C, 0x92, 0x7E, 0x40, 0xD8, 0x6B}};
  const ScopedProgId widget(kWidget, OLESTR("Brevo.PlatformTest.Widget"));
  LPOLESTR progId = nullptr;
  ASSERT_EQ(ProgIDFromCLSID(kWidget, &progId), S_OK);
  EXPECT_EQ(Narrow(progId), "Brevo.PlatformTest.Widget");
  CoTaskMemFree(progId);
  CLSID found{};
  EXPECT_EQ(CLSIDFromProgID(OLESTR("brevo.PLATFORMTEST.widget"), &found), S_OK);
  EXPECT_TRUE(IsEqualCLSID(found, kWidget));
}

}  // namespace
}  // namespace brevo::testing
