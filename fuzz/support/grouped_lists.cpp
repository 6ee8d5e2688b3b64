#include "fuzz/support/grouped_lists.h"

#include "fuzz/support/contract_abort.h"

namespace brevo::fuzz {

GroupedLists::~GroupedLists() {
  for (const Made& made : made_) Unregister(made);
}

com_ptr<IMutableRecordList> GroupedLists::Group(IRecordListUtils* utils, IMutableRecordList* source,
                                                const _bstr_t& group) {
  com_ptr<IMutableRecordList> grouped;
  Made made;
  // The registrations are on the columns the source has now.
  if (source->get_Columns(made.mutableColumns.put()) != S_OK ||
      utils->GetMutableRecordListByGroup(source, group.GetBSTR(), grouped.put()) != S_OK || !grouped)
    return nullptr;
  made.grouped = identity_of(grouped.get());
  made.mutableSource = com_ptr<IMutableRecordList>(source);
  made_.push_back(std::move(made));
  return grouped;
}

com_ptr<IRecordList> GroupedLists::Group(IRecordListUtils* utils, IRecordList* source, const _bstr_t& group) {
  com_ptr<IRecordList> grouped;
  Made made;
  if (source->get_Columns(made.columns.put()) != S_OK ||
      utils->GetRecordListByGroup(source, group.GetBSTR(), grouped.put()) != S_OK || !grouped)
    return nullptr;
  made.grouped = identity_of(grouped.get());
  made.source = com_ptr<IRecordList>(source);
  made_.push_back(std::move(made));
  return grouped;
}

void GroupedLists::Release(IUnknown* grouped) {
  const com_ptr<IUnknown> identity = identity_of(grouped);
  for (auto it = made_.begin(); it != made_.end(); ++it) {
    if (it->grouped == identity) {
      const Made made = std::move(*it);
      made_.erase(it);
      Unregister(made);
      return;
    }
  }
}

void GroupedLists::Unregister(const Made& made) noexcept {
  Quietly([&] {
    const auto lists = made.grouped.try_query<IRecordListChangeListener>();
    const auto values = made.grouped.try_query<IRecordListValueChangeListener>();
    const auto columns = made.grouped.try_query<IColumnsChangeListener>();
    if (made.mutableSource) {
      made.mutableSource->RemoveRecordListChangeListener(lists.get());
      made.mutableSource->RemoveRecordListValueChangeListener(values.get());
    }
    if (made.source) {
      made.source->RemoveRecordListChangeListener(lists.get());
      made.source->RemoveRecordListValueChangeListener(values.get());
    }
    if (made.mutableColumns) made.mutableColumns->RemoveColumnsChangeListener(columns.get());
    if (made.columns) made.columns->RemoveColumnsChangeListener(columns.get());
  });
}

}  // namespace brevo::fuzz
