#include "factory/records_factory.h"

namespace brevo {

com_ptr<IMutableRecord> RecordsFactoryImpl::CreateMutableRecordFromColumns(IMutableColumns* columns) {
  try {
    if (!list_) {
      list_ = make_object<MutableRecordList>();
      if (columns != nullptr) list_->MutableRecordListImpl::Create(columns);
    }
    com_ptr<IMutableRecord> record;
    list_->MutableRecordListImpl::AddRecord(record.put());
    return record;
  } catch (const _com_error& e) {
    throw EBvException(e.Description());
  } catch (...) {
    throw EBvException(OLESTR("Cannot create record."));
  }
}

}  // namespace brevo
