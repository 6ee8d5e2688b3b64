// Script objects as conditions, comparators and listeners: answers read by
// kind, errors raised as the callback's own, the adapters' identity.
#include <cmath>

#include "row_fixture.h"
#include "support/fake_script.h"

namespace brevo::testing {
namespace {

using Keys = std::vector<LONG>;
unique_variant Bool(VARIANT_BOOL v) { return MakeValue(VT_BOOL, &VARIANT::boolVal, v); }
unique_variant I4(LONG v) { return MakeValue(VT_I4, &VARIANT::lVal, v); }
unique_variant I8(LONGLONG v) { return MakeValue(VT_I8, &VARIANT::llVal, v); }
unique_variant R8(double v) { return MakeValue(VT_R8, &VARIANT::dblVal, v); }
LONG g_minusOne = -1;

// The key of the record a script was given as VT_DISPATCH, or -1.
LONG KeyOfArgument(const FakeScript::Args& args, std::size_t i) {
  return i < args.size() && args[i].vt() == VT_DISPATCH ? KeyOf(args[i]->pdispVal) : -1;
}

class ScriptCallbackTest : public ::testing::TestWithParam<ScriptKind> {
 protected:
  ~ScriptCallbackTest() override { ClearErrorInfo(); }
  com_ptr<FakeScript> Script(const OLECHAR* method = nullptr, FakeScript::Method body = nullptr) {
    auto script = FakeScript::Make(GetParam());
    if (method != nullptr) script->Define(method, std::move(body));
    return script;
  }
  // What GetFilteredIterator, and Find on a plain iterator, make of the script.
  std::pair<HRESULT, Keys> Filter(FakeScript* script) {
    com_ptr<IRecordListIterator> it;
    const HRESULT hr = list->GetFilteredIterator(Posing<IRecordCondition>(script), VARIANT_TRUE, it.put());
    return {hr, KeysOf(Records(it.get()))};
  }
  std::pair<HRESULT, VARIANT_BOOL> Find(FakeScript* script) {
    com_ptr<IRecordListIterator> it;
    EXPECT_EQ(list->GetIterator(VARIANT_TRUE, it.put()), S_OK);
    VARIANT_BOOL found = 7;
    const HRESULT hr = it->Find(Posing<IRecordCondition>(script), &found);
    return {hr, found};
  }

