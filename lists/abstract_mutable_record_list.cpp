#include "lists/abstract_mutable_record_list.h"

#include "events/change_events.h"
#include "events/summaries.h"
#include "events/listener_relay.h"

namespace brevo {

AbstractMutableRecordList::AbstractMutableRecordList() = default;

AbstractMutableRecordList::~AbstractMutableRecordList() = default;

IRecordChangeListener* AbstractMutableRecordList::RecordRelay() {
  if (!relay_) {
    relay_ = make_object<RecordChangeRelay>(com_ptr<IMutableRecordList>(Self()).query<IRecordChangeListener>().get(),
                                            this);
  }
  return relay_.get();
}

void AbstractMutableRecordList::DetachRelay() noexcept {
  if (relay_) relay_->Detach();
}

void AbstractMutableRecordList::EnableMutableRecordListEvents(VARIANT_BOOL flag) {
  SwitchRecordListEvents(events_, flag, Self(), listListeners_, valueListeners_);
}

// The relay skips these calls exactly when WantsEvent says so; a direct call
// takes the same decision here.
void AbstractMutableRecordList::ValueBeforeChange(IRecordChangeEvent* event) {
  if (!WantsEvent()) return Skipped(true);
  PassOn(event, &IRecordListValueChangeListener::ValueBeforeChange);
}

void AbstractMutableRecordList::ValueAfterChange(IRecordChangeEvent* event) {
  if (WantsEvent()) PassOn(event, &IRecordListValueChangeListener::ValueAfterChange);
}

void AbstractMutableRecordList::PassOn(
    IRecordChangeEvent* event,
    HRESULT (STDMETHODCALLTYPE IRecordListValueChangeListener::*method)(IRecordListValueChangeEvent*)) {
  if (event == nullptr) _com_issue_error(E_POINTER);
  com_ptr<IDispatch> record;
  ThrowIfFailed(event->GetSource(record.put()));
  LONG index = 0;
  ThrowIfFailed(event->GetIndex(&index));
  auto passed = make_object<RecordListValueChangeEvent>();
  passed->RecordListValueChangeEventImpl::Initialize(Self(), record.get(), index);
  valueListeners_.NotifyAfter(method, passed.get());
}

}  // namespace brevo
