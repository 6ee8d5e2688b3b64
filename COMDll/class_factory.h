// The class object of a creatable class: one per class, kept for the life of
// the module (so it takes no share of the lock count itself); LockServer
// holds the module.
#pragma once

#include "core/implements.h"

namespace brevo {

template <class T>
class ClassFactory final : public IClassFactory {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    if (out == nullptr) return E_POINTER;
    if (iid == iid_of<IUnknown>() || iid == iid_of<IClassFactory>()) {
      *out = static_cast<IClassFactory*>(this);
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** out) override {
    return brevo::CreateInstance<T>(outer, iid, out);
  }
  STDMETHODIMP LockServer(BOOL lock) override {
    lock ? ModuleLock::Increment() : ModuleLock::Decrement();
    return S_OK;
  }
};

template <class T>
IClassFactory* FactoryOf() {
  static ClassFactory<T> factory;
  return &factory;
}

}  // namespace brevo