  com_ptr<IMutableRecordList> list = ListOf({10, 20, 30});
};

TEST_P(ScriptCallbackTest, AnswersAreReadByTheirKind) {
  // Find wants exactly -1, the filter takes any non-zero answer.
  const struct { const char* what; unique_variant answer; VARIANT_BOOL found; bool filtered; } cases[] = {
      {"VT_BOOL true", Bool(VARIANT_TRUE), VARIANT_TRUE, true},
      {"VT_I4 1 (JScript's return 1)", I4(1), VARIANT_FALSE, true},
      {"VT_I4 65536, beyond 16 bits", I4(65536), VARIANT_FALSE, true},
      {"VT_I8 -4294967297", I8(-4294967297LL), VARIANT_FALSE, true},
      {"VT_R8 -0.5, by its sign, not truncated", R8(-0.5), VARIANT_TRUE, true},
      {"VT_R8 NaN", R8(std::nan("")), VARIANT_FALSE, false},
      {"VT_BYREF|VT_I4 -1", MakeValue(VT_BYREF | VT_I4, &VARIANT::plVal, &g_minusOne), VARIANT_TRUE, true},
      {"VT_EMPTY (returns nothing)", unique_variant(), VARIANT_FALSE, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const auto script = Script(OLESTR("Evaluate"), [&c, no = Bool(0)](const auto& args, VARIANT& out, auto&) {
      return VariantCopy(&out, const_cast<VARIANT*>(&(KeyOfArgument(args, 0) == 20 ? c.answer : no).get()));
    });
    EXPECT_EQ(Find(script.get()), std::make_pair(S_OK, c.found));
    EXPECT_EQ(Filter(script.get()), std::make_pair(S_OK, c.filtered ? Keys{20} : Keys{}));
    EXPECT_EQ(script->calls.front(), "Evaluate(9)") << "a method call given the record as VT_DISPATCH";
  }
  // A comparator's answer counts by its sign, which a number beyond 32 bits keeps.
  const auto compare = Script(OLESTR("Compare"), [](const FakeScript::Args& args, VARIANT& out, EXCEPINFO&) {
    return VariantCopy(&out, &I8((KeyOfArgument(args, 0) - KeyOfArgument(args, 1)) * (1LL << 40)).get());
  });
  com_ptr<IRecordListIterator> it;
  ASSERT_EQ(list->GetSortedIterator(Posing<IRecordComparator>(compare.get()), VARIANT_TRUE, it.put()), S_OK);
  EXPECT_EQ(KeysOf(Records(it.get())), (Keys{30, 20, 10}));
}

HRESULT STDMETHODCALLTYPE FillInLater(EXCEPINFO* error) {
  error->scode = E_ACCESSDENIED;
  error->bstrDescription = SysAllocString(OLESTR("Permission denied"));
  return S_OK;
}

// The filter raises the script's error as its own; Find has a message of its own.
TEST_P(ScriptCallbackTest, ScriptErrorsFailAsTheCallbacksOwnError) {
  // An empty evaluate leaves the script without Evaluate.
  const struct { const char* what; FakeScript::Method evaluate; HRESULT hr; const char* description; } cases[] = {
      {"scode and description", Throw(0x800A01A8, OLESTR("Object required")), static_cast<HRESULT>(0x800A01A8),
       "Object required"},
      {"wCode only", Throw(0, OLESTR("Custom"), 1000), static_cast<HRESULT>(0x800405E8), "Custom"},
      {"filled in later",
       [](auto&, auto&, EXCEPINFO& e) { e.pfnDeferredFillIn = &FillInLater; return DISP_E_EXCEPTION; },
       E_ACCESSDENIED, "Permission denied"},
      {"Invoke failing without an exception", [](auto&, auto&, auto&) { return DISP_E_BADPARAMCOUNT; },
       DISP_E_BADPARAMCOUNT, "Unknown Error"},
      {"an answer that is no number", Answer(MakeString(OLESTR("yes"))), DISP_E_TYPEMISMATCH, "Unknown Error"},
      {"no Evaluate", nullptr, DISP_E_UNKNOWNNAME, "Unknown Error"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const auto script = c.evaluate ? Script(OLESTR("Evaluate"), c.evaluate) : Script();
    EXPECT_EQ(Filter(script.get()).first, c.hr);
    EXPECT_EQ(TakeErrorInfo().description, c.description);
    EXPECT_EQ(Find(script.get()).first, DISP_E_EXCEPTION);
    EXPECT_EQ(TakeErrorInfo().description, "Failed in iterator find.");
  }
}

// A listener's script error fails the change with its code and message; after
// the change it lets the change stand. Bound early or late, the adapters
// answer for the script object's identity and let go of it.
TEST_P(ScriptCallbackTest, ScriptListenersFailChangesWithTheirErrorAndAreFoundByTheirIdentity) {
  const auto after = Script(OLESTR("RecordAfterAdd"), Throw(0, OLESTR("late"), 7));
  auto* posing = Posing<IRecordListChangeListener>(after.get());
  ASSERT_EQ(list->AddRecordListChangeListener(posing), S_OK);
  com_ptr<IMutableRecord> record;
  EXPECT_EQ(list->AddRecord(record.put()), static_cast<HRESULT>(0x80040207));
  EXPECT_EQ(TakeErrorInfo().description, "late");
  const auto lateBound = [&](const OLECHAR* method) {
    return InvokeByName(list.get(), method, {DispatchArg(after.get())});
  };
  EXPECT_EQ(lateBound(OLESTR("RemoveRecordListChangeListener")).hr, S_OK);
  ASSERT_EQ(lateBound(OLESTR("AddRecordListChangeListener")).hr, S_OK);
  EXPECT_EQ(list->RemoveRecordListChangeListener(posing), S_OK);
  EXPECT_EQ(list->AddRecord(record.put()), S_OK) << "nothing is left registered";
  EXPECT_EQ(after->refs, 1u) << "the adapters let go of the script object";
  EXPECT_EQ(lateBound(OLESTR("RemoveRecordListChangeListener")).description,
            "Cannot remove recordlist change listener.");
  ULONG size = 0;
  EXPECT_EQ(list->get_Size(&size), S_OK);
  EXPECT_EQ(size, 5u);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ScriptCallbackTest,
                         ::testing::Values(ScriptKind::kDispatch, ScriptKind::kDispatchExOnly),
                         [](const auto& i) { return i.param == ScriptKind::kDispatch ? "Dispatch" : "DispatchEx"; });

}  // namespace
}  // namespace brevo::testing
