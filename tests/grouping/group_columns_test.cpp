// The grouped column collection and record views: the group's columns in
// source order with their source indices, refused changes, following the
// source; the source record read and written through the true-index table and
// its value events re-raised for the group.
#include "columns/column_helpers.h"
#include "core/module_lock.h"
#include "events/change_events.h"
#include "group_fixture.h"
#include "grouping/group_mutable_columns.h"
#include "grouping/group_record.h"

namespace brevo::testing {
namespace {

com_ptr<IMutableColumns> Group(IMutableColumns* source, const OLECHAR* group) {
  auto made = make_object<GroupMutableColumns>();
  made->GroupMutableColumnsImpl::Create(source, _bstr_t(group));
  return com_ptr<IMutableColumns>(made.get());
}

std::vector<ULONG> TrueIndices(IMutableColumns* grouped) {
  const auto map = com_ptr<IMutableColumns>(grouped).query<IMutableColumnsManager>();
  std::vector<ULONG> indices;
  for (ULONG i = 0; i < RawColumnsOf(grouped)->Size(); ++i) indices.push_back(map->GetIndexOfColumn(i));
  return indices;
}

// Source columns G.a, x, G.b, H.G.c, XG.d and "", told apart by their types
// and display names "D:<name>", and one record; grouped by G, positions 0 to 3
// lead to source columns 0, 2, 3 and 4.
class Grouping : public ::testing::Test {
 protected:
  Grouping() {
    for (const auto& [name, type] : {std::pair{OLESTR("G.a"), 10u}, {OLESTR("x"), 10u}, {OLESTR("G.b"), 10u},
                                     {OLESTR("H.G.c"), 13u}, {OLESTR("XG.d"), 14u}, {OLESTR(""), 16u}}) {
      source.AddColumn(name, type, true);
    }
    grouped = Group(source.columns.get(), OLESTR("G"));
    record = source.AddRecord({1, 5, 2});
  }
  template <class Made = GroupMutableRecord, class Record = IMutableRecord>
  com_ptr<Record> View(IDispatch* origin) {
    const com_ptr<Record> made(make_object<Made>().get());
    made.template query<IGroupRecordRaw>()->Create(origin, grouped.get(), _bstr_t(OLESTR("G")));
    return made;
  }

