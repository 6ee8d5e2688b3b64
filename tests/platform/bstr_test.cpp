// BSTR allocation: the length prefix is the only record of a string's length,
// so embedded NULs and odd byte counts must survive it.
#include <cstring>
#include <memory>

#include "support/test_support.h"

namespace brevo::testing {
namespace {

struct FreeBstr {
  void operator()(OLECHAR* text) const { SysFreeString(text); }
};
using OwnedBstr = std::unique_ptr<OLECHAR, FreeBstr>;

struct AllocationRow {
  const char* name;
  BSTR (*allocate)();
  const void* expectedBytes;  // null: the content is left undefined
  UINT byteLength;
  UINT length;
};

const AllocationRow kAllocations[] = {
    {"text", [] { return SysAllocString(OLESTR("abc")); }, OLESTR("abc"), 6, 3},
    {"empty text is not null", [] { return SysAllocString(OLESTR("")); }, OLESTR(""), 0, 0},
    {"embedded NUL", [] { return SysAllocStringLen(OLESTR("a\0b"), 3); }, OLESTR("a\0b"), 6, 3},
    {"prefix of longer text", [] { return SysAllocStringLen(OLESTR("abcdef"), 2); }, OLESTR("ab"), 4, 2},
    {"room without a source", [] { return SysAllocStringLen(nullptr, 4); }, nullptr, 8, 4},
    {"odd byte count", [] { return SysAllocStringByteLen("abc", 3); }, "abc", 3, 1},
    {"even byte count", [] { return SysAllocStringByteLen("abcd", 4); }, "abcd", 4, 2},
};

TEST(BstrTest, AllocationsRecordTheirLengthAndAreTerminated) {
  for (const AllocationRow& row : kAllocations) {
    SCOPED_TRACE(row.name);
    const OwnedBstr text(row.allocate());
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(SysStringByteLen(text.get()), row.byteLength);
    EXPECT_EQ(SysStringLen(text.get()), row.length);
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.get());
    if (row.expectedBytes != nullptr) {
      EXPECT_EQ(std::memcmp(bytes, row.expectedBytes, row.byteLength), 0);
    }
    // Callers also read a BSTR as a C string, so zeros follow the counted bytes.
    EXPECT_EQ(bytes[row.byteLength], 0);
    EXPECT_EQ(bytes[row.byteLength + 1], 0);
  }
}

TEST(BstrTest, NullStandsForTheEmptyString) {
  EXPECT_EQ(SysAllocString(nullptr), nullptr);
  EXPECT_EQ(SysStringLen(nullptr), 0u);
  EXPECT_EQ(SysStringByteLen(nullptr), 0u);
  SysFreeString(nullptr);
}

}  // namespace
}  // namespace brevo::testing
