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
  ThrowIfFailed(wrapped->Next(next.put()), wrapped.get());
  return WrapRecord(next.get(), columns_.get(), group_, true);
}

void GroupIteratorImpl::Remove() {
  const auto wrapped = Wrapped();
  ThrowIfFailed(wrapped->Remove(), wrapped.get());
}

}  // namespace brevo
