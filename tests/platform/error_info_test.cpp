// Error objects and the per-thread slot that carries them from a failing call
// to its caller.
#include <string>
#include <thread>

#include "support/test_support.h"

namespace brevo::testing {
namespace {

constexpr GUID kFailingInterface = {0x3C9E5A71, 0x8B24, 0x4D6F, {0x91, 0x0A, 0x5E, 0x27, 0xC4, 0x83, 0x6B, 0xF2}};

// An error object that counts its references, to watch who holds one.
class CountedErrorInfo final : public IErrorInfo {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    if (iid == iid_of<IUnknown>() || iid == iid_of<IErrorInfo>()) {
      *out = static_cast<IErrorInfo*>(this);
      AddRef();
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++refs; }
  STDMETHODIMP_(ULONG) Release() override { return --refs; }
  STDMETHODIMP GetGUID(GUID*) override { return E_NOTIMPL; }
  STDMETHODIMP GetSource(BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP GetDescription(BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP GetHelpFile(BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP GetHelpContext(DWORD*) override { return E_NOTIMPL; }
  ULONG refs = 1;
};

// The getter's text; "<null>" when the field was never set.
std::string Read(IErrorInfo& info, HRESULT (STDMETHODCALLTYPE IErrorInfo::*getter)(BSTR*)) {
  BSTR text = nullptr;
  EXPECT_EQ((info.*getter)(&text), S_OK);
  std::string result = Narrow(text);
  SysFreeString(text);
  return result;
}

com_ptr<IErrorInfo> MakeError(const OLECHAR* description) {
  com_ptr<ICreateErrorInfo> creator;
  EXPECT_EQ(CreateErrorInfo(creator.put()), S_OK);
  std::basic_string<OLECHAR> text(description);
  creator->SetDescription(text.data());
  return creator.query<IErrorInfo>();
}

class ErrorInfoTest : public ::testing::Test {
 protected:
  void SetUp() override { ClearErrorInfo(); }
  void TearDown() override { ClearErrorInfo(); }
};

TEST_F(ErrorInfoTest, ReadsBackWhatWasSetAndNullForTheRest) {
  com_ptr<ICreateErrorInfo> creator;
  ASSERT_EQ(CreateErrorInfo(creator.put()), S_OK);
  const com_ptr<IErrorInfo> info = creator.query<IErrorInfo>();
  EXPECT_EQ(Read(*info, &IErrorInfo::GetSource), "<null>");
  EXPECT_EQ(Read(*info, &IErrorInfo::GetDescription), "<null>");

  OLECHAR source[] = OLESTR("Brevo.Test");
  OLECHAR description[] = OLESTR("It failed.");
  EXPECT_EQ(creator->SetGUID(kFailingInterface), S_OK);
  EXPECT_EQ(creator->SetSource(source), S_OK);
  EXPECT_EQ(creator->SetDescription(description), S_OK);
  EXPECT_EQ(creator->SetHelpContext(17), S_OK);
  description[0] = OLECHAR{'X'};  // the object keeps its own copy

  GUID guid{};
  DWORD helpContext = 0;
  EXPECT_EQ(info->GetGUID(&guid), S_OK);
  EXPECT_TRUE(IsEqualGUID(guid, kFailingInterface));
  EXPECT_EQ(Read(*info, &IErrorInfo::GetSource), "Brevo.Test");
  EXPECT_EQ(Read(*info, &IErrorInfo::GetDescription), "It failed.");
  EXPECT_EQ(info->GetHelpContext(&helpContext), S_OK);
  EXPECT_EQ(helpContext, 17u);
}

TEST_F(ErrorInfoTest, EmptySlotAnswersFalseAndNull) {
  int notAnObject = 0;
  IErrorInfo* taken = reinterpret_cast<IErrorInfo*>(&notAnObject);  // must be overwritten
  EXPECT_EQ(GetErrorInfo(0, &taken), S_FALSE);
  EXPECT_EQ(taken, nullptr);
}

TEST_F(ErrorInfoTest, SlotHoldsItsOwnReferenceAndHandsItOver) {
  CountedErrorInfo error;
  ASSERT_EQ(SetErrorInfo(0, &error), S_OK);
  EXPECT_EQ(error.refs, 2u);

  IErrorInfo* taken = nullptr;
  ASSERT_EQ(GetErrorInfo(0, &taken), S_OK);
  EXPECT_EQ(taken, &error);
  EXPECT_EQ(error.refs, 2u);  // the slot's reference is now ours
  taken->Release();
  EXPECT_EQ(GetErrorInfo(0, &taken), S_FALSE);

  ASSERT_EQ(SetErrorInfo(0, &error), S_OK);
  ASSERT_EQ(SetErrorInfo(0, MakeError(OLESTR("newer")).get()), S_OK);
  EXPECT_EQ(error.refs, 1u);  // replaced, so released
  EXPECT_EQ(TakeErrorInfo().description, "newer");

  ASSERT_EQ(SetErrorInfo(0, &error), S_OK);
  ASSERT_EQ(SetErrorInfo(0, nullptr), S_OK);
  EXPECT_EQ(error.refs, 1u);
  EXPECT_EQ(GetErrorInfo(0, &taken), S_FALSE);
}

TEST_F(ErrorInfoTest, EachThreadHasItsOwnSlot) {
  ASSERT_EQ(SetErrorInfo(0, MakeError(OLESTR("main")).get()), S_OK);
  CountedErrorInfo workerError;
  HRESULT workerRead = E_FAIL;
  std::thread worker([&] {
    IErrorInfo* seen = nullptr;
    workerRead = GetErrorInfo(0, &seen);
    if (seen != nullptr) seen->Release();
    SetErrorInfo(0, &workerError);  // left behind when the thread ends
  });
  worker.join();
  EXPECT_EQ(workerRead, S_FALSE);
  EXPECT_EQ(workerError.refs, 1u) << "the ended thread's slot still holds its error";
  EXPECT_EQ(TakeErrorInfo().description, "main");
}

}  // namespace
}  // namespace brevo::testing
