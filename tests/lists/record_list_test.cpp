// The mutable record list: making records, clearing, its read-only view, the
// three-level comparison, record value changes passed on to the list's value
// listeners, the events switch with its summaries, and ownership of its rows.
#include "core/module_lock.h"
#include "lists/mutable_record_list.h"
#include "row_fixture.h"
#include "support/schema.h"
#include "support/recording_listener.h"

namespace brevo::testing {
namespace {

com_ptr<IMutableRecordList> NewList(IMutableColumns* columns) {
  const com_ptr<IMutableRecordList> list(make_object<MutableRecordList>().get());
  if (columns != nullptr) {
    EXPECT_EQ(list->Create(columns), S_OK);
  }
  return list;
}

ULONG SizeOf(IMutableRecordList* list) {
  ULONG size = 99;
  EXPECT_EQ(list->get_Size(&size), S_OK);
  return size;
}

LONG ColumnCount(IMutableColumns* columns) {
  LONG size = -1;
  EXPECT_EQ(columns->get_Size(&size), S_OK);
  return size;
}

com_ptr<IMutableRecord> Add(IMutableRecordList* list, LONG key = -1) {
  com_ptr<IMutableRecord> record;
  EXPECT_EQ(list->AddRecord(record.put()), S_OK);
  if (record && key >= 0) {
    EXPECT_EQ(record->SetValueAsInt32(0, key), S_OK);
  }
  return record;
}

class RecordListTest : public ::testing::Test {
 protected:
  ~RecordListTest() override { ClearErrorInfo(); }

  CComObject<RecordingListener>* Listener(const std::string& name) {
    listeners.push_back(MakeRecorder(name, transcript));
    return listeners.back().get();
  }
  CComObject<RecordingListener>* ListenToRecords(const std::string& name) {
    auto* listener = Listener(name);
    EXPECT_EQ(list->AddRecordListChangeListener(listener), S_OK);
    return listener;
  }
  CComObject<RecordingListener>* ListenToValues(const std::string& name) {
    auto* listener = Listener(name);
    EXPECT_EQ(list->AddRecordListValueChangeListener(listener), S_OK);
    return listener;
  }

