// The mutable record list: making records, clearing, its view, the comparison,
// record value changes passed on to its listeners, and its event summaries.
#include "core/module_lock.h"
#include "events/scripted_listener.h"
#include "factory/records_factory.h"
#include "grouping/group_mutable_columns.h"
#include "grouping/group_record.h"
#include "row_fixture.h"
#include "support/recording_listener.h"

namespace brevo::testing {
namespace {

class RecordListTest : public ::testing::Test {
 protected:
  ~RecordListTest() override { ClearErrorInfo(); }
  // A listener of both list kinds on the list or view `on`.
  template <class On>
  CComObject<RecordingListener>* Listener(const std::string& name, On* on) {
    listeners.push_back(MakeRecorder(name, transcript));
    EXPECT_EQ(on->AddRecordListChangeListener(listeners.back().get()), S_OK);
    EXPECT_EQ(on->AddRecordListValueChangeListener(listeners.back().get()), S_OK);
    return listeners.back().get();
  }
  // The list's row count and its columns' count.
  using Counts = std::pair<ULONG, LONG>;
  Counts Sizes() {
    Counts sizes{99, -1};
    EXPECT_EQ(list->get_Size(&sizes.first), S_OK);
    EXPECT_EQ(columns->get_Size(&sizes.second), S_OK);
    return sizes;
  }

