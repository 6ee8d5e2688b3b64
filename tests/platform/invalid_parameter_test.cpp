// The invalid-parameter path ends the process unless a host has taken it over.
#include "support/test_support.h"

namespace brevo::testing {
namespace {

TEST(InvalidParameterDeathTest, EndsTheProcessByDefault) {
  EXPECT_DEATH(platform::InvalidParameter(), "");
}

TEST(InvalidParameterDeathTest, ScopedHandlerThrowsAndIsUndoneAfterwards) {
  {
    const ScopedThrowingInvalidParameter outer;
    {
      const ScopedThrowingInvalidParameter inner;
      EXPECT_THROW(platform::InvalidParameter(), InvalidParameterRaised);
    }
    // The inner scope put back the outer one's handler, not the default.
    EXPECT_THROW(platform::InvalidParameter(), InvalidParameterRaised);
  }
  EXPECT_DEATH(platform::InvalidParameter(), "");
}

}  // namespace
}  // namespace brevo::testing
