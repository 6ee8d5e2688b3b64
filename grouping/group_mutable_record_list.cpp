#include "grouping/group_mutable_record_list.h"

#include "grouping/group_iterator.h"
#include "lists/record_list.h"

namespace brevo {

// The read-only view is the plain list view over this grouped list.
com_ptr<IRecordList> GroupMutableRecordListImpl::RecordList() {
  return views_.Current([&] {
    auto view = make_object<brevo::RecordList>();
    view->RecordListImpl::Create(SelfAsMutableList(), &views_);
    return view;
  });
}

void GroupMutableRecordListImpl::DetachView() noexcept { views_.OwnerGone(); }

com_ptr<IRecordListIterator> GroupMutableRecordListImpl::Present(com_ptr<IRecordListIterator> iterator) {
  auto grouped = make_object<GroupIterator>();
  grouped->ConstIteratorImpl::Create(iterator.get());
  grouped->GroupIteratorImpl::Bind(OwnColumns().get(), Group());
  return com_ptr<IRecordListIterator>(grouped.get());
}

}  // namespace brevo
