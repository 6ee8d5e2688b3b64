// The object frame: QueryInterface over the class's list, reference counts and
// the module lock count, ISupportErrorInfo, aggregation, and the one error path.
#include <new>

#include "core/implements.h"
#include "support/test_support.h"

namespace brevo::testing {

struct ITestThing : IDispatch { STDMETHOD(Fail)(LONG how) = 0; };
struct ITestThingRaw : IDispatch { virtual LONG Twice(LONG value) = 0; };
struct ITestListener : IDispatch { STDMETHOD(Heard)() = 0; };  // a callback interface

}  // namespace brevo::testing

BREVO_INTERFACE_ID(brevo::testing::ITestThing, 0x6C1D3A10, 0x2B4F, 0x4E8A, 0x9D, 0x21, 0x55, 0x0E, 0x7A, 0x11, 0x3C, 0x01);
BREVO_INTERFACE_ID(brevo::testing::ITestThingRaw, 0x6C1D3A10, 0x2B4F, 0x4E8A, 0x9D, 0x21, 0x55, 0x0E, 0x7A, 0x11, 0x3C, 0x02);
BREVO_INTERFACE_ID(brevo::testing::ITestListener, 0x6C1D3A10, 0x2B4F, 0x4E8A, 0x9D, 0x21, 0x55, 0x0E, 0x7A, 0x11, 0x3C, 0x03);
template <>
inline constexpr bool brevo::is_callback_interface<brevo::testing::ITestListener> = true;

namespace brevo::testing {
namespace {

enum Failure : LONG { kNone, kOwn, kOwnCode, kOwnHresult, kOwnWithoutText, kPlatform, kPlatformInfo, kBadAlloc };

class Thing : public implements<Thing, ITestThing, ITestThingRaw, ITestListener> {
 public:
  static constexpr CLSID kClassId = {0x6C1D3A10, 0x2B4F, 0x4E8A, {0x9D, 0x21, 0x55, 0x0E, 0x7A, 0x11, 0x3C, 0xFF}};
  STDMETHODIMP Fail(LONG how) override { return Call<ITestThing>([&] { Raise(how); }); }
  LONG Twice(LONG value) override { return value * 2; }
  STDMETHODIMP Heard() override { return S_OK; }

