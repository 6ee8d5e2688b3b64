// Group-level access to record lists: grouped views, and the groups that a
// list's column names carry (the text in front of the first ".").
#pragma once

#include "core/implements.h"
#include "lists/list_interfaces.h"

namespace brevo {

struct IRecordListUtils : IDispatch {
  STDMETHOD(GetRecordListByGroup)(IRecordList* list, BSTR group, IRecordList** RetVal) = 0;
  STDMETHOD(GetMutableRecordListByGroup)(IMutableRecordList* list, BSTR group, IMutableRecordList** RetVal) = 0;
  STDMETHOD(SaveToFile)(IDispatch* list, BSTR fileName) = 0;
  STDMETHOD(GetGroupCount)(IRecordList* list, ULONG* RetVal) = 0;
  STDMETHOD(GetMutableGroupCount)(IMutableRecordList* list, ULONG* RetVal) = 0;
  STDMETHOD(GetGroupName)(IRecordList* list, ULONG index, BSTR* RetVal) = 0;
  STDMETHOD(GetMutableGroupName)(IMutableRecordList* list, ULONG index, BSTR* RetVal) = 0;
};

class RecordListUtilsImpl {
 public:
  virtual ~RecordListUtilsImpl() = default;

  // The grouped view of list; a failed Create is undone before it is dropped.
  com_ptr<IRecordList> GetRecordListByGroup(IRecordList* list, const _bstr_t& group);
  com_ptr<IMutableRecordList> GetMutableRecordListByGroup(IMutableRecordList* list, const _bstr_t& group);
  [[noreturn]] void SaveToFile();
  // Distinct groups, in order of first appearance, found with a wide search for
  // the first ".".
  ULONG GetGroupCount(IRecordList* list);
  ULONG GetMutableGroupCount(IMutableRecordList* list);
  // The index-th group, cut from the narrow name by a tokenizer that skips
  // leading dots, so names that begin with "." read differently than they
  // count. An index past the groups gives an empty string.
  _bstr_t GetGroupName(IRecordList* list, ULONG index);
  _bstr_t GetMutableGroupName(IMutableRecordList* list, ULONG index);
};

class RecordListUtils : public implements<RecordListUtils, IRecordListUtils, IProvideClassInfo>,
                        public RecordListUtilsImpl {
 public:
  static constexpr CLSID kClassId = {0x96C401C0, 0x714E, 0x4F3C, 0x99, 0x02, 0x31, 0xEE, 0x11, 0xA0, 0x37, 0x2D};

  STDMETHODIMP GetRecordListByGroup(IRecordList* list, BSTR group, IRecordList** RetVal) override {
    return Call<IRecordListUtils>(
        RetVal, [&] { *RetVal = RecordListUtilsImpl::GetRecordListByGroup(list, _bstr_t(group, true)).detach(); });
  }
  STDMETHODIMP GetMutableRecordListByGroup(IMutableRecordList* list, BSTR group, IMutableRecordList** RetVal) override {
    return Call<IRecordListUtils>(RetVal, [&] {
      *RetVal = RecordListUtilsImpl::GetMutableRecordListByGroup(list, _bstr_t(group, true)).detach();
    });
  }
  STDMETHODIMP SaveToFile(IDispatch*, BSTR) override {
    return Call<IRecordListUtils>([&] { RecordListUtilsImpl::SaveToFile(); });
  }
  STDMETHODIMP GetGroupCount(IRecordList* list, ULONG* RetVal) override {
    return Call<IRecordListUtils>(RetVal, [&] { *RetVal = RecordListUtilsImpl::GetGroupCount(list); });
  }
  STDMETHODIMP GetMutableGroupCount(IMutableRecordList* list, ULONG* RetVal) override {
    return Call<IRecordListUtils>(RetVal, [&] { *RetVal = RecordListUtilsImpl::GetMutableGroupCount(list); });
  }
  STDMETHODIMP GetGroupName(IRecordList* list, ULONG index, BSTR* RetVal) override {
    return Call<IRecordListUtils>(RetVal, [&] { *RetVal = RecordListUtilsImpl::GetGroupName(list, index).Detach(); });
  }
  STDMETHODIMP GetMutableGroupName(IMutableRecordList* list, ULONG index, BSTR* RetVal) override {
    return Call<IRecordListUtils>(
        RetVal, [&] { *RetVal = RecordListUtilsImpl::GetMutableGroupName(list, index).Detach(); });
  }
};

}  // namespace brevo

BREVO_INTERFACE_ID(brevo::IRecordListUtils, 0xFED709CC, 0xEFAB, 0x4DA0, 0xB1, 0x1D, 0xBD, 0xC3, 0x8B, 0x33, 0x73, 0xD6);
