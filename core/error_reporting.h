// How a failure inside the library reaches a caller: an HRESULT plus error
// info on the calling thread.
#pragma once

#include "core/bv_exception.h"
#include "core/com_error.h"
#include "platform/com.h"

namespace brevo {

// The module's string table: the project name is its only entry.
inline constexpr unsigned kProjectNameResource = 100;
const OLECHAR* LoadModuleString(unsigned id) noexcept;

// Sets error info (description, source = the class's ProgID, GUID = iid) and
// returns the HRESULT the caller sees. A description below 0x10000 is a string
// resource number; one that does not load reads "Unknown Error".
HRESULT ReportError(REFCLSID clsid, const OLECHAR* description, REFIID iid, HRESULT hr) noexcept;

HRESULT ReportException(REFCLSID clsid, REFIID iid, const EBvException& e) noexcept;
HRESULT ReportException(REFCLSID clsid, REFIID iid, const _com_error& e) noexcept;

// Runs body and turns what it throws into the caller's HRESULT and error
// info. The order of the clauses is part of the contract.
template <class Body>
HRESULT GuardedCall(REFCLSID clsid, REFIID iid, Body&& body) noexcept {
  try {
    body();
    return S_OK;
  } catch (const EBvException& e) {
    return ReportException(clsid, iid, e);
  } catch (const _com_error& e) {
    return ReportException(clsid, iid, e);
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace brevo
