// The columns of one group of a source collection, in source order, each
// grouped position leading to its source column through the index map. The
// grouped collection cannot be changed directly; it follows its source.
#pragma once

#include "columns/mutable_columns.h"
#include "events/listener_relay.h"
#include "grouping/group_interfaces.h"

namespace brevo {

class GroupMutableColumnsImpl : public AbstractMutableColumns {
 public:
  void Create(IMutableColumns* source, const _bstr_t& group);
  com_ptr<IMutableColumns> GetGroupedColumns() const { return grouped_; }

  void Clear() { Grouped()->ClearColumns(); }
  LONG CompareTo(IMutableColumnsRaw* other) override { return Grouped()->CompareTo(other); }
  com_ptr<IMutableColumn> AddColumn(const _bstr_t& name, ULONG type) override;
  void RemoveColumn(ULONG index);
  LONG IndexOf(const _bstr_t& name) override { return Grouped()->IndexOf(name); }
  com_ptr<IMutableColumn> MutableColumn(ULONG index) override { return Grouped()->MutableColumnAt(index); }
  ULONG ColumnTypeAt(ULONG index) override { return Grouped()->ColumnTypeAt(index); }
  com_ptr<IColumns> Columns() override;
  ULONG Size() override { return Grouped()->Size(); }
  ULONG GetIndexOfColumn(ULONG index) override { return IndexMap()->GetIndexOfColumn(index); }
  LONG GetTrueIndexOfColumn(ULONG index) override { return IndexMap()->GetTrueIndexOfColumn(index); }
  void SetTrueIndexOfColumn(ULONG index, ULONG value) override { IndexMap()->SetTrueIndexOfColumn(index, value); }
  LONG GetCloumnIndicesByGroup(const _bstr_t& group, ULONG index) override {
    return IndexMap()->GetCloumnIndicesByGroup(group, index);
  }

  // The source's changes, mirrored onto the grouped copies.
  void ColumnAfterAdd(IColumnsChangeEvent* event);
  void ColumnAfterRemove(IColumnsChangeEvent* event);
  void MirrorRename(IPropertyChangeEvent* event);

 protected:
  virtual IColumnsChangeListener* SelfAsColumnsListener() noexcept = 0;
  void Detach() noexcept;

 private:
  IMutableColumnsRaw* Grouped();
  IMutableColumnsManager* IndexMap();
  void CopySourceColumn(IMutableColumn* column, ULONG sourceIndex);
  template <class Change>
  void WithGroupedEventsOff(Change&& change);

  com_ptr<IMutableColumns> source_;
  com_ptr<IMutableColumns> grouped_;
  _bstr_t key_;
  com_ptr<ColumnsChangeRelay> columnsRelay_;
  com_ptr<PropertyChangeRelay> propertyRelay_;
};

class GroupMutableColumns : public ColumnsFacade<GroupMutableColumns, GroupMutableColumnsImpl, IGroupMutableColumnsRaw,
                                                 IColumnsChangeListener, IPropertyChangeListener> {
 public:
  static constexpr CLSID kClassId = {0xCF4E48AA, 0x1E02, 0x47A0, 0x89, 0x5B, 0xD5, 0xC4, 0x10, 0xED, 0x52, 0xD8};

  // IGroupMutableColumnsRaw
  void Create(IMutableColumns* source, const _bstr_t& group) override { GroupMutableColumnsImpl::Create(source, group); }
  com_ptr<IMutableColumns> GetGroupedColumns() override { return GroupMutableColumnsImpl::GetGroupedColumns(); }

  // The source's notifications, through relays.
  STDMETHODIMP ColumnBeforeAdd(IColumnsChangeEvent*) override { return S_OK; }
  STDMETHODIMP ColumnAfterAdd(IColumnsChangeEvent* e) override {
    return Call<IColumnsChangeListener>([&] { GroupMutableColumnsImpl::ColumnAfterAdd(e); });
  }
  STDMETHODIMP ColumnBeforeRemove(IColumnsChangeEvent*) override { return S_OK; }
  STDMETHODIMP ColumnAfterRemove(IColumnsChangeEvent* e) override {
    return Call<IColumnsChangeListener>([&] { GroupMutableColumnsImpl::ColumnAfterRemove(e); });
  }
  STDMETHODIMP PropertyChange(IPropertyChangeEvent* e) override {
    return Call<IPropertyChangeListener>([&] { GroupMutableColumnsImpl::MirrorRename(e); });
  }

 protected:
  IPropertyChangeListener* SelfAsPropertyListener() noexcept override { return this; }
  IColumnsChangeListener* SelfAsColumnsListener() noexcept override { return this; }
};

}  // namespace brevo
