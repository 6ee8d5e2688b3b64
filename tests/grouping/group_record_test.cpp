// The grouped record views: reading and writing the source record through the
// true-index table, and the source's value events re-raised for the group.
#include "core/module_lock.h"
#include "group_fixture.h"
#include "grouping/group_mutable_columns.h"
#include "grouping/group_record.h"

namespace brevo::testing {
namespace {

// Source columns G.a, x, G.b grouped by G: grouped positions 0 and 1 lead to
// source columns 0 and 2.
class GroupRecords : public ::testing::Test {
 protected:
  // The read-only view for shape 0, the writable one for 1.
  com_ptr<IDispatch> View(int shape, IDispatch* origin) {
    com_ptr<IGroupRecordRaw> made;
    if (shape == 0) {
      made = com_ptr<IGroupRecordRaw>(make_object<GroupRecord>().get());
    } else {
      made = com_ptr<IGroupRecordRaw>(make_object<GroupMutableRecord>().get());
    }
    made->Create(origin, grouped.get(), _bstr_t(OLESTR("G")));
    return made.query<IDispatch>();
  }
  static void Switch(IDispatch* view, VARIANT_BOOL on) {
    if (const auto writable = com_ptr<IDispatch>(view).try_query<IMutableRecord>()) {
      EXPECT_EQ(writable->EnableMutableRecordEvents(on), S_OK);
    } else {
      EXPECT_EQ(com_ptr<IDispatch>(view).query<IRecord>()->EnableRecordEvents(on), S_OK);
    }
  }
  com_ptr<CComObject<EventLog>> Listen(IDispatch* view) {
    auto log = make_object<EventLog>("l", lines);
    log->owner = identity_of(view).get();
    if (const auto writable = com_ptr<IDispatch>(view).try_query<IMutableRecord>()) {
      writable->AddRecordChangeListener(log.get());
    } else {
      com_ptr<IDispatch>(view).query<IRecord>()->AddRecordChangeListener(log.get());
    }
    return log;
  }

