// The mutable record and its read-only view: the index map, the equality short
// cut, veto, the bounds rules, names, comparison, clearing and the events switch.
#include <string>
#include <vector>

#include "events/scripted_listener.h"
#include "records/mutable_record.h"
#include "support/schema.h"

namespace brevo::testing {
namespace {

IMutableRecordRaw* RawOf(IMutableRecord* record) {
  return static_cast<IMutableRecordRaw*>(static_cast<MutableRecord*>(record));
}
unique_variant I4(LONG v) { return MakeValue(VT_I4, &VARIANT::lVal, v); }

// A record over the columns, holding the given values in order (-1 and the
// rest empty) after the spare element 0.
com_ptr<IMutableRecord> NewRecord(IMutableColumns* columns, const std::vector<LONG>& values = {}) {
  const com_ptr<IMutableRecord> record(make_object<MutableRecord>().get());
  RawOf(record.get())->Create(columns);
  std::vector<unique_variant> cells(1);
  for (const LONG v : values) cells.push_back(v < 0 ? unique_variant() : I4(v));
  cells.resize(RawColumnsOf(columns)->Size() + 1);
  RawOf(record.get())->AssignValues(cells);
  return record;
}

// "I4 5", "BSTR abc", "EMPTY": enough to tell the cells of these tests apart.
std::string Show(const unique_variant& v) {
  switch (v.vt()) {
    case VT_EMPTY: return "EMPTY";
    case VT_I4: return "I4 " + std::to_string(v->lVal);
    case VT_I8: return "I8 " + std::to_string(v->llVal);
    case VT_BSTR: return "BSTR " + Narrow(v->bstrVal);
    default: return "vt " + std::to_string(v.vt());
  }
}
std::string Cell(IMutableRecord* record, ULONG index) {
  unique_variant value;
  EXPECT_EQ(record->GetValue(index, value.put()), S_OK);
  return Show(value);
}

class MutableRecordTest : public ::testing::Test {
 protected:
  ~MutableRecordTest() override { ClearErrorInfo(); }

