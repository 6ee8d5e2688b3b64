#include "core/dispatch.h"

#include <array>
#include <vector>

namespace brevo {
namespace {

// Script languages do not keep the case of names.
bool SameName(const OLECHAR* a, const OLECHAR* b) {
  const auto fold = [](OLECHAR c) { return c >= 'A' && c <= 'Z' ? static_cast<OLECHAR>(c + 32) : c; };
  for (; *a != 0 && *b != 0; ++a, ++b) {
    if (fold(*a) != fold(*b)) return false;
  }
  return *a == *b;
}

const DispatchMember* FindMember(const DispatchTable& table, DISPID id) {
  // Ids mostly count from 1 in table order.
  if (id >= 1 && static_cast<std::size_t>(id) <= table.count && table.members[id - 1].id == id) {
    return &table.members[id - 1];
  }
  for (std::size_t i = 0; i < table.count; ++i) {
    if (table.members[i].id == id) return &table.members[i];
  }
  return nullptr;
}

// Fills the caller's EXCEPINFO from the error info the failed call left, as
// the automation runtime does for dual interfaces.
void FillException(HRESULT hr, EXCEPINFO* info) {
  com_ptr<IErrorInfo> error;
  if (GetErrorInfo(0, error.put()) != S_OK) error.reset();
  if (info == nullptr) return;
  *info = EXCEPINFO{};
  info->scode = hr;
  if (error) {
    error->GetDescription(&info->bstrDescription);
    error->GetSource(&info->bstrSource);
  }
}

// What Invoke answers for the call's result: argument failures as they are,
// the method's failure as an exception.
HRESULT Finished(HRESULT hr, EXCEPINFO* excepInfo) {
  if (hr == DISP_E_BADPARAMCOUNT || hr == DISP_E_TYPEMISMATCH || hr == DISP_E_OVERFLOW) return hr;
  if (FAILED(hr)) {
    FillException(hr, excepInfo);
    return DISP_E_EXCEPTION;
  }
  return S_OK;
}

}  // namespace

HRESULT DispatchGetTypeInfoCount(REFIID iid, UINT* count) noexcept {
  if (count == nullptr) return E_POINTER;
  com_ptr<ITypeInfo> info;
  *count = SUCCEEDED(LibraryTypeInfo(iid, info.put())) ? 1 : 0;
  return S_OK;
}

HRESULT DispatchGetTypeInfo(REFIID iid, UINT index, ITypeInfo** info) noexcept {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  return LibraryTypeInfo(iid, info);
}

// The first name is a member; the others are its parameters, numbered by position.
HRESULT DispatchGetIDsOfNames(const DispatchTable* table, LPOLESTR* names, UINT count, DISPID* ids) noexcept {
  if (count == 0) return S_OK;
  if (names == nullptr || ids == nullptr) return E_POINTER;
  const DispatchMember* found = nullptr;
  for (std::size_t i = 0; table != nullptr && found == nullptr && i < table->count; ++i) {
    for (const OLECHAR* name : table->members[i].names) {
      if (name != nullptr && SameName(name, names[0])) found = &table->members[i];
    }
  }
  HRESULT hr = S_OK;
  ids[0] = found != nullptr ? found->id : DISPID_UNKNOWN;
  if (found == nullptr) hr = DISP_E_UNKNOWNNAME;
  for (UINT n = 1; n < count; ++n) {
    ids[n] = DISPID_UNKNOWN;
    for (DISPID p = 0; found != nullptr && p < 4; ++p) {
      if (found->params[p] != nullptr && SameName(found->params[p], names[n])) ids[n] = p;
    }
    if (ids[n] == DISPID_UNKNOWN) hr = DISP_E_UNKNOWNNAME;
  }
  return hr;
}

HRESULT DispatchInvoke(const DispatchTable* table, IDispatch* target, DISPID member, WORD flags,
                       DISPPARAMS* params, VARIANT* result, EXCEPINFO* excepInfo, UINT* argErr) noexcept {
  const DispatchMember* found = table != nullptr ? FindMember(*table, member) : nullptr;
  if (found == nullptr) return DISP_E_MEMBERNOTFOUND;
  DISPPARAMS none{};
  if (params == nullptr) params = &none;

  const bool put = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  const DispatchInvoker call = put ? found->put : found->call;
  if (call == nullptr || (!put && (flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) == 0)) {
    return DISP_E_MEMBERNOTFOUND;
  }

  if (result != nullptr) VariantInit(result);
  if (found->anyArguments) return Finished(call(target, nullptr, 0, result, argErr), excepInfo);

  // Arguments in call order: named ones by their position (the value of a put
  // is the last), the rest from the end of rgvarg.
  const UINT count = params->cArgs;
  const UINT named = params->cNamedArgs;
  if (named > count) return E_INVALIDARG;
  // On the stack for any count a member can take; more only fail, later.
  std::array<VARIANTARG*, 8> few{};
  std::vector<VARIANTARG*> many;
  if (count > few.size()) many.assign(count, nullptr);
  VARIANTARG** args = count > few.size() ? many.data() : few.data();
  const UINT positional = count - named;
  for (UINT i = 0; i < positional; ++i) args[i] = &params->rgvarg[count - 1 - i];
  for (UINT j = 0; j < named; ++j) {
    const DISPID id = params->rgdispidNamedArgs[j];
    const UINT position = id == DISPID_PROPERTYPUT && put ? count - 1 : static_cast<UINT>(id);
    if (id != DISPID_PROPERTYPUT && (id < 0 || put)) return DISP_E_PARAMNOTFOUND;
    if (position >= count || args[position] != nullptr) return DISP_E_PARAMNOTFOUND;
    args[position] = &params->rgvarg[j];
  }
  for (UINT i = 0; i < count; ++i) {
    if (args[i] == nullptr) return DISP_E_PARAMNOTOPTIONAL;
  }

  return Finished(call(target, args, count, result, argErr), excepInfo);
}

}  // namespace brevo
