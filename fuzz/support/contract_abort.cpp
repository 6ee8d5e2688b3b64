#include "fuzz/support/contract_abort.h"

#include "platform/com.h"

namespace brevo::fuzz {
namespace {

bool fired = false;

void NoteAndThrow() {
  fired = true;
  throw ContractAbort{};
}

}  // namespace

void InstallAbortHandler() { platform::SetInvalidParameterHandler(&NoteAndThrow); }

void ResetAbort() noexcept { fired = false; }

bool AbortFired() noexcept { return fired; }

void StopIfAborted() {
  if (fired) throw ContractAbort{};
}

}  // namespace brevo::fuzz
