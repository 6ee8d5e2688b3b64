#include "core/com_error.h"

#include "core/com_ptr.h"
#include "core/interface_id.h"

namespace brevo {
namespace {

_bstr_t Text(IErrorInfo* info, HRESULT (STDMETHODCALLTYPE IErrorInfo::*getter)(BSTR*)) {
  BSTR text = nullptr;
  if (info == nullptr || FAILED((info->*getter)(&text))) return _bstr_t();
  return _bstr_t(text, false);
}

}  // namespace

_com_error::_com_error(HRESULT hr, IErrorInfo* info) noexcept : hr_(hr), info_(info) {}

_com_error::_com_error(const _com_error& other) noexcept : hr_(other.hr_), info_(other.info_) {
  if (info_ != nullptr) info_->AddRef();
}

_com_error& _com_error::operator=(const _com_error& other) noexcept {
  if (this != &other) {
    if (other.info_ != nullptr) other.info_->AddRef();
    if (info_ != nullptr) info_->Release();
    hr_ = other.hr_;
    info_ = other.info_;
  }
  return *this;
}

_com_error::~_com_error() {
  if (info_ != nullptr) info_->Release();
}

_bstr_t _com_error::Description() const { return Text(info_, &IErrorInfo::GetDescription); }

_bstr_t _com_error::Source() const { return Text(info_, &IErrorInfo::GetSource); }

GUID _com_error::Guid() const noexcept {
  GUID guid{};
  if (info_ != nullptr) info_->GetGUID(&guid);
  return guid;
}

IErrorInfo* _com_error::ErrorInfo() const noexcept {
  if (info_ != nullptr) info_->AddRef();
  return info_;
}

void _com_issue_error(HRESULT hr) { throw _com_error(hr); }

void _com_issue_errorex(HRESULT hr, IUnknown* callee, REFIID iid) {
  com_ptr<IErrorInfo> info;
  com_ptr<ISupportErrorInfo> support;
  if (callee != nullptr && SUCCEEDED(callee->QueryInterface(iid_of<ISupportErrorInfo>(), support.put_void())) &&
      support->InterfaceSupportsErrorInfo(iid) == S_OK && GetErrorInfo(0, info.put()) != S_OK) {
    info.reset();
  }
  throw _com_error(hr, info.detach());  // the error takes the reference
}

}  // namespace brevo
