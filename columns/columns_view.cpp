#include "columns/columns_view.h"

#include "columns/mutable_columns.h"

namespace brevo {

ColumnsImpl::~ColumnsImpl() {
  if (views_ != nullptr) views_->Forget(this);
}

void ColumnsImpl::Create(IMutableColumns* parent, ViewSet<ColumnsImpl, IColumns>* views) {
  views_ = views;
  collection_ = parent;
  raw_ = com_ptr<IMutableColumns>(parent).query<IMutableColumnsRaw>().get();
  manager_ = com_ptr<IMutableColumns>(parent).query<IMutableColumnsManager>().get();
}

void ColumnsImpl::ParentGone() noexcept {
  views_ = nullptr;
  collection_ = nullptr;
  raw_ = nullptr;
  manager_ = nullptr;
}

// A view whose collection has gone answers E_POINTER.
IMutableColumns* ColumnsImpl::Collection() {
  if (collection_ == nullptr) _com_issue_error(E_POINTER);
  return collection_;
}

IMutableColumnsRaw* ColumnsImpl::Parent() {
  Collection();
  return raw_;
}

IMutableColumnsManager* ColumnsImpl::Manager() {
  Collection();
  return manager_;
}

com_ptr<IColumn> ColumnsImpl::Column(ULONG index) {
  com_ptr<IColumn> view;
  ThrowIfFailed(Parent()->MutableColumnAt(index)->get_Column(view.put()));
  return view;
}

STDMETHODIMP Columns::CompareTo(IDispatch* Other, LONG* retVal) {
  return Call<IColumns>(retVal, [&] { *retVal = ColumnsImpl::CompareTo(RawColumnsOf(Other).get()); });
}

com_ptr<IMutableColumnsRaw> RawColumnsOf(IDispatch* columns) {
  const com_ptr<IDispatch> object(columns);
  if (!object) _com_issue_error(E_POINTER);
  if (auto raw = object.try_query<IMutableColumnsRaw>()) return raw;
  return object.query<IColumnsRaw>()->GetMutableColumns().query<IMutableColumnsRaw>();
}

}  // namespace brevo
