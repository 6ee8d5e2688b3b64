// The module as hosts use it: registration, class objects by ProgID and class
// identifier, and unloading once nothing is alive. Every key the registration
// writes is checked under Wine by the registration script.
#include <string>

#include "COMDll/object_map.h"
#include "columns/mutable_columns.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

template <class F = HRESULT(STDAPICALLTYPE*)()>
F Entry(const char* name) {
  return reinterpret_cast<F>(platform::FindLibraryEntry("BrevoRecordList", name));
}

using Text = std::basic_string<OLECHAR>;

Text GuidText(REFGUID guid) {
  OLECHAR text[40] = {};
  StringFromGUID2(guid, text, 40);
  return text;
}

// A value under CLSID\{clsid}<below>.
std::string ReadClassKey(REFCLSID clsid, const OLECHAR* below = OLESTR(""), const OLECHAR* name = nullptr) {
  return ReadRegistry((OLESTR("CLSID\\") + GuidText(clsid) + below).c_str(), name);
}

class Module : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(Entry("DllRegisterServer"), nullptr) << "the module beside the tests";
    ASSERT_EQ(Entry("DllRegisterServer")(), S_OK);
  }
  void TearDown() override { EXPECT_EQ(Entry("DllUnregisterServer")(), S_OK); }
};

TEST_F(Module, RegistersEveryClassUnderBothProgIdsUntilUnregistered) {
  const ObjectMap& map = TheObjectMap();
  ASSERT_EQ(map.count, 10u);
  for (std::size_t i = 0; i < map.count; ++i) {
    const CreatableClass& entry = map.classes[i];
    SCOPED_TRACE(Narrow(entry.progId));
    for (const OLECHAR* progId : {entry.progId, entry.versionIndependentProgId}) {
      CLSID clsid{};
      ASSERT_EQ(CLSIDFromProgID(progId, &clsid), S_OK);
      EXPECT_TRUE(IsEqualGUID(clsid, *entry.clsid));
      com_ptr<IDispatch> object;
      EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iid_of<IDispatch>(), object.put_void()), S_OK);
    }
    EXPECT_EQ(ReadClassKey(*entry.clsid), Narrow(entry.friendlyName));
    EXPECT_EQ(ReadClassKey(*entry.clsid, OLESTR("\\InprocServer32"), OLESTR("ThreadingModel")), "apartment");
  }
  LPOLESTR progId = nullptr;
  ASSERT_EQ(ProgIDFromCLSID(map.classes[2].clsid[0], &progId), S_OK);
  EXPECT_EQ(Narrow(progId), "GroupMutableRecordList.GroupMutable.1.0") << "the irregular ProgIDs stand";
  CoTaskMemFree(progId);

  ASSERT_EQ(Entry("DllUnregisterServer")(), S_OK);
  CLSID none{};
  EXPECT_NE(CLSIDFromProgID(map.classes[9].versionIndependentProgId, &none), S_OK);
  EXPECT_EQ(ReadClassKey(*map.classes[9].clsid), "<missing>");
  EXPECT_EQ(Entry("DllRegisterServer")(), S_OK);
}

TEST_F(Module, RegistersItsApplicationIdFromItsScriptAndKeepsTheAppIdRoot) {
  const Text appIdKey = OLESTR("AppID\\") + GuidText(kApplicationId);
  const OLECHAR* moduleKey = OLESTR("AppID\\BrevoRecordList.DLL");
  EXPECT_EQ(ReadRegistry(appIdKey.c_str()), "BrevoRecordList");
  EXPECT_EQ(ReadRegistry(moduleKey, OLESTR("AppID")), Narrow(GuidText(kApplicationId).c_str()));

  // A key of someone else's under AppID shows that the root was left alone.
  const OLECHAR* neighbour = OLESTR("AppID\\BrevoModuleTestNeighbour");
  ASSERT_EQ(platform::SetRegistryString(neighbour, nullptr, OLESTR("kept")), S_OK);
  ASSERT_EQ(Entry("DllUnregisterServer")(), S_OK);
  EXPECT_EQ(ReadRegistry(appIdKey.c_str()), "<missing>");
  EXPECT_EQ(ReadRegistry(moduleKey, OLESTR("AppID")), "<missing>");
  EXPECT_EQ(ReadRegistry(neighbour), "kept");
  EXPECT_EQ(platform::DeleteRegistryTree(neighbour), S_OK);
}

TEST_F(Module, ServesObjectsAndUnloadsWhenNoneIsLeft) {
  const auto canUnload = Entry("DllCanUnloadNow");
  CLSID clsid{};
  ASSERT_EQ(CLSIDFromProgID(OLESTR("BrevoRecordList.MutableColumns"), &clsid), S_OK);
  com_ptr<IClassFactory> factory;
  const auto getClassObject = Entry<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, LPVOID*)>("DllGetClassObject");
  ASSERT_EQ(getClassObject(clsid, iid_of<IClassFactory>(), factory.put_void()), S_OK);
  {
    com_ptr<IMutableColumns> columns;
    ASSERT_EQ(factory->CreateInstance(nullptr, iid_of<IMutableColumns>(), columns.put_void()), S_OK);
    EXPECT_EQ(canUnload(), S_FALSE);
    const _bstr_t name(OLESTR("a"));
    com_ptr<IMutableColumn> column;
    ASSERT_EQ(columns->AddColumn(name.GetBSTR(), 10, column.put()), S_OK);
    EXPECT_EQ(columns->AddColumn(name.GetBSTR(), 10, column.put()), DISP_E_EXCEPTION);
    EXPECT_EQ(TakeErrorInfo().source, "BrevoRecordList.MutableColumns.1") << "the error names its class";
  }
  EXPECT_EQ(canUnload(), S_OK);
  EXPECT_EQ(factory->LockServer(TRUE), S_OK);
  EXPECT_EQ(canUnload(), S_FALSE) << "a lock holds the module";
  factory->LockServer(FALSE);
  EXPECT_EQ(canUnload(), S_OK);
  void* none = nullptr;
  EXPECT_EQ(getClassObject(GUID_NULL, iid_of<IClassFactory>(), &none), CLASS_E_CLASSNOTAVAILABLE);
}

}  // namespace
}  // namespace brevo::testing
