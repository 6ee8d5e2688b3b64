// The grouped read-only list: Create's order and group check, reads over the
// source, the routes by which it re-raises the source's notifications, and
// the lifetime of a grouped list and its source.
#include "columns/column_helpers.h"
#include "core/module_lock.h"
#include "events/change_events.h"
#include "group_fixture.h"
#include "grouping/group_mutable_record_list.h"
#include "lists/row_fixture.h"
#include "support/recording_listener.h"

namespace brevo::testing {
namespace {

class GroupLists : public ::testing::Test {
 protected:
  // Made and kept registered until the test ends; origin defaults to the source list.
  com_ptr<IRecordList> Grouped(IDispatch* origin = nullptr, const OLECHAR* group = OLESTR("G")) {
    auto made = hooked.Keep(com_ptr<IRecordList>(make_object<GroupRecordList>().get()));
    made.query<IGroupRecordListRaw>()->Create(origin != nullptr ? origin : source.list.get(), _bstr_t(group));
    return made;
  }
  com_ptr<CComObject<EventLog>> Listen(IRecordList* list, const std::string& name) {
    auto log = make_object<EventLog>(name, lines);
    log->owner = identity_of(list).get();
    list->AddRecordListChangeListener(log.get());
    list->AddRecordListValueChangeListener(log.get());
    return log;
  }

