// The typed getters and setters over a one-cell record: the whole conversion
// matrix, the getters' own failure messages, and the values the setters build.
#include <cmath>
#include <limits>
#include <optional>
#include <string>

#include "core/bv_exception.h"
#include "records/abstract_mutable_record.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

// Column 0 is the only cell; any other index fails the way a record does.
class OneCellRecord final : public AbstractMutableRecord {
 public:
  unique_variant cell;
  unique_variant stored;

  unique_variant GetValue(ULONG index) override {
    if (index != 0) throw EBvException(OLESTR("no such cell"));
    return unique_variant(cell.get());
  }
  void SetValue(ULONG index, const VARIANT& newVal) override {
    if (index != 0) throw EBvException(OLESTR("no such cell"));
    stored = unique_variant(newVal);
  }
};

template <class T>
using Reading = std::optional<T>;  // nullopt: the getter refuses the kind
constexpr std::nullopt_t kRefused = std::nullopt;
constexpr const char* kNullText = nullptr;

CountedObject g_object;
LONG g_referenced = 7;

struct MatrixRow {
  const char* source;
  unique_variant (*make)();
  Reading<VARIANT_BOOL> boolean;
  Reading<double> real;
  Reading<float> single;
  Reading<LONG> int32;
  Reading<SHORT> int16;
  Reading<LONGLONG> int64;
  Reading<BYTE> byte;
  Reading<const char*> text;  // kNullText: the null string
};

unique_variant I2(SHORT v) { return MakeValue(VT_I2, &VARIANT::iVal, v); }
unique_variant I4(LONG v) { return MakeValue(VT_I4, &VARIANT::lVal, v); }
unique_variant R4(float v) { return MakeValue(VT_R4, &VARIANT::fltVal, v); }
unique_variant R8(double v) { return MakeValue(VT_R8, &VARIANT::dblVal, v); }
unique_variant Bool(VARIANT_BOOL v) { return MakeValue(VT_BOOL, &VARIANT::boolVal, v); }

