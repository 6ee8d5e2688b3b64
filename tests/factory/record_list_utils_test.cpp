// The record list utilities: counting and naming the groups of a list's
// column names, making grouped views, and the save that always fails.
#include "core/module_lock.h"
#include "factory/record_list_utils.h"
#include "grouping/group_fixture.h"

namespace brevo::testing {
namespace {

class ListUtils : public ::testing::Test {
 protected:
  // The group names at 0...limit-1, read from the mutable list or from its view.
  Lines Names(SourceTable& table, bool mutableList, ULONG limit) {
    Lines names;
    for (ULONG i = 0; i < limit; ++i) {
      BSTR name = nullptr;
      const HRESULT hr = mutableList ? utils->GetMutableGroupName(table.list.get(), i, &name)
                                     : utils->GetGroupName(table.View().get(), i, &name);
      EXPECT_EQ(hr, S_OK);
      EXPECT_NE(name, nullptr) << "no group gives an empty string";
      names.push_back(Text(name));
    }
    return names;
  }
  static void ExpectUtilsError(HRESULT hr, const char* description) {
    EXPECT_EQ(hr, DISP_E_EXCEPTION);
    const ErrorSnapshot error = TakeErrorInfo();
    EXPECT_EQ(error.description, description);
    EXPECT_TRUE(IsEqualGUID(error.guid, iid_of<IRecordListUtils>()));
  }

  com_ptr<IRecordListUtils> utils{make_object<RecordListUtils>().get()};
};

TEST_F(ListUtils, CountAndNameDistinctGroupsInOrderOfFirstAppearance) {
  struct Case {
    std::vector<const OLECHAR*> names;
    ULONG count;
    Lines groups;
  };
  for (const Case& c : {
           Case{{OLESTR("A.x"), OLESTR("B.y"), OLESTR("A.z"), OLESTR("w")}, 2, {"A", "B"}},
           Case{{OLESTR("a.x"), OLESTR("A.y")}, 2, {"a", "A"}},
           Case{{OLESTR("x"), OLESTR("y")}, 0, {}},
           Case{{OLESTR("A.b.c"), OLESTR("A.d")}, 1, {"A"}},
           // A leading "." is an empty group to the count and is skipped by the names.
           Case{{OLESTR(".x"), OLESTR("A.y")}, 2, {"x", "A"}},
           Case{{OLESTR(".x"), OLESTR("x.y")}, 2, {"x", ""}},
           Case{{OLESTR(".."), OLESTR("A.b")}, 2, {"", "A"}},
       }) {
    SourceTable table;
    for (const OLECHAR* name : c.names) table.AddColumn(name);
    for (const bool mutableList : {false, true}) {
      SCOPED_TRACE(Narrow(c.names[0]) + (mutableList ? " mutable" : " read-only"));
      ULONG count = 99;
      EXPECT_EQ(mutableList ? utils->GetMutableGroupCount(table.list.get(), &count)
                            : utils->GetGroupCount(table.View().get(), &count),
                S_OK);
      EXPECT_EQ(count, c.count);
      Lines expected = c.groups;
      expected.push_back("");  // an index at the count
      EXPECT_EQ(Names(table, mutableList, c.count + 1), expected);
    }
  }
}

TEST_F(ListUtils, NullListsFailWithEPointer) {
  ULONG count = 0;
  BSTR name = nullptr;
  com_ptr<IRecordList> grouped;
  com_ptr<IMutableRecordList> mutableGrouped;
  EXPECT_EQ(utils->GetGroupCount(nullptr, &count), E_POINTER);
  EXPECT_EQ(utils->GetMutableGroupCount(nullptr, &count), E_POINTER);
  EXPECT_EQ(utils->GetGroupName(nullptr, 0, &name), E_POINTER);
  EXPECT_EQ(utils->GetMutableGroupName(nullptr, 0, &name), E_POINTER);
  EXPECT_EQ(utils->GetRecordListByGroup(nullptr, nullptr, grouped.put()), E_POINTER);
  EXPECT_EQ(utils->GetMutableRecordListByGroup(nullptr, nullptr, mutableGrouped.put()), E_POINTER);
}

TEST_F(ListUtils, MakeGroupedViewsOverTheList) {
  SourceTable table{{OLESTR("G.a"), OLESTR("G.b")}};
  table.AddRecord({1, 10});
  Hooked hooked;
  com_ptr<IRecordList> grouped;
  EXPECT_EQ(utils->GetRecordListByGroup(table.View().get(), _bstr_t(OLESTR("G")).GetBSTR(), grouped.put()), S_OK);
  hooked.Keep(grouped);
  EXPECT_EQ(identity_of(grouped.query<IGroupRecordListRaw>()->GetSource().get()), identity_of(table.View().get()));
  EXPECT_FALSE(grouped.try_query<IMutableRecordList>());

  com_ptr<IMutableRecordList> mutableGrouped;
  EXPECT_EQ(utils->GetMutableRecordListByGroup(table.list.get(), _bstr_t(OLESTR("G")).GetBSTR(), mutableGrouped.put()),
            S_OK);
  hooked.Keep(mutableGrouped);
  com_ptr<IMutableRecord> added;
  EXPECT_EQ(mutableGrouped->AddRecord(added.put()), S_OK);
  ULONG size = 0;
  grouped->get_Size(&size);
  EXPECT_EQ(size, 2u) << "both views show the one source";
}

TEST_F(ListUtils, AFailedGroupedViewLeavesNothingBehind) {
  SourceTable table{{OLESTR("G.a"), OLESTR("c")}};
  com_ptr<IColumns> columnsView;  // made on first request and kept by the collection
  table.columns->get_Columns(columnsView.put());
  table.View();
  const long before = ModuleLock::Count();
  com_ptr<IRecordList> grouped;
  ExpectUtilsError(utils->GetRecordListByGroup(table.View().get(), _bstr_t(OLESTR("G")).GetBSTR(), grouped.put()),
                   "No such group found in recordlist.");
  EXPECT_FALSE(grouped);
  com_ptr<IMutableRecordList> mutableGrouped;
  ExpectUtilsError(
      utils->GetMutableRecordListByGroup(table.list.get(), _bstr_t(OLESTR("G")).GetBSTR(), mutableGrouped.put()),
      "No such group found in recordlist.");
  EXPECT_FALSE(mutableGrouped);
  EXPECT_EQ(ModuleLock::Count(), before);
  EXPECT_EQ(table.AddColumn(OLESTR("G.d")), S_OK) << "no grouped list is left on the source's columns";
}

TEST_F(ListUtils, SaveToFileAlwaysFails) {
  SourceTable table{{OLESTR("G.a")}};
  ExpectUtilsError(utils->SaveToFile(nullptr, nullptr), "Method SaveToFile not yet implemented.");
  ExpectUtilsError(utils->SaveToFile(table.list.get(), _bstr_t(OLESTR("table.txt")).GetBSTR()),
                   "Method SaveToFile not yet implemented.");
}

}  // namespace
}  // namespace brevo::testing
