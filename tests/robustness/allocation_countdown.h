// Makes the k-th allocation from now fail: C++ allocations throw
// std::bad_alloc, the runtime's own (strings, variant copies) come back empty
// as when memory runs out. Test code pauses the countdown around its own work.
#pragma once

#include <cstddef>

namespace brevo::testing {

class AllocationCountdown {
 public:
  // The k-th allocation from now fails (k >= 1); later ones succeed again.
  static void Arm(long k);
  // The first allocation of exactly `size` bytes from now fails.
  static void ArmForSize(std::size_t size);
  static void Disarm();
  // Whether the armed allocation came and failed, and whether it was one of
  // the runtime's own.
  static bool Fired();
  static bool FiredInRuntime();
  // Blocks handed out by operator new and not yet deleted.
  static long LiveBlocks();
  // The runtime's allocations take part only where the platform asks the hook.
  static bool RuntimeHooked();
};

// While alive the countdown neither counts nor fails (paused = true), or
// counts again inside a paused stretch (paused = false).
class PausedCountdown {
 public:
  explicit PausedCountdown(bool paused = true);
  ~PausedCountdown();
  PausedCountdown(const PausedCountdown&) = delete;
  PausedCountdown& operator=(const PausedCountdown&) = delete;

 private:
  bool wasPaused_;
};

// A library call whose allocations count, made from test code whose own
// allocations do not.
template <class Call>
auto Counted(Call&& call) {
  const PausedCountdown counting(false);
  return call();
}

}  // namespace brevo::testing
