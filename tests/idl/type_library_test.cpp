// The interface definition and the C++ declarations must not drift: every
// member of every dual interface's name table is checked against the type
// library made from the IDL (name, dispatch id, parameter count), and every
// creatable class describes itself through IProvideClassInfo.
#include <cctype>
#include <set>
#include <string>

#include "COMDll/object_map.h"
#include "core/dispatch.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

// A type info's attributes and function descriptions, released on scope exit.
class TypeInfoView {
 public:
  explicit TypeInfoView(ITypeInfo* info) : info_(info) { EXPECT_EQ(info_->GetTypeAttr(&attr_), S_OK); }
  ~TypeInfoView() {
    if (attr_ != nullptr) info_->ReleaseTypeAttr(attr_);
  }
  const TYPEATTR& attr() const { return *attr_; }

  struct Function {
    MEMBERID id;
    INVOKEKIND kind;
    SHORT params;
    std::string name;
  };
  Function FunctionAt(UINT index) const {
    FUNCDESC* desc = nullptr;
    EXPECT_EQ(info_->GetFuncDesc(index, &desc), S_OK);
    Function function{desc->memid, desc->invkind, desc->cParams, {}};
    BSTR name = nullptr;
    UINT count = 0;
    if (info_->GetNames(desc->memid, &name, 1, &count) == S_OK) {
      function.name = Narrow(name);
      SysFreeString(name);
    }
    info_->ReleaseFuncDesc(desc);
    return function;
  }

 private:
  ITypeInfo* info_;
  TYPEATTR* attr_ = nullptr;
};

std::string Lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

// The type library is built on the windows build only.
bool HaveTypeLibrary() {
  com_ptr<ITypeInfo> info;
  return SUCCEEDED(LibraryTypeInfo(*DispatchTables().front().iid, info.put()));
}

TEST(TypeLibrary, EveryDualInterfaceMatchesItsNameTable) {
  ASSERT_TRUE(HaveTypeLibrary()) << "BrevoRecordList.tlb missing beside the module";
  for (const DispatchTable& table : DispatchTables()) {
    com_ptr<ITypeInfo> info;
    ASSERT_EQ(LibraryTypeInfo(*table.iid, info.put()), S_OK);
    const TypeInfoView view(info.get());
    SCOPED_TRACE(view.attr().cFuncs);
    EXPECT_EQ(view.attr().typekind, TKIND_DISPATCH) << "a dual interface is described by its dispatch side";
    EXPECT_TRUE(view.attr().wTypeFlags & TYPEFLAG_FDUAL);

    // Every function the type library lists beyond IUnknown and IDispatch.
    std::set<std::string> described;
    for (UINT i = 0; i < view.attr().cFuncs; ++i) {
      const auto function = view.FunctionAt(i);
      if (function.id >= 0x60000000) continue;
      const DispatchMember* member = nullptr;
      for (std::size_t m = 0; m < table.count; ++m) {
        if (table.members[m].id == function.id) member = &table.members[m];
      }
      ASSERT_NE(member, nullptr) << function.name << " (id " << function.id << ") is not in the name table";
      const std::string name = Narrow(member->names[0]);
      SCOPED_TRACE(name);
      EXPECT_EQ(Lower(function.name), Lower(name));
      if (function.kind == INVOKE_PROPERTYPUT || function.kind == INVOKE_PROPERTYPUTREF) {
        EXPECT_NE(member->put, nullptr) << "the type library lets scripts assign it";
      } else {
        EXPECT_EQ(static_cast<UINT>(function.params), member->inputs);
      }
      described.insert(Lower(name));
    }
    // ... and every member of the name table is in the type library.
    for (std::size_t m = 0; m < table.count; ++m) {
      EXPECT_EQ(described.count(Lower(Narrow(table.members[m].names[0]))), 1u)
          << Narrow(table.members[m].names[0]) << " is missing from the type library";
    }
  }
}

TEST(TypeLibrary, CreatableClassesDescribeThemselvesAndTheirDispatchSide) {
  ASSERT_TRUE(HaveTypeLibrary());
  const ObjectMap& map = TheObjectMap();
  for (std::size_t i = 0; i < map.count; ++i) {
    const CreatableClass& entry = map.classes[i];
    SCOPED_TRACE(Narrow(entry.progId));
    com_ptr<IClassFactory> factory;
    ASSERT_EQ(DllGetClassObject(*entry.clsid, iid_of<IClassFactory>(), factory.put_void()), S_OK);
    com_ptr<IUnknown> object;
    ASSERT_EQ(factory->CreateInstance(nullptr, iid_of<IUnknown>(), object.put_void()), S_OK);
    com_ptr<IProvideClassInfo> provider;
    ASSERT_EQ(object->QueryInterface(iid_of<IProvideClassInfo>(), provider.put_void()), S_OK);
    com_ptr<ITypeInfo> classInfo;
    ASSERT_EQ(provider->GetClassInfo(classInfo.put()), S_OK);
    {
      const TypeInfoView view(classInfo.get());
      EXPECT_EQ(view.attr().typekind, TKIND_COCLASS);
      EXPECT_TRUE(IsEqualGUID(view.attr().guid, *entry.clsid));
    }

    com_ptr<IDispatch> dispatch;
    ASSERT_EQ(object->QueryInterface(iid_of<IDispatch>(), dispatch.put_void()), S_OK);
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
