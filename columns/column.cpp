#include "columns/column.h"

namespace brevo {

void ColumnImpl::Create(IMutableColumn* parent) {
  parent_.reset(parent);
  parentColumn_.reset(com_ptr<IMutableColumn>(parent).query<IColumnRaw>().get());
  ThrowIfFailed(parent->AddPropertyChangeListener(SelfAsListener()));
}

IColumnRaw* ColumnImpl::Parent() {
  if (!parentColumn_) _com_issue_error(E_POINTER);
  return parentColumn_.get();
}

}  // namespace brevo
