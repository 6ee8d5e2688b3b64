// The header made from the IDL against the library it describes: its class
// and interface identifiers are the module's and the type library's, and C
// and C++ clients share one definition of each.
#include <gtest/gtest.h>

#include <string>

#include "c_client.h"
#include "table.h"

namespace sdk_test {
namespace {

struct Class {
  const char* name;
  CLSID clsid;
  IID defaultInterface;
};

const Class kClasses[] = {
    {"MutableColumns", CLSID_MutableColumns, IID_IMutableColumns},
    {"MutableRecordList", CLSID_MutableRecordList, IID_IMutableRecordList},
    {"GroupMutableRecordList", CLSID_GroupMutableRecordList, IID_IMutableRecordList},
    {"RecordChangeEvent", CLSID_RecordChangeEvent, IID_IRecordChangeEvent},
    {"ColumnsChangeEvent", CLSID_ColumnsChangeEvent, IID_IColumnsChangeEvent},
    {"RecordListChangeEvent", CLSID_RecordListChangeEvent, IID_IRecordListChangeEvent},
    {"RecordListValueChangeEvent", CLSID_RecordListValueChangeEvent, IID_IRecordListValueChangeEvent},
    {"PropertyChangeEvent", CLSID_PropertyChangeEvent, IID_IPropertyChangeEvent},
    {"RecordListUtils", CLSID_RecordListUtils, IID_IRecordListUtils},
    {"RecordsFactory", CLSID_RecordsFactory, IID_IRecordsFactory},
};

// Interfaces the classes above do not name as their default.
const IID kOtherInterfaces[] = {
    IID_IRecordChangeListener, IID_IColumnsChangeListener, IID_IRecordListChangeListener,
    IID_IRecordListValueChangeListener, IID_IPropertyChangeListener, IID_IColumn, IID_IMutableColumn, IID_IColumns,
    IID_IRecord, IID_IMutableRecord, IID_IRecordCondition, IID_IRecordComparator, IID_IRecordListIterator,
    IID_IRecordList,
};

struct TypeLibAttributes {
  GUID guid;
  WORD major, minor;
};

com_ptr<ITypeLib> TypeLibraryBesideTheModule() {
  wchar_t path[MAX_PATH];
  const DWORD length = GetModuleFileNameW(Module(), path, MAX_PATH);
  std::wstring tlb(path, length);
  tlb.replace(tlb.rfind(L".dll"), 4, L".tlb");
  com_ptr<ITypeLib> library;
  LoadTypeLibEx(tlb.c_str(), REGKIND_NONE, library.put());
  return library;
}

TEST(GeneratedHeader, EveryClassMakesItsDefaultInterface) {
  for (const Class& c : kClasses) {
    SCOPED_TRACE(c.name);
    com_ptr<IDispatch> object;
    EXPECT_NO_THROW(CreateInstance(c.clsid, c.defaultInterface, object.put_void()));
    EXPECT_TRUE(object);
  }
}

TEST(GeneratedHeader, IdentifiersAreTheTypeLibrarys) {
  const auto library = TypeLibraryBesideTheModule();
  ASSERT_TRUE(library);
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);
  const TypeLibAttributes seen{attributes->guid, attributes->wMajorVerNum, attributes->wMinorVerNum};
  library->ReleaseTLibAttr(attributes);
  EXPECT_TRUE(seen.guid == LIBID_BrevoRecordListLib);
  EXPECT_EQ(seen.major, 1);
  EXPECT_EQ(seen.minor, 0);

  const auto described = [&](REFGUID id) {
    com_ptr<ITypeInfo> info;
    return library->GetTypeInfoOfGuid(id, info.put()) == S_OK;
  };
  for (const Class& c : kClasses) {
    EXPECT_TRUE(described(c.clsid)) << c.name;
    EXPECT_TRUE(described(c.defaultInterface)) << c.name;
  }
  for (std::size_t i = 0; i < std::size(kOtherInterfaces); ++i) EXPECT_TRUE(described(kOtherInterfaces[i])) << i;
  EXPECT_TRUE(__uuidof(IMutableRecord) == IID_IMutableRecord);
}

TEST(GeneratedHeader, ACClientCallsThroughTheVtables) {
  const auto columns = Create<IMutableColumns>(CLSID_MutableColumns);
  EXPECT_EQ(CAddNameColumn(columns.get()), 1);
  EXPECT_EQ(CAddNameColumn(columns.get()), -1) << "names are unique";
  EXPECT_EQ(CLibraryId(), &LIBID_BrevoRecordListLib) << "one definition for C and C++";
}

}  // namespace
}  // namespace sdk_test