const MatrixRow kMatrix[] = {
    {"empty", [] { return MakeValue(VT_EMPTY); }, 0, 0.0, 0.0f, 0, 0, 0, 0, kNullText},
    {"null", [] { return MakeValue(VT_NULL); }, 0, 0.0, 0.0f, 0, 0, 0, 0, kNullText},
    {"unknown", [] { return MakeValue(VT_UNKNOWN, &VARIANT::punkVal, static_cast<IUnknown*>(&g_object)); },
     0, 0.0, 0.0f, 0, 0, 0, 0, kNullText},
    {"I2 -5", [] { return I2(-5); }, -5, -5.0, -5.0f, -5, -5, -5, '-', "-5"},
    {"I4 70000", [] { return I4(70000); }, 4464, 70000.0, 70000.0f, 70000, 4464, 70000, '7', "70000"},
    {"I4 16777217", [] { return I4(16777217); }, 1, 16777217.0, 16777216.0f, 16777217, 1, 16777217, '1',
     "16777217"},
    {"R4 1.5", [] { return R4(1.5f); }, 1, 1.5, 1.5f, 1, 1, 1, '1', "1.500000"},
    {"R8 -2.9", [] { return R8(-2.9); }, -2, -2.9, -2.9f, -2, -2, -2, '-', "-2.900000"},
    {"R8 70000.7", [] { return R8(70000.7); }, 4464, 70000.7, 70000.7f, 70000, 4464, 70000, '7',
     "70000.700000"},
    {"R8 0.5", [] { return R8(0.5); }, 0, 0.5, 0.5f, 0, 0, 0, '0', "0.500000"},
    {"BSTR 1", [] { return MakeString(OLESTR("1")); }, 0, 1.0, 1.0f, 1, 1, 1, '1', "1"},
    {"BSTR 12abc", [] { return MakeString(OLESTR(" 12abc")); }, 0, 12.0, 12.0f, 12, 12, 12, ' ', " 12abc"},
    {"BSTR abc", [] { return MakeString(OLESTR("abc")); }, 0, 0.0, 0.0f, 0, 0, 0, 'a', "abc"},
    {"BSTR 70000", [] { return MakeString(OLESTR("70000")); }, 0, 70000.0, 70000.0f, 70000, 4464, 70000, '7',
     "70000"},
    {"BSTR -1.5e2x", [] { return MakeString(OLESTR("-1.5e2x")); }, 0, -150.0, -150.0f, -1, -1, -1, '-',
     "-1.5e2x"},
    {"BSTR empty", [] { return MakeString(OLESTR("")); }, 0, 0.0, 0.0f, 0, 0, 0, 0, ""},
    // The record hands out a copy, and copying a null string makes an empty one.
    {"BSTR null", [] { return MakeValue(VT_BSTR, &VARIANT::bstrVal, BSTR{}); }, 0, 0.0, 0.0f, 0, 0, 0, 0, ""},
    {"BOOL true", [] { return Bool(VARIANT_TRUE); }, -1, -1.0, -1.0f, -1, -1, -1, '-', kRefused},
    {"BOOL false", [] { return Bool(VARIANT_FALSE); }, 0, 0.0, 0.0f, 0, 0, 0, '0', kRefused},
    {"UI1 200", [] { return MakeValue(VT_UI1, &VARIANT::bVal, BYTE{200}); }, kRefused, 200.0, 200.0f, 200, 200,
     200, 200, "200"},
    {"UI2 65535", [] { return MakeValue(VT_UI2, &VARIANT::uiVal, USHORT{65535}); }, -1, 65535.0, 65535.0f,
     65535, -1, 65535, '6', "65535"},
    {"UI4 max", [] { return MakeValue(VT_UI4, &VARIANT::ulVal, ULONG{0xFFFFFFFF}); }, -1, 4294967295.0,
     4294967296.0f, -1, -1, 4294967295LL, '4', "4294967295"},
    {"I8 2^32+5", [] { return MakeValue(VT_I8, &VARIANT::llVal, LONGLONG{0x100000005LL}); }, 5, 4294967301.0,
     4294967296.0f, 5, 5, 0x100000005LL, kRefused, kRefused},
    {"UI8 2^63+1", [] { return MakeValue(VT_UI8, &VARIANT::ullVal, ULONGLONG{0x8000000000000001ULL}); }, 1,
     9223372036854775808.0, 9223372036854775808.0f, 1, 1, std::numeric_limits<LONGLONG>::min() + 1, kRefused,
     kRefused},
    {"INT -7", [] { return MakeValue(VT_INT, &VARIANT::intVal, INT{-7}); }, -7, -7.0, -7.0f, -7, -7, -7, kRefused,
     "-7"},
    {"UINT 3e9", [] { return MakeValue(VT_UINT, &VARIANT::uintVal, UINT{3000000000u}); }, 24064, 3e9, 3e9f,
     -1294967296, 24064, 3000000000LL, kRefused, "3000000000"},
    {"DATE", [] { return MakeValue(VT_DATE, &VARIANT::date, DATE{1.0}); }, kRefused, kRefused, kRefused, kRefused,
     kRefused, kRefused, kRefused, kRefused},
    {"CY", [] { return MakeValue(VT_CY, &VARIANT::llVal, LONGLONG{10000}); }, kRefused, kRefused, kRefused,
     kRefused, kRefused, kRefused, kRefused, kRefused},
    {"DISPATCH", [] { return MakeValue(VT_DISPATCH, &VARIANT::pdispVal, static_cast<IDispatch*>(nullptr)); },
     kRefused, kRefused, kRefused, kRefused, kRefused, kRefused, kRefused, kRefused},
    {"ERROR", [] { return MakeValue(VT_ERROR, &VARIANT::scode, SCODE{5}); }, kRefused, kRefused, kRefused,
     kRefused, kRefused, kRefused, kRefused, kRefused},
    {"I1", [] { return MakeValue(VT_I1, &VARIANT::cVal, CHAR{'x'}); }, kRefused, kRefused, kRefused, kRefused,
     kRefused, kRefused, kRefused, kRefused},
    {"BYREF I4", [] { return MakeValue(VT_BYREF | VT_I4, &VARIANT::plVal, &g_referenced); }, kRefused, kRefused,
     kRefused, kRefused, kRefused, kRefused, kRefused, kRefused},
    {"ARRAY I4", [] { return MakeValue(VT_ARRAY | VT_I4, &VARIANT::parray, static_cast<SAFEARRAY*>(nullptr)); },
     kRefused, kRefused, kRefused, kRefused, kRefused, kRefused, kRefused, kRefused},
};