  template <class R>
  ScriptedListener* Listen(R* on, const char* name) {
    const auto listener = MakeScripted(transcript, name);
    EXPECT_EQ(on->AddRecordChangeListener(listener.get()), S_OK);
    return listener.get();
  }
  Transcript transcript;
  com_ptr<IMutableColumns> columns = Schema({{OLESTR("num"), 10}, {OLESTR("text"), 1}, {OLESTR("big"), 12}});
  com_ptr<IMutableRecord> record = NewRecord(columns.get());
};

TEST_F(MutableRecordTest, AssignedCellsAreTakenAsTheyAreAndReadByIndexOrNameThroughTheIndexMap) {
  Listen(record.get(), "r");
  std::vector<unique_variant> cells{MakeString(OLESTR("spare")), MakeString(OLESTR("b")), I4(10), {}};
  RawOf(record.get())->AssignValues(cells);
  EXPECT_TRUE(cells.empty());
  EXPECT_EQ(Cell(record.get(), 7), "BSTR spare") << "an index the map does not hold reads element 0";
  const auto map = columns.query<IMutableColumnsManager>();
  map->SetTrueIndexOfColumn(0, 1);
  map->SetTrueIndexOfColumn(1, 0);
  EXPECT_EQ(Cell(record.get(), 0), "I4 10");
  EXPECT_EQ(Cell(record.get(), 1), "BSTR b") << "text in an int column: no type check";
  // Column 0 now stores at position 1, whose column takes text; the event
  // carries the storage position.
  ExpectFailure(record->SetValue(0, I4(1).get()), "New value class type doesn't match the column type.");
  EXPECT_EQ(record->SetValue(0, MakeString(OLESTR("c")).get()), S_OK);
  EXPECT_EQ(transcript, (Transcript{"r.ValueBeforeChange(1)", "r.ValueAfterChange(1)"}));
  // By name: an exact match, then through the map. Unknown names read as
  // empty but cannot be written.
  for (const OLECHAR* name : {OLESTR("num"), OLESTR("Num"), static_cast<const OLECHAR*>(nullptr)}) {
    SCOPED_TRACE(Narrow(name));
    const bool known = name != nullptr && Narrow(name) == "num";
    unique_variant read;
    EXPECT_EQ(record->GetValueByName(_bstr_t(name).GetBSTR(), read.put()), S_OK);
    EXPECT_EQ(Show(read), known ? "BSTR c" : "EMPTY");
    const HRESULT hr = record->SetValueByName(_bstr_t(name).GetBSTR(), MakeString(OLESTR("new")).get());
    if (!known) ExpectFailure(hr, "Column name doesn't found.");
  }
  EXPECT_EQ(Cell(record.get(), 0), "BSTR new");
}

TEST_F(MutableRecordTest, OnlyAnUnequalValueIsAnnouncedAndABeforeListenerMayVetoIt) {
  auto* a = Listen(record.get(), "a");
  Listen(record.get(), "b");
  EXPECT_EQ(record->SetValueAsInt32(0, 0), S_OK);  // empty differs from 0
  EXPECT_EQ(record->SetValueAsInt32(0, 0), S_OK);
  // INT fits an int column, differs in kind from I4 and keeps its kind.
  EXPECT_EQ(record->SetValue(0, MakeValue(VT_INT, &VARIANT::intVal, INT{0}).get()), S_OK);
  a->stop = true;
  ExpectFailure(record->SetValueAsInt32(0, 2), "Failed to change value.");
  a->stop = false;
  EXPECT_EQ(Cell(record.get(), 0), "vt 22");
  EXPECT_EQ(transcript, (Transcript{"a.ValueBeforeChange(0)", "b.ValueBeforeChange(0)", "a.ValueAfterChange(0)",
                                    "b.ValueAfterChange(0)", "a.ValueBeforeChange(0)", "b.ValueBeforeChange(0)",
                                    "a.ValueAfterChange(0)", "b.ValueAfterChange(0)", "a.ValueBeforeChange(0)"}));
  // 64-bit values cannot be compared: only a first write into an empty cell succeeds.
  transcript.clear();
  EXPECT_EQ(record->SetValue(2, MakeValue(VT_I8, &VARIANT::llVal, LONGLONG{1}).get()), S_OK);
  EXPECT_EQ(record->SetValue(2, MakeValue(VT_I8, &VARIANT::llVal, LONGLONG{2}).get()), E_INVALIDARG);
  EXPECT_EQ(Cell(record.get(), 2), "I8 1");
  EXPECT_EQ(transcript.size(), 4u);
}

TEST_F(MutableRecordTest, OutOfRangeReadsNameTheIndexAndStoragePositionsBeyondTheValuesAreRefusedOrAbort) {
  const com_ptr<IMutableRecord> bare(make_object<MutableRecord>().get());  // no index map to ask
  unique_variant value;
  ExpectFailure(bare->GetValue(0xFFFFFFFF, value.put()), "Cannot acsses the spasfic value in position : 4294967295");
  LONG number = 0;
  ExpectFailure(bare->GetValueAsInt32(3, &number), "Cannot acsses the spasfic value in position : 3");

  const ScopedThrowingInvalidParameter guard;
  // A Before listener shrinks the values to `keep` elements; column 1 is element 2. Equal
  // to the size, the container's own check aborts, which the guard makes E_UNEXPECTED.
  for (const std::size_t keep : {1, 2}) {
    SCOPED_TRACE(keep);
    const auto fresh = Schema({{OLESTR("num"), 10}, {OLESTR("text"), 1}});
    const auto shrinking = NewRecord(fresh.get());
    IMutableRecord* target = shrinking.get();
    Listen(target, "shrink")->during = [target, keep] {
      std::vector<unique_variant> cells(keep);
      RawOf(target)->AssignValues(cells);
    };
    EXPECT_EQ(target->SetValue(1, MakeString(OLESTR("x")).get()), keep == 1 ? DISP_E_EXCEPTION : E_UNEXPECTED);
    EXPECT_EQ(TakeErrorInfo().description, keep == 1 ? "The index is bigger then the size of the array." : "");
  }
}

TEST(MutableRecordCompare, TheFirstUnequalCellDecidesByEmptinessOnlyThenTheOtherColumnCount) {
  const struct { std::vector<LONG> own, other; LONG expected; } cases[] = {  // -1 leaves a cell empty
      {{5, 1}, {7, 1}, 1}, {{-1, 1}, {5, 1}, -1}, {{1, 2, 3}, {1, 2}, -1}, {{1, 2}, {1, 2, 3}, 1}};
  // Columns of their own: the end of a record clears its columns.
  const auto schema = [](std::size_t count) {
    return count == 2 ? Schema({{OLESTR("a"), 10}, {OLESTR("b"), 10}})
                      : Schema({{OLESTR("a"), 10}, {OLESTR("b"), 10}, {OLESTR("c"), 10}});
  };
  for (const auto& c : cases) {
    const auto ownColumns = schema(c.own.size()), otherColumns = schema(c.other.size());
    LONG result = 99;
    EXPECT_EQ(NewRecord(ownColumns.get(), c.own)->CompareTo(NewRecord(otherColumns.get(), c.other).get(), &result), S_OK);
    EXPECT_EQ(result, c.expected) << c.own.size() << " columns against " << c.other.size();
  }
  LONG result = 0;
  EXPECT_EQ(NewRecord(Schema().get())->CompareTo(nullptr, &result), E_POINTER);
}

TEST_F(MutableRecordTest, TheReadOnlyViewReadsThroughHearsTheRecordAndOutlivesItsClear) {
  com_ptr<IRecord> view;
  ASSERT_EQ(record->get_Record(view.put()), S_OK);
  EXPECT_FALSE(view.try_query<IMutableRecord>());
  ASSERT_EQ(record->SetValue(1, MakeString(OLESTR("seen")).get()), S_OK);
  unique_variant byName;
  EXPECT_EQ(view->GetValueByName(_bstr_t(OLESTR("text")).GetBSTR(), byName.put()), S_OK);
  EXPECT_EQ(Show(byName), "BSTR seen");
  com_ptr<IColumns> viewColumns;
  EXPECT_EQ(view->get_Columns(viewColumns.put()), S_OK);
  EXPECT_EQ(RawColumnsOf(viewColumns.get()), RawColumnsOf(columns.get()));
  LONG result = 99;
  EXPECT_EQ(view->CompareTo(record.get(), &result), S_OK);
  EXPECT_EQ(result, 0);

  // The record's events reach the view's listeners, whose veto counts. Either
  // side's events off, the record still changes and one summary follows.
  auto* reader = Listen(view.get(), "view");
  EXPECT_EQ(record->SetValueAsInt32(0, 1), S_OK);
  reader->stop = true;
  ExpectFailure(record->SetValueAsInt32(0, 2), "Failed to change value.");
  EXPECT_EQ(record->EnableMutableRecordEvents(VARIANT_FALSE), S_OK);
  EXPECT_EQ(record->SetValueAsInt32(0, 3), S_OK);
  EXPECT_EQ(record->EnableMutableRecordEvents(VARIANT_TRUE), S_OK);
  EXPECT_EQ(view->EnableRecordEvents(VARIANT_FALSE), S_OK);
  EXPECT_EQ(record->SetValueAsInt32(0, 5), S_OK);
  EXPECT_EQ(view->EnableRecordEvents(VARIANT_TRUE), S_OK);
  EXPECT_EQ(Cell(record.get(), 0), "I4 5");
  EXPECT_EQ(transcript, (Transcript{"view.ValueBeforeChange(0)", "view.ValueAfterChange(0)",
                                    "view.ValueBeforeChange(0)", "view.ValueAfterChange(-1)",
                                    "view.ValueAfterChange(-1)"}));

  // Clear empties the values and the shared columns, silently.
  transcript.clear();
  EXPECT_EQ(record->Clear(), S_OK);
  EXPECT_EQ(RawColumnsOf(columns.get())->Size(), 0u);
  EXPECT_TRUE(transcript.empty());
  {
    const ScopedThrowingInvalidParameter guard;
    unique_variant value;
    EXPECT_EQ(record->GetValue(7, value.put()), E_UNEXPECTED) << "not even the spare element is left";
  }
  // A view that outlives its record answers E_POINTER.
  record.reset();
  LONG number = 0;
  EXPECT_EQ(view->GetValueAsInt32(0, &number), E_POINTER);
}

}  // namespace
}  // namespace brevo::testing
