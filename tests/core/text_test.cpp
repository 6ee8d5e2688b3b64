// Text in the core: the shared string (sharing, null versus empty, narrow
// copies, ownership) and the portable number <-> text routines.
#include <cmath>
#include <limits>

#include "core/bstr_t.h"
#include "core/number_text.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

TEST(BstrT, SharesComparesExactlyAndHandsOver) {
  const _bstr_t null;
  EXPECT_TRUE(null.is_null() && !_bstr_t(OLESTR("")).is_null());
  EXPECT_NE(null, _bstr_t(""));
  EXPECT_NE(_bstr_t(OLESTR("a")), _bstr_t(OLESTR("A")));
  const _bstr_t withNul(SysAllocStringLen(OLESTR("a\0b"), 3), false);
  EXPECT_EQ(_bstr_t(withNul.GetBSTR(), true), withNul);
  EXPECT_NE(_bstr_t(withNul.GetBSTR(), true), _bstr_t(OLESTR("a")));
  const unique_bstr odd(_bstr_t(SysAllocStringByteLen("abc", 3), false).copy());
  EXPECT_EQ(SysStringByteLen(odd.get()), 3u);
  // Detach hands the string over when alone, and copies it when shared.
  _bstr_t alone(OLESTR("x"));
  const BSTR original = alone.GetBSTR();
  _bstr_t shared(alone.Detach(), false);
  EXPECT_EQ(shared.GetBSTR(), original);
  EXPECT_TRUE(alone.is_null());
  const _bstr_t other = shared;
  EXPECT_EQ(other.GetBSTR(), original) << "a copy shares, it does not allocate";
  const unique_bstr copy(shared.Detach());
  EXPECT_NE(copy.get(), original);
  EXPECT_EQ(Narrow(other), "x");
  // The narrow copy is made in the ANSI code page, once.
  const _bstr_t text(OLESTR("caf\u00e9 \u20ac5"));
  const char* narrow = text;
  EXPECT_STREQ(narrow, "caf\xE9 \x80" "5");
  EXPECT_EQ(static_cast<const char*>(text), narrow);
}

// Only where C runtimes differ: the typed getters' tests cover ordinary numbers.
TEST(NumberText, AgreesAcrossRuntimes) {
  for (const char* text : {"0x1A", "inf", "- 5"}) {
    EXPECT_EQ(ParseDouble(text), 0.0) << text;
  }
  EXPECT_EQ(ParseDouble("1e"), 1.0);
  EXPECT_EQ(ParseDouble("-1e400"), -HUGE_VAL);
  EXPECT_EQ(ParseDouble("0.1"), 0.1) << "correctly rounded";
  EXPECT_EQ(FormatFixed(std::nan("")), "nan");
  EXPECT_EQ(FormatFixed(-0.0), "-0.000000");
  EXPECT_EQ(TruncateToInt32(2147483648.0), std::numeric_limits<std::int32_t>::min());
}

}  // namespace
}  // namespace brevo::testing
