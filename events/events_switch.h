// The Enable...Events switch of a raising object: on (-1) from the start,
// pending flags set while off, and one summary per pending kind when it is
// switched back on.
#pragma once

#include <array>
#include <cstddef>

#include "platform/com.h"

namespace brevo {

template <std::size_t Kinds>
class EventsSwitch {
 public:
  bool enabled() const noexcept { return enabled_ != 0; }
  bool pending(std::size_t kind) const noexcept { return pending_[kind] != 0; }
  void MarkPending(std::size_t kind) noexcept { pending_[kind] = VARIANT_TRUE; }

  // Switches to flag. Going from off to on, summary(kind) runs first for each
  // pending kind in order, while the switch still reads off; any change of
  // state then clears every pending flag.
  template <class Summary>
  void Switch(VARIANT_BOOL flag, Summary&& summary) {
    if (flag == enabled_) return;
    if (enabled_ == 0) {
      for (std::size_t kind = 0; kind < Kinds; ++kind) {
        if (pending_[kind] != 0) summary(kind);
      }
    }
    pending_.fill(0);
    enabled_ = flag;
  }

 private:
  VARIANT_BOOL enabled_ = VARIANT_TRUE;
  std::array<VARIANT_BOOL, Kinds> pending_{};
};

}  // namespace brevo
