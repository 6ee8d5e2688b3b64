// The listener interfaces clients implement. Each method receives the event
// and returns a status; a failing status stops the change (for "Before") or
// the remaining notifications.
#pragma once

#include "events/event_interfaces.h"

namespace brevo {

// The vtable puts Before first, while late-bound callers see After as id 1.
struct IRecordChangeListener : IDispatch {
  STDMETHOD(ValueBeforeChange)(IRecordChangeEvent* pEvent) = 0;
  STDMETHOD(ValueAfterChange)(IRecordChangeEvent* pEvent) = 0;
};

struct IColumnsChangeListener : IDispatch {
  STDMETHOD(ColumnBeforeAdd)(IColumnsChangeEvent* pEvent) = 0;
  STDMETHOD(ColumnAfterAdd)(IColumnsChangeEvent* pEvent) = 0;
  STDMETHOD(ColumnBeforeRemove)(IColumnsChangeEvent* pEvent) = 0;
  STDMETHOD(ColumnAfterRemove)(IColumnsChangeEvent* pEvent) = 0;
};

struct IRecordListChangeListener : IDispatch {
  STDMETHOD(RecordBeforeAdd)(IRecordListChangeEvent* pEvent) = 0;
  STDMETHOD(RecordAfterAdd)(IRecordListChangeEvent* pEvent) = 0;
  STDMETHOD(RecordBeforeRemove)(IRecordListChangeEvent* pEvent) = 0;
  STDMETHOD(RecordAfterRemove)(IRecordListChangeEvent* pEvent) = 0;
};

struct IRecordListValueChangeListener : IDispatch {
  STDMETHOD(ValueBeforeChange)(IRecordListValueChangeEvent* pEvent) = 0;
  STDMETHOD(ValueAfterChange)(IRecordListValueChangeEvent* pEvent) = 0;
};

struct IPropertyChangeListener : IDispatch {
  STDMETHOD(PropertyChange)(IPropertyChangeEvent* pEvent) = 0;
};

}  // namespace brevo

BREVO_INTERFACE_ID(brevo::IRecordChangeListener, 0x36B2231A, 0x0091, 0x486D, 0xA5, 0x02, 0xB6, 0x79, 0x75, 0xE7, 0x0E, 0x63);
BREVO_INTERFACE_ID(brevo::IColumnsChangeListener, 0x7E7BF0A4, 0x7274, 0x4461, 0xB7, 0xD0, 0x82, 0xB1, 0x7D, 0x3E, 0x8B, 0x0E);
BREVO_INTERFACE_ID(brevo::IRecordListChangeListener, 0x4074D6F9, 0x2C96, 0x4DFD, 0x8C, 0x63, 0x84, 0x80, 0xC6, 0x64, 0xB4, 0x6C);
BREVO_INTERFACE_ID(brevo::IRecordListValueChangeListener, 0x90336A83, 0x5B42, 0x45D7, 0xB9, 0xEC, 0x2A, 0x1B, 0xEA, 0xED, 0x98, 0xAA);
BREVO_INTERFACE_ID(brevo::IPropertyChangeListener, 0x195FBB31, 0xA948, 0x42D6, 0xB5, 0x5A, 0x06, 0x3D, 0xE0, 0xCE, 0xAD, 0x71);

template <>
inline constexpr bool brevo::is_callback_interface<brevo::IRecordChangeListener> = true;
template <>
inline constexpr bool brevo::is_callback_interface<brevo::IColumnsChangeListener> = true;
template <>
inline constexpr bool brevo::is_callback_interface<brevo::IRecordListChangeListener> = true;
template <>
inline constexpr bool brevo::is_callback_interface<brevo::IRecordListValueChangeListener> = true;
template <>
inline constexpr bool brevo::is_callback_interface<brevo::IPropertyChangeListener> = true;
