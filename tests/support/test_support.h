// Helpers shared by every test executable.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "core/com_ptr.h"
#include "core/implements.h"
#include "core/unique_variant.h"
#include "platform/com.h"

namespace brevo::testing {

// Wide text as narrow (ASCII) text, for readable assertions; null reads "<null>".
std::string Narrow(const OLECHAR* text);

// A string value of the classes root as narrow text; "<missing>" when the key
// or the value is not there. A null name reads the default value.
std::string ReadRegistry(const OLECHAR* key, const OLECHAR* name = nullptr);

// What the calling thread's error slot held; taking it empties the slot.
struct ErrorSnapshot {
  bool present = false;
  std::string description;
  std::string source;
  GUID guid{};
};
ErrorSnapshot TakeErrorInfo();
// A library refusal: DISP_E_EXCEPTION with the message in the error slot,
// which this empties.
void ExpectFailure(HRESULT hr, const char* description);
void ClearErrorInfo();

// Registers a ProgID for a class the same way on every build; the registration
// is undone when the object goes.
class ScopedProgId {
 public:
  ScopedProgId(REFCLSID clsid, const OLECHAR* progId);
  ~ScopedProgId();

 private:
  CLSID clsid_;
  const OLECHAR* progId_;
};

// While alive, an invalid-parameter abort throws InvalidParameterRaised
// instead of ending the process.
struct InvalidParameterRaised {};
class ScopedThrowingInvalidParameter {
 public:
  ScopedThrowingInvalidParameter();
  ~ScopedThrowingInvalidParameter();

 private:
  platform::InvalidParameterHandler previous_;
};

// Values of each kind, built by hand so that tests do not depend on the code
// under test.
unique_variant MakeValue(VARTYPE vt);
template <class Payload>
unique_variant MakeValue(VARTYPE vt, Payload VARIANT::*field, Payload payload) {
  unique_variant value;
  value.get().*field = payload;
  value->vt = vt;
  return value;
}
unique_variant MakeString(const OLECHAR* text);

// A bare COM object that counts its references, for ownership checks.
class CountedObject final : public IUnknown {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++refs; }
  STDMETHODIMP_(ULONG) Release() override { return --refs; }
  ULONG refs = 1;
};

}  // namespace brevo::testing
