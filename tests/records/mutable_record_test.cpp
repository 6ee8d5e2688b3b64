// The mutable record and its read-only view: index translation, the fit test,
// the equality short cut, value events with veto, the bounds rules, access by
// name, comparison, clearing (also of the shared columns) and the events switch.
#include <algorithm>
#include <string>
#include <vector>

#include "columns/mutable_columns.h"
#include "events/scripted_listener.h"
#include "records/mutable_record.h"
#include "support/schema.h"

namespace brevo::testing {
namespace {

IMutableRecordRaw* RawOf(IMutableRecord* record) {
  return static_cast<IMutableRecordRaw*>(static_cast<MutableRecord*>(record));
}

// A record over columns with the given cells; without cells, as the list makes
// one: element 0 the record itself, then one empty cell per column.
com_ptr<IMutableRecord> NewRecord(IMutableColumns* columns, std::vector<unique_variant> cells = {}) {
  const com_ptr<IMutableRecord> record(make_object<MutableRecord>().get());
  RawOf(record.get())->Create(columns);
  if (cells.empty()) {
    LONG size = 0;
    columns->get_Size(&size);
    cells.resize(static_cast<std::size_t>(size) + 1);
    VARIANT self;
    VariantInit(&self);
    self.vt = VT_UNKNOWN;
    self.punkVal = record.get();
    cells[0] = unique_variant(self);  // a counted copy, as the list hands it over
  }
  RawOf(record.get())->AssignValues(cells);
  return record;
}

unique_variant I4(LONG v) { return MakeValue(VT_I4, &VARIANT::lVal, v); }
unique_variant I8(LONGLONG v) { return MakeValue(VT_I8, &VARIANT::llVal, v); }

template <class R>
unique_variant Get(R* record, ULONG index) {
  unique_variant value;
  EXPECT_EQ(record->GetValue(index, value.put()), S_OK);
  return value;
}
HRESULT Set(IMutableRecord* record, ULONG index, const unique_variant& value) {
  return record->SetValue(index, value.get());
}
// "I4 5", "BSTR abc", "EMPTY"; enough to tell the cells of these tests apart.
std::string Show(const unique_variant& v) {
  switch (v.vt()) {
    case VT_EMPTY: return "EMPTY";
    case VT_I4: return "I4 " + std::to_string(v->lVal);
    case VT_I8: return "I8 " + std::to_string(v->llVal);
    case VT_BSTR: return "BSTR " + Narrow(v->bstrVal);
    default: return "vt " + std::to_string(v.vt());
  }
}
template <class R>
std::string Cell(R* record, ULONG index) {
  return Show(Get(record, index));
}
LONG SizeOf(IMutableColumns* columns) {
  LONG size = -1;
  EXPECT_EQ(columns->get_Size(&size), S_OK);
  return size;
}
class MutableRecordTest : public ::testing::Test {
 protected:
  ~MutableRecordTest() override { ClearErrorInfo(); }

  CComObject<ScriptedListener>* Listen(IMutableRecord* on, const char* name) {
    listeners.push_back(MakeScripted(transcript, name));
    EXPECT_EQ(on->AddRecordChangeListener(listeners.back().get()), S_OK);
    return listeners.back().get();
  }
  // A new record over new columns: releasing the old record clears its columns.
  void Remake(std::vector<unique_variant> cells = {}) {
    columns = Schema({{OLESTR("num"), 10}, {OLESTR("text"), 1}});
    record = NewRecord(columns.get(), std::move(cells));
  }

