// The object frame: QueryInterface over the class's list, reference counts and
// the module lock count, ISupportErrorInfo, aggregation, and the one error path.
#include <new>

#include "core/implements.h"
#include "support/test_support.h"

namespace brevo::testing {

struct ITestThing : IDispatch {
  STDMETHOD(Fail)(LONG how) = 0;
};
struct ITestThingRaw : IDispatch {
  virtual LONG Twice(LONG value) = 0;
};
struct ITestListener : IDispatch {
  STDMETHOD(Heard)() = 0;
};

}  // namespace brevo::testing

BREVO_INTERFACE_ID(brevo::testing::ITestThing, 0x6C1D3A10, 0x2B4F, 0x4E8A, 0x9D, 0x21, 0x55, 0x0E, 0x7A, 0x11, 0x3C, 0x01);
BREVO_INTERFACE_ID(brevo::testing::ITestThingRaw, 0x6C1D3A10, 0x2B4F, 0x4E8A, 0x9D, 0x21, 0x55, 0x0E, 0x7A, 0x11, 0x3C, 0x02);
BREVO_INTERFACE_ID(brevo::testing::ITestListener, 0x6C1D3A10, 0x2B4F, 0x4E8A, 0x9D, 0x21, 0x55, 0x0E, 0x7A, 0x11, 0x3C, 0x03);
template <>
inline constexpr bool brevo::is_callback_interface<brevo::testing::ITestListener> = true;

namespace brevo::testing {
namespace {

enum Failure : LONG { kNone, kOwn, kOwnWithCode, kOwnWithoutText, kPlatform, kPlatformWithInfo, kBadAlloc, kOther };

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
      case kOwnWithCode: throw EBvException(OLESTR("With a code."), 5);
      case kOwnWithoutText: throw EBvException(_bstr_t());
      case kPlatform: _com_issue_error(E_INVALIDARG);
      case kPlatformWithInfo: {
        com_ptr<ICreateErrorInfo> create;
        CreateErrorInfo(create.put());
        create->SetDescription(const_cast<LPOLESTR>(OLESTR("Told by the callee.")));
        throw _com_error(E_FAIL, create.query<IErrorInfo>().detach());
      }
      case kBadAlloc: throw std::bad_alloc();
      case kOther: throw 42;
      default: return;
    }
  }
};

// Hands itself out while dying, as objects that raise events on their last
// release do.
class SelfTouchingThing : public Thing {
 public:
  void FinalRelease() { com_ptr<ITestThing> self(this); }
};

struct ErrorCase {
  Failure failure;
  HRESULT expected;
  bool setsErrorInfo;
  const char* description;
};

const ErrorCase kErrorCases[] = {
    {kNone, S_OK, false, ""},
    {kOwn, DISP_E_EXCEPTION, true, "Cannot convert to int."},
    {kOwnWithCode, static_cast<HRESULT>(0x80040005), true, "With a code."},
    {kOwnWithoutText, static_cast<HRESULT>(0x80040000), true, "Unknown Error"},
    {kPlatform, E_INVALIDARG, true, "Unknown Error"},
    {kPlatformWithInfo, E_FAIL, true, "Told by the callee."},
    {kBadAlloc, E_UNEXPECTED, false, ""},
    {kOther, E_UNEXPECTED, false, ""},
};

TEST(ErrorPath, TranslatesEveryKindOfFailure) {
  const auto thing = make_object<Thing>();
  for (const ErrorCase& c : kErrorCases) {
    SCOPED_TRACE(c.description);
    ClearErrorInfo();
    EXPECT_EQ(thing->Fail(c.failure), c.expected);
    const ErrorSnapshot error = TakeErrorInfo();
    ASSERT_EQ(error.present, c.setsErrorInfo);
    if (!error.present) continue;
    EXPECT_EQ(error.description, c.description);
    EXPECT_TRUE(IsEqualGUID(error.guid, iid_of<ITestThing>()));
    EXPECT_EQ(error.source, "") << "an unregistered class has no ProgID";
  }
}

TEST(ErrorPath, NamesTheRegisteredProgIdAsSource) {
  const ScopedProgId registration(Thing::kClassId, OLESTR("BrevoRecordList.TestThing.1"));
  const auto thing = make_object<Thing>();
  EXPECT_EQ(thing->Fail(kOwn), DISP_E_EXCEPTION);
  EXPECT_EQ(TakeErrorInfo().source, "BrevoRecordList.TestThing.1");
}

