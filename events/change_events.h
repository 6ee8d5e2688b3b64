// The five change events as COM classes.
#pragma once

#include "core/implements.h"
#include "events/change_event_impls.h"
#include "events/event_interfaces.h"

namespace brevo {

// Stop, IsStopped and GetSource, shared by the four events that can be stopped.
template <class Derived, class Interface, class Impl>
class StoppableEvent : public implements<Derived, Interface, IProvideClassInfo>, public Impl {
 public:
  STDMETHODIMP Stop() override {
    return this->template Call<Interface>([&] { Impl::Stop(); });
  }
  STDMETHODIMP IsStopped(VARIANT_BOOL* RetVal) override {
    return this->template Call<Interface>(RetVal, [&] { *RetVal = Impl::IsStopped(); });
  }
  STDMETHODIMP GetSource(IDispatch** RetVal) override {
    return this->template Call<Interface>(RetVal, [&] { *RetVal = Impl::GetSource().detach(); });
  }
};

class RecordChangeEvent : public StoppableEvent<RecordChangeEvent, IRecordChangeEvent, RecordChangeEventImpl> {
 public:
  static constexpr CLSID kClassId = {0x583F3E12, 0xBB8B, 0x4C22, 0x86, 0x36, 0xFD, 0xD0, 0x49, 0xA3, 0xB2, 0xBB};

  STDMETHODIMP Initialize(IDispatch* pSource, LONG index) override {
    return Call<IRecordChangeEvent>([&] { RecordChangeEventImpl::Initialize(pSource, index); });
  }
  STDMETHODIMP GetIndex(LONG* RetVal) override {
    return Call<IRecordChangeEvent>(RetVal, [&] { *RetVal = RecordChangeEventImpl::GetIndex(); });
  }
};

class ColumnsChangeEvent
    : public StoppableEvent<ColumnsChangeEvent, IColumnsChangeEvent, ColumnsChangeEventImpl> {
 public:
  static constexpr CLSID kClassId = {0x9582941C, 0x0E04, 0x4CF7, 0xA5, 0x6F, 0x8E, 0xB7, 0xE8, 0x0A, 0xCB, 0x38};

  STDMETHODIMP Initialize(IDispatch* pSource, IDispatch* pColumnChanged) override {
    return Call<IColumnsChangeEvent>([&] { ColumnsChangeEventImpl::Initialize(pSource, pColumnChanged); });
  }
  STDMETHODIMP GetColumnChanged(IDispatch** RetVal) override {
    return Call<IColumnsChangeEvent>(RetVal, [&] { *RetVal = ColumnsChangeEventImpl::GetColumnChanged().detach(); });
  }
};

class RecordListChangeEvent
    : public StoppableEvent<RecordListChangeEvent, IRecordListChangeEvent, RecordListChangeEventImpl> {
 public:
  static constexpr CLSID kClassId = {0x195866C4, 0xA295, 0x4D26, 0x8D, 0x85, 0x62, 0x49, 0xFC, 0xA6, 0x6B, 0x5A};

  STDMETHODIMP Initialize(IDispatch* pSource, IDispatch* pRecordChanged) override {
    return Call<IRecordListChangeEvent>([&] { RecordListChangeEventImpl::Initialize(pSource, pRecordChanged); });
  }
  STDMETHODIMP GetRecordChanged(IDispatch** RetVal) override {
    return Call<IRecordListChangeEvent>(
        RetVal, [&] { *RetVal = RecordListChangeEventImpl::GetRecordChanged().detach(); });
  }
};

class RecordListValueChangeEvent
    : public StoppableEvent<RecordListValueChangeEvent, IRecordListValueChangeEvent,
                            RecordListValueChangeEventImpl> {
 public:
  static constexpr CLSID kClassId = {0xBB2542F8, 0x8CBF, 0x4F86, 0x93, 0x5A, 0x2B, 0xC1, 0xEA, 0x48, 0x40, 0x9D};

  STDMETHODIMP Initialize(IDispatch* pSource, IDispatch* pRecordChanged, LONG index) override {
    return Call<IRecordListValueChangeEvent>(
        [&] { RecordListValueChangeEventImpl::Initialize(pSource, pRecordChanged, index); });
  }
  STDMETHODIMP GetRecordChanged(IDispatch** RetVal) override {
    return Call<IRecordListValueChangeEvent>(
        RetVal, [&] { *RetVal = RecordListValueChangeEventImpl::GetRecordChanged().detach(); });
  }
  STDMETHODIMP GetIndex(LONG* RetVal) override {
    return Call<IRecordListValueChangeEvent>(RetVal, [&] { *RetVal = RecordListValueChangeEventImpl::GetIndex(); });
  }
};

class PropertyChangeEvent : public implements<PropertyChangeEvent, IPropertyChangeEvent, IProvideClassInfo>,
                            public PropertyChangeEventImpl {
 public:
  static constexpr CLSID kClassId = {0x55306244, 0x943A, 0x4766, 0xA7, 0xFE, 0x3C, 0xE0, 0x84, 0xDA, 0x1A, 0xBB};

  STDMETHODIMP Initialize(IDispatch* pSource, BSTR propertyName, BSTR oldValue, BSTR newValue) override {
    return Call<IPropertyChangeEvent>([&] {
      PropertyChangeEventImpl::Initialize(pSource, _bstr_t(propertyName, true), _bstr_t(oldValue, true),
                                          _bstr_t(newValue, true));
    });
  }
  STDMETHODIMP GetPropertyName(BSTR* RetVal) override {
    return Call<IPropertyChangeEvent>(RetVal, [&] { *RetVal = PropertyChangeEventImpl::GetPropertyName().copy(); });
  }
  STDMETHODIMP GetNewValue(BSTR* RetVal) override {
    return Call<IPropertyChangeEvent>(RetVal, [&] { *RetVal = PropertyChangeEventImpl::GetNewValue().copy(); });
  }
  STDMETHODIMP GetOldValue(BSTR* RetVal) override {
    return Call<IPropertyChangeEvent>(RetVal, [&] { *RetVal = PropertyChangeEventImpl::GetOldValue().copy(); });
  }
  STDMETHODIMP GetPropagationId(IUnknown** RetVal) override {
    return Call<IPropertyChangeEvent>(RetVal, [&] { *RetVal = PropertyChangeEventImpl::GetPropagationId().detach(); });
  }
  STDMETHODIMP SetPropagationId(IUnknown* id) override {
    return Call<IPropertyChangeEvent>([&] { PropertyChangeEventImpl::SetPropagationId(id); });
  }
  STDMETHODIMP GetSource(IDispatch** RetVal) override {
    return Call<IPropertyChangeEvent>(RetVal, [&] { *RetVal = PropertyChangeEventImpl::GetSource().detach(); });
  }
};

}  // namespace brevo
