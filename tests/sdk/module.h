// The built BrevoRecordList.dll, loaded by path as an SDK client with no
// registration would: classes come from its DllGetClassObject.
#pragma once

#include "BrevoRecordListCallbacks.h"

namespace sdk_test {

using brevo::sdk::com_ptr;
using brevo::sdk::MakeComparator;
using brevo::sdk::MakeCondition;
using brevo::sdk::MakeListener;
using brevo::sdk::On;

// Loaded once, beside the test executable; kept for the whole run.
HMODULE Module();

void CreateInstance(REFCLSID clsid, REFIID iid, void** object);

// A new object of the class, asked for I.
template <class I>
com_ptr<I> Create(REFCLSID clsid) {
  com_ptr<I> object;
  CreateInstance(clsid, __uuidof(I), object.put_void());
  return object;
}

// The module's DllCanUnloadNow: S_OK once no object of it is alive.
HRESULT CanUnloadNow();

}  // namespace sdk_test
