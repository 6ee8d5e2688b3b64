// The record list utilities: the groups of a list's column names, grouped views
// that leave nothing behind when refused, and the save that always fails.
#include "core/module_lock.h"
#include "factory/record_list_utils.h"
#include "grouping/group_fixture.h"

namespace brevo::testing {
namespace {

// The mutable list's forms read the same names through the collection's view.
TEST(ListUtils, CountAndNameDistinctGroupsInOrderOfFirstAppearance) {
  const com_ptr<IRecordListUtils> utils(make_object<RecordListUtils>().get());
  // The column names, and the groups named at 0, 1, ...: then "" for the index at the count.
  const std::pair<std::vector<const OLECHAR*>, Transcript> cases[] = {
      {{OLESTR("A.x"), OLESTR("B.y.z"), OLESTR("A.z"), OLESTR("w")}, {"A", "B", ""}},
      {{OLESTR("a.x"), OLESTR("A.y")}, {"a", "A", ""}},
      {{OLESTR("x"), OLESTR("y")}, {""}},
      // A leading "." is an empty group to the count and is skipped by the names.
      {{OLESTR(".x"), OLESTR("x.y")}, {"x", "", ""}},
  };
  ULONG count = 99, mutableCount = 99;
  BSTR name = nullptr;
  for (const auto& [columns, groups] : cases) {
    SCOPED_TRACE(Narrow(columns[0]));
    SourceTable table;
    for (const OLECHAR* column : columns) table.AddColumn(column);
    EXPECT_EQ(utils->GetGroupCount(table.View().get(), &count), S_OK);
    EXPECT_EQ(utils->GetMutableGroupCount(table.list.get(), &mutableCount), S_OK);
    EXPECT_EQ(count + 1, groups.size());
    EXPECT_EQ(mutableCount, count);
    for (ULONG i = 0; i < groups.size(); ++i) {
      EXPECT_EQ(utils->GetGroupName(table.View().get(), i, &name), S_OK);
      EXPECT_EQ(Narrow(_bstr_t(name, false)), groups[i]);  // a null string would read "<null>"
      EXPECT_EQ(utils->GetMutableGroupName(table.list.get(), i, &name), S_OK);
      EXPECT_EQ(Narrow(_bstr_t(name, false)), groups[i]);
    }
  }
  EXPECT_EQ(utils->GetGroupCount(nullptr, &count), E_POINTER);
  EXPECT_EQ(utils->GetMutableGroupName(nullptr, 0, &name), E_POINTER);
}

// The save fails as the utilities' error; a refused grouped view leaves nothing
// behind, a made one reads the rows.
TEST(ListUtils, GroupedViewsOfBothListFormsAndTheSaveThatAlwaysFails) {
  const com_ptr<IRecordListUtils> utils(make_object<RecordListUtils>().get());
  const _bstr_t group(OLESTR("G"));
  EXPECT_EQ(utils->SaveToFile(nullptr, group.GetBSTR()), DISP_E_EXCEPTION);
  const ErrorSnapshot error = TakeErrorInfo();
  EXPECT_EQ(error.description, "Method SaveToFile not yet implemented.");
  EXPECT_TRUE(IsEqualGUID(error.guid, iid_of<IRecordListUtils>()));

  SourceTable table{{OLESTR("G.a"), OLESTR("c")}};
  com_ptr<IColumns> columnsView;  // made on first request and kept by the collection
  table.columns->get_Columns(columnsView.put());
  const auto view = table.View();
  const long before = ModuleLock::Count();
  com_ptr<IRecordList> grouped;
  com_ptr<IMutableRecordList> mutableGrouped;
  ExpectFailure(utils->GetRecordListByGroup(view.get(), group.GetBSTR(), grouped.put()),
                "No such group found in recordlist.");
  ExpectFailure(utils->GetMutableRecordListByGroup(table.list.get(), group.GetBSTR(), mutableGrouped.put()),
                "No such group found in recordlist.");
  EXPECT_FALSE(grouped || mutableGrouped);
  EXPECT_EQ(ModuleLock::Count(), before);
  EXPECT_EQ(table.RemoveColumn(OLESTR("c")), S_OK) << "no grouped list is left on the source's columns";

  table.AddRecord({1});
  ASSERT_EQ(utils->GetRecordListByGroup(view.get(), group.GetBSTR(), grouped.put()), S_OK);
  ASSERT_EQ(utils->GetMutableRecordListByGroup(table.list.get(), group.GetBSTR(), mutableGrouped.put()), S_OK);
  com_ptr<IRecordListIterator> it;
  mutableGrouped->GetIterator(VARIANT_FALSE, it.put());
  EXPECT_EQ(Walk(it.get()), Transcript{"GroupMutableRecord 1"});
  grouped.query<IGroupRecordListRaw>()->Unregister();  // or the pairs would keep themselves alive
  mutableGrouped.query<IGroupRecordListRaw>()->Unregister();
}

}  // namespace
}  // namespace brevo::testing