TEST(ErrorPath, SuccessKeepsEarlierErrorInfo) {
  const auto thing = make_object<Thing>();
  thing->Fail(kOwn);
  EXPECT_EQ(thing->Fail(kNone), S_OK);
  EXPECT_EQ(TakeErrorInfo().description, "Cannot convert to int.");
}

TEST(ErrorPath, ExceptionCodeKeepsCompleteResults) {
  EXPECT_EQ(EBvException(OLESTR("x")).GetCode(), 0);
  EXPECT_EQ(EBvException(OLESTR("x"), 5).GetCode(), static_cast<HRESULT>(0x80040005));
  EXPECT_EQ(EBvException(OLESTR("x"), E_INVALIDARG).GetCode(), E_INVALIDARG);
  EXPECT_EQ(EBvException(_bstr_t()).GetDescription(), nullptr);
}

TEST(ErrorPath, DescriptionBelow0x10000IsAStringResource) {
  const auto resource = reinterpret_cast<const OLECHAR*>(std::uintptr_t{kProjectNameResource});
  EXPECT_EQ(ReportError(Thing::kClassId, resource, iid_of<ITestThing>(), 0),
            static_cast<HRESULT>(0x80040000 | kProjectNameResource));
  EXPECT_EQ(TakeErrorInfo().description, "BrevoRecordList");
}

TEST(ObjectFrame, QueryInterfaceAnswersForTheListWithOneIdentity) {
  const auto thing = make_object<Thing>();
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
}

TEST(ObjectFrame, SupportsErrorInfoForItsOwnInterfacesOnly) {
  const auto support = com_ptr<ITestThing>(make_object<Thing>().get()).query<ISupportErrorInfo>();
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(iid_of<ITestThing>()), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(iid_of<ITestThingRaw>()), S_OK);
  for (const IID* other : {&iid_of<ITestListener>(), &iid_of<IUnknown>(), &iid_of<IDispatch>(),
                           &iid_of<ISupportErrorInfo>()}) {
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(*other), S_FALSE);
  }
}

TEST(ObjectFrame, CountsReferencesAndModuleLocks) {
  EXPECT_EQ(ModuleLock::Count(), 0);
  {
    auto thing = make_object<Thing>();
    EXPECT_EQ(ModuleLock::Count(), 1);
    EXPECT_EQ(thing->AddRef(), 2u);
    EXPECT_EQ(thing->Release(), 1u);
    const auto second = make_object<SelfTouchingThing>();
    EXPECT_EQ(ModuleLock::Count(), 2);
  }
  EXPECT_EQ(ModuleLock::Count(), 0);
}

// An outer object that aggregates a Thing.
class Outer final : public IUnknown {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    if (iid == iid_of<IUnknown>()) {
      *out = static_cast<IUnknown*>(this);
      AddRef();
      return S_OK;
    }
    return inner->QueryInterface(iid, out);
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++refs; }
  STDMETHODIMP_(ULONG) Release() override { return --refs; }

  ULONG refs = 1;
  com_ptr<IUnknown> inner;
};

TEST(ObjectFrame, AggregatedObjectDelegatesToItsOuter) {
  Outer outer;
  ASSERT_EQ(CreateInstance<Thing>(&outer, iid_of<IUnknown>(), outer.inner.put_void()), S_OK);
  EXPECT_EQ(ModuleLock::Count(), 1);
  {
    com_ptr<ITestThing> thing = com_ptr<IUnknown>(&outer).query<ITestThing>();
    EXPECT_EQ(outer.refs, 2u) << "the inner interface counts on the outer object";
    EXPECT_EQ(identity_of(thing.get()).get(), static_cast<IUnknown*>(&outer));
    EXPECT_EQ(thing->Fail(kOwn), DISP_E_EXCEPTION);
  }
  EXPECT_EQ(outer.refs, 1u);
  outer.inner.reset();
  EXPECT_EQ(ModuleLock::Count(), 0);
  ClearErrorInfo();
}

TEST(ObjectFrame, AggregationOnlyHandsOutTheInnerUnknown) {
  Outer outer;
  void* out = reinterpret_cast<void*>(1);
  EXPECT_EQ(CreateInstance<Thing>(&outer, iid_of<ITestThing>(), &out), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(out, nullptr);
  com_ptr<ITestThing> plain;
  EXPECT_EQ(CreateInstance<Thing>(nullptr, iid_of<ITestThing>(), plain.put_void()), S_OK);
  EXPECT_EQ(ModuleLock::Count(), 1);
}

}  // namespace
}  // namespace brevo::testing
