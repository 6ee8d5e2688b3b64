// A table's schema: columns with unique names in visible order, the index map
// records translate column indices through, and change events around every
// addition and removal. Shared by the plain and the grouped collection.
#pragma once

#include <vector>

#include "columns/column_interfaces.h"
#include "core/view_set.h"
#include "events/events_switch.h"
#include "events/listener_registry.h"

namespace brevo {

class ColumnsImpl;
class PropertyChangeRelay;

class AbstractMutableColumns {
 public:
  static constexpr ULONG kFree = 0xFFFFFFFF;

  AbstractMutableColumns();
  virtual ~AbstractMutableColumns();

  void Clear();
  // 0 when both hold pairwise equal columns in equal number, -1 otherwise.
  virtual LONG CompareTo(IMutableColumnsRaw* other);
  virtual com_ptr<IMutableColumn> AddColumn(const _bstr_t& name, ULONG type);
  void RemoveColumn(ULONG index);
  virtual LONG IndexOf(const _bstr_t& name);
  // An index greater than the size is refused with a message; one equal to it
  // reaches the array's own bounds check.
  virtual com_ptr<IMutableColumn> MutableColumn(ULONG index);
  // The type of the column MutableColumn(index) gives, with the same checks.
  virtual ULONG ColumnTypeAt(ULONG index);
  virtual com_ptr<IColumns> Columns();
  virtual ULONG Size();
  void EnableMutableColumnsEvents(VARIANT_BOOL flag);
  void AddColumnsChangeListener(IColumnsChangeListener* listener) { columnsListeners_.Add(listener); }
  void RemoveColumnsChangeListener(IColumnsChangeListener* listener) { columnsListeners_.Remove(listener); }
  void AddPropertyChangeListener(IPropertyChangeListener* listener) { propertyListeners_.Add(listener); }
  void RemovePropertyChangeListener(IPropertyChangeListener* listener) { propertyListeners_.Remove(listener); }
  // An empty collection: columns, listeners and index map are not copied.
  com_ptr<IMutableColumns> Clone();

  // The index map.
  virtual ULONG GetIndexOfColumn(ULONG index);
  virtual LONG GetTrueIndexOfColumn(ULONG index);
  virtual void SetTrueIndexOfColumn(ULONG index, ULONG value);
  virtual LONG GetCloumnIndicesByGroup(const _bstr_t& group, ULONG index);

  // A rename of one of the columns: passed on, or remembered while events are off.
  void RelayPropertyChange(IPropertyChangeEvent* event);

 protected:
  // The COM object: event source and the view's parent.
  virtual IMutableColumns* Self() noexcept = 0;
  virtual IPropertyChangeListener* SelfAsPropertyListener() noexcept = 0;
  // Undoes every link that others hold to this object; runs on the last release.
  void Detach() noexcept;

 private:
  enum Pending { kAdditions, kRemovals, kPropertyChanges };
  struct Entry {
    com_ptr<IMutableColumn> column;
    IColumnRaw* raw;  // the same object, uncounted
  };

  void PlaceInIndexMap(ULONG position);
  void IndexMapChanged() noexcept { inverseValid_ = false; }
  void DeliverSummary(std::size_t pending);

  ViewSet<ColumnsImpl, IColumns> views_;
  EventsSwitch<3> events_;
  std::vector<ULONG> indexMap_;
  std::vector<Entry> columns_;
  ListenerRegistry<IColumnsChangeListener> columnsListeners_{OLESTR("Cannot remove columns change listener.")};
  ListenerRegistry<IPropertyChangeListener> propertyListeners_{OLESTR("Cannot remove property change listener.")};
  com_ptr<PropertyChangeRelay> relay_;
  // First position of each map value, rebuilt on demand after the map changes.
  std::vector<LONG> inverse_;
  bool inverseValid_ = false;
};

}  // namespace brevo
