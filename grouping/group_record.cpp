#include "grouping/group_record.h"

namespace brevo {

com_ptr<IColumns> GroupRecordImpl::Columns() {
  com_ptr<IColumns> view;
  ThrowIfFailed(GroupedColumns()->get_Columns(view.put()));
  return view;
}

void GroupMutableRecordImpl::SetValue(ULONG index, const VARIANT& newVal) {
  const ULONG sourceIndex = SourceIndex(index);
  const auto record = com_ptr<IDispatch>(Source()).query<IMutableRecord>();
  ThrowIfFailed(record->SetValue(sourceIndex, newVal), record.get());
}

void GroupMutableRecordImpl::SetValueByName(const _bstr_t& name, const VARIANT& newVal) {
  const LONG index = GroupedColumns().query<IMutableColumnsRaw>()->IndexOf(name);
  if (index < 0) throw EBvException(OLESTR("Column name doesn't found."));
  SetValue(static_cast<ULONG>(index), newVal);
}

void GroupMutableRecordImpl::Clear() {
  const auto record = com_ptr<IDispatch>(Source()).query<IMutableRecord>();
  ThrowIfFailed(record->Clear(), record.get());
}

com_ptr<IRecord> GroupMutableRecordImpl::Record() {
  return WrapRecord(Source(), GroupedColumns().get(), Group(), false).query<IRecord>();
}

com_ptr<IDispatch> WrapRecord(IDispatch* record, IMutableColumns* columns, const _bstr_t& group, bool writable) {
  if (record == nullptr) return nullptr;
  if (writable) {
    auto view = make_object<GroupMutableRecord>();
    static_cast<IGroupRecordRaw*>(view.get())->Create(record, columns, group);
    return com_ptr<IDispatch>(static_cast<IMutableRecord*>(view.get()));
  }
  auto view = make_object<GroupRecord>();
  static_cast<IGroupRecordRaw*>(view.get())->Create(record, columns, group);
  return com_ptr<IDispatch>(static_cast<IRecord*>(view.get()));
}

}  // namespace brevo
