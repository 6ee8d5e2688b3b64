// VARIANT handling: what a value owns and what it only points at, how copies
// duplicate the one and share the other, and the coercion of late-bound
// arguments. A string shared by mistake is freed twice, which ASan reports.
#include <cstring>
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
    case VT_UNKNOWN: return "UNKNOWN";
    case VT_UI1: text << "UI1 " << int{value.bVal}; break;
    case VT_I2: text << "I2 " << value.iVal; break;
    case VT_I4: text << "I4 " << value.lVal; break;
    case VT_R8: text << "R8 " << value.dblVal; break;
    case VT_BSTR: text << "BSTR \"" << Narrow(value.bstrVal) << '"'; break;
    case VT_BYREF | VT_BSTR: text << "&BSTR \"" << Narrow(*value.pbstrVal) << '"'; break;
    default: text << "kind " << value.vt; break;
  }
  return text.str();
}

unique_variant I4(LONG value) { return MakeValue(VT_I4, &VARIANT::lVal, value); }
unique_variant R8(DOUBLE value) { return MakeValue(VT_R8, &VARIANT::dblVal, value); }

// A value holding a new reference on object.
unique_variant HoldObject(CountedObject& object) {
  object.AddRef();
  return MakeValue(VT_UNKNOWN, &VARIANT::punkVal, static_cast<IUnknown*>(&object));
}

TEST(VariantTest, CopyDuplicatesStringsSharesReferencesAndReleasesTheReplacedValue) {
  CountedObject copied;
  unique_variant text = MakeString(OLESTR("deep"));
  unique_variant inner = MakeString(OLESTR("inner"));
  struct {
    const char* name;
    unique_variant source;
    bool indirect;  // VariantCopyInd
    HRESULT result;
    const char* expected;
  } rows[] = {
      {"text", MakeString(OLESTR("text")), false, S_OK, "BSTR \"text\""},
      // Believed Windows behaviour, confirmed under Wine only: the system
      // duplicates by byte length, and zero bytes still allocate.
      {"null text becomes empty", MakeValue(VT_BSTR, &VARIANT::bstrVal, BSTR{}), false, S_OK, "BSTR \"\""},
      {"object", HoldObject(copied), false, S_OK, "UNKNOWN"},
      {"by ref", MakeValue(VT_BYREF | VT_BSTR, &VARIANT::pbstrVal, &text->bstrVal), false, S_OK, "&BSTR \"deep\""},
      {"via text", MakeValue(VT_BYREF | VT_BSTR, &VARIANT::pbstrVal, &text->bstrVal), true, S_OK, "BSTR \"deep\""},
      {"via variant", MakeValue(VT_BYREF | VT_VARIANT, &VARIANT::pvarVal, &inner.get()), true, S_OK, "BSTR \"inner\""},
      {"kind 15", MakeValue(15), false, DISP_E_BADVARTYPE, "UNKNOWN"},
      {"array of EMPTY", MakeValue(VT_ARRAY | VT_EMPTY), false, DISP_E_BADVARTYPE, "UNKNOWN"},
  };
  for (auto& row : rows) {
    SCOPED_TRACE(row.name);
    CountedObject replaced;
    unique_variant copy = HoldObject(replaced);
    VARIANT* source = &row.source.get();
    EXPECT_EQ(row.indirect ? VariantCopyInd(&copy.get(), source) : VariantCopy(&copy.get(), source), row.result);
    EXPECT_EQ(Describe(copy.get()), row.expected);
    EXPECT_EQ(replaced.refs, SUCCEEDED(row.result) ? 1u : 2u) << "released when replaced, kept when refused";
  }
  EXPECT_EQ(copied.refs, 2u) << "the copy took a reference of its own and clearing gave it back";
  IUnknown* referenced = &copied;
  VARIANT byRef = MakeValue(VT_BYREF | VT_UNKNOWN, &VARIANT::ppunkVal, &referenced).release();
  EXPECT_EQ(VariantClear(&byRef), S_OK);
  EXPECT_EQ(byRef.vt, VT_EMPTY);
  EXPECT_EQ(copied.refs, 2u) << "clearing a reference leaves what it points at";
  const unique_variant odd = MakeValue(VT_BSTR, &VARIANT::bstrVal, SysAllocStringByteLen("abc", 3));
  const unique_variant oddCopy(odd.get());
  EXPECT_EQ(SysStringByteLen(oddCopy->bstrVal), 3u);
  EXPECT_EQ(std::memcmp(oddCopy->bstrVal, "abc", 3), 0);
}

