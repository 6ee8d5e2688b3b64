// A listener that passes notifications on to a target without keeping it
// alive. An object that must hear the objects it owns registers a relay
// rather than itself, so that owner and owned never hold each other; the owner
// detaches the relay before it goes.
#pragma once

#include "core/implements.h"
#include "events/listener_interfaces.h"

namespace brevo {

class PropertyChangeRelay : public implements<PropertyChangeRelay, IPropertyChangeListener> {
 public:
  static constexpr CLSID kClassId = {0x0CFFB4BB, 0xED0B, 0x4F8B, 0x9A, 0x4F, 0x24, 0xD4, 0x5C, 0xE8, 0xDE, 0x3C};

  explicit PropertyChangeRelay(IPropertyChangeListener* target) noexcept : target_(target) {}
  void Detach() noexcept { target_ = nullptr; }

  STDMETHODIMP PropertyChange(IPropertyChangeEvent* pEvent) override {
    return target_ != nullptr ? target_->PropertyChange(pEvent) : S_OK;
  }

 private:
  IPropertyChangeListener* target_;
};

}  // namespace brevo