  Transcript transcript;
  std::vector<com_ptr<CComObject<RecordingListener>>> listeners;
  com_ptr<IMutableColumns> columns = NewColumns();
  com_ptr<IMutableRecordList> list = ListOf({}, columns);
};

// AddRecord hands out the record it made before listeners may refuse it.
TEST_F(RecordListTest, AddRecordNeedsColumnsAndHandsOutARefusedRecordWithoutAddingIt) {
  const com_ptr<IMutableRecordList> bare(make_object<MutableRecordList>().get());
  com_ptr<IMutableRecord> record;
  EXPECT_EQ(bare->AddRecord(record.put()), E_POINTER);
  ASSERT_EQ(bare->Create(Schema().get()), S_OK);
  ExpectFailure(bare->AddRecord(record.put()), "Cannot add record becasue is columns are empty.");
  EXPECT_FALSE(record);
  const struct { bool firstStops; HRESULT firstResult, expected; const char* error; Transcript heard; } cases[] = {
      {false, S_OK, S_OK, "", {"a.RecordBeforeAdd(record)", "b.RecordBeforeAdd(record)", "a.RecordAfterAdd(record)",
                               "b.RecordAfterAdd(record)"}},
      {true, S_OK, DISP_E_EXCEPTION, "Failed to add record.", {"a.RecordBeforeAdd(record)"}},
      {false, E_FAIL, E_FAIL, "Unknown Error", {"a.RecordBeforeAdd(record)"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.error);
    transcript.clear();
    list = ListOf({}, columns = NewColumns());
    Listener("a", list.get())->stop = c.firstStops;
    listeners.back()->result = c.firstResult;
    Listener("b", list.get());
    EXPECT_EQ(list->AddRecord(record.put()), c.expected);
    EXPECT_EQ(TakeErrorInfo().description, c.error);
    EXPECT_EQ(transcript, c.heard);
    // A row is the record in element 0, then one empty cell per column.
    unique_variant cell;
    EXPECT_EQ(record->GetValue(1, cell.put()), S_OK);
    EXPECT_EQ(cell.vt(), VT_EMPTY);
    EXPECT_EQ(record->GetValue(7, cell.put()), S_OK);  // not in the index map: element 0
    ASSERT_EQ(cell.vt(), VT_UNKNOWN);
    EXPECT_EQ(identity_of(cell->punkVal), identity_of(record.get()));
    // Only the caller holds a refused record; its end empties the shared columns.
    cell.reset();
    record.reset();
    EXPECT_EQ(Sizes(), c.expected == S_OK ? Counts(1, 2) : Counts(0, 0));
  }
}

TEST_F(RecordListTest, ClearEmptiesTheColumnsAndDropsTheViewOnlyWithRows) {
  list = ListOf({1, 2}, columns);
  Listener("l", list.get());
  com_ptr<IRecordList> kept, again;
  ASSERT_EQ(list->get_RecordList(kept.put()), S_OK);
  EXPECT_EQ(list->Clear(), S_OK);
  EXPECT_EQ(Sizes(), Counts(0, 0));
  ASSERT_EQ(list->get_RecordList(again.put()), S_OK);
  EXPECT_NE(again, kept);
  EXPECT_TRUE(transcript.empty());
  EXPECT_EQ(list->Clear(), S_OK);
  ASSERT_EQ(list->get_RecordList(kept.put()), S_OK);
  EXPECT_EQ(again, kept) << "no rows: the view stays";
}

// Every view the list handed out presents it while both live, with its own
// listeners and switch; the list holds only its current view, so a dropped one
// dies with its last client reference and stops hearing the list.
TEST_F(RecordListTest, ADroppedViewPresentsItsListWhileBothLive) {
  list = ListOf({1, 2}, columns);
  com_ptr<IRecordList> dropped, current;
  ASSERT_EQ(list->get_RecordList(dropped.put()), S_OK);
  Listener("dropped", dropped.get());
  EXPECT_EQ(list->Clear(), S_OK);
  ASSERT_EQ(list->get_RecordList(current.put()), S_OK);
  com_ptr<IMutableColumn> added;
  ASSERT_EQ(columns->AddColumn(_bstr_t(OLESTR("key")).GetBSTR(), 10, added.put()), S_OK);
  com_ptr<IMutableRecord> record;
  ASSERT_EQ(list->AddRecord(record.put()), S_OK);
  EXPECT_EQ(transcript, (Transcript{"dropped.RecordBeforeAdd(record)", "dropped.RecordAfterAdd(record)"}));

  ULONG size = 0;
  EXPECT_EQ(dropped->get_Size(&size), S_OK);
  EXPECT_EQ(size, 1u);
  com_ptr<IColumns> shown;
  LONG count = 0;
  ASSERT_EQ(dropped->get_Columns(shown.put()), S_OK);
  EXPECT_EQ(shown->get_Size(&count), S_OK);
  EXPECT_EQ(count, 1);
  com_ptr<IRecordListIterator> it;
  ASSERT_EQ(dropped->GetIterator(VARIANT_TRUE, it.put()), S_OK);
  com_ptr<IDispatch> first;
  EXPECT_EQ(it->Next(first.put()), S_OK);
  EXPECT_TRUE(first.try_query<IRecord>()) << "a read-only record";
  LONG result = 99;
  EXPECT_EQ(dropped->CompareTo(current.get(), &result), S_OK);
  EXPECT_EQ(result, 0);
  transcript.clear();
  EXPECT_EQ(dropped->EnableRecordListEvents(VARIANT_FALSE), S_OK);
  EXPECT_EQ(list->AddRecord(record.put()), S_OK);
  EXPECT_EQ(dropped->EnableRecordListEvents(VARIANT_TRUE), S_OK);
  EXPECT_EQ(transcript, (Transcript{"dropped.RecordAfterAdd(null)", "dropped.RecordAfterRemove(null)"}));

  const long before = ModuleLock::Count();
  dropped.reset();
  EXPECT_EQ(ModuleLock::Count(), before - 3) << "the view and its two relays";
  EXPECT_EQ(list->AddRecord(record.put()), S_OK);
  EXPECT_EQ(transcript.size(), 2u);

  // Once the list is gone, every view it made answers E_POINTER.
  ASSERT_EQ(list->get_RecordList(dropped.put()), S_OK);
  EXPECT_EQ(list->Clear(), S_OK);
  record.reset();
  it.reset();  // a synchronized iterator keeps its list alive
  list.reset();
  for (IRecordList* view : {dropped.get(), current.get()}) EXPECT_EQ(view->get_Size(&size), E_POINTER);
}

// The first n cells of a record, as "I4 5" or "EMPTY".
Transcript Cells(IMutableRecord* record, ULONG n) {
  Transcript cells;
  for (ULONG i = 0; i < n; ++i) {
    unique_variant value;
    EXPECT_EQ(record->GetValue(i, value.put()), S_OK);
    cells.push_back(value.vt() == VT_EMPTY ? "EMPTY" : value.vt() == VT_I4 ? "I4 " + std::to_string(value->lVal) : "?");
  }
  return cells;
}

// A column added to a table with rows reads as empty in every record over the
// collection (list rows, factory records, grouped records reading through
// them) and takes writes with the usual events; existing cells keep their
// values, even where the index map points a new column at an old cell.
TEST(RecordListGrowth, AColumnAddedToAFilledTableReadsEmptyAndTakesWrites) {
  const auto columns = Schema({{OLESTR("a"), 10}, {OLESTR("b"), 10}});
  const auto list = ListOf({}, columns);
  com_ptr<IMutableRecord> row, other, made;
  ASSERT_EQ(list->AddRecord(row.put()), S_OK);
  ASSERT_EQ(list->AddRecord(other.put()), S_OK);
  const com_ptr<IRecordsFactory> factory(make_object<RecordsFactory>().get());
  ASSERT_EQ(factory->CreateMutableRecordFromColumns(columns.get(), made.put()), S_OK);
  for (IMutableRecord* record : {row.get(), other.get(), made.get()}) {
    EXPECT_EQ(record->SetValueAsInt32(0, 1), S_OK);
    EXPECT_EQ(record->SetValueAsInt32(1, 2), S_OK);
  }
  Transcript heard;
  const auto listener = MakeRecorder("row", heard);
  ASSERT_EQ(row->AddRecordChangeListener(listener.get()), S_OK);

  // Removing b then adding c points c at b's old cell; d gets a new one.
  ASSERT_EQ(columns->RemoveColumn(1), S_OK);
  com_ptr<IMutableColumn> added;
  for (const OLECHAR* name : {OLESTR("c"), OLESTR("d")}) {
    ASSERT_EQ(columns->AddColumn(_bstr_t(name).GetBSTR(), 10, added.put()), S_OK);
  }
  for (IMutableRecord* record : {row.get(), other.get(), made.get()}) {
    EXPECT_EQ(Cells(record, 3), (Transcript{"I4 1", "I4 2", "EMPTY"}));
    EXPECT_EQ(record->SetValueAsInt32(2, 9), S_OK);
    EXPECT_EQ(Cells(record, 3), (Transcript{"I4 1", "I4 2", "I4 9"}));
  }
  EXPECT_EQ(heard, (Transcript{"row.ValueBeforeChange(2)", "row.ValueAfterChange(2)"}));
  // Grouped columns refuse the source's schema changes, so the view comes after them.
  auto groupedColumns = make_object<GroupMutableColumns>();
  groupedColumns->GroupMutableColumnsImpl::Create(columns.get(), _bstr_t(OLESTR("")));
  auto grouped = make_object<GroupMutableRecord>();
  grouped->GroupMutableRecordImpl::Create(row.get(), groupedColumns.get(), _bstr_t(OLESTR("")));
  EXPECT_EQ(Cells(grouped.get(), 3), (Transcript{"I4 1", "I4 2", "I4 9"})) << "read through the row";
  EXPECT_EQ(grouped->SetValueAsInt32(2, 4), S_OK);
  EXPECT_EQ(Cells(row.get(), 3), (Transcript{"I4 1", "I4 2", "I4 4"}));
}

// A record emptied by Clear gets no cells back, whenever it was emptied:
// before the call, reading the current value aborts; by a Before listener,
// the write is refused.
TEST(RecordListGrowth, AClearedRecordStaysEmpty) {
  const ScopedThrowingInvalidParameter guard;
  for (const bool duringTheCall : {false, true}) {
    SCOPED_TRACE(duringTheCall);
    const auto columns = Schema({{OLESTR("a"), 10}});
    const auto list = ListOf({}, columns);
    com_ptr<IMutableRecord> record;
    ASSERT_EQ(list->AddRecord(record.put()), S_OK);
    com_ptr<IMutableColumn> added;
    Transcript heard;
    const auto clearing = MakeScripted(heard, "clear");
    IMutableRecord* target = record.get();
    if (duringTheCall) {
      ASSERT_EQ(columns->AddColumn(_bstr_t(OLESTR("x")).GetBSTR(), 10, added.put()), S_OK);
      clearing->during = [target] { target->Clear(); };
      ASSERT_EQ(record->AddRecordChangeListener(clearing.get()), S_OK);
      ExpectFailure(record->SetValueAsInt32(1, 1), "The index is bigger then the size of the array.");
    } else {
      ASSERT_EQ(record->Clear(), S_OK);
      ASSERT_EQ(columns->AddColumn(_bstr_t(OLESTR("x")).GetBSTR(), 10, added.put()), S_OK);
      EXPECT_EQ(record->SetValueAsInt32(0, 1), E_UNEXPECTED);
      LONG value = 0;
      EXPECT_EQ(record->GetValueAsInt32(0, &value), E_UNEXPECTED);
    }
  }
}

TEST(RecordListCompare, ColumnsThenRowCountThenRecords) {
  // Unequal row counts give the own count, not a sign; equal ones compare the records.
  const struct { std::vector<LONG> own, other; LONG expected; } cases[] = {
      {{1, 2}, {1, 2}, 0}, {{1, 2, 3}, {1, 2, 3, 4, 5}, 3}, {{}, {1, 2, 3}, 0}, {{1, 2}, {1, 3}, 1}};
  LONG result = 99;
  for (const auto& c : cases) {
    EXPECT_EQ(ListOf(c.own)->CompareTo(ListOf(c.other).get(), &result), S_OK);
    EXPECT_EQ(result, c.expected) << c.own.size() << " rows against " << c.other.size();
  }
  // Unequal columns decide before anything else, asked from the other side.
  EXPECT_EQ(ListOf({1})->CompareTo(ListOf({}, Schema({{OLESTR("key"), 10}})).get(), &result), S_OK);
  EXPECT_EQ(result, -1);
  EXPECT_EQ(ListOf({})->CompareTo(nullptr, &result), E_POINTER);
}

TEST_F(RecordListTest, RecordValueChangesReachTheValueListenersAlsoThroughTheView) {
  auto* a = Listener("a", list.get());
  com_ptr<IRecordList> view;
  ASSERT_EQ(list->get_RecordList(view.put()), S_OK);
  Listener("view", view.get());
  com_ptr<IMutableRecord> record;
  ASSERT_EQ(list->AddRecord(record.put()), S_OK);
  EXPECT_EQ(record->SetValueAsInt32(0, 1), S_OK);
  EXPECT_EQ(transcript, (Transcript{"a.RecordBeforeAdd(record)", "view.RecordBeforeAdd(record)",
                                    "a.RecordAfterAdd(record)", "view.RecordAfterAdd(record)",
                                    "a.ListValueBeforeChange(0)", "view.ListValueBeforeChange(0)",
                                    "a.ListValueAfterChange(0)", "view.ListValueAfterChange(0)"}));
  // The list's event is its own: stopping it refuses nothing and ends nothing.
  transcript.clear();
  a->stop = true;
  EXPECT_EQ(record->SetValueAsInt32(0, 2), S_OK);
  EXPECT_EQ(transcript.size(), 4u);
  // A failing listener fails the record's change, which then does not happen.
  transcript.clear();
  a->result = E_FAIL;
  EXPECT_EQ(record->SetValueAsInt32(0, 3), E_FAIL);
  EXPECT_EQ(KeyOf(record.get()), 2);
  EXPECT_EQ(transcript, (Transcript{"a.ListValueBeforeChange(0)"}));
  // Each registry names itself when asked to remove a stranger (the list's
  // change registry in the script tests).
  const auto stranger = MakeRecorder("stranger", transcript);
  ExpectFailure(list->RemoveRecordListValueChangeListener(stranger.get()),
                "Cannot remove recordList value change listener.");
  ExpectFailure(view->RemoveRecordListChangeListener(stranger.get()), "Cannot remove recordlist change listener.");
  ExpectFailure(view->RemoveRecordListValueChangeListener(stranger.get()),
                "Cannot remove record value change listener.");
}

TEST_F(RecordListTest, EventsSwitchedOffSumUpRecordsFirstThenValues) {
  Listener("l", list.get());
  EXPECT_EQ(list->EnableMutableRecordListEvents(VARIANT_FALSE), S_OK);
  com_ptr<IMutableRecord> record;
  for (LONG key = 1; key <= 3; ++key) {
    EXPECT_TRUE(list->AddRecord(record.put()) == S_OK && record->SetValueAsInt32(0, key) == S_OK) << key;
  }
  EXPECT_EQ(Sizes().first, 3u);
  EXPECT_TRUE(transcript.empty());
  EXPECT_EQ(list->EnableMutableRecordListEvents(VARIANT_TRUE), S_OK);
  EXPECT_EQ(transcript,
            (Transcript{"l.RecordAfterAdd(null)", "l.RecordAfterRemove(null)", "l.ListValueAfterChange(-1)"}));
}

}  // namespace
}  // namespace brevo::testing