class ConversionMatrix : public ::testing::TestWithParam<MatrixRow> {
 protected:
  template <class T, class Read, class Compare>
  void Expect(const char* getter, Read read, const Reading<T>& expected, const char* message, Compare equal) {
    SCOPED_TRACE(std::string(GetParam().source) + " through " + getter);
    if (!expected) {
      try {
        read();
        ADD_FAILURE() << "the getter accepted the kind";
      } catch (const EBvException& e) {
        EXPECT_EQ(Narrow(e.GetDescription()), message);
        EXPECT_EQ(e.GetCode(), 0);
      }
      return;
    }
    equal(read(), *expected);
  }

  OneCellRecord record;
};

TEST_P(ConversionMatrix, EveryGetterReadsOrRefusesWithItsOwnMessage) {
  const MatrixRow& row = GetParam();
  record.cell = row.make();
  const ULONG objectRefs = g_object.refs;
  const auto same = [](auto actual, auto expected) { EXPECT_EQ(actual, expected); };
  const auto sameReal = [](auto actual, auto expected) {
    EXPECT_EQ(actual, expected) << "bits differ or value differs";
  };

  Expect<VARIANT_BOOL>("boolean", [&] { return record.GetValueAsBoolean(0); }, row.boolean,
                       "Cannot convert to boolean.", same);
  Expect<double>("double", [&] { return record.GetValueAsDouble(0); }, row.real, "Cannot convert to double.",
                 sameReal);
  Expect<float>("float", [&] { return record.GetValueAsFloat(0); }, row.single, "Cannot convert to float.",
                sameReal);
  Expect<LONG>("int32", [&] { return record.GetValueAsInt32(0); }, row.int32, "Cannot convert to int.", same);
  Expect<SHORT>("int16", [&] { return record.GetValueAsInt16(0); }, row.int16, "Cannot convert to short.", same);
  Expect<LONGLONG>("int64", [&] { return record.GetValueAsInt64(0); }, row.int64, "Cannot convert to long.", same);
  Expect<BYTE>("byte", [&] { return record.GetValueAsByte(0); }, row.byte, "Cannot convert to byte.", same);
  Expect<const char*>(
      "string", [&] { return _bstr_t(record.GetValueAsString(0).release(), false); }, row.text, "Cannot convert to string.",
      [](const _bstr_t& actual, const char* expected) {
        if (expected == nullptr) {
          EXPECT_TRUE(actual.is_null());
        } else {
          EXPECT_FALSE(actual.is_null());
          EXPECT_EQ(Narrow(actual), expected);
        }
      });

  // Every copy a getter took of the cell has been cleared again.
  EXPECT_EQ(g_object.refs, objectRefs);
}

INSTANTIATE_TEST_SUITE_P(AllKinds, ConversionMatrix, ::testing::ValuesIn(kMatrix),
                         [](const ::testing::TestParamInfo<MatrixRow>& info) {
                           std::string name = info.param.source;
                           for (char& c : name) {
                             if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                           }
                           return name;
                         });

TEST(TypedGetters, PassFailuresOfGetValueThroughUnchanged) {
  OneCellRecord record;
  try {
    record.GetValueAsInt32(3);
    FAIL() << "expected the record's own failure";
  } catch (const EBvException& e) {
    EXPECT_EQ(Narrow(e.GetDescription()), "no such cell");
  }
}

TEST(TypedGetters, ByteOfNonAsciiTextIsItsAnsiCode) {
  OneCellRecord record;
  record.cell = MakeString(OLESTR("\u00e9t\u00e9"));
  EXPECT_EQ(record.GetValueAsByte(0), 0xE9);
  record.cell = MakeString(OLESTR("\u20ac"));
  EXPECT_EQ(record.GetValueAsByte(0), 0x80);
}

