// Which kinds each column type accepts, and kind-exact value equality.
#include <cmath>
#include <set>

#include "core/cell_value.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

TEST(FitTest, EachTypeCodeAcceptsExactlyItsKinds) {
  // Every type code not listed here accepts nothing.
  const struct {
    std::set<ULONG> types;
    std::set<VARTYPE> accepted;
  } fits[] = {
      {{1, 8, 9}, {VT_BSTR}},         {{2}, {VT_BOOL, VT_I2}},   {{3}, {VT_R4}},
      {{4}, {VT_R8}},                 {{5, 23, 24}, {VT_UNKNOWN, VT_DISPATCH}},
      {{10}, {VT_I4, VT_INT}},        {{11}, {VT_I2}},           {{12}, {VT_I8}},
      {{13, 15}, {VT_UI1, VT_I1}},    {{14}, {VT_UI2}},          {{16, 17, 18, 19, 20}, {VT_DATE}},
  };
  for (ULONG type = 0; type <= 30; ++type) {
    std::set<VARTYPE> accepted;
    for (const auto& fit : fits) {
      if (fit.types.count(type) != 0) accepted = fit.accepted;
    }
    for (VARTYPE vt = VT_EMPTY; vt <= VT_UINT; ++vt) {
      if (vt == VT_VARIANT || vt == 15) continue;  // kinds with no by-value form
      const unique_variant value = MakeValue(vt);  // payload zero: null strings and objects
      EXPECT_EQ(FitsColumnType(value.get(), type), accepted.count(vt) != 0) << "type " << type << " kind " << vt;
    }
  }
  const unique_variant uncopyable = MakeValue(VT_BYREF | VT_EMPTY);
  EXPECT_THROW(FitsColumnType(uncopyable.get(), 10), _com_error) << "a refused value is copied";
}

TEST(ValueEquality, ComparesWithinOneKindOnly) {
  CountedObject first, second;
  first.refs = second.refs = 100;  // the values below release references they never took
  const double kNaN = std::nan("");
  const auto object = [](IUnknown* o) { return MakeValue(VT_UNKNOWN, &VARIANT::punkVal, o); };
  const auto bstr = [](BSTR text) { return MakeValue(VT_BSTR, &VARIANT::bstrVal, text); };
  const struct {
    const char* name;
    unique_variant a, b;
    bool equal;
  } rows[] = {
      {"null", MakeValue(VT_NULL), MakeValue(VT_NULL), true},
      {"I4 1 and I2 1 differ in kind", MakeValue(VT_I4, &VARIANT::lVal, LONG{1}),
       MakeValue(VT_I2, &VARIANT::iVal, SHORT{1}), false},
      {"BOOL 1 and true", MakeValue(VT_BOOL, &VARIANT::boolVal, VARIANT_BOOL{1}),
       MakeValue(VT_BOOL, &VARIANT::boolVal, VARIANT_TRUE), false},
      {"R4 zero signs", MakeValue(VT_R4, &VARIANT::fltVal, 0.0f), MakeValue(VT_R4, &VARIANT::fltVal, -0.0f), true},
      {"R8 NaN", MakeValue(VT_R8, &VARIANT::dblVal, kNaN), MakeValue(VT_R8, &VARIANT::dblVal, kNaN), false},
      {"BSTR null and empty", bstr(nullptr), MakeString(OLESTR("")), false},
      {"odd byte lengths", bstr(SysAllocStringByteLen("ab", 3)), bstr(SysAllocStringByteLen("ab", 2)), false},
      {"same object", object(&first), object(&first), true},
      {"equal objects", object(&first), object(&second), false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(CellValuesEqual(row.a.get(), &row.b.get()), row.equal);
    EXPECT_TRUE(CellValuesEqual(row.a.get(), &row.a.get())) << "a value equals itself";
    EXPECT_FALSE(CellValuesEqual(row.a.get(), nullptr));
  }
  // By-reference and sixty-four-bit kinds (the records' tests) cannot be compared.
  LONG referenced = 1;
  const unique_variant byRef = MakeValue(VT_BYREF | VT_I4, &VARIANT::plVal, &referenced);
  const unique_variant twin(byRef.get());
  EXPECT_THROW(CellValuesEqual(byRef.get(), &twin.get()), _com_error);
}

}  // namespace
}  // namespace brevo::testing
