// Steps against the classes root that stop at the first failure: the writes
// after it are skipped and the failure is the result.
#pragma once

#include <string>

#include "platform/com.h"

namespace brevo {

using WideText = std::basic_string<OLECHAR>;

class RegistryWriter {
 public:
  template <class Step>
  void Run(Step&& step) {
    if (SUCCEEDED(hr_)) hr_ = step();
  }
  void Set(const WideText& key, const OLECHAR* name, const WideText& value) {
    Run([&] { return platform::SetRegistryString(key.c_str(), name, value.c_str()); });
  }
  void Key(const WideText& key) {
    Run([&] { return platform::CreateRegistryKey(key.c_str()); });
  }
  void Delete(const WideText& key) {
    Run([&] { return platform::DeleteRegistryTree(key.c_str()); });
  }
  HRESULT Result() const { return hr_; }

 private:
  HRESULT hr_ = S_OK;
};

}  // namespace brevo