TEST(VariantTest, ChangeTypeConvertsOrRefusesLeavingTheDestinationAlone) {
  unique_variant text = MakeString(OLESTR("17"));
  const BSTR original = text->bstrVal;
  struct {
    const char* name;
    unique_variant source;
    VARTYPE target;
    HRESULT result;
    const char* expected = "I4 -999";  // a refused change leaves the destination alone
  } rows[] = {
      // Integers change width only when the value fits.
      {"I4 to I2 at the bottom", I4(-32768), VT_I2, S_OK, "I2 -32768"},
      {"I4 to I2 below", I4(-32769), VT_I2, DISP_E_OVERFLOW},
      {"I4 to UI1 negative", I4(-1), VT_UI1, DISP_E_OVERFLOW},
      // Between the signed and unsigned kind of one width the bits are kept unchecked.
      {"UI4 max to I4", MakeValue(VT_UI4, &VARIANT::ulVal, ULONG{0xFFFFFFFF}), VT_I4, S_OK, "I4 -1"},
      // Reals round half to even, and the rounded value is what must fit.
      {"R8 2.5 to I4", R8(2.5), VT_I4, S_OK, "I4 2"},
      {"R8 3.5 to I4", R8(3.5), VT_I4, S_OK, "I4 4"},
      {"R8 -0.5 to UI1", R8(-0.5), VT_UI1, S_OK, "UI1 0"},
      {"R8 255.5 to UI1", R8(255.5), VT_UI1, DISP_E_OVERFLOW},
      // Text is read as a number, blanks and thousands separators allowed.
      {"text with blanks and separator", MakeString(OLESTR(" 1,000 ")), VT_I4, S_OK, "I4 1000"},
      {"negative fraction", MakeString(OLESTR("-1.5")), VT_R8, S_OK, "R8 -1.5"},
      {"letters", MakeString(OLESTR("abc")), VT_I4, DISP_E_TYPEMISMATCH},
      {"R8 0.1 to text, not all 17 digits", R8(0.1), VT_BSTR, S_OK, "BSTR \"0.1\""},
      {"true is -1", MakeValue(VT_BOOL, &VARIANT::boolVal, VARIANT_TRUE), VT_I4, S_OK, "I4 -1"},
      // Empty reads as zero or as empty text; null has no value to convert.
      {"empty to I4", MakeValue(VT_EMPTY), VT_I4, S_OK, "I4 0"},
      {"empty to text", MakeValue(VT_EMPTY), VT_BSTR, S_OK, "BSTR \"\""},
      {"null to I4", MakeValue(VT_NULL), VT_I4, DISP_E_TYPEMISMATCH},
      // A reference is read through, and what it points at is left alone.
      {"by-reference text", MakeValue(VT_BYREF | VT_BSTR, &VARIANT::pbstrVal, &text->bstrVal), VT_I4, S_OK, "I4 17"},
  };
  for (auto& row : rows) {
    SCOPED_TRACE(row.name);
    unique_variant result = I4(-999);
    EXPECT_EQ(VariantChangeType(&result.get(), &row.source.get(), 0, row.target), row.result);
    EXPECT_EQ(Describe(result.get()), row.expected);
  }
  EXPECT_EQ(text->bstrVal, original);
}

}  // namespace
}  // namespace brevo::testing
