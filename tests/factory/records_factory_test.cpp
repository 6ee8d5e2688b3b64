// The records factory: one private list made on the first request, whose
// columns count for every later request, and its two kinds of failure.
#include "core/module_lock.h"
#include "factory/records_factory.h"
#include "support/schema.h"

namespace brevo::testing {
namespace {

TEST(RecordsFactory, TheFirstRequestsColumnsServeEveryRecordAndTheRecordsOutliveTheFactory) {
  const long start = ModuleLock::Count();
  {
    com_ptr<IRecordsFactory> factory(make_object<RecordsFactory>().get());
    const auto first = Schema({{OLESTR("a"), 10}, {OLESTR("b"), 10}});
    com_ptr<IMutableRecord> one, two, three;
    ASSERT_EQ(factory->CreateMutableRecordFromColumns(first.get(), one.put()), S_OK);
    ASSERT_EQ(factory->CreateMutableRecordFromColumns(Schema({{OLESTR("x"), 10}}).get(), two.put()), S_OK);
    ASSERT_EQ(factory->CreateMutableRecord(three.put()), S_OK);
    factory.reset();
    for (IMutableRecord* record : {one.get(), two.get(), three.get()}) {
      com_ptr<IMutableColumns> columns;
      EXPECT_EQ(record->get_Columns(columns.put()), S_OK);
      EXPECT_EQ(identity_of(columns.get()), identity_of(first.get()));
    }
  }
  EXPECT_EQ(ModuleLock::Count(), start);
}

// A first request without usable columns spoils the factory. The list's null
// collection failure has no text, so the platform's arrives (0x80040000,
// "Unknown Error"); the list's own messages become the factory's.
TEST(RecordsFactory, FailuresKeepPlatformTextAndHideTheListsMessages) {
  for (const bool emptyColumns : {false, true}) {
    SCOPED_TRACE(emptyColumns);
    const com_ptr<IRecordsFactory> factory(make_object<RecordsFactory>().get());
    const auto empty = Schema();
    com_ptr<IMutableRecord> record;
    EXPECT_EQ(emptyColumns ? factory->CreateMutableRecordFromColumns(empty.get(), record.put())
                           : factory->CreateMutableRecord(record.put()),
              emptyColumns ? DISP_E_EXCEPTION : static_cast<HRESULT>(0x80040000));
    EXPECT_EQ(TakeErrorInfo().description, emptyColumns ? "Cannot create record." : "Unknown Error");
    EXPECT_EQ(record, nullptr);
    // Columns offered later come too late, unless they went into the
    // collection of the first request.
    com_ptr<IMutableColumn> added;
    ASSERT_EQ(empty->AddColumn(_bstr_t(OLESTR("a")).GetBSTR(), 10, added.put()), S_OK);
    EXPECT_EQ(factory->CreateMutableRecordFromColumns(Schema({{OLESTR("a"), 10}}).get(), record.put()),
              emptyColumns ? S_OK : static_cast<HRESULT>(0x80040000));
    ClearErrorInfo();
  }
}

}  // namespace
}  // namespace brevo::testing
