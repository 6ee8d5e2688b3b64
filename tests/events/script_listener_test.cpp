// Script objects as listeners: called by method name with the event as
// VT_DISPATCH, able to veto through the event, failing changes with their own
// error, and removed by their own identity on either binding.
#include "columns/mutable_columns.h"
#include "lists/mutable_record_list.h"
#include "support/fake_script.h"

namespace brevo::testing {
namespace {

constexpr auto kVtDispatch = "(9)";

class ScriptListenerTest : public ::testing::TestWithParam<ScriptKind> {
 protected:
  ScriptListenerTest() {
    AddKeyColumn();
    EXPECT_EQ(list->Create(columns.get()), S_OK);
  }
  void AddKeyColumn() {
    com_ptr<IMutableColumn> column;
    EXPECT_EQ(columns->AddColumn(_bstr_t(OLESTR("key")).GetBSTR(), 10, column.put()), S_OK);
  }
  ~ScriptListenerTest() override { ClearErrorInfo(); }

  // A method that calls `member` on the event it is given, by name.
  static FakeScript::Method OnEvent(const OLECHAR* member, std::vector<std::string>* heard = nullptr) {
    return [=](const FakeScript::Args& args, VARIANT&, EXCEPINFO&) {
      if (args.size() != 1 || args[0].vt() != VT_DISPATCH) return DISP_E_TYPEMISMATCH;
      LateCall call = InvokeByName(args[0]->pdispVal, member);
      if (heard != nullptr) heard->push_back(std::to_string(call.answer->vt == VT_I4 ? call.answer->lVal : -99));
      return call.hr;
    };
  }
  static FakeScript::Method Nothing() { return OnEvent(OLESTR("IsStopped")); }

  // Refused records are handed out too; they are kept because a dying record
  // clears the column collection it shares with the list.
  HRESULT AddRecord() {
    com_ptr<IMutableRecord> record;
    const HRESULT hr = list->AddRecord(record.put());
    kept.push_back(std::move(record));
    return hr;
  }
  ULONG Size() {
    ULONG size = 0;
    EXPECT_EQ(list->get_Size(&size), S_OK);
    return size;
  }

