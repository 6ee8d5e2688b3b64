#include "records/record.h"

#include "core/com_error.h"
#include "events/summaries.h"

namespace brevo {

void RecordImpl::Create(IMutableRecord* parent) {
  parent_ = parent;
  parentRaw_ = com_ptr<IMutableRecord>(parent).query<IRecordRaw>().get();
  ThrowIfFailed(parent->AddRecordChangeListener(SelfAsListener()));
}

// A view whose record has gone answers E_POINTER.
IRecordRaw* RecordImpl::Parent() {
  if (parent_ == nullptr) _com_issue_error(E_POINTER);
  return parentRaw_;
}

unique_variant RecordImpl::GetValueByName(const _bstr_t& name) {
  Parent();
  VARIANT value;
  VariantInit(&value);
  ThrowIfFailed(parent_->GetValueByName(name.GetBSTR(), &value), parent_);
  return unique_variant::attach(value);
}

LONG RecordImpl::CompareTo(IRecordRaw* other) {
  Parent();
  LONG result = 0;
  ThrowIfFailed(parent_->CompareTo(other, &result), parent_);
  return result;
}

com_ptr<IColumns> RecordImpl::Columns() {
  Parent();
  com_ptr<IMutableColumns> columns;
  ThrowIfFailed(parent_->get_Columns(columns.put()));
  com_ptr<IColumns> view;
  if (columns) ThrowIfFailed(columns->get_Columns(view.put()));
  return view;
}

void RecordImpl::EnableRecordEvents(VARIANT_BOOL flag) { SwitchRecordEvents(events_, flag, Self(), listeners_); }

// The record's own event goes on to the view's listeners; one of them stopping
// it stops the record's change too.
void RecordImpl::ValueBeforeChange(IRecordChangeEvent* event) {
  if (events_.enabled()) {
    listeners_.NotifyBefore(&IRecordChangeListener::ValueBeforeChange, event);
  } else {
    events_.MarkPending(0);
  }
}

void RecordImpl::ValueAfterChange(IRecordChangeEvent* event) {
  if (events_.enabled()) listeners_.NotifyAfter(&IRecordChangeListener::ValueAfterChange, event);
}

}  // namespace brevo
