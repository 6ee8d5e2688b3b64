// Hands out mutable records without a list of the client's: every record is a
// new row of one private list, made on the first request with the columns of
// that request only.
#pragma once

#include "core/implements.h"
#include "factory/factory_interfaces.h"
#include "lists/mutable_record_list.h"

namespace brevo {

class RecordsFactoryImpl {
 public:
  virtual ~RecordsFactoryImpl() = default;

  com_ptr<IMutableRecord> CreateMutableRecord() { return CreateMutableRecordFromColumns(nullptr); }
  // A runtime failure keeps its description; any other becomes "Cannot create
  // record.".
  com_ptr<IMutableRecord> CreateMutableRecordFromColumns(IMutableColumns* columns);

 private:
  com_ptr<CComObject<MutableRecordList>> list_;
};

class RecordsFactory : public implements<RecordsFactory, IRecordsFactory, IProvideClassInfo>,
                       public RecordsFactoryImpl {
 public:
  static constexpr CLSID kClassId = {0x2C74DBEF, 0x596A, 0x4E80, 0x9A, 0x7F, 0xBC, 0xDB, 0x39, 0x9E, 0x62, 0x31};

  STDMETHODIMP CreateMutableRecord(IMutableRecord** RetVal) override {
    return Call<IRecordsFactory>(RetVal, [&] { *RetVal = RecordsFactoryImpl::CreateMutableRecord().detach(); });
  }
  STDMETHODIMP CreateMutableRecordFromColumns(IMutableColumns* columns, IMutableRecord** RetVal) override {
    return Call<IRecordsFactory>(
        RetVal, [&] { *RetVal = RecordsFactoryImpl::CreateMutableRecordFromColumns(columns).detach(); });
  }
};

}  // namespace brevo
