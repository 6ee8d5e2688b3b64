// The runtime's invalid-parameter path: a container access out of bounds ends
// the process instead of throwing. A host (tests, fuzzers) may install its own
// handler; a handler that returns still ends the process, so a handler that
// wants to survive must throw.
#pragma once

namespace brevo::platform {

using InvalidParameterHandler = void (*)();

// Returns the previous handler; null restores the default.
InvalidParameterHandler SetInvalidParameterHandler(InvalidParameterHandler handler);

[[noreturn]] void InvalidParameter();

}  // namespace brevo::platform
