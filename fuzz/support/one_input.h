// One fuzz input from start to end: the session reads the input and runs it
// until the input ends or the contract aborts; then everything the session
// holds is released and no library object may be left.
#pragma once

#include <cstddef>
#include <cstdint>

#include "fuzz/support/byte_reader.h"
#include "fuzz/support/contract_abort.h"
#include "fuzz/support/lifetime_oracle.h"
#include "platform/com.h"

namespace brevo::fuzz {

// Once per process: an apartment, as every host of the library has, and the
// throwing abort handler.
inline void StartFuzzing() {
  CoInitialize(nullptr);
  InstallAbortHandler();
}

template <class Session>
int RunOneInput(const std::uint8_t* data, std::size_t size, const char* target) {
  ResetAbort();
  const LifetimeOracle oracle;
  ByteReader in(data, size);
  try {
    Session session(in);
    session.Run();
  } catch (const ContractAbort&) {
  }
  SetErrorInfo(0, nullptr);  // the last failure's error object is no concern of the next input
  // After an abort the process would have ended mid-operation: what that
  // operation had built may stay alive, so only inputs that ran to their end
  // are held to the oracle.
  if (!AbortFired()) oracle.Check(target);
  return 0;
}

}  // namespace brevo::fuzz

// The two libFuzzer entry points of a target that runs Session per input.
#define BREVO_FUZZ_TARGET(Session, name)                                                   \
  extern "C" int LLVMFuzzerInitialize(int*, char***) {                                     \
    brevo::fuzz::StartFuzzing();                                                           \
    return 0;                                                                              \
  }                                                                                        \
  extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {      \
    return brevo::fuzz::RunOneInput<Session>(data, size, name);                            \
  }
