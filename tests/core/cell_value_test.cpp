// Which kinds each column type accepts, and kind-exact value equality.
#include <cmath>
#include <set>

#include "core/cell_value.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

struct FitRow {
  std::set<ULONG> types;
  std::set<VARTYPE> accepted;
};

// Every type code not listed here accepts nothing.
const FitRow kFits[] = {
    {{1, 8, 9}, {VT_BSTR}},
    {{2}, {VT_BOOL, VT_I2}},
    {{3}, {VT_R4}},
    {{4}, {VT_R8}},
    {{5, 23, 24}, {VT_UNKNOWN, VT_DISPATCH}},
    {{10}, {VT_I4, VT_INT}},
    {{11}, {VT_I2}},
    {{12}, {VT_I8}},
    {{13, 15}, {VT_UI1, VT_I1}},
    {{14}, {VT_UI2}},
    {{16, 17, 18, 19, 20}, {VT_DATE}},
};

const VARTYPE kKinds[] = {VT_EMPTY, VT_NULL, VT_I2, VT_I4, VT_R4, VT_R8, VT_CY, VT_DATE, VT_BSTR, VT_DISPATCH,
                          VT_ERROR, VT_BOOL, VT_UNKNOWN, VT_DECIMAL, VT_I1, VT_UI1, VT_UI2, VT_UI4, VT_I8, VT_UI8,
                          VT_INT, VT_UINT};

TEST(FitTest, EachTypeCodeAcceptsExactlyItsKinds) {
  for (ULONG type = 0; type <= 30; ++type) {
    std::set<VARTYPE> accepted;
    for (const FitRow& row : kFits) {
      if (row.types.count(type) != 0) accepted = row.accepted;
    }
    for (VARTYPE vt : kKinds) {
      unique_variant value = MakeValue(vt);  // payload zero: null strings and objects
      EXPECT_EQ(FitsColumnType(value.get(), type), accepted.count(vt) != 0) << "type " << type << " kind " << vt;
    }
  }
}

TEST(FitTest, InvalidKindSurfacesTheCopyFailure) {
  const unique_variant byRefEmpty = MakeValue(VT_BYREF | VT_EMPTY);
  try {
    FitsColumnType(byRefEmpty.get(), 10);
    FAIL() << "expected the copy to fail";
  } catch (const _com_error& e) {
    EXPECT_EQ(e.Error(), DISP_E_BADVARTYPE);
  }
}

struct EqualityRow {
  const char* name;
  unique_variant (*a)();
  unique_variant (*b)();
  bool equal;
};

CountedObject g_first;
CountedObject g_second;

const EqualityRow kEquality[] = {
    {"empty", [] { return MakeValue(VT_EMPTY); }, [] { return MakeValue(VT_EMPTY); }, true},
    {"null", [] { return MakeValue(VT_NULL); }, [] { return MakeValue(VT_NULL); }, true},
    {"I4 1 and I2 1 differ in kind", [] { return MakeValue(VT_I4, &VARIANT::lVal, LONG{1}); },
     [] { return MakeValue(VT_I2, &VARIANT::iVal, SHORT{1}); }, false},
    {"I2", [] { return MakeValue(VT_I2, &VARIANT::iVal, SHORT{-3}); },
     [] { return MakeValue(VT_I2, &VARIANT::iVal, SHORT{-3}); }, true},
    {"BOOL 1 and true", [] { return MakeValue(VT_BOOL, &VARIANT::boolVal, VARIANT_BOOL{1}); },
     [] { return MakeValue(VT_BOOL, &VARIANT::boolVal, VARIANT_TRUE); }, false},
    {"UINT", [] { return MakeValue(VT_UINT, &VARIANT::uintVal, UINT{7}); },
     [] { return MakeValue(VT_UINT, &VARIANT::uintVal, UINT{8}); }, false},
    {"R4 zero signs", [] { return MakeValue(VT_R4, &VARIANT::fltVal, 0.0f); },
     [] { return MakeValue(VT_R4, &VARIANT::fltVal, -0.0f); }, true},
    {"R8 NaN", [] { return MakeValue(VT_R8, &VARIANT::dblVal, std::nan("")); },
     [] { return MakeValue(VT_R8, &VARIANT::dblVal, std::nan("")); }, false},
    {"DATE", [] { return MakeValue(VT_DATE, &VARIANT::date, 2.5); },
     [] { return MakeValue(VT_DATE, &VARIANT::date, 2.5); }, true},
    {"BSTR same text", [] { return MakeString(OLESTR("Abc")); }, [] { return MakeString(OLESTR("Abc")); }, true},
    {"BSTR case", [] { return MakeString(OLESTR("Abc")); }, [] { return MakeString(OLESTR("abc")); }, false},
    {"BSTR null and empty", [] { return MakeValue(VT_BSTR, &VARIANT::bstrVal, BSTR{}); },
     [] { return MakeString(OLESTR("")); }, false},
    {"BSTR both null", [] { return MakeValue(VT_BSTR, &VARIANT::bstrVal, BSTR{}); },
     [] { return MakeValue(VT_BSTR, &VARIANT::bstrVal, BSTR{}); }, true},
    {"same object", [] { return MakeValue(VT_UNKNOWN, &VARIANT::punkVal, static_cast<IUnknown*>(&g_first)); },
     [] { return MakeValue(VT_UNKNOWN, &VARIANT::punkVal, static_cast<IUnknown*>(&g_first)); }, true},
    {"equal objects", [] { return MakeValue(VT_UNKNOWN, &VARIANT::punkVal, static_cast<IUnknown*>(&g_first)); },
     [] { return MakeValue(VT_UNKNOWN, &VARIANT::punkVal, static_cast<IUnknown*>(&g_second)); }, false},
    {"CY", [] { return MakeValue(VT_CY, &VARIANT::llVal, LONGLONG{50000}); },
     [] { return MakeValue(VT_CY, &VARIANT::llVal, LONGLONG{50000}); }, true},
    {"UI1", [] { return MakeValue(VT_UI1, &VARIANT::bVal, BYTE{9}); },
     [] { return MakeValue(VT_UI1, &VARIANT::bVal, BYTE{9}); }, true},
};

TEST(ValueEquality, ComparesWithinOneKindOnly) {
  g_first.refs = g_second.refs = 100;  // clearing the values below must not reach zero
  for (const EqualityRow& row : kEquality) {
    unique_variant a = row.a();
    unique_variant b = row.b();
    EXPECT_EQ(CellValuesEqual(a.get(), &b.get()), row.equal) << row.name;
    EXPECT_TRUE(CellValuesEqual(a.get(), &a.get())) << row.name << ": a value equals itself";
    EXPECT_FALSE(CellValuesEqual(a.get(), nullptr)) << row.name;
  }
}

TEST(ValueEquality, SixtyFourBitAndReferenceKindsCannotBeCompared) {
  LONG referenced = 1;
  const unique_variant values[] = {MakeValue(VT_I8, &VARIANT::llVal, LONGLONG{5}),
                                   MakeValue(VT_UI8, &VARIANT::ullVal, ULONGLONG{5}),
                                   MakeValue(VT_BYREF | VT_I4, &VARIANT::plVal, &referenced)};
  for (const unique_variant& value : values) {
    const unique_variant twin(value.get());
    try {
      CellValuesEqual(value.get(), &twin.get());
      ADD_FAILURE() << "kind " << value.vt() << " compared";
    } catch (const _com_error& e) {
      EXPECT_EQ(e.Error(), E_INVALIDARG);
    }
  }
}

}  // namespace
}  // namespace brevo::testing
