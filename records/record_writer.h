// The write side of the mutable record COM classes: IMutableRecord beyond the
// reads, over an implementation derived from AbstractMutableRecord.
#pragma once

#include "records/record_reader.h"

namespace brevo {

template <class Derived, class Impl, class... Others>
class RecordWriter : public RecordReader<Derived, IMutableRecord, Impl, Others...> {
 public:
  using RecordReader<Derived, IMutableRecord, Impl, Others...>::Read;

  STDMETHODIMP Clear() override {
    return Read([&] { Impl::Clear(); });
  }
  STDMETHODIMP get_Record(IRecord** RetVal) override {
    return Read(RetVal, [&] { *RetVal = Impl::Record().detach(); });
  }
  STDMETHODIMP SetValue(ULONG index, VARIANT newVal) override {
    return Read([&] { Impl::SetValue(index, newVal); });
  }
  STDMETHODIMP SetValueAsBoolean(ULONG index, VARIANT_BOOL newVal) override {
    return Read([&] { Impl::SetValueAsBoolean(index, newVal); });
  }
  STDMETHODIMP SetValueAsDouble(ULONG index, double newVal) override {
    return Read([&] { Impl::SetValueAsDouble(index, newVal); });
  }
  STDMETHODIMP SetValueAsFloat(ULONG index, float newVal) override {
    return Read([&] { Impl::SetValueAsFloat(index, newVal); });
  }
  STDMETHODIMP SetValueAsInt32(ULONG index, LONG newVal) override {
    return Read([&] { Impl::SetValueAsInt32(index, newVal); });
  }
  STDMETHODIMP SetValueAsInt64(ULONG index, LONGLONG newVal) override {
    return Read([&] { Impl::SetValueAsInt64(index, newVal); });
  }
  STDMETHODIMP SetValueAsInt16(ULONG index, SHORT newVal) override {
    return Read([&] { Impl::SetValueAsInt16(index, newVal); });
  }
  STDMETHODIMP SetValueAsString(ULONG index, BSTR newVal) override {
    return Read([&] { Impl::SetValueAsString(index, newVal); });
  }
  STDMETHODIMP SetValueByName(BSTR name, VARIANT newVal) override {
    return Read([&] { Impl::SetValueByName(_bstr_t(name, true), newVal); });
  }
  STDMETHODIMP get_Columns(IMutableColumns** RetVal) override {
    return Read(RetVal, [&] { *RetVal = Impl::Columns().detach(); });
  }
  STDMETHODIMP EnableMutableRecordEvents(VARIANT_BOOL flag) override {
    return Read([&] { Impl::EnableMutableRecordEvents(flag); });
  }
  STDMETHODIMP SetValueAsByte(ULONG index, BYTE newVal) override {
    return Read([&] { Impl::SetValueAsByte(index, newVal); });
  }

};

}  // namespace brevo
