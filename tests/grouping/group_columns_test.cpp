// The grouped column collection: the group's columns in source order with
// their source indices, refused changes, and following the source.
#include "core/module_lock.h"
#include "events/change_events.h"
#include "group_fixture.h"
#include "columns/mutable_column.h"
#include "grouping/group_mutable_columns.h"
#include "support/recording_listener.h"

namespace brevo::testing {
namespace {

class GroupColumns : public ::testing::Test {
 protected:
  // Types 101... and display names "D:<name>" tell the columns apart.
  GroupColumns() {
    source.columns->AddColumnsChangeListener(make_object<Gate>().get());
    ULONG type = 101;
    for (const OLECHAR* name : {OLESTR("G.a"), OLESTR("x"), OLESTR("G.b"), OLESTR("H.G.c"), OLESTR("XG.d"), OLESTR("")}) {
      source.AddColumn(name, type++);
      com_ptr<IMutableColumn> column;
      source.columns->get_MutableColumn(type - 102, column.put());
      column->put_DisplayName(_bstr_t((std::basic_string<OLECHAR>(OLESTR("D:")) + name).c_str()).GetBSTR());
    }
  }
  com_ptr<IMutableColumns> Group(const OLECHAR* group, IMutableColumns* over = nullptr) {
    auto made = make_object<GroupMutableColumns>();
    made->GroupMutableColumnsImpl::Create(over != nullptr ? over : source.columns.get(), _bstr_t(group));
    return com_ptr<IMutableColumns>(made.get());
  }
  static std::vector<ULONG> TrueIndices(IMutableColumns* grouped) {
    const auto map = com_ptr<IMutableColumns>(grouped).query<IMutableColumnsManager>();
    std::vector<ULONG> indices;
    for (ULONG i = 0; i < RawColumnsOf(grouped)->Size(); ++i) indices.push_back(map->GetIndexOfColumn(i));
    return indices;
  }
  static com_ptr<IMutableColumns> Inner(IMutableColumns* grouped) {
    return com_ptr<IMutableColumns>(grouped).query<IGroupMutableColumnsRaw>()->GetGroupedColumns();
  }

