// The IDL and the C++ name tables must not drift: every dual interface's
// members are checked against the type library made from the IDL (name,
// dispatch id, parameter count); creatable classes describe themselves.
#include <cctype>
#include <memory>
#include <set>
#include <string>

#include "COMDll/object_map.h"
#include "core/dispatch.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

// A type info's attributes, released with the holder.
auto AttrOf(ITypeInfo* info) {
  TYPEATTR* attr = nullptr;
  EXPECT_EQ(info->GetTypeAttr(&attr), S_OK);
  const auto release = [info](TYPEATTR* held) { info->ReleaseTypeAttr(held); };
  return std::unique_ptr<TYPEATTR, decltype(release)>(attr, release);
}

std::string Lower(const OLECHAR* text) {
  std::string result = Narrow(text);
  for (char& c : result) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return result;
}

TEST(TypeLibrary, EveryDualInterfaceMatchesItsNameTable) {
  for (const DispatchTable& table : DispatchTables()) {
    com_ptr<ITypeInfo> info;
    ASSERT_EQ(LibraryTypeInfo(*table.iid, info.put()), S_OK) << "BrevoRecordList.tlb missing beside the module";
    const auto attr = AttrOf(info.get());
    EXPECT_EQ(attr->typekind, TKIND_DISPATCH) << "a dual interface is described by its dispatch side";
    EXPECT_TRUE(attr->wTypeFlags & TYPEFLAG_FDUAL);
    // Every function the type library lists beyond IUnknown and IDispatch...
    std::set<std::string> described;
    for (UINT i = 0; i < attr->cFuncs; ++i) {
      FUNCDESC* desc = nullptr;
      ASSERT_EQ(info->GetFuncDesc(i, &desc), S_OK);
      const MEMBERID id = desc->memid;
      const bool put = desc->invkind == INVOKE_PROPERTYPUT || desc->invkind == INVOKE_PROPERTYPUTREF;
      const UINT params = static_cast<UINT>(desc->cParams);
      info->ReleaseFuncDesc(desc);
      if (id >= 0x60000000) continue;
      BSTR name = nullptr;
      UINT count = 0;
      info->GetNames(id, &name, 1, &count);
      const unique_variant ownedName = MakeValue(VT_BSTR, &VARIANT::bstrVal, name);
      const DispatchMember* member = nullptr;
      for (std::size_t m = 0; m < table.count; ++m) {
        if (table.members[m].id == id) member = &table.members[m];
      }
      ASSERT_NE(member, nullptr) << Narrow(name) << " (id " << id << ") is not in the name table";
      SCOPED_TRACE(Narrow(member->names[0]));
      EXPECT_EQ(Lower(name), Lower(member->names[0]));
      if (put) {
        EXPECT_NE(member->put, nullptr) << "the type library lets scripts assign it";
      } else {
        EXPECT_EQ(params, member->inputs);
      }
      described.insert(Lower(member->names[0]));
    }
    // ... and every member of the name table is in the type library.
    for (std::size_t m = 0; m < table.count; ++m) {
      EXPECT_EQ(described.count(Lower(table.members[m].names[0])), 1u)
          << Narrow(table.members[m].names[0]) << " is missing from the type library";
    }
  }
}

TEST(TypeLibrary, CreatableClassesDescribeThemselvesAndTheirDispatchSide) {
  const ObjectMap& map = TheObjectMap();
  for (std::size_t i = 0; i < map.count; ++i) {
    const CreatableClass& entry = map.classes[i];
    SCOPED_TRACE(Narrow(entry.progId));
    com_ptr<IClassFactory> factory;
    ASSERT_EQ(DllGetClassObject(*entry.clsid, iid_of<IClassFactory>(), factory.put_void()), S_OK);
    com_ptr<IUnknown> object;
    ASSERT_EQ(factory->CreateInstance(nullptr, iid_of<IUnknown>(), object.put_void()), S_OK);
    com_ptr<ITypeInfo> classInfo;
    ASSERT_EQ(object.query<IProvideClassInfo>()->GetClassInfo(classInfo.put()), S_OK);
    const auto attr = AttrOf(classInfo.get());
    EXPECT_EQ(attr->typekind, TKIND_COCLASS);
    EXPECT_TRUE(IsEqualGUID(attr->guid, *entry.clsid));
    const com_ptr<IDispatch> dispatch = object.query<IDispatch>();
    UINT count = 0;
    EXPECT_EQ(dispatch->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1u);
    com_ptr<ITypeInfo> dispatchInfo;
    EXPECT_EQ(dispatch->GetTypeInfo(0, 0, dispatchInfo.put()), S_OK);
    EXPECT_EQ(dispatch->GetTypeInfo(1, 0, dispatchInfo.put()), DISP_E_BADINDEX);
  }
}

}  // namespace
}  // namespace brevo::testing