  // G.a and G.b, behind a gate that lets column changes past the grouped list.
  SourceTable source{{OLESTR("G.a"), OLESTR("G.b")}, true};
  com_ptr<IMutableRecord> first = source.AddRecord({1, 10});
  com_ptr<IMutableRecord> second = source.AddRecord({2, 20});
  Hooked hooked;
  Lines lines;
};

TEST_F(GroupLists, CreateRegistersFirstThenNeedsEverySourceColumnInTheGroup) {
  struct Case {
    std::vector<const OLECHAR*> names;
    const OLECHAR* group;
    bool made;
  };
  for (const Case& c : {Case{{OLESTR("G.a"), OLESTR("G.b")}, OLESTR("G"), true},
                        Case{{OLESTR("H.G.a"), OLESTR("XG.b")}, OLESTR("G"), true},
                        Case{{OLESTR("a"), OLESTR("b")}, OLESTR(""), true},
                        Case{{OLESTR("a"), OLESTR("b")}, nullptr, true},
                        Case{{OLESTR("G.a"), OLESTR("c")}, OLESTR("G"), false},
                        Case{{OLESTR("g.a")}, OLESTR("G"), false},
                        Case{{OLESTR("a"), OLESTR("")}, OLESTR(""), false}}) {
    SCOPED_TRACE(Narrow(c.names[0]) + " / " + Narrow(c.group));
    SourceTable table;
    for (const OLECHAR* name : c.names) {
      table.AddColumn(name, 5);
      com_ptr<IMutableColumn> column;
      table.columns->get_MutableColumn(table.columns.query<IMutableColumnsRaw>()->Size() - 1, column.put());
      column->put_DisplayName(_bstr_t((std::basic_string<OLECHAR>(OLESTR("D:")) + name).c_str()).GetBSTR());
    }
    const com_ptr<IRecordList> grouped(make_object<GroupRecordList>().get());
    const auto raw = grouped.query<IGroupRecordListRaw>();
    std::string failure;
    try {
      raw->Create(table.list.get(), _bstr_t(c.group));
    } catch (const EBvException& e) {
      failure = Narrow(e.GetDescription());
    }
    EXPECT_EQ(failure, c.made ? "" : "No such group found in recordlist.");
    com_ptr<IColumns> own;
    grouped->get_Columns(own.put());
    EXPECT_EQ(SchemaOf(own.get()), c.made ? SchemaOf(table.columns.get()) : std::vector<std::string>{});

    // Made or not, the grouped list hears the source until it leaves it.
    Transcript heard;
    grouped->AddRecordListChangeListener(MakeRecorder("l", heard).get());
    table.AddRecord({});
    EXPECT_EQ(heard.size(), 2u);
    ExpectFailure(table.AddColumn(OLESTR("G.c")), "Failed to add column.");
    raw->Unregister();
    EXPECT_EQ(table.AddColumn(OLESTR("G.c")), S_OK);
    table.AddRecord({});
    EXPECT_EQ(heard.size(), 2u);
  }
}

TEST_F(GroupLists, ReadTheSourcesRecordsThroughColumnsOfTheirOwn) {
  for (const bool readOnlyOrigin : {false, true}) {
    SCOPED_TRACE(readOnlyOrigin);
    SourceTable table{{OLESTR("G.a"), OLESTR("G.b")}};
    table.AddRecord({1, 10});
    table.AddRecord({2, 20});
    IDispatch* origin = readOnlyOrigin ? static_cast<IDispatch*>(table.View().get()) : table.list.get();
    Hooked local;
    const auto grouped = local.Keep(com_ptr<IRecordList>(make_object<GroupRecordList>().get()));
    grouped.query<IGroupRecordListRaw>()->Create(origin, _bstr_t(OLESTR("G")));
    EXPECT_EQ(identity_of(grouped.query<IGroupRecordListRaw>()->GetSource().get()), identity_of(origin));

    com_ptr<IColumns> own;
    grouped->get_Columns(own.put());
    EXPECT_NE(RawColumnsOf(own.get()).get(), table.columns.query<IMutableColumnsRaw>().get());
    EXPECT_EQ(SchemaOf(own.get()), SchemaOf(table.columns.get()));
    const auto map = own.query<IMutableColumnsManager>();
    EXPECT_EQ(map->GetIndexOfColumn(0) * 10 + map->GetIndexOfColumn(1), 1u);

    // The size is the source's at every call, notified or not.
    table.list->EnableMutableRecordListEvents(VARIANT_FALSE);
    const auto third = table.AddRecord({3, 30});
    ULONG size = 0;
    EXPECT_EQ(grouped->get_Size(&size), S_OK);
    EXPECT_EQ(size, 3u);

    com_ptr<IRecordListIterator> it;
    grouped->GetIterator(VARIANT_TRUE, it.put());
    EXPECT_EQ(Walk(it.get()), (Lines{"record 1", "record 2", "record 3"}));
    grouped->GetFilteredIterator(make_object<KeyCondition>(2, VARIANT_TRUE).get(), VARIANT_TRUE, it.put());
    EXPECT_EQ(Walk(it.get()), (Lines{"record 2"}));
    grouped->GetSortedIterator(make_object<KeyComparator>(FirstMinusSecond).get(), VARIANT_FALSE, it.put());
    EXPECT_EQ(Walk(it.get()), (Lines{"record 3", "record 2", "record 1"}));

    LONG compared = -7;
    EXPECT_EQ(grouped->CompareTo(table.list.get(), &compared), S_OK);
    EXPECT_EQ(compared, 0);
    SourceTable other{{OLESTR("G.a"), OLESTR("G.b")}};
    grouped->CompareTo(other.list.get(), &compared);
    EXPECT_NE(compared, 0);
  }
}

// Record notifications called straight on the grouped list, as the source
// would call them.
TEST_F(GroupLists, RecordNotificationsFollowTheirRoutes) {
  using Method = HRESULT (STDMETHODCALLTYPE IRecordListChangeListener::*)(IRecordListChangeEvent*);
  struct Case {
    const char* name;
    Method method;
    bool nullEvent;
    bool eventsOn;
    Lines heard;
  };
  const std::string add = "l.RecordAfterAdd(GroupRecord 1)";
  const std::vector<Case> cases = {
      {"before add", &IRecordListChangeListener::RecordBeforeAdd, false, true, {add}},
      {"before remove", &IRecordListChangeListener::RecordBeforeRemove, false, true, {add}},
      {"before add, off", &IRecordListChangeListener::RecordBeforeAdd, false, false, {add}},
      {"before remove, null", &IRecordListChangeListener::RecordBeforeRemove, true, true, {"l.RecordAfterAdd(none)"}},
      {"after add", &IRecordListChangeListener::RecordAfterAdd, false, true, {add}},
      {"after add, null", &IRecordListChangeListener::RecordAfterAdd, true, true, {"l.RecordAfterAdd(null event)"}},
      {"after remove", &IRecordListChangeListener::RecordAfterRemove, false, true, {add}},
      {"after remove, null", &IRecordListChangeListener::RecordAfterRemove, true, true,
       {"l.RecordAfterRemove(null event)"}},
      {"after add, off", &IRecordListChangeListener::RecordAfterAdd, false, false, {}},
      {"after remove, off", &IRecordListChangeListener::RecordAfterRemove, true, false, {}},
  };
  const auto grouped = Grouped();
  const auto log = Listen(grouped.get(), "l");
  const auto listener = grouped.query<IRecordListChangeListener>();
  const com_ptr<IRecordListChangeEvent> incoming(make_object<RecordListChangeEvent>().get());
  incoming->Initialize(source.list.get(), first.get());
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    lines.clear();
    grouped->EnableRecordListEvents(c.eventsOn ? VARIANT_TRUE : VARIANT_FALSE);
    EXPECT_EQ((listener.get()->*c.method)(c.nullEvent ? nullptr : incoming.get()), S_OK);
    EXPECT_EQ(lines, c.heard);
    grouped->EnableRecordListEvents(VARIANT_TRUE);
  }
  lines.clear();
  grouped->EnableRecordListEvents(VARIANT_FALSE);
  listener->RecordAfterRemove(incoming.get());
  grouped->EnableRecordListEvents(VARIANT_TRUE);
  EXPECT_EQ(lines, (Lines{"l.RecordAfterAdd(none)", "l.RecordAfterRemove(none)"})) << "the summary";

