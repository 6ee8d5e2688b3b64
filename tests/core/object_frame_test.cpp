// The object frame: QueryInterface over the class's list, reference counts and
// the module lock count, ISupportErrorInfo, aggregation, and the one error path.
#include "core/implements.h"
#include "support/test_support.h"

struct ITestThing : IDispatch { STDMETHOD(Run)() = 0; };
struct ITestThingRaw : IDispatch { virtual LONG Twice(LONG value) = 0; };
struct ITestListener : IDispatch {};  // a callback interface

BREVO_INTERFACE_ID(ITestThing, 0x6C1D3A10, 0x2B4F, 0x4E8A, 0x9D, 0x21, 0x55, 0x0E, 0x7A, 0x11, 0x3C, 0x01);
BREVO_INTERFACE_ID(ITestThingRaw, 0x6C1D3A10, 0x2B4F, 0x4E8A, 0x9D, 0x21, 0x55, 0x0E, 0x7A, 0x11, 0x3C, 0x02);
BREVO_INTERFACE_ID(ITestListener, 0x6C1D3A10, 0x2B4F, 0x4E8A, 0x9D, 0x21, 0x55, 0x0E, 0x7A, 0x11, 0x3C, 0x03);
template <>
inline constexpr bool brevo::is_callback_interface<ITestListener> = true;

namespace brevo::testing {
namespace {

class Thing : public implements<Thing, ITestThing, ITestThingRaw, ITestListener> {
 public:
  static constexpr CLSID kClassId = {0x6C1D3A10, 0x2B4F, 0x4E8A, {0x9D, 0x21, 0x55, 0x0E, 0x7A, 0x11, 0x3C, 0xFF}};
  STDMETHODIMP Run() override { return Call<ITestThing>([this] { body(); }); }
  LONG Twice(LONG value) override { return value * 2; }

  void (*body)() = [] {};
};

// Hands itself out while dying, as objects raising events on their last release do.
class SelfTouchingThing : public Thing {
 public:
  void FinalRelease() { com_ptr<ITestThing> self(this); }
};

// _com_error, other exceptions and error sources: see the classes' tests.
TEST(ErrorPath, TranslatesEachKindOfFailure) {
  const struct {
    const char* name;
    void (*body)();
    HRESULT expected;
    const char* description;
  } rows[] = {
      {"own", [] { throw EBvException(OLESTR("Cannot convert to int.")); }, DISP_E_EXCEPTION, "Cannot convert to int."},
      {"own code", [] { throw EBvException(OLESTR("Coded."), 5); }, static_cast<HRESULT>(0x80040005), "Coded."},
      {"own HRESULT", [] { throw EBvException(OLESTR("Complete."), E_INVALIDARG); }, E_INVALIDARG, "Complete."},
  };
  const auto thing = make_object<Thing>();
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    thing->body = row.body;
    EXPECT_EQ(thing->Run(), row.expected);
    const ErrorSnapshot error = TakeErrorInfo();
    EXPECT_EQ(error.description, row.description);
    EXPECT_TRUE(IsEqualGUID(error.guid, iid_of<ITestThing>()));
  }
  // A description below 0x10000 is a string resource number; success leaves error info alone.
  const auto resource = reinterpret_cast<const OLECHAR*>(std::uintptr_t{kProjectNameResource});
  EXPECT_EQ(ReportError(Thing::kClassId, resource, iid_of<ITestThing>(), 0),
            static_cast<HRESULT>(0x80040000 | kProjectNameResource));
  thing->body = [] {};
  EXPECT_EQ(thing->Run(), S_OK);
  EXPECT_EQ(TakeErrorInfo().description, "BrevoRecordList");
}

TEST(ObjectFrame, AnswersForItsListWithOneIdentityAndCountsModuleLocks) {
  const com_ptr<ITestThing> dual(make_object<Thing>().get());
  const auto raw = dual.try_query<ITestThingRaw>();
  ASSERT_TRUE(raw);
  EXPECT_EQ(raw->Twice(21), 42);
  EXPECT_EQ(identity_of(raw.get()), identity_of(dual.get()));
  EXPECT_EQ(static_cast<IDispatch*>(dual.try_query<IDispatch>().get()), static_cast<IDispatch*>(dual.get()));
  void* out = reinterpret_cast<void*>(1);
  EXPECT_EQ(dual->QueryInterface(iid_of<IClassFactory>(), &out), E_NOINTERFACE);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(dual->QueryInterface(iid_of<IUnknown>(), nullptr), E_POINTER);
  // Callback interfaces are answered for but are not the class's own.
  EXPECT_TRUE(dual.try_query<ITestListener>());
  const auto support = dual.query<ISupportErrorInfo>();
  for (const auto& [iid, answer] : {std::pair{iid_of<ITestThing>(), S_OK}, {iid_of<ITestThingRaw>(), S_OK},
                                     {iid_of<ITestListener>(), S_FALSE}, {iid_of<IDispatch>(), S_FALSE}}) {
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(iid), answer);
  }
  make_object<SelfTouchingThing>();  // the test runner checks that every lock is given back
}

// The outer object only counts: the inner interfaces must count on it.
TEST(ObjectFrame, AggregatedObjectDelegatesToItsOuterAndHandsOutOnlyItsInnerUnknown) {
  CountedObject outer;
  void* out = nullptr;
  EXPECT_EQ(CreateInstance<Thing>(&outer, iid_of<ITestThing>(), &out), CLASS_E_NOAGGREGATION);
  com_ptr<IUnknown> inner;
  ASSERT_EQ(CreateInstance<Thing>(&outer, iid_of<IUnknown>(), inner.put_void()), S_OK);
  {
    const com_ptr<ITestThing> thing = inner.query<ITestThing>();
    EXPECT_EQ(outer.refs, 2u);
    EXPECT_EQ(identity_of(thing.get()).get(), static_cast<IUnknown*>(&outer));
  }
  EXPECT_EQ(outer.refs, 1u);
}

}  // namespace
}  // namespace brevo::testing
