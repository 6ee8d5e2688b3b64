// Runs the SDK tests and fails any test that leaves an object of the module alive.
#include <gtest/gtest.h>

#include "module.h"

namespace {

class UnloadCheck : public ::testing::EmptyTestEventListener {
  void OnTestEnd(const ::testing::TestInfo&) override {
    EXPECT_EQ(sdk_test::CanUnloadNow(), S_OK) << "an object of the module outlived the test";
  }
};

}  // namespace

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  ::testing::UnitTest::GetInstance()->listeners().Append(new UnloadCheck);
  const int status = RUN_ALL_TESTS();
  CoUninitialize();
  return status;
}
