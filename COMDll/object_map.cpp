#include "COMDll/object_map.h"

#include "COMDll/class_factory.h"
#include "columns/mutable_columns.h"
#include "events/change_events.h"
#include "factory/record_list_utils.h"
#include "factory/records_factory.h"
#include "grouping/group_mutable_record_list.h"
#include "lists/mutable_record_list.h"

namespace brevo {
namespace {

template <class T>
CreatableClass Entry(const OLECHAR* friendlyName, const OLECHAR* progId, const OLECHAR* versionIndependentProgId) {
  return CreatableClass{&T::kClassId, friendlyName, progId, versionIndependentProgId, FactoryOf<T>()};
}

}  // namespace

const ObjectMap& TheObjectMap() noexcept {
  static const CreatableClass classes[] = {
      Entry<MutableColumns>(OLESTR("MutableColumns Object"), OLESTR("BrevoRecordList.MutableColumns.1"),
                            OLESTR("BrevoRecordList.MutableColumns")),
      Entry<MutableRecordList>(OLESTR("MutableRecordList Object"), OLESTR("BrevoRecordList.MutableRecordList.1"),
                               OLESTR("BrevoRecordList.MutableRecordList")),
      Entry<GroupMutableRecordList>(OLESTR("GroupMutableRecordList Object"),
                                    OLESTR("GroupMutableRecordList.GroupMutable.1.0"),
                                    OLESTR("GroupMutableRecordList.GroupMutable")),
      Entry<RecordChangeEvent>(OLESTR("RecordChangeEvent Object"), OLESTR("BrevoRecordList.RecordChangeEvent.1"),
                               OLESTR("BrevoRecordList.RecordChangeEvent")),
      Entry<ColumnsChangeEvent>(OLESTR("ColumnsChangeEvent Object"), OLESTR("BrevoRecordList.ColumnsChangeEvent.1"),
                                OLESTR("BrevoRecordList.ColumnsChangeEvent")),
      Entry<RecordListChangeEvent>(OLESTR("RecordListChangeEvent Object"),
                                   OLESTR("BrevoRecordList.RecordListChangeEvent.1"),
                                   OLESTR("BrevoRecordList.RecordListChangeEvent")),
      Entry<RecordListValueChangeEvent>(OLESTR("RecordListValueChangeEvent Object"),
                                        OLESTR("RecordListValueChangeEvent.RecordLi.1.0"),
                                        OLESTR("RecordListValueChangeEvent.RecordLi")),
      Entry<PropertyChangeEvent>(OLESTR("PropertyChangeEvent Object"), OLESTR("BrevoRecordList.PropertyChangeEvent.1"),
                                 OLESTR("BrevoRecordList.PropertyChangeEvent")),
      Entry<RecordListUtils>(OLESTR("RecordListUtils Object"), OLESTR("BrevoRecordList.RecordListUtils.1"),
                             OLESTR("BrevoRecordList.RecordListUtils")),
      Entry<RecordsFactory>(OLESTR("RecordsFactory Object"), OLESTR("BrevoRecordList.RecordsFactory.1"),
                            OLESTR("BrevoRecordList.RecordsFactory")),
  };
  static const ObjectMap map{classes, sizeof classes / sizeof classes[0]};
  return map;
}

}  // namespace brevo
