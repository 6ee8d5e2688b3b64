// An internal listener that can tell when a change would reach nobody through
// it (an owner whose own listeners are absent or switched off). The registries
// then skip it without making the event, which is the cost of a change that
// only the owner's relay hears.
#pragma once

#include "core/interface_id.h"
#include "platform/com.h"

namespace brevo {

// What an owner tells about its interest in the changes its relay hears.
class EventDemand {
 public:
  // False when the event would go unread.
  virtual bool WantsEvent() noexcept = 0;
  // Stands in for the call that was skipped ("Before" or "After" loop).
  virtual void Skipped(bool before) noexcept = 0;

 protected:
  ~EventDemand() = default;
};

// The same, asked of a registered listener.
struct IEventDemand : IUnknown, EventDemand {
 protected:
  ~IEventDemand() = default;
};

}  // namespace brevo

BREVO_INTERFACE_ID(brevo::IEventDemand, 0x3F0B5C21, 0x8D4E, 0x4A7B, 0x9C, 0x12, 0x6E, 0x45, 0xB0, 0x7D, 0x2A, 0x91);