 private:
  static void Raise(LONG how) {
    switch (how) {
      case kOwn: throw EBvException(OLESTR("Cannot convert to int."));
      case kOwnCode: throw EBvException(OLESTR("With a code."), 5);
      case kOwnHresult: throw EBvException(OLESTR("Complete."), E_INVALIDARG);
      case kOwnWithoutText: throw EBvException(_bstr_t());
      case kPlatform: _com_issue_error(E_INVALIDARG);
      case kPlatformInfo: {
        com_ptr<ICreateErrorInfo> create;
        CreateErrorInfo(create.put());
        create->SetDescription(const_cast<LPOLESTR>(OLESTR("Told by the callee.")));
        throw _com_error(E_FAIL, create.query<IErrorInfo>().detach());
      }
      case kBadAlloc: throw std::bad_alloc();
      default: return;
    }
  }
};

// Hands itself out while dying, as objects raising events on their last release do.
class SelfTouchingThing : public Thing {
 public:
  void FinalRelease() { com_ptr<ITestThing> self(this); }
};

TEST(ErrorPath, TranslatesEveryKindOfFailure) {
  const struct {
    Failure failure;
    HRESULT expected;
    const char* description;  // null: no error info is set
  } rows[] = {
      {kNone, S_OK, nullptr},
      {kOwn, DISP_E_EXCEPTION, "Cannot convert to int."},
      {kOwnCode, static_cast<HRESULT>(0x80040005), "With a code."},
      {kOwnHresult, E_INVALIDARG, "Complete."},
      {kOwnWithoutText, static_cast<HRESULT>(0x80040000), "Unknown Error"},
      {kPlatform, E_INVALIDARG, "Unknown Error"},
      {kPlatformInfo, E_FAIL, "Told by the callee."},
      {kBadAlloc, E_UNEXPECTED, nullptr},
  };
  const auto thing = make_object<Thing>();
  for (const auto& row : rows) {
    SCOPED_TRACE(row.failure);
    ClearErrorInfo();
    EXPECT_EQ(thing->Fail(row.failure), row.expected);
    const ErrorSnapshot error = TakeErrorInfo();
    ASSERT_EQ(error.present, row.description != nullptr);
    if (!error.present) continue;
    EXPECT_EQ(error.description, row.description);
    EXPECT_TRUE(IsEqualGUID(error.guid, iid_of<ITestThing>()));
    EXPECT_EQ(error.source, "") << "an unregistered class has no ProgID";
  }
  thing->Fail(kOwn);
  EXPECT_EQ(thing->Fail(kNone), S_OK);
  EXPECT_EQ(TakeErrorInfo().description, "Cannot convert to int.") << "success keeps earlier error info";
  const ScopedProgId registration(Thing::kClassId, OLESTR("BrevoRecordList.TestThing.1"));
  thing->Fail(kOwn);
  EXPECT_EQ(TakeErrorInfo().source, "BrevoRecordList.TestThing.1");
  // A description below 0x10000 is a string resource number.
  const auto resource = reinterpret_cast<const OLECHAR*>(std::uintptr_t{kProjectNameResource});
  EXPECT_EQ(ReportError(Thing::kClassId, resource, iid_of<ITestThing>(), 0),
            static_cast<HRESULT>(0x80040000 | kProjectNameResource));
  EXPECT_EQ(TakeErrorInfo().description, "BrevoRecordList");
}

TEST(ObjectFrame, AnswersForItsListWithOneIdentityAndCountsModuleLocks) {
  const auto thing = make_object<Thing>();
  EXPECT_EQ(ModuleLock::Count(), 1);
  const com_ptr<ITestThing> dual(thing.get());
  const auto raw = dual.try_query<ITestThingRaw>();
  ASSERT_TRUE(raw);
  EXPECT_EQ(raw->Twice(21), 42);
  EXPECT_TRUE(dual.try_query<ITestListener>());
  EXPECT_EQ(identity_of(raw.get()), identity_of(dual.get()));
  EXPECT_EQ(static_cast<IDispatch*>(dual.try_query<IDispatch>().get()), static_cast<IDispatch*>(dual.get()));
  void* out = reinterpret_cast<void*>(1);
  EXPECT_EQ(dual->QueryInterface(iid_of<IClassFactory>(), &out), E_NOINTERFACE);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(dual->QueryInterface(iid_of<IUnknown>(), nullptr), E_POINTER);
  // Callback interfaces are not the class's own.
  const auto support = dual.query<ISupportErrorInfo>();
  for (const auto& [iid, answer] : {std::pair{iid_of<ITestThing>(), S_OK}, {iid_of<ITestThingRaw>(), S_OK},
                                     {iid_of<ITestListener>(), S_FALSE}, {iid_of<IUnknown>(), S_FALSE},
                                     {iid_of<IDispatch>(), S_FALSE}, {iid_of<ISupportErrorInfo>(), S_FALSE}}) {
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(iid), answer);
  }
  make_object<SelfTouchingThing>();  // the test runner checks that every lock is given back
}

// The outer object only counts: the inner interfaces must count on it.
TEST(ObjectFrame, AggregatedObjectDelegatesToItsOuterAndHandsOutOnlyItsInnerUnknown) {
  CountedObject outer;
  void* out = reinterpret_cast<void*>(1);
  EXPECT_EQ(CreateInstance<Thing>(&outer, iid_of<ITestThing>(), &out), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(out, nullptr);
  com_ptr<IUnknown> inner;
  ASSERT_EQ(CreateInstance<Thing>(&outer, iid_of<IUnknown>(), inner.put_void()), S_OK);
  EXPECT_EQ(ModuleLock::Count(), 1);
  {
    const com_ptr<ITestThing> thing = inner.query<ITestThing>();
    EXPECT_EQ(outer.refs, 2u);
    EXPECT_EQ(identity_of(thing.get()).get(), static_cast<IUnknown*>(&outer));
    EXPECT_EQ(thing->Fail(kOwn), DISP_E_EXCEPTION);
    ClearErrorInfo();
  }
  EXPECT_EQ(outer.refs, 1u);
}

}  // namespace
}  // namespace brevo::testing
