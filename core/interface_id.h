// The identifier of each interface, reachable from the type: iid_of<I>().
#pragma once

#include "platform/com.h"

namespace brevo {

template <class I>
struct interface_id;

template <class I>
constexpr const GUID& iid_of() noexcept {
  return interface_id<I>::value;
}

// Interfaces that clients implement to be called back (listeners): they take
// part in QueryInterface but are not the class's own for error info.
template <class I>
inline constexpr bool is_callback_interface = false;

}  // namespace brevo

#define BREVO_INTERFACE_ID(I, d1, d2, d3, b0, b1, b2, b3, b4, b5, b6, b7) \
  template <>                                                            \
  struct brevo::interface_id<I> {                                        \
    static constexpr GUID value = {d1, d2, d3, {b0, b1, b2, b3, b4, b5, b6, b7}}; \
  }

BREVO_INTERFACE_ID(IUnknown, 0x00000000, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46);
BREVO_INTERFACE_ID(IClassFactory, 0x00000001, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46);
BREVO_INTERFACE_ID(IDispatch, 0x00020400, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46);
BREVO_INTERFACE_ID(IErrorInfo, 0x1CF2B120, 0x547D, 0x101B, 0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19);
BREVO_INTERFACE_ID(ICreateErrorInfo, 0x22F03340, 0x547D, 0x101B, 0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19);
BREVO_INTERFACE_ID(ISupportErrorInfo, 0xDF0B3D60, 0x548F, 0x101B, 0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19);
