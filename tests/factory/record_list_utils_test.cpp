// The record list utilities: the groups of a list's column names, grouped views
// that leave nothing behind when refused, and the save that always fails.
#include "core/module_lock.h"
#include "factory/record_list_utils.h"
#include "grouping/group_fixture.h"

namespace brevo::testing {
namespace {

// Failures of the utilities name IRecordListUtils as their source.
void ExpectUtilsError(HRESULT hr, const char* description) {
  EXPECT_EQ(hr, DISP_E_EXCEPTION);
  const ErrorSnapshot error = TakeErrorInfo();
  EXPECT_EQ(error.description, description);
  EXPECT_TRUE(IsEqualGUID(error.guid, iid_of<IRecordListUtils>()));
}

TEST(ListUtils, CountAndNameDistinctGroupsInOrderOfFirstAppearance) {
  const com_ptr<IRecordListUtils> utils(make_object<RecordListUtils>().get());
  // The column names, and the groups named at 0, 1, ...: then "" for the index at the count.
  const std::pair<std::vector<const OLECHAR*>, Lines> cases[] = {
      {{OLESTR("A.x"), OLESTR("B.y"), OLESTR("A.z"), OLESTR("w")}, {"A", "B", ""}},
      {{OLESTR("a.x"), OLESTR("A.y")}, {"a", "A", ""}},
      {{OLESTR("x"), OLESTR("y")}, {""}},
      {{OLESTR("A.b.c"), OLESTR("A.d")}, {"A", ""}},
      // A leading "." is an empty group to the count and is skipped by the names.
      {{OLESTR(".x"), OLESTR("A.y")}, {"x", "A", ""}},
      {{OLESTR(".x"), OLESTR("x.y")}, {"x", "", ""}},
      {{OLESTR(".."), OLESTR("A.b")}, {"", "A", ""}},
  };
  for (const auto& [names, groups] : cases) {
    SCOPED_TRACE(Narrow(names[0]));
    SourceTable table;
    for (const OLECHAR* name : names) table.AddColumn(name);
    ULONG count = 99;
    EXPECT_EQ(utils->GetGroupCount(table.View().get(), &count), S_OK);
    EXPECT_EQ(count + 1, groups.size());
    for (ULONG i = 0; i < groups.size(); ++i) {
      BSTR name = nullptr;
      EXPECT_EQ(utils->GetGroupName(table.View().get(), i, &name), S_OK);
      EXPECT_EQ(Text(name), groups[i]);  // a null string would read "<null>"
    }
  }
  // The mutable list's forms read the same names through the collection's view.
  SourceTable table{{OLESTR(".x"), OLESTR("x.y")}};
  ULONG count = 99;
  BSTR name = nullptr;
  EXPECT_EQ(utils->GetMutableGroupCount(table.list.get(), &count), S_OK);
  EXPECT_EQ(utils->GetMutableGroupName(table.list.get(), 0, &name), S_OK);
  EXPECT_EQ(std::to_string(count) + Text(name), "2x");
  EXPECT_EQ(utils->GetGroupCount(nullptr, &count), E_POINTER);
  EXPECT_EQ(utils->GetMutableGroupCount(nullptr, &count), E_POINTER);
  EXPECT_EQ(utils->GetGroupName(nullptr, 0, &name), E_POINTER);
  EXPECT_EQ(utils->GetMutableGroupName(nullptr, 0, &name), E_POINTER);
}

TEST(ListUtils, GroupedViewsOfBothListFormsReadTheSourceRows) {
  const com_ptr<IRecordListUtils> utils(make_object<RecordListUtils>().get());
  SourceTable table{{OLESTR("G.a"), OLESTR("G.b")}};
  table.AddRecord({1, 10});
  const _bstr_t group(OLESTR("G"));
  Hooked hooked;
  com_ptr<IRecordList> grouped;
  ASSERT_EQ(utils->GetRecordListByGroup(table.View().get(), group.GetBSTR(), grouped.put()), S_OK);
  com_ptr<IMutableRecordList> mutableGrouped;
  ASSERT_EQ(utils->GetMutableRecordListByGroup(table.list.get(), group.GetBSTR(), mutableGrouped.put()), S_OK);
  com_ptr<IRecordList> mutableView;
  ASSERT_EQ(hooked.Keep(mutableGrouped)->get_RecordList(mutableView.put()), S_OK);
  for (IRecordList* list : {hooked.Keep(grouped).get(), mutableView.get()}) {
    com_ptr<IRecordListIterator> iterator;
    ASSERT_EQ(list->GetIterator(VARIANT_FALSE, iterator.put()), S_OK);
    com_ptr<IDispatch> row;
    ASSERT_EQ(iterator->Next(row.put()), S_OK);
    EXPECT_EQ(IntOf(row.get(), 1), 10);
  }
}

TEST(ListUtils, ARefusedGroupedViewLeavesNothingBehindAndSaveToFileAlwaysFails) {
  const com_ptr<IRecordListUtils> utils(make_object<RecordListUtils>().get());
  SourceTable table{{OLESTR("G.a"), OLESTR("c")}};
  com_ptr<IColumns> columnsView;  // made on first request and kept by the collection
  table.columns->get_Columns(columnsView.put());
  table.View();
  const long before = ModuleLock::Count();
  const _bstr_t group(OLESTR("G"));
  com_ptr<IRecordList> grouped;
  ExpectUtilsError(utils->GetRecordListByGroup(table.View().get(), group.GetBSTR(), grouped.put()),
                   "No such group found in recordlist.");
  EXPECT_FALSE(grouped);
  com_ptr<IMutableRecordList> mutableGrouped;
  ExpectUtilsError(utils->GetMutableRecordListByGroup(table.list.get(), group.GetBSTR(), mutableGrouped.put()),
                   "No such group found in recordlist.");
  EXPECT_FALSE(mutableGrouped);
  EXPECT_EQ(ModuleLock::Count(), before);
  EXPECT_EQ(table.AddColumn(OLESTR("G.d")), S_OK) << "no grouped list is left on the source's columns";

  ExpectUtilsError(utils->SaveToFile(table.list.get(), group.GetBSTR()), "Method SaveToFile not yet implemented.");
}

}  // namespace
}  // namespace brevo::testing
