// Text in the core: the shared string (sharing, null versus empty, narrow
// copies, ownership) and the portable number <-> text routines.
#include <cmath>
#include <limits>

#include "core/bstr_t.h"
#include "core/number_text.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

constexpr std::int32_t kInt32Min = std::numeric_limits<std::int32_t>::min();

TEST(BstrT, CopiesShareOneStringAndCompareExactly) {
  const _bstr_t text(OLESTR("Address.City"));
  EXPECT_EQ(_bstr_t(text).GetBSTR(), text.GetBSTR()) << "a copy shares, it does not allocate";
  EXPECT_EQ(text.length(), 12u);
  EXPECT_NE(_bstr_t(OLESTR("a")), _bstr_t(OLESTR("A")));
  const _bstr_t null;
  EXPECT_TRUE(null.is_null() && !_bstr_t(OLESTR("")).is_null());
  EXPECT_NE(null, _bstr_t(""));
  EXPECT_EQ(null, _bstr_t(static_cast<const OLECHAR*>(nullptr)));
  EXPECT_EQ(static_cast<const char*>(null), nullptr);
  const _bstr_t withNul(SysAllocStringLen(OLESTR("a\0b"), 3), false);
  const _bstr_t withNulCopy(withNul.GetBSTR(), true);
  EXPECT_NE(withNulCopy.GetBSTR(), withNul.GetBSTR());
  EXPECT_EQ(withNulCopy.length(), 3u);
  EXPECT_EQ(withNulCopy, withNul);
  EXPECT_NE(withNulCopy, _bstr_t(OLESTR("a")));
  const unique_bstr odd(_bstr_t(SysAllocStringByteLen("abc", 3), false).copy());
  EXPECT_EQ(SysStringByteLen(odd.get()), 3u);
}

TEST(BstrT, NarrowCopyUsesTheAnsiCodePageAndIsKept) {
  const _bstr_t text(OLESTR("caf\u00e9 \u20ac5"));
  const char* narrow = text;
  EXPECT_STREQ(narrow, "caf\xE9 \x80" "5");
  EXPECT_EQ(static_cast<const char*>(text), narrow);
  EXPECT_EQ(_bstr_t("caf\xE9"), _bstr_t(OLESTR("caf\u00e9")));
}

TEST(BstrT, DetachHandsOverOrCopiesWhenShared) {
  _bstr_t alone(OLESTR("x"));
  const BSTR original = alone.GetBSTR();
  _bstr_t shared(alone.Detach(), false);
  EXPECT_EQ(shared.GetBSTR(), original);
  EXPECT_TRUE(alone.is_null());
  const _bstr_t other = shared;
  const unique_bstr copy(shared.Detach());
  EXPECT_NE(copy.get(), other.GetBSTR());
  EXPECT_EQ(Narrow(copy.get()), "x");
  EXPECT_EQ(Narrow(other), "x");
}

// Only where C runtimes differ: the typed getters' tests cover ordinary numbers.
TEST(NumberText, AgreesAcrossRuntimes) {
  for (const char* text : {"0x1A", "inf", "nan", "- 5"}) {
    EXPECT_EQ(ParseDouble(text), 0.0) << text;
  }
  EXPECT_EQ(ParseDouble("1e"), 1.0);
  EXPECT_EQ(ParseDouble("-1e400"), -HUGE_VAL);
  EXPECT_EQ(ParseDouble("0.1"), 0.1) << "correctly rounded";
  EXPECT_EQ(ParseInt32("-99999999999999999999"), kInt32Min);
  EXPECT_EQ(FormatFixed(std::nan("")), "nan");
  EXPECT_EQ(FormatFixed(-0.0), "-0.000000");
  EXPECT_EQ(FormatFixed(0.0000006), "0.000001");
  EXPECT_EQ(FormatFixed(1e15), "1000000000000000.000000");
  EXPECT_EQ(TruncateToInt32(std::nan("")), kInt32Min);
  EXPECT_EQ(TruncateToInt32(2147483648.0), kInt32Min);
  EXPECT_EQ(TruncateToInt32(-2147483648.9), kInt32Min);
  EXPECT_EQ(TruncateToInt64(1e19), std::numeric_limits<std::int64_t>::min());
}

}  // namespace
}  // namespace brevo::testing
