// VariantChangeType as late-bound callers rely on it: range-checked integers,
// reals rounded half to even, numbers read from and written to text.
#include <memory>
#include <sstream>
#include <string>

#include "support/test_support.h"

namespace brevo::testing {
namespace {

// "<kind> <value>", so that a failed row shows both at once.
std::string Describe(const VARIANT& value) {
  std::ostringstream text;
  switch (value.vt) {
    case VT_EMPTY: return "EMPTY";
    case VT_NULL: return "NULL";
    case VT_UI1: text << "UI1 " << int{value.bVal}; break;
    case VT_I2: text << "I2 " << value.iVal; break;
    case VT_UI2: text << "UI2 " << value.uiVal; break;
    case VT_I4: text << "I4 " << value.lVal; break;
    case VT_UI4: text << "UI4 " << value.ulVal; break;
    case VT_I8: text << "I8 " << value.llVal; break;
    case VT_R4: text << "R4 " << value.fltVal; break;
    case VT_R8: text << "R8 " << value.dblVal; break;
    case VT_BOOL: text << "BOOL " << value.boolVal; break;
    case VT_BSTR: text << "BSTR \"" << Narrow(value.bstrVal) << '"'; break;
    case VT_DISPATCH: text << "DISPATCH " << (value.pdispVal != nullptr ? "object" : "null"); break;
    default: text << "kind " << value.vt; break;
  }
  return text.str();
}

unique_variant I4(LONG value) { return MakeValue(VT_I4, &VARIANT::lVal, value); }
unique_variant R8(DOUBLE value) { return MakeValue(VT_R8, &VARIANT::dblVal, value); }

LONG g_referencedNumber = 42;

struct ChangeRow {
  const char* name;
  unique_variant (*source)();
  VARTYPE target;
  HRESULT result;
  const char* expected = "";  // the converted value, when the change succeeds
};

const ChangeRow kChanges[] = {
    // Integers change width only when the value fits.
    {"I4 to I2 at the bottom", [] { return I4(-32768); }, VT_I2, S_OK, "I2 -32768"},
    {"I4 to I2 below", [] { return I4(-32769); }, VT_I2, DISP_E_OVERFLOW},
    {"I4 to I2 above", [] { return I4(70000); }, VT_I2, DISP_E_OVERFLOW},
    {"I4 to UI1 at the top", [] { return I4(255); }, VT_UI1, S_OK, "UI1 255"},
    {"I4 to UI1 negative", [] { return I4(-1); }, VT_UI1, DISP_E_OVERFLOW},
    {"I4 to I8 keeps the sign", [] { return I4(-5); }, VT_I8, S_OK, "I8 -5"},
    {"I8 past I4", [] { return MakeValue(VT_I8, &VARIANT::llVal, LONGLONG{2147483648}); }, VT_I4, DISP_E_OVERFLOW},
    {"I2 negative to UI4", [] { return MakeValue(VT_I2, &VARIANT::iVal, SHORT{-1}); }, VT_UI4, DISP_E_OVERFLOW},
    // Between the signed and unsigned kind of one width the runtime keeps the
    // bits and checks nothing.
    {"UI4 max to I4", [] { return MakeValue(VT_UI4, &VARIANT::ulVal, ULONG{0xFFFFFFFF}); }, VT_I4, S_OK, "I4 -1"},
    {"I4 -1 to UI4", [] { return I4(-1); }, VT_UI4, S_OK, "UI4 4294967295"},
    {"I2 -1 to UI2", [] { return MakeValue(VT_I2, &VARIANT::iVal, SHORT{-1}); }, VT_UI2, S_OK, "UI2 65535"},
    // Reals round half to even, and the rounded value is what must fit.
    {"R8 2.5 to I4", [] { return R8(2.5); }, VT_I4, S_OK, "I4 2"},
    {"R8 3.5 to I4", [] { return R8(3.5); }, VT_I4, S_OK, "I4 4"},
    {"R8 -2.5 to I4", [] { return R8(-2.5); }, VT_I4, S_OK, "I4 -2"},
    {"R8 -0.5 to UI1", [] { return R8(-0.5); }, VT_UI1, S_OK, "UI1 0"},
    {"R8 255.49 to UI1", [] { return R8(255.49); }, VT_UI1, S_OK, "UI1 255"},
    {"R8 255.5 to UI1", [] { return R8(255.5); }, VT_UI1, DISP_E_OVERFLOW},
    {"R8 1e10 to I4", [] { return R8(1e10); }, VT_I4, DISP_E_OVERFLOW},
    {"R4 1.5 to I2", [] { return MakeValue(VT_R4, &VARIANT::fltVal, 1.5f); }, VT_I2, S_OK, "I2 2"},
    // Text is read as a number, blanks and thousands separators allowed.
    {"text 42", [] { return MakeString(OLESTR("42")); }, VT_I4, S_OK, "I4 42"},
    {"text with blanks", [] { return MakeString(OLESTR(" 12 ")); }, VT_I4, S_OK, "I4 12"},
    {"text with separator", [] { return MakeString(OLESTR("1,000")); }, VT_I4, S_OK, "I4 1000"},
    {"negative text", [] { return MakeString(OLESTR("-7")); }, VT_I2, S_OK, "I2 -7"},
    {"text fraction", [] { return MakeString(OLESTR("1.5")); }, VT_R8, S_OK, "R8 1.5"},
    {"text too big for I2", [] { return MakeString(OLESTR("70000")); }, VT_I2, DISP_E_OVERFLOW},
    {"letters", [] { return MakeString(OLESTR("abc")); }, VT_I4, DISP_E_TYPEMISMATCH},
    {"empty text", [] { return MakeString(OLESTR("")); }, VT_I4, DISP_E_TYPEMISMATCH},
    // Numbers as text.
    {"I4 to text", [] { return I4(123); }, VT_BSTR, S_OK, "BSTR \"123\""},
    {"R8 to text", [] { return R8(1.5); }, VT_BSTR, S_OK, "BSTR \"1.5\""},
    {"R8 0.1 to text, not all 17 digits", [] { return R8(0.1); }, VT_BSTR, S_OK, "BSTR \"0.1\""},
    // True is -1, and anything non-zero is true.
    {"true to I4", [] { return MakeValue(VT_BOOL, &VARIANT::boolVal, VARIANT_TRUE); }, VT_I4, S_OK, "I4 -1"},
    {"I4 0 to BOOL", [] { return I4(0); }, VT_BOOL, S_OK, "BOOL 0"},
    {"I4 5 to BOOL", [] { return I4(5); }, VT_BOOL, S_OK, "BOOL -1"},
    // Empty reads as zero or as empty text; null has no value to convert.
    {"empty to I4", [] { return MakeValue(VT_EMPTY); }, VT_I4, S_OK, "I4 0"},
    {"empty to text", [] { return MakeValue(VT_EMPTY); }, VT_BSTR, S_OK, "BSTR \"\""},
    {"null to I4", [] { return MakeValue(VT_NULL); }, VT_I4, DISP_E_TYPEMISMATCH},
    {"I4 to null", [] { return I4(3); }, VT_NULL, S_OK, "NULL"},
    {"I4 to empty", [] { return I4(3); }, VT_EMPTY, S_OK, "EMPTY"},
    {"null to empty", [] { return MakeValue(VT_NULL); }, VT_EMPTY, DISP_E_TYPEMISMATCH},
    {"error to empty", [] { return MakeValue(VT_ERROR, &VARIANT::scode, SCODE{5}); }, VT_EMPTY, DISP_E_TYPEMISMATCH},
    // A reference is read through.
    {"by-reference I4 to I2", [] { return MakeValue(VT_BYREF | VT_I4, &VARIANT::plVal, &g_referencedNumber); },
     VT_I2, S_OK, "I2 42"},
    {"null UNKNOWN to DISPATCH", [] { return MakeValue(VT_UNKNOWN, &VARIANT::punkVal, static_cast<IUnknown*>(nullptr)); },
     VT_DISPATCH, S_OK, "DISPATCH null"},
    {"kind 15 as target", [] { return I4(1); }, 15, DISP_E_BADVARTYPE},
};

TEST(VariantChangeTypeTest, ConvertsOrRefuses) {
  for (const ChangeRow& row : kChanges) {
    SCOPED_TRACE(row.name);
    unique_variant source = row.source();
    const std::string sourceBefore = Describe(source.get());
    unique_variant result = I4(-999);  // a refused change must leave this alone
    EXPECT_EQ(VariantChangeType(&result.get(), &source.get(), 0, row.target), row.result);
    EXPECT_EQ(Describe(result.get()), row.result == S_OK ? row.expected : "I4 -999");
    EXPECT_EQ(Describe(source.get()), sourceBefore);
  }
}

TEST(VariantChangeTypeTest, ConvertsInPlace) {
  unique_variant value = MakeString(OLESTR("42"));
  ASSERT_EQ(VariantChangeType(&value.get(), &value.get(), 0, VT_I4), S_OK);
  EXPECT_EQ(Describe(value.get()), "I4 42");  // the string is gone: the leak check watches
  ASSERT_EQ(VariantChangeType(&value.get(), &value.get(), 0, VT_BSTR), S_OK);
  EXPECT_EQ(Describe(value.get()), "BSTR \"42\"");
  EXPECT_EQ(VariantChangeType(&value.get(), &value.get(), 0, VT_UNKNOWN), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(Describe(value.get()), "BSTR \"42\"");
}

TEST(VariantChangeTypeTest, ReadsThroughAReferencedStringWithoutTakingIt) {
  struct FreeBstr {
    void operator()(OLECHAR* text) const { SysFreeString(text); }
  };
  const std::unique_ptr<OLECHAR, FreeBstr> text(SysAllocString(OLESTR("17")));
  BSTR referencedText = text.get();
  unique_variant source = MakeValue(VT_BYREF | VT_BSTR, &VARIANT::pbstrVal, &referencedText);
  unique_variant result;
  ASSERT_EQ(VariantChangeType(result.put(), &source.get(), 0, VT_I4), S_OK);
  EXPECT_EQ(Describe(result.get()), "I4 17");
  EXPECT_EQ(referencedText, text.get());
  EXPECT_EQ(Narrow(referencedText), "17");
}

}  // namespace
}  // namespace brevo::testing
