// Script objects as conditions and comparators: their answers read by kind,
// their errors raised as the callback's own, on every way in (early-bound,
// late-bound, read-only view, grouped list).
#include <cmath>

#include "factory/record_list_utils.h"
#include "grouping/group_interfaces.h"
#include "lists/mutable_record_list.h"
#include "row_fixture.h"
#include "support/fake_script.h"

namespace brevo::testing {
namespace {

unique_variant Bool(VARIANT_BOOL v) { return MakeValue(VT_BOOL, &VARIANT::boolVal, v); }
unique_variant I4(LONG v) { return MakeValue(VT_I4, &VARIANT::lVal, v); }
unique_variant I8(LONGLONG v) { return MakeValue(VT_I8, &VARIANT::llVal, v); }
unique_variant R8(double v) { return MakeValue(VT_R8, &VARIANT::dblVal, v); }

// The record a script was given, as VT_DISPATCH, or -1.
LONG KeyOfArgument(const FakeScript::Args& args, std::size_t i) {
  return i < args.size() && args[i].vt() == VT_DISPATCH ? KeyOf(args[i]->pdispVal) : -1;
}

class ScriptCallbackTest : public ::testing::TestWithParam<ScriptKind> {
 protected:
  ~ScriptCallbackTest() override { ClearErrorInfo(); }

  // A list over the row fixture's columns, with one record per key.
  static com_ptr<IMutableRecordList> ListOf(const std::vector<LONG>& keys,
                                            com_ptr<IMutableColumns> columns = NewColumns()) {
    const com_ptr<IMutableRecordList> list(make_object<MutableRecordList>().get());
    EXPECT_EQ(list->Create(columns.get()), S_OK);
    for (const LONG key : keys) {
      com_ptr<IMutableRecord> record;
      EXPECT_EQ(list->AddRecord(record.put()), S_OK);
      EXPECT_EQ(record->SetValueAsInt32(0, key), S_OK);
    }
    return list;
  }
  static std::vector<LONG> Walk(IRecordListIterator* it) {
    std::vector<LONG> keys;
    VARIANT_BOOL more = VARIANT_FALSE;
    while (it != nullptr && it->HasNext(&more) == S_OK && more != VARIANT_FALSE && keys.size() < 10) {
      com_ptr<IDispatch> record;
      EXPECT_EQ(it->Next(record.put()), S_OK);
      keys.push_back(KeyOf(record.get()));
    }
    return keys;
  }

