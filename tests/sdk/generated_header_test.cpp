// The header made from the IDL against the library it describes: its class
// and interface identifiers are the module's, and C and C++ clients share one
// definition of each.
#include <gtest/gtest.h>

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

TEST(GeneratedHeader, EveryClassMakesItsDefaultInterface) {
  for (const Class& c : kClasses) {
    SCOPED_TRACE(c.name);
    com_ptr<IDispatch> object;
    EXPECT_NO_THROW(CreateInstance(c.clsid, c.defaultInterface, object.put_void()));
    EXPECT_TRUE(object);
  }
}

TEST(GeneratedHeader, ACClientCallsThroughTheVtables) {
  const auto columns = Create<IMutableColumns>(CLSID_MutableColumns);
  EXPECT_EQ(CAddNameColumn(columns.get()), 1);
  EXPECT_EQ(CAddNameColumn(columns.get()), -1) << "names are unique";
  EXPECT_EQ(CLibraryId(), &LIBID_BrevoRecordListLib) << "one definition for C and C++";
  EXPECT_TRUE(__uuidof(IMutableColumns) == IID_IMutableColumns);
}

}  // namespace
}  // namespace sdk_test
