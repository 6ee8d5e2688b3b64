// The mutable record as a COM class.
#pragma once

#include "records/mutable_record_impl.h"
#include "records/record_reader.h"

namespace brevo {

class MutableRecord
    : public RecordReader<MutableRecord, IMutableRecord, MutableRecordImpl, IMutableRecordRaw, IRecordRaw> {
 public:
  static constexpr CLSID kClassId = {0x1E7180DC, 0x59B8, 0x4773, 0x97, 0xDF, 0x6F, 0x08, 0x52, 0x52, 0x94, 0x46};

  void FinalRelease() { Detach(); }

  // IMutableRecord, beyond the reads
  STDMETHODIMP Clear() override {
    return Read([&] { MutableRecordImpl::Clear(); });
  }
  STDMETHODIMP get_Record(IRecord** RetVal) override {
    return Read(RetVal, [&] { *RetVal = MutableRecordImpl::Record().detach(); });
  }
  STDMETHODIMP SetValue(ULONG index, VARIANT newVal) override {
    return Read([&] { MutableRecordImpl::SetValue(index, newVal); });
  }
  STDMETHODIMP SetValueAsBoolean(ULONG index, VARIANT_BOOL newVal) override {
    return Read([&] { MutableRecordImpl::SetValueAsBoolean(index, newVal); });
  }
  STDMETHODIMP SetValueAsDouble(ULONG index, double newVal) override {
    return Read([&] { MutableRecordImpl::SetValueAsDouble(index, newVal); });
  }
  STDMETHODIMP SetValueAsFloat(ULONG index, float newVal) override {
    return Read([&] { MutableRecordImpl::SetValueAsFloat(index, newVal); });
  }
  STDMETHODIMP SetValueAsInt32(ULONG index, LONG newVal) override {
    return Read([&] { MutableRecordImpl::SetValueAsInt32(index, newVal); });
  }
  STDMETHODIMP SetValueAsInt64(ULONG index, LONGLONG newVal) override {
    return Read([&] { MutableRecordImpl::SetValueAsInt64(index, newVal); });
  }
  STDMETHODIMP SetValueAsInt16(ULONG index, SHORT newVal) override {
    return Read([&] { MutableRecordImpl::SetValueAsInt16(index, newVal); });
  }
  STDMETHODIMP SetValueAsString(ULONG index, BSTR newVal) override {
    return Read([&] { MutableRecordImpl::SetValueAsString(index, _bstr_t(newVal, true)); });
  }
  STDMETHODIMP SetValueByName(BSTR name, VARIANT newVal) override {
    return Read([&] { MutableRecordImpl::SetValueByName(_bstr_t(name, true), newVal); });
  }
  STDMETHODIMP get_Columns(IMutableColumns** RetVal) override {
    return Read(RetVal, [&] { *RetVal = MutableRecordImpl::Columns().detach(); });
  }
  STDMETHODIMP EnableMutableRecordEvents(VARIANT_BOOL flag) override {
    return Read([&] { MutableRecordImpl::EnableMutableRecordEvents(flag); });
  }
  STDMETHODIMP SetValueAsByte(ULONG index, BYTE newVal) override {
    return Read([&] { MutableRecordImpl::SetValueAsByte(index, newVal); });
  }

  // IMutableRecordRaw
  void Create(IMutableColumns* columns) override { MutableRecordImpl::Create(columns); }
  void AssignValues(std::vector<unique_variant>& values) override { MutableRecordImpl::AssignValues(values); }
  void SetValue(ULONG index, const VARIANT& newVal) override { MutableRecordImpl::SetValue(index, newVal); }

 protected:
  IMutableRecord* Self() noexcept override { return this; }
};

}  // namespace brevo