  // A script whose Evaluate answers `answer` for the record with `key` and
  // false for the others.
  com_ptr<FakeScript> Condition(LONG key, const unique_variant& answer) {
    auto script = FakeScript::Make(GetParam());
    script->Define(OLESTR("Evaluate"), [=](const FakeScript::Args& args, VARIANT& out, EXCEPINFO&) {
      if (KeyOfArgument(args, 0) != key) return VariantCopy(&out, &Bool(VARIANT_FALSE).get());
      return VariantCopy(&out, const_cast<VARIANT*>(&answer.get()));
    });
    return script;
  }
  std::vector<LONG> Filtered(IMutableRecordList* list, FakeScript* script) {
    com_ptr<IRecordListIterator> it;
    EXPECT_EQ(list->GetFilteredIterator(Posing<IRecordCondition>(script), VARIANT_TRUE, it.put()), S_OK);
    return Walk(it.get());
  }
  VARIANT_BOOL Found(IMutableRecordList* list, FakeScript* script) {
    com_ptr<IRecordListIterator> it;
    EXPECT_EQ(list->GetIterator(VARIANT_TRUE, it.put()), S_OK);
    VARIANT_BOOL found = 7;
    EXPECT_EQ(it->Find(Posing<IRecordCondition>(script), &found), S_OK);
    return found;
  }
};

struct ConditionAnswer {
  const char* what;
  unique_variant (*answer)();
  VARIANT_BOOL found;  // Find wants exactly -1
  bool filtered;       // the filter takes any non-zero answer
};

LONG g_minusOne = -1;

const ConditionAnswer kConditionAnswers[] = {
    {"VT_BOOL true", [] { return Bool(VARIANT_TRUE); }, VARIANT_TRUE, true},
    {"VT_BOOL 1", [] { return Bool(1); }, VARIANT_FALSE, true},
    {"VT_I4 1 (JScript's return 1)", [] { return I4(1); }, VARIANT_FALSE, true},
    {"VT_I4 -1", [] { return I4(-1); }, VARIANT_TRUE, true},
    {"VT_I4 65536, beyond 16 bits", [] { return I4(65536); }, VARIANT_FALSE, true},
    {"VT_I8 -4294967297", [] { return I8(-4294967297LL); }, VARIANT_FALSE, true},
    {"VT_R8 -1.0", [] { return R8(-1.0); }, VARIANT_TRUE, true},
    {"VT_R8 -0.5, by its sign", [] { return R8(-0.5); }, VARIANT_TRUE, true},
    {"VT_R8 0.25, by its sign", [] { return R8(0.25); }, VARIANT_FALSE, true},
    {"VT_R8 NaN", [] { return R8(std::nan("")); }, VARIANT_FALSE, false},
    {"VT_BYREF|VT_I4 -1", [] { return MakeValue(VT_BYREF | VT_I4, &VARIANT::plVal, &g_minusOne); }, VARIANT_TRUE, true},
    {"VT_EMPTY (returns nothing)", [] { return unique_variant(); }, VARIANT_FALSE, false},
    {"VT_NULL", [] { return MakeValue(VT_NULL); }, VARIANT_FALSE, false},
};

TEST_P(ScriptCallbackTest, ConditionAnswersAreReadByTheirKind) {
  const auto list = ListOf({10, 20, 30});
  for (const ConditionAnswer& c : kConditionAnswers) {
    SCOPED_TRACE(c.what);
    const auto script = Condition(20, c.answer());
    EXPECT_EQ(Found(list.get(), script.get()), c.found);
    EXPECT_EQ(Filtered(list.get(), script.get()), c.filtered ? std::vector<LONG>{20} : std::vector<LONG>{});
    EXPECT_EQ(script->calls.front(), "Evaluate(9)") << "a method call given the record as VT_DISPATCH";
  }
}

struct ComparatorAnswer {
  const char* what;
  unique_variant (*answer)(LONG first, LONG second);
  std::vector<LONG> order;  // x goes before y when Compare(x, y) is positive
};

const ComparatorAnswer kComparatorAnswers[] = {
    {"VT_I4 difference", [](LONG a, LONG b) { return I4(a - b); }, {30, 20, 10}},
    {"VT_R8 fraction, by its sign", [](LONG a, LONG b) { return R8((a - b) / 100.0); }, {30, 20, 10}},
    {"VT_I8 beyond 32 bits", [](LONG a, LONG b) { return I8((a - b) * (1LL << 40)); }, {30, 20, 10}},
    {"VT_BOOL 1 when first is smaller", [](LONG a, LONG b) { return Bool(a < b ? 1 : 0); }, {10, 20, 30}},
};

TEST_P(ScriptCallbackTest, ComparatorAnswersCountByTheirSign) {
  const auto list = ListOf({20, 10, 30});
  for (const ComparatorAnswer& c : kComparatorAnswers) {
    SCOPED_TRACE(c.what);
    auto script = FakeScript::Make(GetParam());
    script->Define(OLESTR("Compare"), [&](const FakeScript::Args& args, VARIANT& out, EXCEPINFO&) {
      return VariantCopy(&out, &c.answer(KeyOfArgument(args, 0), KeyOfArgument(args, 1)).get());
    });
    com_ptr<IRecordListIterator> it;
    ASSERT_EQ(list->GetSortedIterator(Posing<IRecordComparator>(script.get()), VARIANT_TRUE, it.put()), S_OK);
    EXPECT_EQ(Walk(it.get()), c.order);
    EXPECT_EQ(script->calls.front(), "Compare(9,9)") << "both records as VT_DISPATCH";
  }
}

HRESULT STDMETHODCALLTYPE FillInLater(EXCEPINFO* error) {
  error->scode = E_ACCESSDENIED;
  error->bstrDescription = SysAllocString(OLESTR("Permission denied"));
  return S_OK;
}

struct ScriptFailure {
  const char* what;
  FakeScript::Method (*evaluate)();  // null: the script has no Evaluate
  HRESULT hr;
  const char* description;
};

const ScriptFailure kFailures[] = {
    {"scode and description", [] { return Throw(static_cast<HRESULT>(0x800A01A8), OLESTR("Object required")); },
     static_cast<HRESULT>(0x800A01A8), "Object required"},
    {"wCode only", [] { return Throw(0, OLESTR("Custom"), 1000); }, static_cast<HRESULT>(0x800405E8), "Custom"},
    {"filled in later",
     [] {
       return FakeScript::Method([](const FakeScript::Args&, VARIANT&, EXCEPINFO& error) {
         error.pfnDeferredFillIn = &FillInLater;
         return DISP_E_EXCEPTION;
       });
     },
     E_ACCESSDENIED, "Permission denied"},
    {"Invoke failing without an exception",
     [] { return FakeScript::Method([](const FakeScript::Args&, VARIANT&, EXCEPINFO&) { return DISP_E_BADPARAMCOUNT; }); },
     DISP_E_BADPARAMCOUNT, "Unknown Error"},
    {"an answer that is no number", [] { return Answer(MakeString(OLESTR("yes"))); }, DISP_E_TYPEMISMATCH,
     "Unknown Error"},
    {"no Evaluate", nullptr, DISP_E_UNKNOWNNAME, "Unknown Error"},
};

TEST_P(ScriptCallbackTest, ScriptErrorsFailAsTheCallbacksOwnError) {
  const auto list = ListOf({10, 20});
  for (const ScriptFailure& f : kFailures) {
    SCOPED_TRACE(f.what);
    auto script = FakeScript::Make(GetParam());
    if (f.evaluate != nullptr) script->Define(OLESTR("Evaluate"), f.evaluate());
    com_ptr<IRecordListIterator> it;
    EXPECT_EQ(list->GetFilteredIterator(Posing<IRecordCondition>(script.get()), VARIANT_TRUE, it.put()), f.hr);
    EXPECT_EQ(TakeErrorInfo().description, f.description);

    // Where the contract gives a failure its own message, that message stands.
    ASSERT_EQ(list->GetIterator(VARIANT_TRUE, it.put()), S_OK);
    VARIANT_BOOL found = 7;
    EXPECT_EQ(it->Find(Posing<IRecordCondition>(script.get()), &found), DISP_E_EXCEPTION);
    EXPECT_EQ(TakeErrorInfo().description, "Failed in iterator find.");
  }

  auto comparator = FakeScript::Make(GetParam());
  comparator->Define(OLESTR("Compare"), Throw(E_FAIL, OLESTR("boom")));
  com_ptr<IRecordListIterator> sorted;
  EXPECT_EQ(list->GetSortedIterator(Posing<IRecordComparator>(comparator.get()), VARIANT_TRUE, sorted.put()),
            DISP_E_EXCEPTION);
  EXPECT_EQ(TakeErrorInfo().description, "Cannot sort the vector.");
}

TEST_P(ScriptCallbackTest, LateBoundCallersPassScriptObjectsAsConditions) {
  const auto list = ListOf({10, 20, 30});
  const auto script = Condition(30, Bool(VARIANT_TRUE));
  const auto args = [&] {
    std::vector<unique_variant> made;
    made.push_back(DispatchArg(script.get()));
    made.push_back(Bool(VARIANT_TRUE));
    return made;
  };

  LateCall filter = InvokeByName(list.get(), OLESTR("GetFilteredIterator"), args());
  ASSERT_EQ(filter.hr, S_OK);
  ASSERT_EQ(filter.answer.vt(), VT_DISPATCH);
  const auto filtered = com_ptr<IDispatch>(filter.answer->pdispVal).query<IRecordListIterator>();
  EXPECT_EQ(Walk(filtered.get()), std::vector<LONG>{30});

  // FindNext asks the condition the iterator was made with.
  const std::size_t asked = script->calls.size();
  VARIANT_BOOL found = VARIANT_FALSE;
  EXPECT_EQ(filtered->FindNext(&found), S_OK);
  EXPECT_EQ(found, VARIANT_TRUE);
  EXPECT_EQ(script->calls.size(), asked + 1);

  com_ptr<IRecordListIterator> plain;
  ASSERT_EQ(list->GetIterator(VARIANT_TRUE, plain.put()), S_OK);
  std::vector<unique_variant> condition;
  condition.push_back(DispatchArg(script.get()));
  LateCall find = InvokeByName(plain.get(), OLESTR("Find"), std::move(condition));
  EXPECT_EQ(find.hr, S_OK);
  EXPECT_EQ(find.answer.vt(), VT_BOOL);
  EXPECT_EQ(find.answer->boolVal, VARIANT_TRUE);
}

TEST_P(ScriptCallbackTest, ReadOnlyAndGroupedListsPassScriptObjectsOn) {
  const com_ptr<IMutableColumns> columns(make_object<MutableColumns>().get());
  com_ptr<IMutableColumn> added;
  ASSERT_EQ(columns->AddColumn(_bstr_t(OLESTR("A.key")).GetBSTR(), 10, added.put()), S_OK);
  const auto list = ListOf({10, 20, 30}, columns);
  const auto script = Condition(20, I4(-1));

  com_ptr<IRecordList> view;
  ASSERT_EQ(list->get_RecordList(view.put()), S_OK);
  com_ptr<IRecordListIterator> it;
  ASSERT_EQ(view->GetFilteredIterator(Posing<IRecordCondition>(script.get()), VARIANT_TRUE, it.put()), S_OK);
  EXPECT_EQ(Walk(it.get()), std::vector<LONG>{20});
  VARIANT_BOOL found = VARIANT_FALSE;
  EXPECT_EQ(it->Find(Posing<IRecordCondition>(script.get()), &found), S_OK);
  EXPECT_EQ(found, VARIANT_TRUE);

  const auto utils = make_object<RecordListUtils>();
  com_ptr<IMutableRecordList> grouped;
  ASSERT_EQ(utils->GetMutableRecordListByGroup(list.get(), _bstr_t(OLESTR("A")).GetBSTR(), grouped.put()), S_OK);
  ASSERT_EQ(grouped->GetFilteredIterator(Posing<IRecordCondition>(script.get()), VARIANT_TRUE, it.put()), S_OK);
  EXPECT_EQ(Walk(it.get()), std::vector<LONG>{20});
  // The grouped list and its source hold each other until it leaves their registries.
  grouped.query<IGroupRecordListRaw>()->Unregister();
}

INSTANTIATE_TEST_SUITE_P(Kinds, ScriptCallbackTest,
                         ::testing::Values(ScriptKind::kDispatch, ScriptKind::kDispatchExOnly),
                         [](const auto& info) { return info.param == ScriptKind::kDispatch ? "Dispatch" : "DispatchExOnly"; });

}  // namespace
}  // namespace brevo::testing
