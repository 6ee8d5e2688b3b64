// Every call from the library into client code (listeners, conditions,
// comparators) counts as one level of nesting on its thread. A client that
// re-enters the library from such a call can nest it again; past the limit
// the innermost call fails with one fixed message instead of exhausting the
// stack, and the outer calls unwind as from any failure.
#pragma once

#include "core/bv_exception.h"

namespace brevo {

// Under Wine, a JScript listener re-entering the library this way ends the
// 1 MiB-stack script host between 400 and 500 levels (VBScript between 600
// and 650); the limit stays well below that (docs/ARCHITECTURE.md, "Nesting").
inline constexpr int kCallOutLimit = 128;

inline constexpr const OLECHAR* kCallOutTooDeep =
    OLESTR("Too many nested calls: a listener, condition or comparator re-entered the library too deeply.");

// The failure of the innermost call; operations that word their own failures
// let this one through, so that the cause reaches the client.
class CallOutTooDeep : public EBvException {
 public:
  CallOutTooDeep() : EBvException(kCallOutTooDeep) {}
};

// One level of nesting while alive.
class CallOutLevel {
 public:
  CallOutLevel() {
    if (depth_ >= kCallOutLimit) throw CallOutTooDeep();
    ++depth_;
  }
  ~CallOutLevel() { --depth_; }
  CallOutLevel(const CallOutLevel&) = delete;
  CallOutLevel& operator=(const CallOutLevel&) = delete;

  static int Depth() noexcept { return depth_; }

 private:
  static inline thread_local int depth_ = 0;
};

}  // namespace brevo