  SourceTable source;
};

TEST_F(GroupColumns, KeepTheGroupsColumnsInSourceOrderWithTheirSourceIndices) {
  struct Case {
    const OLECHAR* group;
    std::vector<ULONG> kept;
  };
  const Lines all = SchemaOf(source.columns.get());
  for (const Case& c : {Case{OLESTR("G"), {0, 2, 3, 4}}, Case{OLESTR("H"), {3}}, Case{OLESTR("g"), {}},
                        Case{OLESTR(""), {0, 1, 2, 3, 4}}, Case{nullptr, {0, 1, 2, 3, 4}}}) {
    SCOPED_TRACE(Narrow(c.group));
    const auto grouped = Group(c.group);
    Lines schema;
    for (const ULONG k : c.kept) schema.push_back(all[k]);
    EXPECT_EQ(SchemaOf(grouped.get()), schema);
    EXPECT_EQ(TrueIndices(grouped.get()), c.kept);
    EXPECT_EQ(TrueIndices(Inner(grouped.get()).get()), c.kept) << "the map is the inner collection's";
  }
  EXPECT_EQ(SchemaOf(source.columns.get()), all);
}

TEST_F(GroupColumns, ReadThroughTheInnerCollectionAndRefuseChanges) {
  const auto grouped = Group(OLESTR("G"));
  const auto inner = Inner(grouped.get());
  LONG index = -2;
  EXPECT_EQ(grouped->IndexOf(_bstr_t(OLESTR("G.b")).GetBSTR(), &index), S_OK);
  EXPECT_EQ(index, 1);
  com_ptr<IMutableColumn> column, innerColumn;
  grouped->get_MutableColumn(1, column.put());
  inner->get_MutableColumn(1, innerColumn.put());
  EXPECT_EQ(column.get(), innerColumn.get());
  com_ptr<IColumns> view, innerView;
  grouped->get_Columns(view.put());
  inner->get_Columns(innerView.put());
  EXPECT_EQ(view.get(), innerView.get());

  for (const OLECHAR* name : {OLESTR("G.new"), OLESTR("y")}) {
    ExpectFailure(grouped->AddColumn(_bstr_t(name).GetBSTR(), 10, column.put()), "Cannot make add operation on grouped object.");
  }
  for (const ULONG at : {0u, 99u}) ExpectFailure(grouped->RemoveColumn(at), "Cannot make remove operation on grouped object.");
  EXPECT_EQ(SchemaOf(grouped.get()).size(), 4u);

  LONG same = -2;
  EXPECT_EQ(grouped->CompareTo(inner.get(), &same), S_OK);
  EXPECT_EQ(same, 0);
  grouped->CompareTo(source.columns.get(), &same);
  EXPECT_EQ(same, -1);
  EXPECT_EQ(grouped->Clear(), S_OK);
  EXPECT_TRUE(SchemaOf(inner.get()).empty());
  EXPECT_EQ(SchemaOf(source.columns.get()).size(), 6u);
}

TEST_F(GroupColumns, CopyOnlyGroupMembersAddedToTheSourceUnderTheirFullNames) {
  const auto grouped = Group(OLESTR("G"));
  // A listener of the copy that never calls Stop would refuse it if the
  // grouped collection left the copy's events on.
  Transcript heard;
  Inner(grouped.get())->AddColumnsChangeListener(MakeRecorder("inner", heard).get());
  EXPECT_EQ(source.AddColumn(OLESTR("y"), 7), S_OK);
  EXPECT_EQ(source.AddColumn(OLESTR("K.G.e"), 8), S_OK);
  EXPECT_EQ(SchemaOf(grouped.get()).back(), "K.G.e/8/<null>");
  EXPECT_EQ(TrueIndices(grouped.get()), (std::vector<ULONG>{0, 2, 3, 4, 7}));
  EXPECT_EQ(heard, (Transcript{"inner.ColumnAfterAdd(null)"})) << "only the summary of switching back on";

  // An addition announced by another collection is not the source's.
  const com_ptr<IColumnsChangeEvent> foreign(make_object<ColumnsChangeEvent>().get());
  const com_ptr<IMutableColumns> other(make_object<MutableColumns>().get());
  const com_ptr<IMutableColumn> member(make_object<MutableColumn>().get());
  member->Create(_bstr_t(OLESTR("G.z")).GetBSTR(), 10);
  foreign->Initialize(other.get(), member.get());
  EXPECT_EQ(grouped.query<IColumnsChangeListener>()->ColumnAfterAdd(foreign.get()), S_OK);
  EXPECT_EQ(SchemaOf(grouped.get()).size(), 5u);
}

TEST_F(GroupColumns, MirrorRemovalsAndRenamesOfGroupMembersFoundByFullName) {
  const auto grouped = Group(OLESTR("G"));
  EXPECT_EQ(source.RemoveColumn(OLESTR("x")), S_OK);
  EXPECT_EQ(source.RemoveColumn(OLESTR("G.a")), S_OK);
  com_ptr<IMutableColumn> column;
  source.columns->get_MutableColumn(0, column.put());  // G.b
  EXPECT_EQ(column->put_ColumnName(_bstr_t(OLESTR("G.bee")).GetBSTR()), S_OK);
  EXPECT_EQ(column->put_DisplayName(_bstr_t(OLESTR("Bee")).GetBSTR()), S_OK);
  EXPECT_EQ(SchemaOf(grouped.get()), (Lines{"G.bee/103/Bee", "H.G.c/104/D:H.G.c", "XG.d/105/D:XG.d"}));
}

TEST_F(GroupColumns, LeaveTheSourceOnTheLastReleaseWhicheverGoesFirst) {
  for (const bool sourceFirst : {false, true}) {
    SCOPED_TRACE(sourceFirst);
    const long start = ModuleLock::Count();
    {
      SourceTable ungated{{OLESTR("G.a")}};
      auto grouped = Group(OLESTR("G"), ungated.columns.get());
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

}  // namespace
}  // namespace brevo::testing
