// What the two grouped record views share: the source record read through the
// grouped columns' index map, and the source's value events re-raised for the
// columns of the group, at their grouped positions.
#pragma once

#include "events/listener_relay.h"
#include "events/summaries.h"
#include "grouping/group_interfaces.h"

namespace brevo {

class GroupRecordCore {
 public:
  virtual ~GroupRecordCore() = default;

  // Registers on the source; the registration ends on the last release.
  void Create(IDispatch* source, IMutableColumns* columns, const _bstr_t& group);
  com_ptr<IDispatch> GetSource() const { return source_; }

  unique_variant ReadSource(ULONG index);
  const VARIANT* PeekSource(ULONG index);
  ULONG SourceIndex(ULONG index);
  unique_variant GetValueByName(const _bstr_t& name);
  LONG CompareTo(IRecordRaw* other);
  ULONG ColumnCount();
  com_ptr<IMutableColumns> GroupedColumns() const { return columns_; }
  const _bstr_t& Group() const noexcept { return group_; }
  void EnableEvents(VARIANT_BOOL flag) { SwitchRecordEvents(events_, flag, SelfAsSource(), listeners_); }
  void AddRecordChangeListener(IRecordChangeListener* listener) { listeners_.Add(listener); }
  void RemoveRecordChangeListener(IRecordChangeListener* listener) { listeners_.Remove(listener); }
  void ValueBeforeChange(IRecordChangeEvent* event);
  void ValueAfterChange(IRecordChangeEvent* event);

 protected:
  virtual IDispatch* SelfAsSource() noexcept = 0;
  virtual IRecordChangeListener* SelfAsListener() noexcept = 0;
  virtual IRecordRaw* SelfAsRecord() noexcept = 0;
  void Detach() noexcept;
  IDispatch* Source();

 private:
  LONG GroupedPosition(IRecordChangeEvent* event);

  com_ptr<IDispatch> source_;
  IRecordRaw* sourceRaw_ = nullptr;  // the same object
  com_ptr<IMutableColumns> columns_;
  IMutableColumnsRaw* columnsRaw_ = nullptr;
  IMutableColumnsManager* indexMap_ = nullptr;
  _bstr_t group_;
  com_ptr<RecordChangeRelay> relay_;
  EventsSwitch<1> events_;
  ListenerRegistry<IRecordChangeListener> listeners_{OLESTR("Cannot remove record change listener.")};
};

}  // namespace brevo
