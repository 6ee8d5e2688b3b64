// Runs the tests and fails any test that leaves a library object alive.
#include <gtest/gtest.h>

#include "core/module_lock.h"
#include "platform/com.h"

namespace {

class LockCountCheck : public ::testing::EmptyTestEventListener {
  void OnTestEnd(const ::testing::TestInfo&) override {
    EXPECT_EQ(brevo::ModuleLock::Count(), 0) << "a library object outlived the test";
  }
};

}  // namespace

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  CoInitialize(nullptr);  // an apartment, as every host of the library has
  ::testing::UnitTest::GetInstance()->listeners().Append(new LockCountCheck);
  return RUN_ALL_TESTS();
}
