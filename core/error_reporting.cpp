#include "core/error_reporting.h"

#include <cstdint>

#include "core/com_ptr.h"

namespace brevo {

const OLECHAR* LoadModuleString(unsigned id) noexcept {
  return id == kProjectNameResource ? OLESTR("BrevoRecordList") : nullptr;
}

HRESULT ReportError(REFCLSID clsid, const OLECHAR* description, REFIID iid, HRESULT hr) noexcept {
  const auto resource = reinterpret_cast<std::uintptr_t>(description);
  if (resource < 0x10000) {
    description = LoadModuleString(static_cast<unsigned>(resource));
    if (description == nullptr) description = OLESTR("Unknown Error");
    if (hr == 0) hr = static_cast<HRESULT>(0x80040000u | static_cast<unsigned>(resource));
  }

  com_ptr<ICreateErrorInfo> info;
  if (SUCCEEDED(CreateErrorInfo(info.put()))) {
    info->SetGUID(iid);
    LPOLESTR progId = nullptr;
    if (SUCCEEDED(ProgIDFromCLSID(clsid, &progId)) && progId != nullptr) {
      info->SetSource(progId);
      CoTaskMemFree(progId);
    }
    info->SetDescription(const_cast<LPOLESTR>(description));
    if (const auto errorInfo = info.try_query<IErrorInfo>()) SetErrorInfo(0, errorInfo.get());
  }
  return hr != 0 ? hr : DISP_E_EXCEPTION;
}

HRESULT ReportException(REFCLSID clsid, REFIID iid, const EBvException& e) noexcept {
  return ReportError(clsid, e.GetDescription(), iid, e.GetCode());
}

HRESULT ReportException(REFCLSID clsid, REFIID iid, const _com_error& e) noexcept {
  try {
    const _bstr_t description = e.Description();
    return ReportError(clsid, description, iid, e.Error());
  } catch (...) {
    return ReportError(clsid, nullptr, iid, e.Error());
  }
}

}  // namespace brevo
