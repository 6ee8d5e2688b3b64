#include "fuzz/support/grouped_lists.h"

#include "fuzz/support/listener_sweep.h"

namespace brevo::fuzz {
namespace {

com_ptr<IUnknown> ColumnsOf(IMutableRecordList* list) {
  com_ptr<IMutableColumns> columns;
  list->get_Columns(columns.put());
  return identity_of(columns.get());
}

com_ptr<IUnknown> ColumnsOf(IRecordList* list) {
  com_ptr<IColumns> columns;
  list->get_Columns(columns.put());
  return identity_of(columns.get());
}

HRESULT GroupOf(IRecordListUtils* utils, IMutableRecordList* list, BSTR group, IMutableRecordList** out) {
  return utils->GetMutableRecordListByGroup(list, group, out);
}

HRESULT GroupOf(IRecordListUtils* utils, IRecordList* list, BSTR group, IRecordList** out) {
  return utils->GetRecordListByGroup(list, group, out);
}

}  // namespace

GroupedLists::~GroupedLists() {
  for (const Made& made : made_) Unregister(made);
}

template <class List>
com_ptr<List> GroupedLists::Group(IRecordListUtils* utils, List* source, const _bstr_t& group) {
  Made made{nullptr, identity_of(source), ColumnsOf(source)};
  com_ptr<List> grouped;
  if (GroupOf(utils, source, group.GetBSTR(), grouped.put()) != S_OK || !grouped) return nullptr;
  made.grouped = identity_of(grouped.get());
  made_.push_back(std::move(made));
  return grouped;
}
template com_ptr<IMutableRecordList> GroupedLists::Group(IRecordListUtils*, IMutableRecordList*, const _bstr_t&);
template com_ptr<IRecordList> GroupedLists::Group(IRecordListUtils*, IRecordList*, const _bstr_t&);

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

// The source list's change and value registries, and its columns' change registry.
void GroupedLists::Unregister(const Made& made) noexcept {
  ListenerSweep::Remove(made.source.get(), made.grouped.get());
  ListenerSweep::Remove(made.columns.get(), made.grouped.get());
}

}  // namespace brevo::fuzz
