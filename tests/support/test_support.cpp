#include "support/test_support.h"

#include <cstring>

#include "core/bstr_t.h"

namespace brevo::testing {
namespace {

void ThrowInvalidParameter() { throw InvalidParameterRaised{}; }

std::string TextOf(IErrorInfo* info, HRESULT (STDMETHODCALLTYPE IErrorInfo::*getter)(BSTR*)) {
  BSTR text = nullptr;
  (info->*getter)(&text);
  std::string result = text != nullptr ? Narrow(text) : std::string();
  SysFreeString(text);
  return result;
}

}  // namespace

std::string Narrow(const OLECHAR* text) {
  if (text == nullptr) return "<null>";
  std::string result;
  for (; *text != 0; ++text) result += *text < 0x80 ? static_cast<char>(*text) : '?';
  return result;
}

std::string ReadRegistry(const OLECHAR* key, const OLECHAR* name) {
  BSTR value = nullptr;
  if (platform::GetRegistryString(key, name, &value) != S_OK) return "<missing>";
  return Narrow(_bstr_t(value, false));
}

ErrorSnapshot TakeErrorInfo() {
  ErrorSnapshot snapshot;
  com_ptr<IErrorInfo> info;
  if (GetErrorInfo(0, info.put()) != S_OK || !info) return snapshot;
  snapshot.present = true;
  snapshot.description = TextOf(info.get(), &IErrorInfo::GetDescription);
  snapshot.source = TextOf(info.get(), &IErrorInfo::GetSource);
  info->GetGUID(&snapshot.guid);
  return snapshot;
}

void ClearErrorInfo() { SetErrorInfo(0, nullptr); }

ScopedProgId::ScopedProgId(REFCLSID clsid, const OLECHAR* progId) : clsid_(clsid), progId_(progId) {
  EXPECT_EQ(platform::RegisterProgId(clsid, progId), S_OK);
}

ScopedProgId::~ScopedProgId() { platform::UnregisterProgId(clsid_, progId_); }

ScopedThrowingInvalidParameter::ScopedThrowingInvalidParameter()
    : previous_(platform::SetInvalidParameterHandler(&ThrowInvalidParameter)) {}

ScopedThrowingInvalidParameter::~ScopedThrowingInvalidParameter() {
  platform::SetInvalidParameterHandler(previous_);
}

unique_variant MakeValue(VARTYPE vt) {
  unique_variant value;
  std::memset(static_cast<void*>(&value.get()), 0, sizeof(VARIANT));
  value->vt = vt;
  return value;
}

unique_variant MakeString(const OLECHAR* text) { return MakeValue(VT_BSTR, &VARIANT::bstrVal, SysAllocString(text)); }

STDMETHODIMP CountedObject::QueryInterface(REFIID iid, void** out) {
  if (!(iid == iid_of<IUnknown>())) {
    *out = nullptr;
    return E_NOINTERFACE;
  }
  *out = this;
  AddRef();
  return S_OK;
}

void ExpectFailure(HRESULT hr, const char* description) {
  EXPECT_EQ(hr, DISP_E_EXCEPTION);
  EXPECT_EQ(TakeErrorInfo().description, description);
}

}  // namespace brevo::testing
