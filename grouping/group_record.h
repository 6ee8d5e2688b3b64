// The grouped record views: a source record seen through a group's columns.
#pragma once

#include "grouping/group_record_core.h"
#include "records/abstract_mutable_record.h"
#include "records/record_writer.h"

namespace brevo {

class GroupRecordImpl : public AbstractRecordReadOnly, public GroupRecordCore {
 public:
  unique_variant GetValue(ULONG index) override { return ReadSource(index); }
  const VARIANT* PeekValue(ULONG index) override { return PeekSource(index); }
  com_ptr<IColumns> Columns();
};

class GroupRecord : public RecordReader<GroupRecord, IRecord, GroupRecordImpl, IRecordRaw, IGroupRecordRaw,
                                        IRecordChangeListener> {
 public:
  static constexpr CLSID kClassId = {0x26D373A7, 0x5CDB, 0x435B, 0xB1, 0x1F, 0x19, 0xCD, 0xD6, 0xAC, 0xBF, 0x04};

  void FinalRelease() { Detach(); }

  STDMETHODIMP get_Columns(IColumns** RetVal) override {
    return Read(RetVal, [&] { *RetVal = GroupRecordImpl::Columns().detach(); });
  }
  STDMETHODIMP EnableRecordEvents(VARIANT_BOOL flag) override {
    return Read([&] { GroupRecordImpl::EnableEvents(flag); });
  }

  // IGroupRecordRaw
  void Create(IDispatch* source, IMutableColumns* columns, const _bstr_t& group) override {
    GroupRecordImpl::Create(source, columns, group);
  }
  com_ptr<IDispatch> GetSource() override { return GroupRecordImpl::GetSource(); }

  // IRecordChangeListener: the source's value events.
  STDMETHODIMP ValueBeforeChange(IRecordChangeEvent* pEvent) override {
    return Call<IRecordChangeListener>([&] { GroupRecordImpl::ValueBeforeChange(pEvent); });
  }
  STDMETHODIMP ValueAfterChange(IRecordChangeEvent* pEvent) override {
    return Call<IRecordChangeListener>([&] { GroupRecordImpl::ValueAfterChange(pEvent); });
  }

 protected:
  IDispatch* SelfAsSource() noexcept override { return static_cast<IRecord*>(this); }
  IRecordChangeListener* SelfAsListener() noexcept override { return this; }
  IRecordRaw* SelfAsRecord() noexcept override { return this; }
};

// Writes go to the source record at the source column; Clear clears the source.
class GroupMutableRecordImpl : public AbstractMutableRecord, public GroupRecordCore {
 public:
  unique_variant GetValue(ULONG index) override { return ReadSource(index); }
  const VARIANT* PeekValue(ULONG index) override { return PeekSource(index); }
  void SetValue(ULONG index, const VARIANT& newVal) override;
  void SetValueByName(const _bstr_t& name, const VARIANT& newVal);
  void Clear();
  com_ptr<IRecord> Record();
  com_ptr<IMutableColumns> Columns() const { return GroupedColumns(); }
  void EnableMutableRecordEvents(VARIANT_BOOL flag) { EnableEvents(flag); }
};

class GroupMutableRecord : public RecordWriter<GroupMutableRecord, GroupMutableRecordImpl, IRecordRaw,
                                               IGroupRecordRaw, IRecordChangeListener> {
 public:
  static constexpr CLSID kClassId = {0xCB91F4E1, 0x82A6, 0x4E72, 0x8C, 0xF6, 0x08, 0xC2, 0x38, 0x4D, 0xC8, 0xB3};

  void FinalRelease() { Detach(); }

  // IGroupRecordRaw
  void Create(IDispatch* source, IMutableColumns* columns, const _bstr_t& group) override {
    GroupMutableRecordImpl::Create(source, columns, group);
  }
  com_ptr<IDispatch> GetSource() override { return GroupMutableRecordImpl::GetSource(); }

  // IRecordChangeListener: the source's value events.
  STDMETHODIMP ValueBeforeChange(IRecordChangeEvent* pEvent) override {
    return Call<IRecordChangeListener>([&] { GroupMutableRecordImpl::ValueBeforeChange(pEvent); });
  }
  STDMETHODIMP ValueAfterChange(IRecordChangeEvent* pEvent) override {
    return Call<IRecordChangeListener>([&] { GroupMutableRecordImpl::ValueAfterChange(pEvent); });
  }

 protected:
  IDispatch* SelfAsSource() noexcept override { return static_cast<IMutableRecord*>(this); }
  IRecordChangeListener* SelfAsListener() noexcept override { return this; }
  IRecordRaw* SelfAsRecord() noexcept override { return this; }
};

// A grouped view of record over columns: a GroupMutableRecord for a mutable
// record, a GroupRecord otherwise.
com_ptr<IDispatch> WrapRecord(IDispatch* record, IMutableColumns* columns, const _bstr_t& group, bool writable);

}  // namespace brevo
