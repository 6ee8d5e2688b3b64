// The grouped record lists: Create's order and group check, reads over the
// source, the routes by which they re-raise the source's notifications, the
// mutable one's refusals and writable records, and the lifetime of a grouped
// list and its source.
#include "columns/column_helpers.h"
#include "core/module_lock.h"
#include "events/change_events.h"
#include "group_fixture.h"
#include "grouping/group_mutable_record_list.h"
#include "lists/row_fixture.h"

namespace brevo::testing {
namespace {

template <class List>
com_ptr<IDispatch> ColumnsOf(List* list) {
  com_ptr<std::conditional_t<std::is_same_v<List, IRecordList>, IColumns, IMutableColumns>> columns;
  EXPECT_EQ(list->get_Columns(columns.put()), S_OK);
  return com_ptr<IDispatch>(columns.get());
}

class GroupLists : public ::testing::Test {
 protected:
  // The grouped lists and their source would keep each other alive.
  ~GroupLists() override {
    for (const auto& raw : hooked) raw->Unregister();
  }
  // Made over the source list unless told, and kept registered until the test ends.
  template <class Made = GroupRecordList, class List = IRecordList>
  com_ptr<List> Grouped(IDispatch* origin = nullptr) {
    const com_ptr<List> made(make_object<Made>().get());
    hooked.push_back(made.template query<IGroupRecordListRaw>());
    hooked.back()->Create(origin != nullptr ? origin : source.list.get(), _bstr_t(OLESTR("G")));
    return made;
  }
  com_ptr<CComObject<EventLog>> Listen(IRecordList* list, const std::string& name) {
    auto log = make_object<EventLog>(name, lines, list);
    list->AddRecordListChangeListener(log.get());
    list->AddRecordListValueChangeListener(log.get());
    return log;
  }

  // G.a and G.b, gated so that column changes get past the grouped lists.
  SourceTable source{{OLESTR("G.a"), OLESTR("G.b")}, true};
  com_ptr<IMutableRecord> first = source.AddRecord({1, 10});
  com_ptr<IMutableRecord> second = source.AddRecord({2, 20});
  std::vector<com_ptr<IGroupRecordListRaw>> hooked;
  Transcript lines;
};

// Every source column must be in the group (which names are is the grouped
// columns' test); a failed Create leaves the registrations it made first, for
// the caller to undo.
TEST_F(GroupLists, CreateNeedsEverySourceColumnInTheGroupAndRegistersFirst) {
  SourceTable table{{OLESTR("G.a"), OLESTR("c")}};
  const com_ptr<IRecordList> grouped(make_object<GroupRecordList>().get());
  const auto raw = grouped.query<IGroupRecordListRaw>();
  try {
    raw->Create(table.list.get(), _bstr_t(OLESTR("G")));
    ADD_FAILURE() << "made";
  } catch (const EBvException& e) {
    EXPECT_EQ(Narrow(e.GetDescription()), "No such group found in recordlist.");
  }
  EXPECT_TRUE(SchemaOf(ColumnsOf(grouped.get()).get()).empty());
  grouped->AddRecordListChangeListener(MakeRecorder("l", lines).get());
  table.AddRecord({});
  EXPECT_EQ(lines, Transcript(2, "l.RecordAfterAdd(record)"));
  ExpectFailure(table.AddColumn(OLESTR("G.b")), "Failed to add column.");
  raw->Unregister();
  EXPECT_EQ(table.AddColumn(OLESTR("G.b")), S_OK);
}

// Over the source list or its view, or as the mutable grouped list: the
// source's rows at every call, wrapped only by the mutable one.
TEST_F(GroupLists, ReadTheSourcesRows) {
  const auto view = source.View();
  const auto overList = Grouped(), overView = Grouped(view.get());
  const auto writable = Grouped<GroupMutableRecordList, IMutableRecordList>();
  source.list->EnableMutableRecordListEvents(VARIANT_FALSE);
  source.AddRecord({3, 30});
  const auto check = [&](auto grouped, IDispatch* origin, const std::string& shape) {
    SCOPED_TRACE(shape);
    EXPECT_EQ(identity_of(grouped.template query<IGroupRecordListRaw>()->GetSource().get()), identity_of(origin));
    EXPECT_EQ(SchemaOf(ColumnsOf(grouped.get()).get()), SchemaOf(source.columns.get()));
    ULONG size = 0;
    EXPECT_EQ(grouped->get_Size(&size), S_OK);
    EXPECT_EQ(size, 3u);
    com_ptr<IRecordListIterator> it;
    grouped->GetIterator(VARIANT_TRUE, it.put());
    EXPECT_EQ(Walk(it.get()), (Transcript{shape + "1", shape + "2", shape + "3"}));
    grouped->GetFilteredIterator(make_object<KeyCondition>(2, VARIANT_TRUE).get(), VARIANT_TRUE, it.put());
    EXPECT_EQ(Walk(it.get()), (Transcript{shape + "2"}));
    grouped->GetSortedIterator(make_object<KeyComparator>(FirstMinusSecond).get(), VARIANT_FALSE, it.put());
    EXPECT_EQ(Walk(it.get()), (Transcript{shape + "3", shape + "2", shape + "1"}));
    LONG compared = -7;
    EXPECT_EQ(grouped->CompareTo(source.list.get(), &compared), S_OK);
    EXPECT_EQ(compared, 0);
  };
  check(overList, source.list.get(), "record ");
  check(overView, view.get(), "record ");
  check(writable, source.list.get(), "GroupMutableRecord ");
}

// Record notifications called straight on the grouped list, as the source
// would call them. Both "before" handlers ignore the switch.
TEST_F(GroupLists, NotificationsFollowTheirRoutesAndNeverVetoTheSource) {
  using L = IRecordListChangeListener;
  const std::string add = "l.RecordAfterAdd(GroupRecord 1)";
  const Transcript summary{"l.RecordAfterAdd(none)", "l.RecordAfterRemove(none)"};  // of switching back on
  const struct Case {
    const char* name;
    HRESULT (STDMETHODCALLTYPE L::*method)(IRecordListChangeEvent*);
    bool nullEvent;
    bool eventsOn;
    Transcript heard;
  } cases[] = {
      {"before add, off", &L::RecordBeforeAdd, false, false, {add}},
      {"before remove", &L::RecordBeforeRemove, false, true, {add}},
      {"before remove, null", &L::RecordBeforeRemove, true, true, {"l.RecordAfterAdd(none)"}},
      {"after add", &L::RecordAfterAdd, false, true, {add}},
      {"after add, null", &L::RecordAfterAdd, true, true, {"l.RecordAfterAdd(null event)"}},
      {"after add, off", &L::RecordAfterAdd, false, false, summary},
      {"after remove", &L::RecordAfterRemove, false, true, {add}},
      {"after remove, null", &L::RecordAfterRemove, true, true, {"l.RecordAfterRemove(null event)"}},
      {"after remove, null, off", &L::RecordAfterRemove, true, false, summary},
  };
  const auto grouped = Grouped();
  const auto log = Listen(grouped.get(), "l");
  const com_ptr<IRecordListChangeEvent> incoming(make_object<RecordListChangeEvent>().get());
  incoming->Initialize(source.list.get(), first.get());
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    lines.clear();
    grouped->EnableRecordListEvents(c.eventsOn ? VARIANT_TRUE : VARIANT_FALSE);
    EXPECT_EQ((grouped.query<L>().get()->*c.method)(c.nullEvent ? nullptr : incoming.get()), S_OK);
    grouped->EnableRecordListEvents(VARIANT_TRUE);
    EXPECT_EQ(lines, c.heard);
  }
  // From the source itself: its "before" and "after" of one addition.
  lines.clear();
  source.AddRecord({});
  EXPECT_EQ(lines, (Transcript{"l.RecordAfterAdd(GroupRecord 0)", "l.RecordAfterAdd(GroupRecord 0)"}));

