// The grouped mutable list: the schema and the rows are the source's, so
// Create and Clear are refused while records are added to the source and
// handed out as writable grouped records.
#include "core/module_lock.h"
#include "group_fixture.h"
#include "grouping/group_mutable_record_list.h"
#include "lists/row_fixture.h"

namespace brevo::testing {
namespace {

class GroupMutableLists : public ::testing::Test {
 protected:
  ULONG SourceSize() {
    ULONG size = 0;
    source.list->get_Size(&size);
    return size;
  }

  SourceTable source{{OLESTR("G.a"), OLESTR("G.b")}};
  com_ptr<IMutableRecord> first = source.AddRecord({1, 10});
  com_ptr<IMutableRecord> second = source.AddRecord({2, 20});
  Hooked hooked;
  com_ptr<IMutableRecordList> grouped{[this] {
    auto made = hooked.Keep(com_ptr<IMutableRecordList>(make_object<GroupMutableRecordList>().get()));
    made.query<IGroupRecordListRaw>()->Create(source.list.get(), _bstr_t(OLESTR("G")));
    return made;
  }()};
  Lines lines;
};

TEST_F(GroupMutableLists, RefuseCreateAndClearLeavingTheSourceAsItWas) {
  EXPECT_EQ(grouped->Create(source.columns.get()), DISP_E_EXCEPTION);
  const ErrorSnapshot error = TakeErrorInfo();
  EXPECT_EQ(error.description, "Cannot make add operation on grouped object.");
  EXPECT_TRUE(IsEqualGUID(error.guid, iid_of<IMutableRecordList>()));
  ExpectFailure(grouped->Clear(), "Cannot make remove operation on grouped object.");
  EXPECT_EQ(SourceSize(), 2u);
  LONG columns = 0;
  source.columns->get_Size(&columns);
  EXPECT_EQ(columns, 2);
}

TEST_F(GroupMutableLists, AddRecordAddsToTheSourceAndHandsOutAWritableGroupedRecord) {
  com_ptr<IMutableRecord> added;
  EXPECT_EQ(grouped->AddRecord(added.put()), S_OK);
  EXPECT_EQ(SourceSize(), 3u);
  EXPECT_EQ(Describe(added.get()), "GroupMutableRecord 0");
  EXPECT_EQ(added->SetValueAsInt32(1, 30), S_OK);
  com_ptr<IRecordListIterator> it;
  source.list->GetIterator(VARIANT_TRUE, it.put());
  EXPECT_EQ(Walk(it.get()).back(), "record 0");
  const auto row = added.query<IGroupRecordRaw>()->GetSource();
  EXPECT_EQ(IntOf(row.get(), 1), 30);

  // A refusal of the source reaches the caller as the source's.
  auto refusing = make_object<EventLog>("s", lines);
  refusing->stop = true;
  source.list->AddRecordListChangeListener(refusing.get());
  ExpectFailure(grouped->AddRecord(added.put()), "Failed to add record.");
  EXPECT_EQ(SourceSize(), 3u);
}

TEST_F(GroupMutableLists, IteratorsWrapTheSourcesRowsAsWritableGroupedRecords) {
  com_ptr<IRecordListIterator> it;
  grouped->GetIterator(VARIANT_TRUE, it.put());
  EXPECT_EQ(Walk(it.get()), (Lines{"GroupMutableRecord 1", "GroupMutableRecord 2"}));
  grouped->GetFilteredIterator(make_object<KeyCondition>(2, VARIANT_TRUE).get(), VARIANT_TRUE, it.put());
  EXPECT_EQ(Walk(it.get()), (Lines{"GroupMutableRecord 2"}));
  grouped->GetSortedIterator(make_object<KeyComparator>(FirstMinusSecond).get(), VARIANT_TRUE, it.put());
  EXPECT_EQ(Walk(it.get()), (Lines{"GroupMutableRecord 2", "GroupMutableRecord 1"}));

  grouped->GetIterator(VARIANT_TRUE, it.put());
  com_ptr<IDispatch> next;
  it->Next(next.put());
  EXPECT_EQ(identity_of(next.query<IGroupRecordRaw>()->GetSource().get()), identity_of(first.get()));
  EXPECT_EQ(it->Remove(), S_OK);
  EXPECT_EQ(SourceSize(), 1u) << "removed from the source";

  LONG compared = -7;
  EXPECT_EQ(grouped->CompareTo(source.list.get(), &compared), S_OK);
  EXPECT_EQ(compared, 0);
  com_ptr<IMutableColumns> own;
  grouped->get_Columns(own.put());
  EXPECT_NE(own.get(), source.columns.get());
  EXPECT_EQ(SchemaOf(own.get()), SchemaOf(source.columns.get()));
}

TEST_F(GroupMutableLists, RecordListIsAPlainReadOnlyViewOfTheGroupedList) {
  com_ptr<IRecordList> view, again;
  EXPECT_EQ(grouped->get_RecordList(view.put()), S_OK);
  grouped->get_RecordList(again.put());
  EXPECT_EQ(view.get(), again.get());
  EXPECT_EQ(view.query<IRecordListRaw>()->GetMutableRecordList().get(), grouped.get());
  EXPECT_FALSE(view.try_query<IGroupRecordListRaw>());

  com_ptr<IRecordListIterator> it;
  view->GetIterator(VARIANT_TRUE, it.put());
  EXPECT_EQ(Walk(it.get()), (Lines{"GroupRecord 1", "GroupRecord 2"}));
  auto log = make_object<EventLog>("v", lines);
  log->owner = identity_of(grouped.get()).get();
  view->AddRecordListChangeListener(log.get());
  source.AddRecord({});
  EXPECT_EQ(lines, (Lines{"v.RecordAfterAdd(GroupMutableRecord 0)", "v.RecordAfterAdd(GroupMutableRecord 0)"}));
  EXPECT_EQ(log->foreignSources, 0) << "passed on as the grouped list raised them";

  // The view outlives its list only as an empty shell.
  hooked.made.front()->Unregister();
  hooked.made.clear();
  grouped.reset();
  ULONG size = 0;
  EXPECT_EQ(view->get_Size(&size), E_POINTER);
}

TEST_F(GroupMutableLists, ItsRecordsClearTheSourceRecord) {
  com_ptr<IRecordListIterator> it;
  grouped->GetIterator(VARIANT_TRUE, it.put());
  com_ptr<IDispatch> next;
  it->Next(next.put());
  EXPECT_EQ(next.query<IMutableRecord>()->Clear(), S_OK);
  LONG columns = -1;
  source.columns->get_Size(&columns);
  EXPECT_EQ(columns, 0) << "clearing the source record clears its columns";
}

}  // namespace
}  // namespace brevo::testing
