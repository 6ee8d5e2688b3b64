// Platform text: a BSTR's length prefix is the only record of its length, so
// embedded NULs and odd byte counts must survive it; ANSI is code page 1252.
#include <cstring>
#include <string>
#include <string_view>

#include "support/test_support.h"

namespace brevo::testing {
namespace {

using WideView = std::basic_string_view<OLECHAR>;

TEST(BstrTest, AllocationsRecordTheirLengthAndAreTerminated) {
  const struct {
    const char* name;
    BSTR (*allocate)();
    const void* bytes;
    UINT byteLength;
  } rows[] = {
      {"text", [] { return SysAllocString(OLESTR("abc")); }, OLESTR("abc"), 6},
      {"empty text is not null", [] { return SysAllocString(OLESTR("")); }, OLESTR(""), 0},
      {"prefix with a NUL", [] { return SysAllocStringLen(OLESTR("a\0bcdef"), 3); }, OLESTR("a\0b"), 6},
      {"odd byte count", [] { return SysAllocStringByteLen("abc", 3); }, "abc", 3},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const unique_variant text = MakeValue(VT_BSTR, &VARIANT::bstrVal, row.allocate());  // freed however the test ends
    const auto* bytes = reinterpret_cast<const unsigned char*>(text->bstrVal);
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(SysStringByteLen(text->bstrVal), row.byteLength);
    EXPECT_EQ(std::memcmp(bytes, row.bytes, row.byteLength), 0);
    // Callers also read a BSTR as a C string, so zeros follow the counted bytes;
    // read as whole characters, an odd count still ends inside the block.
    EXPECT_EQ(bytes[row.byteLength] | bytes[row.byteLength + 1], 0);
    EXPECT_LE(std::char_traits<OLECHAR>::length(text->bstrVal), (row.byteLength + 1) / 2);
  }
  EXPECT_EQ(SysAllocString(nullptr), nullptr);  // null stands for the empty string
  EXPECT_EQ(SysStringLen(nullptr) + SysStringByteLen(nullptr), 0u);
}

TEST(AnsiTextTest, CodePage1252RoundTripsAndTheRestBecomesQuestionMarks) {
  const struct {
    WideView wide;
    std::string_view ansi;
  } rows[] = {
      {OLESTR(""), ""},
      {{OLESTR("a\0b"), 3}, {"a\0b", 3}},
      {OLESTR("\u00E9\u00FF\u20AC\u2019\u201C\u0160\u0152\u0178"), "\xE9\xFF\x80\x92\x93\x8A\x8C\x9F"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(platform::WideToAnsi(row.wide.data(), row.wide.size()), row.ansi);
    const BSTR made = platform::AnsiToBstr(row.ansi.data(), row.ansi.size());
    const unique_variant widened = MakeValue(VT_BSTR, &VARIANT::bstrVal, made);
    ASSERT_NE(widened->bstrVal, nullptr);  // empty text too: callers tell null from empty
    EXPECT_TRUE(WideView(widened->bstrVal, SysStringLen(widened->bstrVal)) == row.wide) << row.ansi;
  }
  // U+4E2D has no best-fit stand-in either, so Windows agrees on '?'.
  EXPECT_EQ(platform::WideToAnsi(OLESTR("a\u4E2D" "b"), 3), "a?b");
}

}  // namespace
}  // namespace brevo::testing