  Transcript transcript;
  std::vector<com_ptr<CComObject<RecordingListener>>> listeners;
  com_ptr<IMutableColumns> columns = NewColumns();
  com_ptr<IMutableRecordList> list = NewList(columns.get());
};

TEST_F(RecordListTest, AddRecordNeedsColumnsAndMakesRowsInOrder) {
  const auto bare = NewList(nullptr);
  com_ptr<IMutableColumns> none;
  EXPECT_EQ(bare->get_Columns(none.put()), S_OK);
  EXPECT_FALSE(none);
  com_ptr<IMutableRecord> record;
  EXPECT_EQ(bare->AddRecord(record.put()), E_POINTER);
  EXPECT_FALSE(record);
  ASSERT_EQ(bare->Create(Schema().get()), S_OK);
  ExpectFailure(bare->AddRecord(record.put()), "Cannot add record becasue is columns are empty.");
  EXPECT_FALSE(record);
  EXPECT_EQ(SizeOf(bare.get()), 0u);

  const auto first = Add(list.get(), 1);
  const auto second = Add(list.get(), 2);
  EXPECT_EQ(SizeOf(list.get()), 2u);
  com_ptr<IRecordListIterator> it;
  ASSERT_EQ(list->GetIterator(VARIANT_TRUE, it.put()), S_OK);
  for (const auto& expected : {first, second}) {
    com_ptr<IDispatch> next;
    ASSERT_EQ(it->Next(next.put()), S_OK);
    EXPECT_EQ(identity_of(next.get()), identity_of(expected.get()));
  }

  // A row is the record in element 0, then one empty cell per column.
  com_ptr<IMutableColumns> shared;
  ASSERT_EQ(second->get_Columns(shared.put()), S_OK);
  EXPECT_EQ(shared, columns);
  unique_variant cell;
  EXPECT_EQ(second->GetValue(1, cell.put()), S_OK);
  EXPECT_EQ(cell.vt(), VT_EMPTY);
  EXPECT_EQ(second->GetValue(7, cell.put()), S_OK);  // not in the index map: element 0
  ASSERT_EQ(cell.vt(), VT_UNKNOWN);
  EXPECT_EQ(identity_of(cell->punkVal), identity_of(second.get()));
  const ScopedThrowingInvalidParameter guard;
  com_ptr<IMutableColumn> late;
  ASSERT_EQ(columns->AddColumn(_bstr_t(OLESTR("late")).GetBSTR(), 10, late.put()), S_OK);
  EXPECT_EQ(second->GetValue(2, cell.put()), E_UNEXPECTED) << "two columns, three elements";

  // Create again: the rows stay, later records take the new columns.
  const auto other = NewColumns();
  ASSERT_EQ(list->Create(other.get()), S_OK);
  EXPECT_EQ(SizeOf(list.get()), 2u);
  const auto third = Add(list.get());
  ASSERT_EQ(third->get_Columns(shared.put()), S_OK);
  EXPECT_EQ(shared, other);
}

struct AddCase {
  const char* name;
  bool firstStops;
  HRESULT firstResult;
  HRESULT expected;
  Transcript heard;
};
const AddCase kAddCases[] = {
    {"nobody stops", false, S_OK, S_OK,
     {"a.RecordBeforeAdd(record)", "b.RecordBeforeAdd(record)", "a.RecordAfterAdd(record)",
      "b.RecordAfterAdd(record)"}},
    {"first stops", true, S_OK, DISP_E_EXCEPTION, {"a.RecordBeforeAdd(record)"}},
    {"first fails", false, E_FAIL, E_FAIL, {"a.RecordBeforeAdd(record)"}},
};

TEST_F(RecordListTest, ARefusedRecordIsStillHandedOutButNotAdded) {
  for (const AddCase& c : kAddCases) {
    SCOPED_TRACE(c.name);
    transcript.clear();
    columns = NewColumns();
    list = NewList(columns.get());
    ListenToRecords("a")->stop = c.firstStops;
    listeners.back()->result = c.firstResult;
    ListenToRecords("b");

    com_ptr<IMutableRecord> record;
    const HRESULT hr = list->AddRecord(record.put());
    EXPECT_EQ(hr, c.expected);
    if (hr == DISP_E_EXCEPTION) {
      EXPECT_EQ(TakeErrorInfo().description, "Failed to add record.");
    }
    EXPECT_TRUE(record) << "the result is set before the events";
    EXPECT_EQ(SizeOf(list.get()), c.expected == S_OK ? 1u : 0u);
    EXPECT_EQ(transcript, c.heard);
    // Only the caller holds a refused record; its end empties the shared columns.
    record.reset();
    EXPECT_EQ(ColumnCount(columns.get()), c.expected == S_OK ? 2 : 0);
  }
}

TEST_F(RecordListTest, ClearEmptiesColumnsFirstAndDropsTheViewOnlyWithRows) {
  ListenToRecords("l");
  com_ptr<IRecordList> kept, again;
  ASSERT_EQ(list->get_RecordList(kept.put()), S_OK);
  EXPECT_EQ(list->Clear(), S_OK);
  EXPECT_EQ(ColumnCount(columns.get()), 0);
  ASSERT_EQ(list->get_RecordList(again.put()), S_OK);
  EXPECT_EQ(again, kept) << "no rows: the view stays";

  columns = NewColumns();
  ASSERT_EQ(list->Create(columns.get()), S_OK);
  const auto held = Add(list.get(), 1);
  Add(list.get(), 2);
  transcript.clear();
  EXPECT_EQ(list->Clear(), S_OK);
  EXPECT_EQ(SizeOf(list.get()), 0u);
  EXPECT_EQ(ColumnCount(columns.get()), 0);
  com_ptr<IMutableColumns> still;
  ASSERT_EQ(list->get_Columns(still.put()), S_OK);
  EXPECT_EQ(still, columns);
  ASSERT_EQ(list->get_RecordList(again.put()), S_OK);
  EXPECT_NE(again, kept);
  ULONG size = 0;
  EXPECT_EQ(kept->get_Size(&size), E_POINTER) << "the dropped view lost its list";
  EXPECT_TRUE(transcript.empty());
}

TEST_F(RecordListTest, TheViewShowsTheListAndPassesItsEventsOn) {
  com_ptr<IRecordList> view, again;
  ASSERT_EQ(list->get_RecordList(view.put()), S_OK);
  ASSERT_EQ(list->get_RecordList(again.put()), S_OK);
  EXPECT_EQ(view, again);
  auto* reader = Listener("view");
  ASSERT_EQ(view->AddRecordListChangeListener(reader), S_OK);
  ASSERT_EQ(view->AddRecordListValueChangeListener(reader), S_OK);
  const auto record = Add(list.get(), 4);

  ULONG size = 0;
  EXPECT_EQ(view->get_Size(&size), S_OK);
  EXPECT_EQ(size, 1u);
  com_ptr<IColumns> shown, expected;
  EXPECT_EQ(view->get_Columns(shown.put()), S_OK);
  EXPECT_EQ(columns->get_Columns(expected.put()), S_OK);
  EXPECT_EQ(shown, expected);
  EXPECT_EQ(transcript, (Transcript{"view.RecordBeforeAdd(record)", "view.RecordAfterAdd(record)",
                                    "view.ListValueBeforeChange(0)", "view.ListValueAfterChange(0)"}));
}

struct CompareCase {
  const char* name;
  std::vector<LONG> own, other;  // keys; -1 leaves the cell empty
  LONG expected;
};
const CompareCase kCompareCases[] = {
    {"equal rows", {1, 2}, {1, 2}, 0},
    {"more rows: the own count", {1, 2, 3, 4, 5}, {1, 2, 3}, 5},
    {"fewer rows: the own count", {1, 2, 3}, {1, 2, 3, 4, 5}, 3},
    {"no rows against three", {}, {1, 2, 3}, 0},
    {"a larger other key", {1, 2}, {1, 3}, 1},
    {"an empty own key", {1, -1}, {1, 3}, -1},
};

TEST(RecordListCompare, ColumnsThenRowCountThenRecords) {
  for (const CompareCase& c : kCompareCases) {
    SCOPED_TRACE(c.name);
    const auto ownColumns = NewColumns();
    const auto otherColumns = NewColumns();
    const auto own = NewList(ownColumns.get());
    const auto other = NewList(otherColumns.get());
    for (const LONG key : c.own) Add(own.get(), key);
    for (const LONG key : c.other) Add(other.get(), key);
    LONG result = 99;
    EXPECT_EQ(own->CompareTo(other.get(), &result), S_OK);
    EXPECT_EQ(result, c.expected);
  }
  // Unequal columns decide before anything else, asked from the other side.
  const auto own = NewList(NewColumns().get());
  const auto other = NewList(Schema({{OLESTR("key"), 10}}).get());
  Add(own.get(), 1);
  LONG result = 99;
  EXPECT_EQ(own->CompareTo(other.get(), &result), S_OK);
  EXPECT_EQ(result, -1);
  EXPECT_EQ(own->CompareTo(nullptr, &result), E_POINTER);
}

TEST_F(RecordListTest, RecordValueChangesReachTheValueListenersWhoseFailureRefusesThem) {
  auto* a = ListenToValues("a");
  ListenToValues("b");
  const auto record = Add(list.get(), -1);
  EXPECT_EQ(record->SetValueAsInt32(0, 1), S_OK);
  EXPECT_EQ(transcript, (Transcript{"a.ListValueBeforeChange(0)", "b.ListValueBeforeChange(0)",
                                    "a.ListValueAfterChange(0)", "b.ListValueAfterChange(0)"}));

  // The list's event is its own: stopping it refuses nothing and ends nothing.
  transcript.clear();
  a->stop = true;
  EXPECT_EQ(record->SetValueAsInt32(0, 2), S_OK);
  EXPECT_EQ(KeyOf(record.get()), 2);
  EXPECT_EQ(transcript.size(), 4u);

  // A failing listener fails the record's change, which then does not happen.
  transcript.clear();
  a->result = E_FAIL;
  EXPECT_EQ(record->SetValueAsInt32(0, 3), E_FAIL);
  EXPECT_EQ(KeyOf(record.get()), 2);
  EXPECT_EQ(transcript, (Transcript{"a.ListValueBeforeChange(0)"}));
}

TEST_F(RecordListTest, EventsSwitchedOffSumUpRecordsFirstThenValues) {
  ListenToRecords("l");
  ListenToValues("v");
  EXPECT_EQ(list->EnableMutableRecordListEvents(VARIANT_FALSE), S_OK);
  for (LONG key = 1; key <= 3; ++key) Add(list.get(), key);
  EXPECT_EQ(SizeOf(list.get()), 3u);
  EXPECT_TRUE(transcript.empty());
  EXPECT_EQ(list->EnableMutableRecordListEvents(VARIANT_TRUE), S_OK);
  EXPECT_EQ(list->EnableMutableRecordListEvents(VARIANT_TRUE), S_OK);
  EXPECT_EQ(transcript, (Transcript{"l.RecordAfterAdd(null)", "l.RecordAfterRemove(null)",
                                    "v.ListValueAfterChange(-1)"}));

  transcript.clear();
  EXPECT_EQ(list->EnableMutableRecordListEvents(VARIANT_FALSE), S_OK);
  EXPECT_EQ(list->EnableMutableRecordListEvents(VARIANT_TRUE), S_OK);
  EXPECT_TRUE(transcript.empty()) << "the summary cleared what was pending";
}

TEST_F(RecordListTest, RemovingAnUnknownListenerNamesTheRegistry) {
  auto* stranger = Listener("stranger");
  ExpectFailure(list->RemoveRecordListChangeListener(stranger), "Cannot remove recordlist change listener.");
  ExpectFailure(list->RemoveRecordListValueChangeListener(stranger),
                "Cannot remove recordList value change listener.");
  ListenToValues("v");
  EXPECT_EQ(list->RemoveRecordListValueChangeListener(listeners.back().get()), S_OK);
}

TEST(RecordListLifetime, ReleasingTheListReleasesItsRecordsAndViews) {
  const long start = ModuleLock::Count();
  com_ptr<IMutableRecord> survivor;
  {
    const auto list = NewList(NewColumns().get());
    for (LONG key = 1; key <= 3; ++key) survivor = Add(list.get(), key);
    com_ptr<IRecordList> view;
    ASSERT_EQ(list->get_RecordList(view.put()), S_OK);
    com_ptr<IRecordListIterator> it;
    ASSERT_EQ(list->GetIterator(VARIANT_FALSE, it.put()), S_OK);
  }
  // The survivor outlives the list, but the rows that died with it cleared
  // the column collection they share with it.
  com_ptr<IMutableColumns> shared;
  ASSERT_EQ(survivor->get_Columns(shared.put()), S_OK);
  EXPECT_EQ(ColumnCount(shared.get()), 0);
  shared.reset();
  survivor.reset();
  EXPECT_EQ(ModuleLock::Count(), start);
}

}  // namespace
}  // namespace brevo::testing
