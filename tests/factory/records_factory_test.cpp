// The records factory: one private list made on the first request, whose
// columns count for every later request, and its two kinds of failure.
#include "columns/mutable_columns.h"
#include "core/module_lock.h"
#include "factory/records_factory.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

com_ptr<IMutableColumns> ColumnsNamed(std::initializer_list<const OLECHAR*> names) {
  const com_ptr<IMutableColumns> columns(make_object<MutableColumns>().get());
  for (const OLECHAR* name : names) {
    com_ptr<IMutableColumn> added;
    EXPECT_EQ(columns->AddColumn(_bstr_t(name).GetBSTR(), 10, added.put()), S_OK);
  }
  return columns;
}

IUnknown* ColumnsOf(IMutableRecord* record) {
  com_ptr<IMutableColumns> columns;
  EXPECT_EQ(record->get_Columns(columns.put()), S_OK);
  return identity_of(columns.get()).get();
}

class RecordsFactoryTest : public ::testing::Test {
 protected:
  ~RecordsFactoryTest() override { ClearErrorInfo(); }
  com_ptr<IRecordsFactory> factory{make_object<RecordsFactory>().get()};
};

TEST_F(RecordsFactoryTest, TheFirstRequestsColumnsServeEveryRecord) {
  const auto first = ColumnsNamed({OLESTR("a"), OLESTR("b")});
  const auto second = ColumnsNamed({OLESTR("x")});
  com_ptr<IMutableRecord> one, two, three;
  ASSERT_EQ(factory->CreateMutableRecordFromColumns(first.get(), one.put()), S_OK);
  ASSERT_EQ(factory->CreateMutableRecordFromColumns(second.get(), two.put()), S_OK);
  ASSERT_EQ(factory->CreateMutableRecord(three.put()), S_OK);
  for (IMutableRecord* record : {one.get(), two.get(), three.get()}) {
    EXPECT_EQ(ColumnsOf(record), identity_of(first.get()).get());
  }
  // Two columns: cell 1 exists, and records are independent rows.
  EXPECT_EQ(one->SetValueAsInt32(1, 5), S_OK);
  LONG value = -1;
  EXPECT_EQ(two->GetValueAsInt32(1, &value), S_OK);
  EXPECT_EQ(value, 0);
}

// A first request without usable columns spoils the factory for good. The
// list's null-collection failure carries no text of its own, so it arrives as
// a null description (0x80040000, "Unknown Error"); the list's own messages
// become the factory's.
TEST_F(RecordsFactoryTest, FailuresKeepPlatformTextAndHideTheListsMessages) {
  struct Case {
    const char* name;
    bool firstWithColumns;  // the first request passes an empty collection
    HRESULT hr;
    const char* description;
  };
  for (const Case& c : {Case{"no columns", false, static_cast<HRESULT>(0x80040000), "Unknown Error"},
                        Case{"empty columns", true, DISP_E_EXCEPTION, "Cannot create record."}}) {
    SCOPED_TRACE(c.name);
    const com_ptr<IRecordsFactory> fresh(make_object<RecordsFactory>().get());
    const auto empty = ColumnsNamed({});
    for (int attempt = 0; attempt < 2; ++attempt) {
      com_ptr<IMutableRecord> record;
      const HRESULT hr = c.firstWithColumns ? fresh->CreateMutableRecordFromColumns(empty.get(), record.put())
                                            : fresh->CreateMutableRecord(record.put());
      EXPECT_EQ(hr, c.hr);
      EXPECT_EQ(TakeErrorInfo().description, c.description);
      EXPECT_EQ(record, nullptr);
    }
    // Columns offered after the first request come too late.
    const auto late = ColumnsNamed({OLESTR("a")});
    com_ptr<IMutableRecord> record;
    if (!c.firstWithColumns) {
      EXPECT_EQ(fresh->CreateMutableRecordFromColumns(late.get(), record.put()), c.hr);
    } else {
      // ... unless they go into the collection of the first request.
      com_ptr<IMutableColumn> added;
      ASSERT_EQ(empty->AddColumn(_bstr_t(OLESTR("a")).GetBSTR(), 10, added.put()), S_OK);
      EXPECT_EQ(fresh->CreateMutableRecordFromColumns(late.get(), record.put()), S_OK);
    }
  }
}

TEST(RecordsFactoryLifetime, RecordsOutliveTheFactoryAndEverythingGoesAtTheEnd) {
  const long start = ModuleLock::Count();
  com_ptr<IMutableRecord> record;
  {
    const com_ptr<IRecordsFactory> factory(make_object<RecordsFactory>().get());
    ASSERT_EQ(factory->CreateMutableRecordFromColumns(ColumnsNamed({OLESTR("a")}).get(), record.put()), S_OK);
  }
  EXPECT_EQ(record->SetValueAsInt32(0, 3), S_OK) << "the factory's list took its other rows with it; this is the only one";
  record.reset();
  EXPECT_EQ(ModuleLock::Count(), start);
}

}  // namespace
}  // namespace brevo::testing