  // Value changes: a veto of the own listeners ends their "before" loop but
  // never the source's change.
  lines.clear();
  log->stop = true;
  Listen(grouped.get(), "b");
  EXPECT_EQ(second->SetValueAsInt32(1, 21), S_OK);
  grouped->EnableRecordListEvents(VARIANT_FALSE);
  second->SetValueAsInt32(1, 22);
  grouped->EnableRecordListEvents(VARIANT_TRUE);
  EXPECT_EQ(IntOf(second.get(), 1), 22);
  EXPECT_EQ(lines, (Transcript{"l.ValueBeforeChange(1, GroupRecord 2)", "l.ValueAfterChange(1, GroupRecord 2)",
                               "b.ValueAfterChange(1, GroupRecord 2)", "l.ValueAfterChange(-1, none)",
                               "b.ValueAfterChange(-1, none)"}));
  EXPECT_EQ(log->foreignSources, 0) << "the grouped list is the source of what it raises";
}

// Additions are cut to start at the key (copied whole when outside the group),
// into columns of the list's own; removals outside the group are ignored.
TEST_F(GroupLists, FollowTheSourcesColumns) {
  const auto grouped = Grouped();
  const auto own = ColumnsOf(grouped.get()).query<IColumns>();
  // A listener of the own columns that never calls Stop would refuse every
  // copy if the grouped list left their events on.
  own->AddColumnsChangeListener(MakeRecorder("own", lines).get());
  for (const OLECHAR* name : {OLESTR("H.G.x"), OLESTR("y"), OLESTR("G.z"), OLESTR("XG.w")}) {
    EXPECT_EQ(source.AddColumn(name, 7), S_OK);
  }
  // The display name is cut the same way.
  const com_ptr<IColumnsChangeEvent> added(make_object<ColumnsChangeEvent>().get());
  added->Initialize(source.columns.get(), NewColumn(OLESTR("K.G.v"), 5, OLESTR("Shown K.G.v")).get());
  EXPECT_EQ(grouped.query<IColumnsChangeListener>()->ColumnAfterAdd(added.get()), S_OK);
  EXPECT_EQ(lines, Transcript(5, "own.ColumnAfterAdd(null)")) << "only the summaries of switching back on";
  for (const OLECHAR* name : {OLESTR("y"), OLESTR("H.G.x"), OLESTR("G.z")}) EXPECT_EQ(source.RemoveColumn(name), S_OK);
  EXPECT_EQ(SchemaOf(own.get()),
            (Transcript{"G.a/10/<null>", "G.b/10/<null>", "y/7/<null>", "G.w/7/<null>", "G.v/5/G.v"}));
}

// The source and its columns hold the grouped list, which holds the source:
// the pair lives until the client takes the grouped list out of the three
// registries, and then goes whichever is released first. Over a list or a
// view, the registrations are on different objects.
TEST(GroupListPair, LivesUntilTheClientLeavesTheSourceThenGoesInEitherOrder) {
  for (const bool mutableOverView : {false, true}) {
    for (const bool sourceFirst : {false, true}) {
      SCOPED_TRACE(std::string(mutableOverView ? "mutable over view" : "over list") + (sourceFirst ? ", source first" : ""));
      const long start = ModuleLock::Count();
      {
        SourceTable table{{OLESTR("G.a")}};
        const auto view = table.View();
        com_ptr<IGroupRecordListRaw> grouped(mutableOverView
                                                 ? static_cast<IGroupRecordListRaw*>(make_object<GroupMutableRecordList>().get())
                                                 : make_object<GroupRecordList>().get());
        grouped->Create(mutableOverView ? static_cast<IDispatch*>(view.get()) : table.list.get(), _bstr_t(OLESTR("G")));
        com_ptr<IRecordList> ownView;
        if (mutableOverView) grouped.query<IMutableRecordList>()->get_RecordList(ownView.put());
        ownView.reset();
        table.AddRecord({5});  // grouped records made and dropped on the way

        IGroupRecordListRaw* kept = grouped.get();
        const long alive = ModuleLock::Count();
        grouped.reset();
        EXPECT_EQ(ModuleLock::Count(), alive) << "kept alive by the source's registries";
        grouped = com_ptr<IGroupRecordListRaw>(kept);
        // What a client does: leave the two list registries and the columns'.
        const auto leave = [&](auto* list) {
          EXPECT_EQ(list->RemoveRecordListChangeListener(grouped.query<IRecordListChangeListener>().get()), S_OK);
          EXPECT_EQ(list->RemoveRecordListValueChangeListener(grouped.query<IRecordListValueChangeListener>().get()), S_OK);
        };
        if (mutableOverView) leave(view.get());
        else leave(table.list.get());
        EXPECT_EQ(table.columns->RemoveColumnsChangeListener(grouped.query<IColumnsChangeListener>().get()), S_OK);

        if (sourceFirst) table = SourceTable();
        grouped.reset();
      }
      EXPECT_EQ(ModuleLock::Count(), start);
    }
  }
}

TEST_F(GroupLists, TheMutableOneAddsAndRemovesThroughTheSourceButRefusesCreateAndClear) {
  auto grouped = Grouped<GroupMutableRecordList, IMutableRecordList>();
  EXPECT_EQ(grouped->Create(source.columns.get()), DISP_E_EXCEPTION);
  const ErrorSnapshot error = TakeErrorInfo();
  EXPECT_EQ(error.description, "Cannot make add operation on grouped object.");
  EXPECT_TRUE(IsEqualGUID(error.guid, iid_of<IMutableRecordList>()));
  ExpectFailure(grouped->Clear(), "Cannot make remove operation on grouped object.");

  com_ptr<IMutableRecord> added;
  EXPECT_EQ(grouped->AddRecord(added.put()), S_OK);
  EXPECT_EQ(Describe(added.get()), "GroupMutableRecord 0");
  EXPECT_EQ(added->SetValueAsInt32(0, 3), S_OK);
  com_ptr<IRecordListIterator> it;
  grouped->GetIterator(VARIANT_TRUE, it.put());
  com_ptr<IDispatch> next;
  it->Next(next.put());
  EXPECT_EQ(it->Remove(), S_OK);
  // A refusal of the source reaches the caller as the source's.
  const auto refusing = MakeRecorder("s", lines);
  refusing->stop = true;
  source.list->AddRecordListChangeListener(refusing.get());
  ExpectFailure(grouped->AddRecord(added.put()), "Failed to add record.");

  // Its read-only view is a plain list view over it, showing the source's rows
  // (the first is gone), and outlives it only as an empty shell.
  com_ptr<IRecordList> view;
  EXPECT_EQ(grouped->get_RecordList(view.put()), S_OK);
  EXPECT_FALSE(view.try_query<IGroupRecordListRaw>());
  view->GetIterator(VARIANT_TRUE, it.put());
  EXPECT_EQ(Walk(it.get()), (Transcript{"GroupRecord 2", "GroupRecord 3"}));
  hooked.front()->Unregister();
  hooked.clear();
  grouped.reset();
  ULONG size = 0;
  EXPECT_EQ(view->get_Size(&size), E_POINTER);
}

}  // namespace
}  // namespace brevo::testing
