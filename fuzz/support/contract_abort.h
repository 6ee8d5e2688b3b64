// The contract's aborts (platform::InvalidParameter) as an expected end of a
// fuzz input. The installed handler notes the abort and throws; the library's
// interface boundary turns the throw into E_UNEXPECTED, so the harness asks
// AbortFired() after each call and stops the input with ContractAbort.
#pragma once

namespace brevo::fuzz {

struct ContractAbort {};

// Once per process, before the first input.
void InstallAbortHandler();

// Clears the note at the start of an input.
void ResetAbort() noexcept;
bool AbortFired() noexcept;
// Throws ContractAbort when an abort happened since ResetAbort.
void StopIfAborted();

// Runs body; an abort inside it ends body only. For release work, which runs
// after an abort too.
template <class Body>
void Quietly(Body&& body) noexcept {
  try {
    body();
  } catch (const ContractAbort&) {
  }
}

// For callbacks the library calls: runs body unless the input already ended,
// and never lets the harness's exception cross the library.
template <class Body>
void InCallback(Body&& body) noexcept {
  if (!AbortFired()) Quietly(body);
}

}  // namespace brevo::fuzz
