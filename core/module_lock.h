// The module's lock count: one for every live object and every class-factory
// lock. The module may be unloaded when it is zero.
#pragma once

namespace brevo {

class ModuleLock {
 public:
  static void Increment() noexcept;
  static void Decrement() noexcept;
  static long Count() noexcept;
};

}  // namespace brevo
