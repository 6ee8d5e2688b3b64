#include "module.h"

#include <stdexcept>

namespace sdk_test {
namespace {

template <class Entry>
Entry EntryPoint(const char* name) {
  const auto entry = reinterpret_cast<Entry>(reinterpret_cast<void*>(GetProcAddress(Module(), name)));
  if (entry == nullptr) throw std::runtime_error(std::string("no entry point ") + name);
  return entry;
}

}  // namespace

HMODULE Module() {
  static const HMODULE module = LoadLibraryW(L"BrevoRecordList.dll");
  if (module == nullptr) throw std::runtime_error("cannot load BrevoRecordList.dll");
  return module;
}

void CreateInstance(REFCLSID clsid, REFIID iid, void** object) {
  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  com_ptr<IClassFactory> factory;
  HRESULT hr = EntryPoint<GetClassObject>("DllGetClassObject")(clsid, IID_IClassFactory, factory.put_void());
  if (SUCCEEDED(hr)) hr = factory->CreateInstance(nullptr, iid, object);
  if (FAILED(hr)) throw std::runtime_error("cannot create an object of the module");
}

HRESULT CanUnloadNow() {
  using CanUnload = HRESULT(STDAPICALLTYPE*)();
  return EntryPoint<CanUnload>("DllCanUnloadNow")();
}

}  // namespace sdk_test