  com_ptr<FakeScript> script = FakeScript::Make(GetParam());
  com_ptr<IMutableColumns> columns{make_object<MutableColumns>().get()};
  com_ptr<IMutableRecordList> list{make_object<MutableRecordList>().get()};
  IRecordListChangeListener* posing = Posing<IRecordListChangeListener>(script.get());
  std::vector<com_ptr<IMutableRecord>> kept;
};

TEST_P(ScriptListenerTest, BeforeListenersVetoThroughTheEventTheyAreGivenAsDispatch) {
  script->Define(OLESTR("RecordBeforeAdd"), OnEvent(OLESTR("Stop")));
  script->Define(OLESTR("RecordAfterAdd"), Nothing());
  ASSERT_EQ(list->AddRecordListChangeListener(posing), S_OK);

  EXPECT_EQ(AddRecord(), DISP_E_EXCEPTION);
  EXPECT_EQ(TakeErrorInfo().description, "Failed to add record.");
  EXPECT_EQ(Size(), 0u);
  EXPECT_EQ(script->calls, std::vector<std::string>{std::string("RecordBeforeAdd") + kVtDispatch});
}

TEST_P(ScriptListenerTest, MethodsTheScriptLeavesOutAreNotCalled) {
  script->Define(OLESTR("recordafteradd"), Nothing());  // script languages do not keep case
  ASSERT_EQ(list->AddRecordListChangeListener(posing), S_OK);
  EXPECT_EQ(AddRecord(), S_OK);
  EXPECT_EQ(AddRecord(), S_OK);
  EXPECT_EQ(Size(), 2u);
  EXPECT_EQ(script->calls, (std::vector<std::string>{"recordafteradd(9)", "recordafteradd(9)"}));
}

TEST_P(ScriptListenerTest, ValueListenersReadTheEventByName) {
  std::vector<std::string> indices;
  script->Define(OLESTR("ValueBeforeChange"), OnEvent(OLESTR("GetIndex"), &indices));
  script->Define(OLESTR("ValueAfterChange"), OnEvent(OLESTR("GetIndex"), &indices));
  com_ptr<IMutableRecord> record;
  ASSERT_EQ(list->AddRecord(record.put()), S_OK);
  ASSERT_EQ(record->AddRecordChangeListener(Posing<IRecordChangeListener>(script.get())), S_OK);
  ASSERT_EQ(list->AddRecordListValueChangeListener(Posing<IRecordListValueChangeListener>(script.get())), S_OK);

  EXPECT_EQ(record->SetValueAsInt32(0, 7), S_OK);
  EXPECT_EQ(indices, (std::vector<std::string>{"0", "0", "0", "0"})) << "the record's pair, then the list's";
}

TEST_P(ScriptListenerTest, AScriptErrorFailsTheChangeWithTheScriptsCodeAndMessage) {
  const HRESULT scriptError = static_cast<HRESULT>(0x800A03EC);
  script->Define(OLESTR("RecordBeforeAdd"), Throw(scriptError, OLESTR("Expected ';'")));
  ASSERT_EQ(list->AddRecordListChangeListener(posing), S_OK);
  EXPECT_EQ(AddRecord(), scriptError);
  EXPECT_EQ(TakeErrorInfo().description, "Expected ';'");
  EXPECT_EQ(Size(), 0u);

  // Late-bound, the script that made the change sees the same.
  LateCall call = InvokeByName(list.get(), OLESTR("AddRecord"));
  EXPECT_EQ(call.hr, DISP_E_EXCEPTION);
  EXPECT_EQ(call.description, "Expected ';'");
  // Late binding dropped the refused record, and the schema went with it.
  AddKeyColumn();

  // After the change the error still reaches the caller, but the change stands.
  auto after = FakeScript::Make(GetParam());
  after->Define(OLESTR("RecordAfterAdd"), Throw(0, OLESTR("late"), 7));
  ASSERT_EQ(list->RemoveRecordListChangeListener(posing), S_OK);
  ASSERT_EQ(list->AddRecordListChangeListener(Posing<IRecordListChangeListener>(after.get())), S_OK);
  EXPECT_EQ(AddRecord(), static_cast<HRESULT>(0x80040207)) << "a wCode maps into the interface range";
  EXPECT_EQ(TakeErrorInfo().description, "late");
  EXPECT_EQ(Size(), 1u);
}

TEST_P(ScriptListenerTest, ScriptListenersAreRemovedByTheirOwnIdentityOnEitherBinding) {
  script->Define(OLESTR("RecordAfterAdd"), Nothing());
  const auto lateBound = [&](const OLECHAR* method) {
    std::vector<unique_variant> args;
    args.push_back(DispatchArg(script.get()));
    return InvokeByName(list.get(), method, std::move(args));
  };

  // Early-bound in, late-bound out, and the other way round.
  ASSERT_EQ(list->AddRecordListChangeListener(posing), S_OK);
  EXPECT_EQ(lateBound(OLESTR("RemoveRecordListChangeListener")).hr, S_OK);
  ASSERT_EQ(lateBound(OLESTR("AddRecordListChangeListener")).hr, S_OK);
  EXPECT_EQ(list->RemoveRecordListChangeListener(posing), S_OK);

  EXPECT_EQ(AddRecord(), S_OK);
  EXPECT_TRUE(script->calls.empty()) << "nothing is left registered";
  EXPECT_EQ(script->refs, 1u) << "the adapters let go of the script object";

  LateCall again = lateBound(OLESTR("RemoveRecordListChangeListener"));
  EXPECT_EQ(again.hr, DISP_E_EXCEPTION);
  EXPECT_EQ(again.description, "Cannot remove recordlist change listener.");
}

INSTANTIATE_TEST_SUITE_P(Kinds, ScriptListenerTest,
                         ::testing::Values(ScriptKind::kDispatch, ScriptKind::kDispatchExOnly),
                         [](const auto& info) { return info.param == ScriptKind::kDispatch ? "Dispatch" : "DispatchExOnly"; });

}  // namespace
}  // namespace brevo::testing
