// A million tables made, filled and let go through the module's class
// objects, as a long-running host would: memory stays flat and the module can
// unload at the end.
#include "columns/mutable_columns.h"
#include "lists/mutable_record_list.h"
#include "platform/process_memory.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

template <class F = HRESULT(STDAPICALLTYPE*)()>
F Entry(const char* name) {
  return reinterpret_cast<F>(platform::FindLibraryEntry("BrevoRecordList", name));
}

template <class I>
com_ptr<IClassFactory> FactoryOf(REFCLSID clsid) {
  com_ptr<IClassFactory> factory;
  const auto getClassObject = Entry<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, LPVOID*)>("DllGetClassObject");
  EXPECT_EQ(getClassObject(clsid, iid_of<IClassFactory>(), factory.put_void()), S_OK);
  return factory;
}

// One table of two columns and three rows, filled, walked and let go.
void Cycle(IClassFactory* columnsFactory, IClassFactory* listFactory, LONG n) {
  com_ptr<IMutableColumns> columns;
  com_ptr<IMutableRecordList> list;
  ASSERT_EQ(columnsFactory->CreateInstance(nullptr, iid_of<IMutableColumns>(), columns.put_void()), S_OK);
  ASSERT_EQ(listFactory->CreateInstance(nullptr, iid_of<IMutableRecordList>(), list.put_void()), S_OK);
  const _bstr_t number(OLESTR("n")), text(OLESTR("s")), value(OLESTR("value"));
  com_ptr<IMutableColumn> column;
  ASSERT_EQ(columns->AddColumn(number.GetBSTR(), 10, column.put()), S_OK);
  ASSERT_EQ(columns->AddColumn(text.GetBSTR(), 8, column.put()), S_OK);
  ASSERT_EQ(list->Create(columns.get()), S_OK);
  for (LONG row = 0; row < 3; ++row) {
    com_ptr<IMutableRecord> record;
    ASSERT_EQ(list->AddRecord(record.put()), S_OK);
    ASSERT_EQ(record->SetValueAsInt32(0, n + row), S_OK);
    ASSERT_EQ(record->SetValueAsString(1, value.GetBSTR()), S_OK);
  }
  com_ptr<IRecordListIterator> it;
  ASSERT_EQ(list->GetIterator(VARIANT_TRUE, it.put()), S_OK);
  for (VARIANT_BOOL more = VARIANT_FALSE; it->HasNext(&more) == S_OK && more != VARIANT_FALSE;) {
    com_ptr<IDispatch> next;
    ASSERT_EQ(it->Next(next.put()), S_OK);
  }
}

TEST(Stress, AMillionTablesLeaveMemoryFlatAndTheModuleUnloadable) {
  ASSERT_NE(Entry("DllCanUnloadNow"), nullptr) << "the module beside the tests";
  {
    const auto columnsFactory = FactoryOf<IMutableColumns>(MutableColumns::kClassId);
    const auto listFactory = FactoryOf<IMutableRecordList>(MutableRecordList::kClassId);
    constexpr LONG kWarmUp = 100'000;
    constexpr LONG kCycles = 1'000'000;
    LONG n = 0;
    for (; n < kWarmUp; ++n) Cycle(columnsFactory.get(), listFactory.get(), n);
    const std::size_t settled = platform::HeapBytesInUse();
    for (; n < kCycles && !HasFatalFailure(); ++n) Cycle(columnsFactory.get(), listFactory.get(), n);
    const std::size_t after = platform::HeapBytesInUse();
    EXPECT_LT(after, settled + (1u << 20)) << "grew from " << settled << " to " << after << " bytes";
  }
  EXPECT_EQ(Entry("DllCanUnloadNow")(), S_OK);
}

}  // namespace
}  // namespace brevo::testing
