// The portable text <-> number routines behind the typed getters.
#include <cmath>
#include <limits>

#include "core/number_text.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

TEST(NumberText, ParsesTheLongestDecimalPrefix) {
  const struct {
    const char* text;
    double real;
    std::int32_t integer;
  } cases[] = {
      {"42", 42, 42},          {"  -7.25xyz", -7.25, -7}, {"+3e2", 300, 3},     {"1e", 1, 1},
      {".5", 0.5, 0},          {"abc", 0, 0},             {"", 0, 0},           {"0x1A", 0, 0},
      {"inf", 0, 0},           {"nan", 0, 0},             {"\t\n12", 12, 12},   {"- 5", 0, 0},
      {"2147483647", 2147483647.0, 2147483647},          {"-2147483648", -2147483648.0, -2147483647 - 1},
      {"2147483648", 2147483648.0, 2147483647},          {"-99999999999999999999", -1e20, -2147483647 - 1},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ParseDouble(c.text), c.real) << c.text;
    EXPECT_EQ(ParseInt32(c.text), c.integer) << c.text;
  }
  EXPECT_EQ(ParseDouble("1e400"), HUGE_VAL);
  EXPECT_EQ(ParseDouble("-1e400"), -HUGE_VAL);
  EXPECT_EQ(ParseDouble("1e-400"), 0.0);
  EXPECT_EQ(ParseDouble("0.1"), 0.1) << "correctly rounded";
}

TEST(NumberText, FormatsLikePrintfFixedAndStreamInsertion) {
  EXPECT_EQ(FormatFixed(1.5), "1.500000");
  EXPECT_EQ(FormatFixed(-2.9), "-2.900000");
  EXPECT_EQ(FormatFixed(0.0000004), "0.000000");
  EXPECT_EQ(FormatFixed(0.0000006), "0.000001");
  EXPECT_EQ(FormatFixed(-0.0), "-0.000000");
  EXPECT_EQ(FormatFixed(1e15), "1000000000000000.000000");
  EXPECT_EQ(FormatFixed(std::numeric_limits<double>::infinity()), "inf");
  EXPECT_EQ(FormatFixed(-std::numeric_limits<double>::infinity()), "-inf");
  EXPECT_EQ(FormatFixed(std::nan("")), "nan");
  EXPECT_EQ(FormatInteger(-32768), "-32768");
  EXPECT_EQ(FormatUnsigned(4294967295u), "4294967295");
}

TEST(NumberText, TruncatesTowardZeroWithTheHardwareIndefiniteValue) {
  EXPECT_EQ(TruncateToInt32(-2.9), -2);
  EXPECT_EQ(TruncateToInt32(2147483647.9), 2147483647);
  EXPECT_EQ(TruncateToInt32(-2147483648.9), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(TruncateToInt32(2147483648.0), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(TruncateToInt32(std::nan("")), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(TruncateToInt64(-1e10), -10000000000LL);
  EXPECT_EQ(TruncateToInt64(1e19), std::numeric_limits<std::int64_t>::min());
}

}  // namespace
}  // namespace brevo::testing