  Transcript transcript;
  std::vector<com_ptr<CComObject<ScriptedListener>>> listeners;
  com_ptr<IMutableColumns> columns = Schema({{OLESTR("num"), 10}, {OLESTR("text"), 1}});
  com_ptr<IMutableRecord> record = NewRecord(columns.get());
};

struct Kind {
  const char* name;
  unique_variant (*make)();
};
const Kind kKinds[] = {
    {"BSTR", [] { return MakeString(OLESTR("x")); }},
    {"BOOL", [] { return MakeValue(VT_BOOL, &VARIANT::boolVal, VARIANT_TRUE); }},
    {"I2", [] { return MakeValue(VT_I2, &VARIANT::iVal, SHORT{2}); }},
    {"R4", [] { return MakeValue(VT_R4, &VARIANT::fltVal, 1.5f); }},
    {"R8", [] { return MakeValue(VT_R8, &VARIANT::dblVal, 2.5); }},
    {"UNKNOWN", [] { return MakeValue(VT_UNKNOWN, &VARIANT::punkVal, static_cast<IUnknown*>(nullptr)); }},
    {"DISPATCH", [] { return MakeValue(VT_DISPATCH, &VARIANT::pdispVal, static_cast<IDispatch*>(nullptr)); }},
    {"I4", [] { return I4(4); }},
    {"INT", [] { return MakeValue(VT_INT, &VARIANT::intVal, INT{5}); }},
    {"I8", [] { return I8(8); }},
    {"UI1", [] { return MakeValue(VT_UI1, &VARIANT::bVal, BYTE{1}); }},
    {"I1", [] { return MakeValue(VT_I1, &VARIANT::cVal, CHAR{1}); }},
    {"UI2", [] { return MakeValue(VT_UI2, &VARIANT::uiVal, USHORT{2}); }},
    {"DATE", [] { return MakeValue(VT_DATE, &VARIANT::date, DATE{3.0}); }},
    {"EMPTY", [] { return MakeValue(VT_EMPTY); }},
    {"NULL", [] { return MakeValue(VT_NULL); }},
};

struct FitRow {
  ULONG type;
  std::vector<std::string> accepts;
};
const FitRow kFits[] = {
    {0, {}},           {1, {"BSTR"}},  {2, {"BOOL", "I2"}},      {3, {"R4"}},           {4, {"R8"}},
    {5, {"UNKNOWN", "DISPATCH"}},      {6, {}},                  {7, {}},               {8, {"BSTR"}},
    {9, {"BSTR"}},     {10, {"I4", "INT"}},                      {11, {"I2"}},          {12, {"I8"}},
    {13, {"UI1", "I1"}},               {14, {"UI2"}},            {15, {"UI1", "I1"}},   {16, {"DATE"}},
    {17, {"DATE"}},    {18, {"DATE"}}, {19, {"DATE"}},           {20, {"DATE"}},        {21, {}},
    {22, {}},          {23, {"UNKNOWN", "DISPATCH"}},            {24, {"UNKNOWN", "DISPATCH"}},
    {25, {}},          {0xFFFFFFFF, {}},
};

TEST_F(MutableRecordTest, EachColumnTypeAcceptsItsKindsOnlyAndKeepsTheStoredKind) {
  columns = Schema({});
  for (const FitRow& row : kFits) {
    com_ptr<IMutableColumn> added;
    ASSERT_EQ(columns->AddColumn(_bstr_t(std::to_string(row.type).c_str()).GetBSTR(), row.type, added.put()), S_OK);
  }
  record = NewRecord(columns.get());
  for (ULONG i = 0; i < std::size(kFits); ++i) {
    for (const Kind& kind : kKinds) {
      SCOPED_TRACE("type " + std::to_string(kFits[i].type) + ", " + kind.name);
      const VARTYPE before = Get(record.get(), i).vt();
      const unique_variant value = kind.make();
      const bool fits = std::ranges::count(kFits[i].accepts, kind.name) != 0;
      if (fits) {
        EXPECT_EQ(Set(record.get(), i, value), S_OK);
        EXPECT_EQ(Get(record.get(), i).vt(), value.vt());  // VT_INT is not relabelled
      } else {
        ExpectFailure(Set(record.get(), i, value), "New value class type doesn't match the column type.");
        EXPECT_EQ(Get(record.get(), i).vt(), before);
      }
    }
  }
}

TEST_F(MutableRecordTest, IndicesGoThroughTheIndexMapToStoragePositions) {
  std::vector<unique_variant> cells;
  cells.push_back(MakeString(OLESTR("spare")));
  cells.push_back(I4(10));
  cells.push_back(MakeString(OLESTR("b")));
  Remake(std::move(cells));
  const auto map = columns.query<IMutableColumnsManager>();
  map->SetTrueIndexOfColumn(0, 1);
  map->SetTrueIndexOfColumn(1, 0);

  EXPECT_EQ(Cell(record.get(), 0), "BSTR b");
  EXPECT_EQ(Cell(record.get(), 1), "I4 10");
  // An index the map does not hold reads the spare element 0.
  EXPECT_EQ(Cell(record.get(), 7), "BSTR spare");

  // Column 0 now stores at position 1, whose column holds text; the event
  // carries the storage position.
  Listen(record.get(), "r");
  ExpectFailure(Set(record.get(), 0, I4(1)), "New value class type doesn't match the column type.");
  EXPECT_EQ(Set(record.get(), 0, MakeString(OLESTR("c"))), S_OK);
  EXPECT_EQ(Cell(record.get(), 0), "BSTR c");
  EXPECT_EQ(transcript, (Transcript{"r.ValueBeforeChange(1)", "r.ValueAfterChange(1)"}));
  // Writing through an index outside the map asks the collection for the
  // column at position -1.
  ExpectFailure(Set(record.get(), 7, MakeString(OLESTR("d"))), "There is no such index : 4294967295");
}

TEST_F(MutableRecordTest, ElementZeroOfAListMadeRecordIsTheRecordItself) {
  const unique_variant self = Get(record.get(), 7);
  ASSERT_EQ(self.vt(), VT_UNKNOWN);
  EXPECT_EQ(identity_of(self->punkVal), identity_of(record.get()));
}

TEST(MutableRecordReads, FailuresWhileReadingNameTheIndexInUnsignedDecimal) {
  // Never created: there is no index map to ask.
  const com_ptr<IMutableRecord> bare(make_object<MutableRecord>().get());
  unique_variant value;
  ExpectFailure(bare->GetValue(5, value.put()), "Cannot acsses the spasfic value in position : 5");
  ExpectFailure(bare->GetValue(0xFFFFFFFF, value.put()), "Cannot acsses the spasfic value in position : 4294967295");
  LONG number = 0;
  ExpectFailure(bare->GetValueAsInt32(3, &number), "Cannot acsses the spasfic value in position : 3");
}

TEST_F(MutableRecordTest, AnEqualValueIsNeitherStoredNorAnnounced) {
  Listen(record.get(), "r");
  ASSERT_EQ(Set(record.get(), 1, MakeString(OLESTR("same"))), S_OK);
  transcript.clear();
  EXPECT_EQ(Set(record.get(), 1, MakeString(OLESTR("same"))), S_OK);  // another string, same text
  EXPECT_EQ(record->SetValueAsInt32(0, 0), S_OK);                      // empty differs from 0
  EXPECT_EQ(record->SetValueAsInt32(0, 0), S_OK);
  EXPECT_EQ(transcript, (Transcript{"r.ValueBeforeChange(0)", "r.ValueAfterChange(0)"}));
}

TEST_F(MutableRecordTest, A64BitCellCannotBeComparedSoOnlyItsFirstWriteSucceeds) {
  columns = Schema({{OLESTR("big"), 12}});
  record = NewRecord(columns.get());
  Listen(record.get(), "r");
  EXPECT_EQ(Set(record.get(), 0, I8(1)), S_OK);
  EXPECT_EQ(Set(record.get(), 0, I8(2)), E_INVALIDARG);
  EXPECT_EQ(Set(record.get(), 0, I8(1)), E_INVALIDARG);
  EXPECT_EQ(Cell(record.get(), 0), "I8 1");
  EXPECT_EQ(transcript, (Transcript{"r.ValueBeforeChange(0)", "r.ValueAfterChange(0)"}));
}

struct VetoCase {
  const char* name;
  bool firstStops, secondStops;
  HRESULT firstResult;
  HRESULT expected;
  Transcript heard;
};
const VetoCase kVetoCases[] = {
    {"nobody stops", false, false, S_OK, S_OK,
     {"a.ValueBeforeChange(0)", "b.ValueBeforeChange(0)", "a.ValueAfterChange(0)", "b.ValueAfterChange(0)"}},
    {"first stops", true, false, S_OK, DISP_E_EXCEPTION, {"a.ValueBeforeChange(0)"}},
    {"second stops", false, true, S_OK, DISP_E_EXCEPTION, {"a.ValueBeforeChange(0)", "b.ValueBeforeChange(0)"}},
    {"first fails", false, false, E_FAIL, E_FAIL, {"a.ValueBeforeChange(0)"}},
};

TEST_F(MutableRecordTest, BeforeListenersMayVetoAndTheValueThenStays) {
  for (const VetoCase& c : kVetoCases) {
    SCOPED_TRACE(c.name);
    transcript.clear();
    Remake();
    ASSERT_EQ(record->EnableMutableRecordEvents(VARIANT_FALSE), S_OK);
    ASSERT_EQ(Set(record.get(), 0, I4(1)), S_OK);
    ASSERT_EQ(record->EnableMutableRecordEvents(VARIANT_TRUE), S_OK);
    auto* a = Listen(record.get(), "a");
    auto* b = Listen(record.get(), "b");
    a->stop = c.firstStops;
    a->result = c.firstResult;
    b->stop = c.secondStops;

    const HRESULT hr = Set(record.get(), 0, I4(2));
    EXPECT_EQ(hr, c.expected);
    if (hr == DISP_E_EXCEPTION) {
      EXPECT_EQ(TakeErrorInfo().description, "Failed to change value.");
    }
    EXPECT_EQ(Cell(record.get(), 0), c.expected == S_OK ? "I4 2" : "I4 1");
    EXPECT_EQ(transcript, c.heard);
  }
}

// A Before listener that shrinks the record's values to `keep` elements.
struct BoundsCase {
  std::size_t keep;
  HRESULT expected;
  const char* description;  // null: no error info, the abort reached the host
};
const BoundsCase kBoundsCases[] = {
    {1, DISP_E_EXCEPTION, "The index is bigger then the size of the array."},
    {0, DISP_E_EXCEPTION, "The index is bigger then the size of the array."},
    // Equal to the size: the container's own check ends the process; the
    // handler the test installs turns that into an unexpected failure.
    {2, E_UNEXPECTED, nullptr},
};

TEST_F(MutableRecordTest, AStoragePositionBeyondTheValuesIsRefusedButOneJustPastThemAborts) {
  const ScopedThrowingInvalidParameter guard;
  for (const BoundsCase& c : kBoundsCases) {
    SCOPED_TRACE(c.keep);
    Remake();
    auto* shrink = Listen(record.get(), "shrink");
    IMutableRecord* target = record.get();
    shrink->during = [target, keep = c.keep] {
      std::vector<unique_variant> cells(keep);
      RawOf(target)->AssignValues(cells);
    };
    ClearErrorInfo();
    EXPECT_EQ(Set(record.get(), 1, MakeString(OLESTR("x"))), c.expected);  // element 2
    const ErrorSnapshot error = TakeErrorInfo();
    EXPECT_EQ(error.present, c.description != nullptr);
    if (c.description != nullptr) {
      EXPECT_EQ(error.description, c.description);
    }
  }
  // Reading just past the values aborts the same way: a column added after
  // the record was made has no cell.
  Remake();
  com_ptr<IMutableColumn> added;
  ASSERT_EQ(columns->AddColumn(_bstr_t(OLESTR("late")).GetBSTR(), 10, added.put()), S_OK);
  unique_variant value;
  EXPECT_EQ(record->GetValue(2, value.put()), E_UNEXPECTED);
  EXPECT_EQ(record->SetValueAsInt32(2, 1), E_UNEXPECTED);
}

struct NameCase {
  const OLECHAR* name;
  bool known;
};
const NameCase kNames[] = {{OLESTR("text"), true}, {OLESTR("Text"), false}, {OLESTR(""), false}, {nullptr, false}};

TEST_F(MutableRecordTest, UnknownNamesReadAsEmptyButCannotBeWritten) {
  ASSERT_EQ(Set(record.get(), 1, MakeString(OLESTR("old"))), S_OK);
  for (const NameCase& c : kNames) {
    SCOPED_TRACE(Narrow(c.name));
    const _bstr_t name(c.name);
    unique_variant read;
    EXPECT_EQ(record->GetValueByName(name.GetBSTR(), read.put()), S_OK);
    EXPECT_EQ(Show(read), c.known ? "BSTR old" : "EMPTY");
    const HRESULT hr = record->SetValueByName(name.GetBSTR(), MakeString(OLESTR("new")).get());
    if (c.known) {
      EXPECT_EQ(hr, S_OK);
    } else {
      ExpectFailure(hr, "Column name doesn't found.");
    }
  }
  EXPECT_EQ(Cell(record.get(), 1), "BSTR new");
  // By name still means through the index map.
  const auto map = columns.query<IMutableColumnsManager>();
  map->SetTrueIndexOfColumn(0, 1);
  map->SetTrueIndexOfColumn(1, 0);
  ExpectFailure(record->SetValueByName(_bstr_t(OLESTR("num")).GetBSTR(), I4(3).get()),
                "New value class type doesn't match the column type.");
}

std::vector<unique_variant> Cells(std::initializer_list<LONG> values) {
  std::vector<unique_variant> cells(1);
  for (const LONG v : values) cells.push_back(v < 0 ? unique_variant() : I4(v));  // negative: an empty cell
  return cells;
}

struct CompareCase {
  const char* name;
  std::initializer_list<LONG> own, other;
  LONG expected;
};
const CompareCase kCompareCases[] = {
    {"equal", {1, 2}, {1, 2}, 0},
    {"own smaller", {5, 1}, {7, 1}, 1},
    {"own larger", {7, 1}, {5, 1}, 1},
    {"own empty", {-1, 1}, {5, 1}, -1},
    {"other empty", {5, 1}, {-1, 1}, 1},
    {"other has fewer columns", {1, 2, 3}, {1, 2}, -1},
    {"other has more columns", {1, 2}, {1, 2, 3}, 1},
    {"first difference decides", {1, 9}, {2, -1}, 1},
};

TEST(MutableRecordCompare, TheFirstUnequalCellDecidesByEmptinessOnly) {
  for (const CompareCase& c : kCompareCases) {
    SCOPED_TRACE(c.name);
    const auto schema = [](std::size_t n) {
      const auto made = Schema({});
      for (std::size_t i = 0; i < n; ++i) {
        com_ptr<IMutableColumn> added;
        made->AddColumn(_bstr_t(std::to_string(i).c_str()).GetBSTR(), 10, added.put());
      }
      return made;
    };
    const auto ownColumns = schema(c.own.size());
    const auto otherColumns = schema(c.other.size());
    const auto own = NewRecord(ownColumns.get(), Cells(c.own));
    const auto other = NewRecord(otherColumns.get(), Cells(c.other));
    LONG result = 99;
    EXPECT_EQ(own->CompareTo(other.get(), &result), S_OK);
    EXPECT_EQ(result, c.expected);
    // Any record shape will do as the other, the read-only view included.
    com_ptr<IRecord> view;
    ASSERT_EQ(other->get_Record(view.put()), S_OK);
    result = 99;
    EXPECT_EQ(own->CompareTo(view.get(), &result), S_OK);
    EXPECT_EQ(result, c.expected);
  }
  const auto columns = Schema({{OLESTR("a"), 10}});
  LONG result = 0;
  EXPECT_EQ(NewRecord(columns.get())->CompareTo(nullptr, &result), E_POINTER);
}

TEST_F(MutableRecordTest, ClearEmptiesTheValuesAndTheSharedColumnsSilently) {
  const auto sibling = NewRecord(columns.get());
  Listen(record.get(), "r");
  auto columnsListener = MakeScripted(transcript, "columns");
  columns->AddColumnsChangeListener(columnsListener.get());
  ASSERT_EQ(record->SetValueAsInt32(0, 1), S_OK);
  transcript.clear();

  EXPECT_EQ(record->Clear(), S_OK);
  EXPECT_EQ(SizeOf(columns.get()), 0);
  com_ptr<IMutableColumns> siblingColumns;
  sibling->get_Columns(siblingColumns.put());
  EXPECT_EQ(SizeOf(siblingColumns.get()), 0);
  EXPECT_TRUE(transcript.empty());
  // Not even the spare element is left.
  const ScopedThrowingInvalidParameter guard;
  unique_variant value;
  EXPECT_EQ(record->GetValue(7, value.put()), E_UNEXPECTED);
}

TEST_F(MutableRecordTest, TheLastReleaseOfARecordClearsItsColumns) {
  auto columnsListener = MakeScripted(transcript, "columns");
  columns->AddColumnsChangeListener(columnsListener.get());
  // Element 0 refers to the record itself and must not keep it alive: only
  // its death empties the collection here.
  record.reset();
  EXPECT_EQ(SizeOf(columns.get()), 0);
  EXPECT_TRUE(transcript.empty());

  // A record made without columns makes an empty collection of its own.
  record = NewRecord(nullptr, Cells({}));
  com_ptr<IMutableColumns> own;
  ASSERT_EQ(record->get_Columns(own.put()), S_OK);
  ASSERT_TRUE(own);
  EXPECT_EQ(SizeOf(own.get()), 0);
}

TEST_F(MutableRecordTest, AssignValuesTakesTheCellsAsTheyAreAndEmptiesTheArgument) {
  Listen(record.get(), "r");
  std::vector<unique_variant> cells;
  cells.push_back(I4(0));
  cells.push_back(MakeString(OLESTR("not a number")));
  cells.push_back(I4(5));
  RawOf(record.get())->AssignValues(cells);
  EXPECT_TRUE(cells.empty());
  EXPECT_EQ(Cell(record.get(), 0), "BSTR not a number");
  EXPECT_EQ(Cell(record.get(), 1), "I4 5");
  EXPECT_EQ(Cell(record.get(), 7), "I4 0");
  EXPECT_TRUE(transcript.empty());
}

TEST_F(MutableRecordTest, EventsSwitchedOffSumUpAsOneAfterChange) {
  Listen(record.get(), "r");
  EXPECT_EQ(record->EnableMutableRecordEvents(VARIANT_FALSE), S_OK);
  EXPECT_EQ(record->EnableMutableRecordEvents(VARIANT_TRUE), S_OK);
  EXPECT_TRUE(transcript.empty()) << "nothing pending, no summary";

  EXPECT_EQ(record->EnableMutableRecordEvents(VARIANT_FALSE), S_OK);
  EXPECT_EQ(record->SetValueAsInt32(0, 1), S_OK);
  EXPECT_EQ(record->SetValueAsInt32(0, 2), S_OK);
  EXPECT_EQ(Cell(record.get(), 0), "I4 2");
  EXPECT_TRUE(transcript.empty());
  EXPECT_EQ(record->EnableMutableRecordEvents(VARIANT_TRUE), S_OK);
  EXPECT_EQ(record->EnableMutableRecordEvents(VARIANT_TRUE), S_OK);
  EXPECT_EQ(transcript, (Transcript{"r.ValueAfterChange(-1)"}));

  // The summary clears what was pending.
  transcript.clear();
  EXPECT_EQ(record->EnableMutableRecordEvents(VARIANT_FALSE), S_OK);
  EXPECT_EQ(record->SetValueAsInt32(0, 3), S_OK);
  EXPECT_EQ(record->EnableMutableRecordEvents(VARIANT_TRUE), S_OK);
  EXPECT_EQ(record->EnableMutableRecordEvents(VARIANT_FALSE), S_OK);
  EXPECT_EQ(record->EnableMutableRecordEvents(VARIANT_TRUE), S_OK);
  EXPECT_EQ(transcript, (Transcript{"r.ValueAfterChange(-1)"}));
}

TEST_F(MutableRecordTest, TheReadOnlyViewReadsThroughAndHearsTheRecord) {
  com_ptr<IRecord> view, again;
  ASSERT_EQ(record->get_Record(view.put()), S_OK);
  ASSERT_EQ(record->get_Record(again.put()), S_OK);
  EXPECT_EQ(view, again);
  EXPECT_FALSE(view.try_query<IMutableRecord>());

  ASSERT_EQ(Set(record.get(), 1, MakeString(OLESTR("seen"))), S_OK);
  EXPECT_EQ(Cell(view.get(), 1), "BSTR seen");
  unique_variant byName;
  EXPECT_EQ(view->GetValueByName(_bstr_t(OLESTR("text")).GetBSTR(), byName.put()), S_OK);
  EXPECT_EQ(Show(byName), "BSTR seen");
  com_ptr<IColumns> viewColumns, recordColumns;
  EXPECT_EQ(view->get_Columns(viewColumns.put()), S_OK);
  EXPECT_EQ(columns->get_Columns(recordColumns.put()), S_OK);
  EXPECT_EQ(viewColumns, recordColumns);
  LONG result = 99;
  EXPECT_EQ(view->CompareTo(record.get(), &result), S_OK);
  EXPECT_EQ(result, 0);

  // The record's events reach the view's listeners, whose veto counts.
  listeners.push_back(MakeScripted(transcript, "view"));
  auto* reader = listeners.back().get();
  ASSERT_EQ(view->AddRecordChangeListener(reader), S_OK);
  EXPECT_EQ(record->SetValueAsInt32(0, 1), S_OK);
  reader->stop = true;
  ExpectFailure(record->SetValueAsInt32(0, 2), "Failed to change value.");
  EXPECT_EQ(Cell(record.get(), 0), "I4 1");
  EXPECT_EQ(transcript, (Transcript{"view.ValueBeforeChange(0)", "view.ValueAfterChange(0)",
                                    "view.ValueBeforeChange(0)"}));

  // With the view's events off the record still changes; the view sums up.
  transcript.clear();
  reader->stop = false;
  EXPECT_EQ(view->EnableRecordEvents(VARIANT_FALSE), S_OK);
  EXPECT_EQ(record->SetValueAsInt32(0, 3), S_OK);
  EXPECT_TRUE(transcript.empty());
  EXPECT_EQ(view->EnableRecordEvents(VARIANT_TRUE), S_OK);
  EXPECT_EQ(transcript, (Transcript{"view.ValueAfterChange(-1)"}));

  // A view that outlives its record answers E_POINTER.
  record.reset();
  unique_variant value;
  EXPECT_EQ(view->GetValue(0, value.put()), E_POINTER);
  LONG number = 0;
  EXPECT_EQ(view->GetValueAsInt32(0, &number), E_POINTER);
}

}  // namespace
}  // namespace brevo::testing
