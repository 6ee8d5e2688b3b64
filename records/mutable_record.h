// The mutable record as a COM class.
#pragma once

#include "records/mutable_record_impl.h"
#include "records/record_writer.h"

namespace brevo {

class MutableRecord : public RecordWriter<MutableRecord, MutableRecordImpl, IMutableRecordRaw, IRecordRaw> {
 public:
  static constexpr CLSID kClassId = {0x1E7180DC, 0x59B8, 0x4773, 0x97, 0xDF, 0x6F, 0x08, 0x52, 0x52, 0x94, 0x46};

  void FinalRelease() { Detach(); }

  // IMutableRecordRaw
  void Create(IMutableColumns* columns) override { MutableRecordImpl::Create(columns); }
  void AssignValues(std::vector<unique_variant>& values) override { MutableRecordImpl::AssignValues(values); }
  void SetValue(ULONG index, const VARIANT& newVal) override { MutableRecordImpl::SetValue(index, newVal); }

 protected:
  IMutableRecord* Self() noexcept override { return this; }
};

}  // namespace brevo