TEST(TypedGetters, RealEdgeValuesReadPortably) {
  OneCellRecord record;
  record.cell = R8(std::numeric_limits<double>::infinity());
  EXPECT_EQ(record.GetValueAsInt32(0), std::numeric_limits<LONG>::min());
  EXPECT_EQ(record.GetValueAsInt64(0), std::numeric_limits<LONGLONG>::min());
  EXPECT_EQ(Narrow(record.GetValueAsString(0).get()), "inf");
  record.cell = R8(std::nan(""));
  EXPECT_EQ(record.GetValueAsInt32(0), std::numeric_limits<LONG>::min());
  record.cell = R8(1e20);
  EXPECT_EQ(Narrow(record.GetValueAsString(0).get()), "100000000000000000000.000000");
  record.cell = MakeString(OLESTR("99999999999"));
  EXPECT_EQ(record.GetValueAsInt32(0), std::numeric_limits<LONG>::max());
  EXPECT_EQ(record.GetValueAsInt64(0), std::numeric_limits<LONG>::max());
  record.cell = MakeString(OLESTR("1e999"));
  EXPECT_TRUE(std::isinf(record.GetValueAsDouble(0)));
}

struct SetterCase {
  const char* setter;
  void (*set)(AbstractMutableRecord&);
  VARTYPE kind;
  ULONGLONG payload;  // compared over the kind's width
};

const SetterCase kSetters[] = {
    {"boolean 1 stays 1", [](AbstractMutableRecord& r) { r.SetValueAsBoolean(0, 1); }, VT_BOOL, 1},
    {"byte", [](AbstractMutableRecord& r) { r.SetValueAsByte(0, 200); }, VT_UI1, 200},
    {"int32", [](AbstractMutableRecord& r) { r.SetValueAsInt32(0, -70000); }, VT_I4, ULONG(-70000)},
    {"int16", [](AbstractMutableRecord& r) { r.SetValueAsInt16(0, -2); }, VT_I2, USHORT(-2)},
    {"int64 loses its value", [](AbstractMutableRecord& r) { r.SetValueAsInt64(0, 5); }, VT_EMPTY, 0},
};

TEST(TypedSetters, BuildAValueOfTheirFixedKind) {
  for (const SetterCase& c : kSetters) {
    SCOPED_TRACE(c.setter);
    OneCellRecord record;
    c.set(record);
    ASSERT_EQ(record.stored.vt(), c.kind);
    switch (c.kind) {
      case VT_BOOL: EXPECT_EQ(ULONGLONG(USHORT(record.stored->boolVal)), c.payload); break;
      case VT_UI1: EXPECT_EQ(record.stored->bVal, c.payload); break;
      case VT_I4: EXPECT_EQ(ULONGLONG(record.stored->ulVal), c.payload); break;
      case VT_I2: EXPECT_EQ(ULONGLONG(record.stored->uiVal), c.payload); break;
      default: break;
    }
  }
  OneCellRecord record;
  record.SetValueAsDouble(0, -2.5);
  EXPECT_EQ(record.stored.vt(), VT_R8);
  EXPECT_EQ(record.stored->dblVal, -2.5);
  record.SetValueAsFloat(0, 0.25f);
  EXPECT_EQ(record.stored.vt(), VT_R4);
  EXPECT_EQ(record.stored->fltVal, 0.25f);
}

TEST(TypedSetters, StringIsAByteExactCopyAndNullArrivesEmpty) {
  OneCellRecord record;
  // Three bytes: an odd byte length must survive the copy.
  const _bstr_t odd(SysAllocStringByteLen("abc", 3), false);
  record.SetValueAsString(0, odd.GetBSTR());
  ASSERT_EQ(record.stored.vt(), VT_BSTR);
  EXPECT_NE(record.stored->bstrVal, odd.GetBSTR());
  EXPECT_EQ(SysStringByteLen(record.stored->bstrVal), 3u);
  EXPECT_TRUE(SameText(record.stored->bstrVal, odd));

  record.SetValueAsString(0, nullptr);
  ASSERT_EQ(record.stored.vt(), VT_BSTR);
  ASSERT_NE(record.stored->bstrVal, nullptr);
  EXPECT_EQ(SysStringLen(record.stored->bstrVal), 0u);
}

TEST(TypedSetters, PassFailuresOfSetValueThrough) {
  OneCellRecord record;
  EXPECT_THROW(record.SetValueAsString(1, _bstr_t(OLESTR("x")).GetBSTR()), EBvException);
  EXPECT_EQ(record.stored.vt(), VT_EMPTY);
}

}  // namespace
}  // namespace brevo::testing
