#include "fuzz/support/reentrant_actors.h"

#include <string_view>

namespace brevo::fuzz {
namespace {

struct ScriptMethod {
  std::basic_string_view<OLECHAR> name;
  Cue cue;
};
// Ids are positions from 1.
constexpr ScriptMethod kMethods[] = {
    {OLESTR("Evaluate"), Cue::kCondition},           {OLESTR("Compare"), Cue::kComparator},
    {OLESTR("ValueBeforeChange"), Cue::kBefore},     {OLESTR("ValueAfterChange"), Cue::kAfter},
    {OLESTR("ColumnBeforeAdd"), Cue::kBefore},       {OLESTR("ColumnAfterAdd"), Cue::kAfter},
    {OLESTR("ColumnBeforeRemove"), Cue::kColumnRemove}, {OLESTR("ColumnAfterRemove"), Cue::kColumnRemove},
    {OLESTR("RecordBeforeAdd"), Cue::kBefore},       {OLESTR("RecordAfterAdd"), Cue::kAfter},
    {OLESTR("RecordBeforeRemove"), Cue::kBefore},    {OLESTR("RecordAfterRemove"), Cue::kAfter},
    {OLESTR("PropertyChange"), Cue::kProperty},
};

}  // namespace

STDMETHODIMP ScriptActor::QueryInterface(REFIID iid, void** out) {
  *out = nullptr;
  if (!(iid == iid_of<IUnknown>()) && !(iid == iid_of<IDispatch>())) return E_NOINTERFACE;
  *out = static_cast<IDispatch*>(this);
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) ScriptActor::Release() {
  const ULONG left = --refs_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP ScriptActor::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

STDMETHODIMP ScriptActor::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (count != 1) return DISP_E_UNKNOWNNAME;
  for (std::size_t i = 0; i < std::size(kMethods); ++i) {
    if (kMethods[i].name == names[0]) {
      ids[0] = static_cast<DISPID>(i + 1);
      return S_OK;
    }
  }
  ids[0] = DISPID_UNKNOWN;
  return DISP_E_UNKNOWNNAME;
}

STDMETHODIMP ScriptActor::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* answer, EXCEPINFO*,
                                 UINT*) {
  if (id < 1 || static_cast<std::size_t>(id) > std::size(kMethods)) return DISP_E_MEMBERNOTFOUND;
  const Cue cue = kMethods[id - 1].cue;
  // Arguments arrive last first; the subject is the first one.
  IUnknown* subject = nullptr;
  if (params != nullptr && params->cArgs > 0) {
    const VARIANT& first = params->rgvarg[params->cArgs - 1];
    if (first.vt == VT_DISPATCH || first.vt == VT_UNKNOWN) subject = first.punkVal;
  }
  const com_ptr<ScriptActor> alive(this);  // the session may drop its reference meanwhile
  const Reply reply = stage != nullptr ? stage->React(cue, subject) : Reply{};
  if (answer != nullptr && SUCCEEDED(reply.hr)) {
    if (cue == Cue::kCondition) {
      answer->vt = VT_BOOL;
      answer->boolVal = reply.value != 0 ? VARIANT_TRUE : VARIANT_FALSE;
    } else if (cue == Cue::kComparator) {
      answer->vt = VT_I4;
      answer->lVal = reply.value;
    }
  }
  return reply.hr;
}

}  // namespace brevo::fuzz