  // From the source itself: its "before" and "after" of one addition.
  lines.clear();
  source.AddRecord({});
  EXPECT_EQ(lines, (Lines{"l.RecordAfterAdd(GroupRecord 0)", "l.RecordAfterAdd(GroupRecord 0)"}));
  EXPECT_EQ(log->foreignSources, 0) << "the grouped list is the source of what it raises";
}

TEST_F(GroupLists, ValueNotificationsAreReRaisedButNeverVetoTheSource) {
  const auto grouped = Grouped();
  Listen(grouped.get(), "a")->stop = true;
  Listen(grouped.get(), "b");
  EXPECT_EQ(second->SetValueAsInt32(1, 21), S_OK);
  EXPECT_EQ(IntOf(second.get(), 1), 21);
  EXPECT_EQ(lines, (Lines{"a.ValueBeforeChange(1, GroupRecord 2)", "a.ValueAfterChange(1, GroupRecord 2)",
                          "b.ValueAfterChange(1, GroupRecord 2)"}));

  lines.clear();
  grouped->EnableRecordListEvents(VARIANT_FALSE);
  second->SetValueAsInt32(1, 22);
  EXPECT_TRUE(lines.empty());
  grouped->EnableRecordListEvents(VARIANT_TRUE);
  EXPECT_EQ(lines, (Lines{"a.ValueAfterChange(-1, none)", "b.ValueAfterChange(-1, none)"}));
}

TEST_F(GroupLists, ColumnAdditionsAreCutAtTheKeyWhileRemovalsOutsideTheGroupAreIgnored) {
  const auto grouped = Grouped();
  com_ptr<IColumns> own;
  grouped->get_Columns(own.put());
  // A listener of the own columns that never calls Stop would refuse every
  // copy if the grouped list left their events on.
  Transcript heard;
  own->AddColumnsChangeListener(MakeRecorder("own", heard).get());

  for (const OLECHAR* name : {OLESTR("H.G.x"), OLESTR("y"), OLESTR("G.z"), OLESTR("XG.w")}) {
    EXPECT_EQ(source.AddColumn(name, 7), S_OK);
  }
  const auto listener = grouped.query<IColumnsChangeListener>();
  const com_ptr<IColumnsChangeEvent> added(make_object<ColumnsChangeEvent>().get());
  added->Initialize(source.columns.get(), NewColumn(OLESTR("K.G.v"), 5, OLESTR("Shown K.G.v")).get());
  EXPECT_EQ(listener->ColumnAfterAdd(added.get()), S_OK);
  EXPECT_EQ(SchemaOf(own.get()), (std::vector<std::string>{"G.a/10/<null>", "G.b/10/<null>", "G.x/7/<null>",
                                                           "y/7/<null>", "G.z/7/<null>", "G.w/7/<null>",
                                                           "G.v/5/G.v"}));
  EXPECT_EQ(heard, Transcript(5, "own.ColumnAfterAdd(null)")) << "only the summaries of switching back on";

  for (const OLECHAR* name : {OLESTR("y"), OLESTR("H.G.x"), OLESTR("G.z")}) {
    EXPECT_EQ(source.RemoveColumn(name), S_OK);
  }
  EXPECT_EQ(NamesOf(RawColumnsOf(own.get()).query<IMutableColumns>().get()),
            (std::vector<std::string>{"G.a", "G.b", "y", "G.w", "G.v"}));
}

// The source and its columns hold the grouped list, which holds the source:
// the pair lives until the client takes the grouped list out of the three
// registries, and then goes whichever is released first.
TEST_F(GroupLists, ThePairLivesUntilTheClientLeavesTheSourceThenGoesInEitherOrder) {
  // What a client does: leave the two list registries and the columns'.
  const auto leave = [](IDispatch* origin, IMutableColumns* columns, IUnknown* grouped) {
    const com_ptr<IUnknown> g(grouped);
    if (const auto list = com_ptr<IDispatch>(origin).try_query<IMutableRecordList>()) {
      EXPECT_EQ(list->RemoveRecordListChangeListener(g.query<IRecordListChangeListener>().get()), S_OK);
      EXPECT_EQ(list->RemoveRecordListValueChangeListener(g.query<IRecordListValueChangeListener>().get()), S_OK);
    } else {
      const auto view = com_ptr<IDispatch>(origin).query<IRecordList>();
      EXPECT_EQ(view->RemoveRecordListChangeListener(g.query<IRecordListChangeListener>().get()), S_OK);
      EXPECT_EQ(view->RemoveRecordListValueChangeListener(g.query<IRecordListValueChangeListener>().get()), S_OK);
    }
    EXPECT_EQ(columns->RemoveColumnsChangeListener(g.query<IColumnsChangeListener>().get()), S_OK);
  };
  enum Kind { kOverList, kOverView, kMutable };
  for (const Kind kind : {kOverList, kOverView, kMutable}) {
    for (const bool sourceFirst : {false, true}) {
      SCOPED_TRACE(std::to_string(kind) + (sourceFirst ? " source first" : " grouped first"));
      const long start = ModuleLock::Count();
      {
        SourceTable table{{OLESTR("G.a")}};
        table.AddRecord({4});
        IDispatch* origin = kind == kOverView ? static_cast<IDispatch*>(table.View().get()) : table.list.get();
        com_ptr<IUnknown> grouped =
            kind == kMutable ? identity_of(static_cast<IMutableRecordList*>(make_object<GroupMutableRecordList>().get()))
                             : identity_of(static_cast<IRecordList*>(make_object<GroupRecordList>().get()));
        grouped.query<IGroupRecordListRaw>()->Create(origin, _bstr_t(OLESTR("G")));
        com_ptr<IRecordList> view;
        if (kind == kMutable) grouped.query<IMutableRecordList>()->get_RecordList(view.put());
        view.reset();
        table.AddRecord({5});  // grouped records made and dropped on the way
        ExpectFailure(table.AddColumn(OLESTR("G.b")), "Failed to add column.");

        IUnknown* kept = grouped.get();
        const long alive = ModuleLock::Count();
        grouped.reset();
        EXPECT_EQ(ModuleLock::Count(), alive) << "kept alive by the source's registries";
        grouped = com_ptr<IUnknown>(kept);
        leave(origin, table.columns.get(), grouped.get());
        EXPECT_EQ(table.AddColumn(OLESTR("G.b")), S_OK) << "nothing left on the source's columns to refuse it";

        if (sourceFirst) table = SourceTable();
        grouped.reset();
      }
      EXPECT_EQ(ModuleLock::Count(), start);
    }
  }
}

}  // namespace
}  // namespace brevo::testing
