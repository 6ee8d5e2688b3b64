// Error objects and the per-thread error slot.
#include <new>
#include <string>

#include "platform/native/oleauto.h"
#include "platform/native/out_of_memory.h"

namespace {

class ErrorInfo final : public IErrorInfo, public ICreateErrorInfo {
 public:
  STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override {
    if (ppv == nullptr) return E_POINTER;
    if (riid == IID_IUnknown || riid == IID_IErrorInfo) {
      *ppv = static_cast<IErrorInfo*>(this);
    } else if (riid == IID_ICreateErrorInfo) {
      *ppv = static_cast<ICreateErrorInfo*>(this);
    } else {
      *ppv = nullptr;
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++refs_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --refs_;
    if (left == 0) delete this;
    return left;
  }

  STDMETHODIMP GetGUID(GUID* pGUID) override {
    if (pGUID == nullptr) return E_INVALIDARG;
    *pGUID = guid_;
    return S_OK;
  }
  STDMETHODIMP GetSource(BSTR* out) override { return Get(source_, out); }
  STDMETHODIMP GetDescription(BSTR* out) override { return Get(description_, out); }
  STDMETHODIMP GetHelpFile(BSTR* out) override { return Get(helpFile_, out); }
  STDMETHODIMP GetHelpContext(DWORD* out) override {
    if (out == nullptr) return E_INVALIDARG;
    *out = helpContext_;
    return S_OK;
  }

  STDMETHODIMP SetGUID(REFGUID rguid) override {
    guid_ = rguid;
    return S_OK;
  }
  STDMETHODIMP SetSource(LPOLESTR text) override { return Set(source_, text); }
  STDMETHODIMP SetDescription(LPOLESTR text) override { return Set(description_, text); }
  STDMETHODIMP SetHelpFile(LPOLESTR text) override { return Set(helpFile_, text); }
  STDMETHODIMP SetHelpContext(DWORD context) override {
    helpContext_ = context;
    return S_OK;
  }

 private:
  struct Text {
    bool set = false;
    std::u16string value;
  };

  static HRESULT Get(const Text& text, BSTR* out) {
    if (out == nullptr) return E_INVALIDARG;
    *out = text.set ? SysAllocStringLen(text.value.data(), static_cast<UINT>(text.value.size())) : nullptr;
    return S_OK;
  }
  static HRESULT Set(Text& text, LPOLESTR value) {
    return brevo::platform::OutOfMemoryAsResult([&] {
      text.value = value != nullptr ? std::u16string(value) : std::u16string();
      text.set = value != nullptr;
      return S_OK;
    });
  }

  ULONG refs_ = 1;
  GUID guid_ = GUID_NULL;
  Text source_;
  Text description_;
  Text helpFile_;
  DWORD helpContext_ = 0;
};

// The slot lets go of its error when the thread ends, as the system's does.
struct ErrorSlot {
  IErrorInfo* info = nullptr;
  ~ErrorSlot() {
    if (info != nullptr) info->Release();
  }
};
thread_local ErrorSlot t_errorSlot;

}  // namespace

extern "C" {

HRESULT CreateErrorInfo(ICreateErrorInfo** pperrinfo) {
  if (pperrinfo == nullptr) return E_INVALIDARG;
  auto* info = new (std::nothrow) ErrorInfo();
  *pperrinfo = info;
  return info != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT SetErrorInfo(ULONG, IErrorInfo* perrinfo) {
  if (perrinfo != nullptr) perrinfo->AddRef();
  IErrorInfo* previous = t_errorSlot.info;
  t_errorSlot.info = perrinfo;
  if (previous != nullptr) previous->Release();
  return S_OK;
}

// Hands the slot's reference to the caller and empties the slot.
HRESULT GetErrorInfo(ULONG, IErrorInfo** pperrinfo) {
  if (pperrinfo == nullptr) return E_INVALIDARG;
  *pperrinfo = t_errorSlot.info;
  t_errorSlot.info = nullptr;
  return *pperrinfo != nullptr ? S_OK : S_FALSE;
}

}  // extern "C"
