#include "platform/invalid_parameter.h"

#include <cstdio>
#include <cstdlib>

namespace brevo::platform {
namespace {

InvalidParameterHandler g_handler = nullptr;

}  // namespace

InvalidParameterHandler SetInvalidParameterHandler(InvalidParameterHandler handler) {
  const InvalidParameterHandler previous = g_handler;
  g_handler = handler;
  return previous;
}

void InvalidParameter() {
  if (g_handler != nullptr) g_handler();
  std::fputs("Invalid parameter passed to a runtime function; ending the process.\n", stderr);
  std::fflush(stderr);
  std::abort();
}

}  // namespace brevo::platform