  SourceTable source{{OLESTR("G.a"), OLESTR("x"), OLESTR("G.b")}};
  com_ptr<IMutableColumns> grouped{[this] {
    auto made = make_object<GroupMutableColumns>();
    made->GroupMutableColumnsImpl::Create(source.columns.get(), _bstr_t(OLESTR("G")));
    return com_ptr<IMutableColumns>(made.get());
  }()};
  com_ptr<IMutableRecord> record = source.AddRecord({1, 5, 2});
  Lines lines;
};

TEST_F(GroupRecords, ReadTheSourceRecordThroughTheTrueIndexTable) {
  com_ptr<IRecord> readOnly;
  record->get_Record(readOnly.put());
  for (IDispatch* origin : {static_cast<IDispatch*>(record.get()), static_cast<IDispatch*>(readOnly.get())}) {
    for (const int shape : {0, 1}) {
      const auto view = View(shape, origin);
      SCOPED_TRACE(Describe(view.get()));
      EXPECT_EQ(IntOf(view.get(), 1), 2) << "source column 2";
      EXPECT_EQ(view.query<IRecordRaw>()->ColumnCount(), 2u);
      VARIANT byName;
      VariantInit(&byName);
      const auto read = view.try_query<IRecord>();
      EXPECT_EQ(read ? read->GetValueByName(_bstr_t(OLESTR("x")).GetBSTR(), &byName)
                     : view.query<IMutableRecord>()->GetValueByName(_bstr_t(OLESTR("x")).GetBSTR(), &byName),
                S_OK);
      EXPECT_EQ(byName.vt, VT_EMPTY) << "x is not a column of the group";
      EXPECT_EQ(identity_of(view.query<IGroupRecordRaw>()->GetSource().get()), identity_of(origin));
    }
  }
}

TEST_F(GroupRecords, GroupMutableRecordWritesAndClearsTheSource) {
  const auto view = View(1, record.get()).query<IMutableRecord>();
  EXPECT_EQ(view->SetValueAsInt32(1, 20), S_OK);
  EXPECT_EQ(IntOf(record.get(), 2), 20);
  unique_variant ten = MakeValue(VT_I4, &VARIANT::lVal, LONG{10});
  EXPECT_EQ(view->SetValueByName(_bstr_t(OLESTR("G.a")).GetBSTR(), ten.get()), S_OK);
  EXPECT_EQ(IntOf(record.get(), 0), 10);
  ExpectFailure(view->SetValueByName(_bstr_t(OLESTR("x")).GetBSTR(), ten.get()), "Column name doesn't found.");
  ExpectFailure(view->SetValueAsString(0, _bstr_t(OLESTR("t")).GetBSTR()), "New value class type doesn't match the column type.");

  com_ptr<IRecord> readOnly;
  EXPECT_EQ(view->get_Record(readOnly.put()), S_OK);
  EXPECT_EQ(Describe(readOnly.get()), "GroupRecord 10");
  EXPECT_EQ(IntOf(readOnly.get(), 1), 20);

  EXPECT_EQ(view->Clear(), S_OK);
  LONG size = -1;
  source.columns->get_Size(&size);
  EXPECT_EQ(size, 0) << "clearing the source record clears its columns";
}

TEST_F(GroupRecords, ReRaiseTheSourcesValueEventsForTheGroupAtGroupedPositions) {
  for (const int shape : {0, 1}) {
    const auto view = View(shape, record.get());
    SCOPED_TRACE(Describe(view.get()));
    lines.clear();
    const auto log = Listen(view.get());
    record->SetValueAsInt32(1, 6 + shape);  // x: outside the group
    record->SetValueAsInt32(2, 3 + shape);
    EXPECT_EQ(lines, (Lines{"l.ValueBeforeChange(1)", "l.ValueAfterChange(1)"}));
    EXPECT_EQ(log->foreignSources, 0) << "raised with the grouped record as source";

    // Switched off, group changes are remembered for one summary.
    lines.clear();
    Switch(view.get(), VARIANT_FALSE);
    record->SetValueAsInt32(0, 4 + shape);
    EXPECT_TRUE(lines.empty());
    Switch(view.get(), VARIANT_TRUE);
    EXPECT_EQ(lines, (Lines{"l.ValueAfterChange(-1)"}));
  }
}

TEST_F(GroupRecords, AVetoOfTheirListenersStopsTheSourcesChange) {
  for (const int shape : {0, 1}) {
    const auto view = View(shape, record.get());
    SCOPED_TRACE(Describe(view.get()));
    lines.clear();
    Listen(view.get())->stop = true;
    ExpectFailure(record->SetValueAsInt32(2, 9), "Failed to change value.");
    EXPECT_EQ(IntOf(record.get(), 2), 2);
    EXPECT_EQ(record->SetValueAsInt32(1, 9 + shape), S_OK) << "not asked about a column outside the group";
    EXPECT_EQ(lines, (Lines{"l.ValueBeforeChange(1)"}));
    if (shape == 1) ExpectFailure(view.query<IMutableRecord>()->SetValueAsInt32(1, 9), "Failed to change value.");
  }
}

TEST_F(GroupRecords, RegisterOnceOnTheirSourceAndLeaveItOnTheLastRelease) {
  const long start = ModuleLock::Count();
  auto made = make_object<GroupRecord>();
  IGroupRecordRaw* raw = made.get();
  raw->Create(record.get(), grouped.get(), _bstr_t(OLESTR("G")));
  raw->Create(record.get(), grouped.get(), _bstr_t(OLESTR("G")));  // the same source again changes nothing
  Listen(static_cast<IRecord*>(made.get()));
  record->SetValueAsInt32(0, 7);
  EXPECT_EQ(lines, (Lines{"l.ValueBeforeChange(0)", "l.ValueAfterChange(0)"}));

  const auto other = source.AddRecord({8, 8, 8});
  raw->Create(other.get(), grouped.get(), _bstr_t(OLESTR("G")));
  lines.clear();
  record->SetValueAsInt32(0, 1);
  EXPECT_TRUE(lines.empty()) << "the first source was left";
  EXPECT_EQ(IntOf(static_cast<IRecord*>(made.get())), 8);
  made.reset();
  EXPECT_EQ(ModuleLock::Count(), start + 1) << "only the second source record is left";
}

}  // namespace
}  // namespace brevo::testing
