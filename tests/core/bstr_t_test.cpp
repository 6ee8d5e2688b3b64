// The shared string: sharing, null versus empty, narrow copies, ownership.
#include "core/bstr_t.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

TEST(BstrT, CopiesShareOneStringAndNullDiffersFromEmpty) {
  const _bstr_t text(OLESTR("Address.City"));
  const _bstr_t copy = text;
  EXPECT_EQ(copy.GetBSTR(), text.GetBSTR()) << "a copy shares, it does not allocate";
  EXPECT_EQ(text.length(), 12u);

  const _bstr_t null;
  const _bstr_t empty(OLESTR(""));
  EXPECT_TRUE(null.is_null());
  EXPECT_FALSE(empty.is_null());
  EXPECT_NE(null, empty);
  EXPECT_EQ(null, _bstr_t(static_cast<const OLECHAR*>(nullptr)));
  EXPECT_EQ(empty, _bstr_t(""));
  EXPECT_NE(_bstr_t(OLESTR("a")), _bstr_t(OLESTR("A")));
  EXPECT_EQ(static_cast<const char*>(null), nullptr);
}

TEST(BstrT, NarrowCopyUsesTheAnsiCodePage) {
  const _bstr_t text(OLESTR("caf\u00e9 \u20ac5"));
  const char* narrow = text;
  EXPECT_STREQ(narrow, "caf\xE9 \x80"
                       "5");
  EXPECT_EQ(static_cast<const char*>(text), narrow) << "made once and kept";
  EXPECT_EQ(_bstr_t("caf\xE9"), _bstr_t(OLESTR("caf\u00e9")));
}

TEST(BstrT, KeepsEmbeddedNulsAndOddByteLengths) {
  const OLECHAR withNul[] = {'a', 0, 'b'};
  const _bstr_t text(SysAllocStringLen(withNul, 3), false);
  EXPECT_EQ(text.length(), 3u);
  const _bstr_t copy(text.GetBSTR(), true);
  EXPECT_NE(copy.GetBSTR(), text.GetBSTR());
  EXPECT_EQ(copy, text);
  EXPECT_NE(copy, _bstr_t(OLESTR("a")));

  const _bstr_t odd(SysAllocStringByteLen("abc", 3), false);
  BSTR duplicate = odd.copy();
  EXPECT_EQ(SysStringByteLen(duplicate), 3u);
  SysFreeString(duplicate);
}

TEST(BstrT, DetachHandsOverOrCopiesWhenShared) {
  _bstr_t alone(OLESTR("x"));
  const BSTR original = alone.GetBSTR();
  BSTR taken = alone.Detach();
  EXPECT_EQ(taken, original);
  EXPECT_TRUE(alone.is_null());

  _bstr_t shared(taken, false);
  const _bstr_t other = shared;
  BSTR copy = shared.Detach();
  EXPECT_NE(copy, other.GetBSTR());
  EXPECT_EQ(Narrow(copy), "x");
  SysFreeString(copy);

  shared.Attach(SysAllocString(OLESTR("y")));
  EXPECT_EQ(Narrow(shared), "y");
  EXPECT_EQ(Narrow(other), "x");
}

}  // namespace
}  // namespace brevo::testing
