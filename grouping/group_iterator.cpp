#include "grouping/group_iterator.h"

#include "grouping/group_record.h"

namespace brevo {

void GroupIteratorImpl::Bind(IMutableColumns* columns, const _bstr_t& group) {
  columns_ = com_ptr<IMutableColumns>(columns);
  group_ = group;
}

com_ptr<IDispatch> GroupIteratorImpl::Next() {
  const auto wrapped = Wrapped();
  com_ptr<IDispatch> next;
  const HRESULT hr = wrapped->Next(next.put());
  if (FAILED(hr)) _com_issue_errorex(hr, wrapped.get(), iid_of<IRecordListIterator>());
  return WrapRecord(next.get(), columns_.get(), group_, true);
}

void GroupIteratorImpl::Remove() {
  const auto wrapped = Wrapped();
  const HRESULT hr = wrapped->Remove();
  if (FAILED(hr)) _com_issue_errorex(hr, wrapped.get(), iid_of<IRecordListIterator>());
}

}  // namespace brevo
