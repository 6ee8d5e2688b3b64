// The IDL and the C++ name tables must not drift: every dual interface's
// members are checked against the type library made from the IDL (name,
// dispatch id, parameter count); creatable classes describe themselves.
#include <algorithm>
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
    // Every function the type library lists beyond IUnknown and IDispatch is in
    // the name table, and every member of the name table is listed.
    std::set<MEMBERID> described;
    for (UINT i = 0; i < attr->cFuncs; ++i) {
      FUNCDESC* desc = nullptr;
      ASSERT_EQ(info->GetFuncDesc(i, &desc), S_OK);
      const MEMBERID id = desc->memid;
      const bool put = desc->invkind == INVOKE_PROPERTYPUT || desc->invkind == INVOKE_PROPERTYPUTREF;
      const UINT params = static_cast<UINT>(desc->cParams);
      info->ReleaseFuncDesc(desc);
      if (id >= 0x60000000) continue;
      BSTR name = nullptr;
      info->GetDocumentation(id, &name, nullptr, nullptr, nullptr);
      const unique_variant ownedName = MakeValue(VT_BSTR, &VARIANT::bstrVal, name);
      const DispatchMember* end = table.members + table.count;
      const DispatchMember* member = std::find_if(table.members, end, [id](const auto& m) { return m.id == id; });
      ASSERT_NE(member, end) << Narrow(name) << " (id " << id << ") is not in the name table";
      SCOPED_TRACE(Narrow(member->names[0]));
      EXPECT_EQ(Lower(name), Lower(member->names[0]));
      if (!put) {
        EXPECT_EQ(params, member->inputs);
      }
      EXPECT_TRUE(!put || member->put != nullptr) << "the type library lets scripts assign it";
      described.insert(id);
    }
    EXPECT_EQ(described.size(), table.count) << "a member of the name table is missing from the type library";
  }
}

TEST(TypeLibrary, CreatableClassesDescribeThemselvesAndTheirDispatchSide) {
  const ObjectMap& map = TheObjectMap();
  for (std::size_t i = 0; i < map.count; ++i) {
    const CreatableClass& entry = map.classes[i];
    SCOPED_TRACE(Narrow(entry.progId));
    com_ptr<IDispatch> dispatch;
    ASSERT_EQ(entry.factory->CreateInstance(nullptr, iid_of<IDispatch>(), dispatch.put_void()), S_OK);
    com_ptr<ITypeInfo> classInfo;
    ASSERT_EQ(dispatch.query<IProvideClassInfo>()->GetClassInfo(classInfo.put()), S_OK);
    EXPECT_TRUE(IsEqualGUID(AttrOf(classInfo.get())->guid, *entry.clsid));
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
