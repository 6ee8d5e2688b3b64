#include "fuzz/support/lifetime_oracle.h"

#include <cstdio>
#include <cstdlib>

#include "core/module_lock.h"

namespace brevo::fuzz {

LifetimeOracle::LifetimeOracle() noexcept : before_(ModuleLock::Count()) {}

void LifetimeOracle::Check(const char* target) const {
  const long after = ModuleLock::Count();
  if (after == before_) return;
  std::fprintf(stderr, "%s: %ld library objects outlived the input\n", target, after - before_);
  std::abort();
}

}  // namespace brevo::fuzz
