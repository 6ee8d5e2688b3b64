#include "fuzz/support/listener_sweep.h"

#include "columns/column_interfaces.h"
#include "fuzz/support/callback_arg.h"
#include "fuzz/support/contract_abort.h"
#include "lists/list_interfaces.h"

namespace brevo::fuzz {
namespace {

template <class Source, class Listener>
void RemoveEvery(IUnknown* target, HRESULT (STDMETHODCALLTYPE Source::*remove)(Listener*), IUnknown* candidate) {
  const auto source = com_ptr<IUnknown>(target).try_query<Source>();
  if (!source) return;
  const CallbackArg<Listener> listener(candidate);
  if (listener.get() == nullptr) return;
  for (int i = 0; i < 16 && (source.get()->*remove)(listener.get()) == S_OK; ++i) {
  }
}

}  // namespace

void ListenerSweep::Called(IUnknown* target) {
  const com_ptr<IUnknown> identity = identity_of(target);
  for (const com_ptr<IUnknown>& known : targets_)
    if (known == identity) return;
  targets_.push_back(identity);
}

void ListenerSweep::RemoveAll(const std::vector<com_ptr<IUnknown>>& candidates) noexcept {
  for (const com_ptr<IUnknown>& target : targets_)
    for (const com_ptr<IUnknown>& candidate : candidates) Remove(target.get(), candidate.get());
  targets_.clear();
}

void ListenerSweep::Remove(IUnknown* t, IUnknown* c) noexcept {
  Quietly([&] {
    RemoveEvery(t, &IRecord::RemoveRecordChangeListener, c);
    RemoveEvery(t, &IMutableRecord::RemoveRecordChangeListener, c);
    RemoveEvery(t, &IColumn::RemovePropertyChangeListener, c);
    RemoveEvery(t, &IMutableColumn::RemovePropertyChangeListener, c);
    RemoveEvery(t, &IColumns::RemoveColumnsChangeListener, c);
    RemoveEvery(t, &IColumns::RemovePropertyChangeListener, c);
    RemoveEvery(t, &IMutableColumns::RemoveColumnsChangeListener, c);
    RemoveEvery(t, &IMutableColumns::RemovePropertyChangeListener, c);
    RemoveEvery(t, &IRecordList::RemoveRecordListChangeListener, c);
    RemoveEvery(t, &IRecordList::RemoveRecordListValueChangeListener, c);
    RemoveEvery(t, &IMutableRecordList::RemoveRecordListChangeListener, c);
    RemoveEvery(t, &IMutableRecordList::RemoveRecordListValueChangeListener, c);
  });
}

}  // namespace brevo::fuzz
