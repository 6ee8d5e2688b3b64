// One row of a table: a value per column, checked against the column's type on
// the way in, translated through the collection's index map, and announced to
// record-change listeners before (with veto) and after each change.
#pragma once

#include <vector>

#include "events/events_switch.h"
#include "events/listener_registry.h"
#include "records/abstract_mutable_record.h"
#include "records/record_interfaces.h"

namespace brevo {

class MutableRecordImpl : public AbstractMutableRecord {
 public:
  void Create(IMutableColumns* columns);
  unique_variant GetValue(ULONG index) override;
  const VARIANT* PeekValue(ULONG index) override;
  void SetValue(ULONG index, const VARIANT& newVal) override;
  void SetOwnedValue(ULONG index, unique_variant newVal) override;
  // An unknown name reads as an empty value, while writing to one fails.
  unique_variant GetValueByName(const _bstr_t& name);
  void SetValueByName(const _bstr_t& name, const VARIANT& newVal);
  // At the first unequal cell: -1 if the own cell is empty, 1 otherwise; then
  // by column count.
  LONG CompareTo(IRecordRaw* other);
  // Empties the values and the shared column collection.
  void Clear();
  void AssignValues(std::vector<unique_variant>& values);
  com_ptr<IRecord> Record();
  com_ptr<IMutableColumns> Columns() const { return columns_; }
  ULONG ColumnCount();
  void EnableMutableRecordEvents(VARIANT_BOOL flag);
  void AddRecordChangeListener(IRecordChangeListener* listener) { listeners_.Add(listener); }
  void RemoveRecordChangeListener(IRecordChangeListener* listener) { listeners_.Remove(listener); }

  // For a record that never reached a client: letting it go leaves its
  // columns alone.
  void Discard() noexcept { columnsRaw_ = nullptr; }

 protected:
  virtual IMutableRecord* Self() noexcept = 0;
  // The last release: clears as Clear does, and tells a surviving view.
  void Detach() noexcept;

 private:
  LONG StoragePosition(ULONG index);
  // The element that holds the cell at a column index; a failed look-up
  // gives GetValue's message.
  std::size_t ElementOf(ULONG index);
  // A column added after the record was made has no element yet: it gets an
  // empty one. A record emptied by Clear gets none.
  void Reach(std::size_t element);
  const VARIANT* Lend(std::size_t element);
  // Element 0 standing for the record, as a counted reference.
  unique_variant SelfReference();
  // newVal is copied into its cell, or moved there when owned is given.
  void Store(ULONG index, const VARIANT& newVal, unique_variant* owned);

  EventsSwitch<1> events_;
  // Element 0 is spare; the cell of storage position p is element p + 1.
  std::vector<unique_variant> values_;
  // Element 0 refers to the record itself, held without a count so that a
  // record's own row cannot keep it alive.
  bool selfInElementZero_ = false;
  com_ptr<IMutableColumns> columns_;
  IMutableColumnsRaw* columnsRaw_ = nullptr;  // the same object, uncounted
  IMutableColumnsManager* indexMap_ = nullptr;
  ListenerRegistry<IRecordChangeListener> listeners_{OLESTR("Cannot remove record change listener.")};
  com_ptr<IRecord> view_;
};

}  // namespace brevo