  SourceTable source{{}, true};
  com_ptr<IMutableColumns> grouped;
  com_ptr<IMutableRecord> record;
  Transcript lines;
};

TEST_F(Grouping, ColumnsKeepTheMembersInSourceOrderWithTheirSourceIndicesAndRefuseChanges) {
  const Transcript all = SchemaOf(source.columns.get());
  // A plain, case-sensitive substring test; an empty name is in no group.
  for (const auto& [group, kept] : std::initializer_list<std::pair<const OLECHAR*, std::vector<ULONG>>>{
           {OLESTR("G"), {0, 2, 3, 4}}, {OLESTR("g"), {}}, {nullptr, {0, 1, 2, 3, 4}}}) {
    SCOPED_TRACE(Narrow(group));
    const auto grouped = Group(source.columns.get(), group);
    Transcript schema;
    for (const ULONG k : kept) schema.push_back(all[k]);
    EXPECT_EQ(SchemaOf(grouped.get()), schema);
    EXPECT_EQ(TrueIndices(grouped.get()), kept);
  }

  com_ptr<IMutableColumn> column;
  ExpectFailure(grouped->AddColumn(_bstr_t(OLESTR("G.new")).GetBSTR(), 10, column.put()),
                "Cannot make add operation on grouped object.");
  ExpectFailure(grouped->RemoveColumn(0), "Cannot make remove operation on grouped object.");
  const auto inner = grouped.query<IGroupMutableColumnsRaw>()->GetGroupedColumns();
  EXPECT_EQ(grouped->Clear(), S_OK);
  EXPECT_TRUE(SchemaOf(inner.get()).empty());
  EXPECT_EQ(SchemaOf(source.columns.get()), all);
}

// Additions are copied only for members of the group, under their full names;
// removals and renames of members are mirrored, found by full name.
TEST_F(Grouping, ColumnsFollowTheSourcesGroupMembers) {
  // A listener of the copy that never calls Stop would refuse it if the
  // grouped collection left the copy's events on.
  grouped.query<IGroupMutableColumnsRaw>()->GetGroupedColumns()->AddColumnsChangeListener(
      MakeRecorder("inner", lines).get());
  EXPECT_EQ(source.AddColumn(OLESTR("y"), 7), S_OK);
  EXPECT_EQ(source.AddColumn(OLESTR("K.G.e"), 8), S_OK);
  EXPECT_EQ(TrueIndices(grouped.get()), (std::vector<ULONG>{0, 2, 3, 4, 7}));
  EXPECT_EQ(lines, (Transcript{"inner.ColumnAfterAdd(null)"})) << "only the summary of switching back on";
  // An addition announced by another collection is not the source's.
  const com_ptr<IColumnsChangeEvent> foreign(make_object<ColumnsChangeEvent>().get());
  foreign->Initialize(com_ptr<IMutableColumns>(make_object<MutableColumns>().get()).get(),
                      NewColumn(OLESTR("G.z"), 10).get());
  EXPECT_EQ(grouped.query<IColumnsChangeListener>()->ColumnAfterAdd(foreign.get()), S_OK);

  EXPECT_EQ(source.RemoveColumn(OLESTR("x")), S_OK);
  EXPECT_EQ(source.RemoveColumn(OLESTR("G.a")), S_OK);
  com_ptr<IMutableColumn> column;
  source.columns->get_MutableColumn(0, column.put());  // G.b
  EXPECT_EQ(column->put_ColumnName(_bstr_t(OLESTR("G.bee")).GetBSTR()), S_OK);
  EXPECT_EQ(column->put_DisplayName(_bstr_t(OLESTR("Bee")).GetBSTR()), S_OK);
  EXPECT_EQ(SchemaOf(grouped.get()),
            (Transcript{"G.bee/10/Bee", "H.G.c/13/D:H.G.c", "XG.d/14/D:XG.d", "K.G.e/8/<null>"}));
}

TEST(GroupColumns, LeaveTheSourceOnTheLastReleaseWhicheverGoesFirst) {
  for (const bool sourceFirst : {false, true}) {
    SCOPED_TRACE(sourceFirst);
    const long start = ModuleLock::Count();
    {
      SourceTable ungated{{OLESTR("G.a")}};
      auto grouped = Group(ungated.columns.get(), OLESTR("G"));
      // Its relays never call Stop, so they refuse additions to the source.
      ExpectFailure(ungated.AddColumn(OLESTR("G.b")), "Failed to add column.");
      if (sourceFirst) ungated = SourceTable();
      grouped.reset();
      if (!sourceFirst) {
        EXPECT_EQ(ungated.AddColumn(OLESTR("G.b")), S_OK) << "the relays are gone";
      }
    }
    EXPECT_EQ(ModuleLock::Count(), start);
  }
}

// Grouped records of either shape, over a source of either shape, read
// through the table; the mutable one writes there too.
TEST_F(Grouping, RecordsReadAndWriteTheSourceThroughTheTrueIndexTable) {
  com_ptr<IRecord> readOnly;
  record->get_Record(readOnly.put());
  const auto overReadOnly = View<GroupRecord, IRecord>(readOnly.get());
  const auto view = View(record.get());
  EXPECT_EQ(IntOf(overReadOnly.get(), 1), 2) << "source column 2";
  EXPECT_EQ(IntOf(view.get(), 1), 2);
  EXPECT_EQ(view.query<IRecordRaw>()->ColumnCount(), 4u);
  EXPECT_EQ(identity_of(overReadOnly.query<IGroupRecordRaw>()->GetSource().get()), identity_of(readOnly.get()));
  unique_variant byName;
  EXPECT_EQ(overReadOnly->GetValueByName(_bstr_t(OLESTR("x")).GetBSTR(), byName.put()), S_OK);
  EXPECT_EQ(byName->vt, VT_EMPTY) << "x is not a column of the group";

  EXPECT_EQ(view->SetValueAsInt32(1, 20), S_OK);
  EXPECT_EQ(IntOf(record.get(), 2), 20);
  unique_variant ten = MakeValue(VT_I4, &VARIANT::lVal, LONG{10});
  EXPECT_EQ(view->SetValueByName(_bstr_t(OLESTR("G.a")).GetBSTR(), ten.get()), S_OK);
  EXPECT_EQ(IntOf(record.get(), 0), 10);
  ExpectFailure(view->SetValueByName(_bstr_t(OLESTR("x")).GetBSTR(), ten.get()), "Column name doesn't found.");
  EXPECT_EQ(view->get_Record(readOnly.put()), S_OK);
  EXPECT_EQ(Describe(readOnly.get()) + ", " + std::to_string(IntOf(readOnly.get(), 1)), "GroupRecord 10, 20");
  EXPECT_EQ(view->Clear(), S_OK);
  EXPECT_TRUE(SchemaOf(source.columns.get()).empty()) << "clearing the source record clears its columns";
}

// Only changes to the group's columns are re-raised, at grouped positions and
// with the grouped record as source, once however often Create is called with
// the same source; a veto of its listeners is the source's. A Create with
// another source moves the registration, and the last release leaves it.
TEST_F(Grouping, RecordsReRaiseTheSourcesGroupValueEventsAndVetoForIt) {
  const long start = ModuleLock::Count();
  auto view = View(record.get());
  view.query<IGroupRecordRaw>()->Create(record.get(), grouped.get(), _bstr_t(OLESTR("G")));
  const auto log = make_object<EventLog>("l", lines, view.get());
  EXPECT_EQ(view->AddRecordChangeListener(log.get()), S_OK);
  record->SetValueAsInt32(1, 6);
  record->SetValueAsInt32(2, 3);
  EXPECT_EQ(view->EnableMutableRecordEvents(VARIANT_FALSE), S_OK);
  record->SetValueAsInt32(0, 4);
  view->EnableMutableRecordEvents(VARIANT_TRUE);
  log->stop = true;
  ExpectFailure(record->SetValueAsInt32(2, 9), "Failed to change value.");
  ExpectFailure(view->SetValueAsInt32(1, 9), "Failed to change value.");
  EXPECT_EQ(IntOf(record.get(), 2), 3);

  const auto other = source.AddRecord({8, 8, 8});
  view.query<IGroupRecordRaw>()->Create(other.get(), grouped.get(), _bstr_t(OLESTR("G")));
  record->SetValueAsInt32(0, 1);
  EXPECT_EQ(IntOf(view.get()), 8);
  EXPECT_EQ(lines, (Transcript{"l.ValueBeforeChange(1)", "l.ValueAfterChange(1)", "l.ValueAfterChange(-1)",
                               "l.ValueBeforeChange(1)", "l.ValueBeforeChange(1)"}));
  EXPECT_EQ(log->foreignSources, 0);
  view.reset();
  EXPECT_EQ(ModuleLock::Count(), start + 2) << "only the log and the second source record are left";
}

}  // namespace
}  // namespace brevo::testing
