// Text crossing the ANSI code page (1252 on every build): everything 1252
// holds comes back unchanged, the rest is lost to '?'.
#include <memory>
#include <string_view>

#include "support/test_support.h"

namespace brevo::testing {
namespace {

struct FreeBstr {
  void operator()(OLECHAR* text) const { SysFreeString(text); }
};
using OwnedBstr = std::unique_ptr<OLECHAR, FreeBstr>;
using WideView = std::basic_string_view<OLECHAR>;

// Views that keep embedded NULs, which the conversions must carry through.
template <std::size_t N>
constexpr WideView Wide(const OLECHAR (&text)[N]) {
  return {text, N - 1};
}
template <std::size_t N>
constexpr std::string_view Ansi(const char (&text)[N]) {
  return {text, N - 1};
}

struct RoundTripRow {
  const char* name;
  WideView wide;
  std::string_view ansi;
};

const RoundTripRow kRoundTrips[] = {
    {"empty", Wide(OLESTR("")), Ansi("")},
    {"ASCII", Wide(OLESTR("Hello, World 1!")), Ansi("Hello, World 1!")},
    {"embedded NUL", Wide(OLESTR("a\0b")), Ansi("a\0b")},
    {"Latin-1 letters", Wide(OLESTR("caf\u00E9 \u00FF")), Ansi("caf\xE9 \xFF")},
    {"euro sign", Wide(OLESTR("\u20AC" "5")), Ansi("\x80" "5")},
    {"1252 punctuation", Wide(OLESTR("it\u2019s \u201Cok\u201D")), Ansi("it\x92s \x93ok\x94")},
    {"1252 letters", Wide(OLESTR("\u0160\u0152\u0178")), Ansi("\x8A\x8C\x9F")},
};

TEST(AnsiTextTest, CodePage1252TextRoundTrips) {
  for (const RoundTripRow& row : kRoundTrips) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(platform::WideToAnsi(row.wide.data(), row.wide.size()), row.ansi);
    const OwnedBstr widened(platform::AnsiToBstr(row.ansi.data(), row.ansi.size()));
    ASSERT_NE(widened, nullptr);  // empty text too: callers tell null from empty
    EXPECT_TRUE(WideView(widened.get(), SysStringLen(widened.get())) == row.wide) << Narrow(widened.get());
  }
}

TEST(AnsiTextTest, CharactersOutside1252BecomeQuestionMarks) {
  // U+4E2D has no best-fit stand-in either, so Windows agrees on '?'.
  const WideView text = Wide(OLESTR("a\u4E2D" "b"));
  EXPECT_EQ(platform::WideToAnsi(text.data(), text.size()), "a?b");
}

}  // namespace
}  // namespace brevo::testing
