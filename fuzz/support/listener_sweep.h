// Undoes the listener registrations a fuzz input may have made: any object
// passed to any Add...Listener of any object called. Registrations can tie
// objects in a cycle that only the client can break.
#pragma once

#include <vector>

#include "core/com_ptr.h"

namespace brevo::fuzz {

class ListenerSweep {
 public:
  // An object the input called.
  void Called(IUnknown* target);
  // Takes each candidate out of every registry of every object called, as
  // often as it is registered there.
  void RemoveAll(const std::vector<com_ptr<IUnknown>>& candidates) noexcept;
  // Takes candidate out of every registry of target.
  static void Remove(IUnknown* target, IUnknown* candidate) noexcept;

 private:
  std::vector<com_ptr<IUnknown>> targets_;
};

}  // namespace brevo::fuzz
