// VARIANT handling: what a value owns and what it only points at, how copies
// duplicate the one and share the other, and the coercion of late-bound
// arguments. A string shared by mistake is freed twice, which ASan reports.
#include <string>

#include "support/test_support.h"

namespace brevo::testing {
namespace {

// "<kind> <value>", so that a failed row shows both at once.
std::string Describe(const VARIANT& value) {
  switch (value.vt) {
    case VT_UNKNOWN: return "UNKNOWN";
    case VT_UI1: return "UI1 " + std::to_string(value.bVal);
    case VT_I2: return "I2 " + std::to_string(value.iVal);
    case VT_I4: return "I4 " + std::to_string(value.lVal);
    case VT_BSTR: return "BSTR \"" + Narrow(value.bstrVal) + '"';
    default: return "kind " + std::to_string(value.vt);
  }
}

unique_variant I4(LONG value) { return MakeValue(VT_I4, &VARIANT::lVal, value); }
unique_variant R8(DOUBLE value) { return MakeValue(VT_R8, &VARIANT::dblVal, value); }

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
      // Believed Windows behaviour, confirmed under Wine only: the system
      // duplicates by byte length, and zero bytes still allocate.
      {"null text becomes empty", MakeValue(VT_BSTR, &VARIANT::bstrVal, BSTR{}), false, S_OK, "BSTR \"\""},
      {"object", HoldObject(copied), false, S_OK, "UNKNOWN"},
      {"via text", MakeValue(VT_BYREF | VT_BSTR, &VARIANT::pbstrVal, &text->bstrVal), true, S_OK, "BSTR \"deep\""},
      {"via variant", MakeValue(VT_BYREF | VT_VARIANT, &VARIANT::pvarVal, &inner.get()), true, S_OK, "BSTR \"inner\""},
      {"kind 15", MakeValue(15), false, DISP_E_BADVARTYPE, "UNKNOWN"},
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
  const unique_variant odd = MakeValue(VT_BSTR, &VARIANT::bstrVal, SysAllocStringByteLen("abc", 3));
  EXPECT_EQ(SysStringByteLen(unique_variant(odd.get())->bstrVal), 3u) << "text is copied by its bytes";
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
      {"I4 to I2 fits at the bottom", I4(-32768), VT_I2, S_OK, "I2 -32768"},
      {"I4 to I2 below does not", I4(-32769), VT_I2, DISP_E_OVERFLOW},
      {"UI4 to I4 keeps the bits", MakeValue(VT_UI4, &VARIANT::ulVal, ULONG{0xFFFFFFFF}), VT_I4, S_OK, "I4 -1"},
      {"R8 to I4 rounds half to even", R8(2.5), VT_I4, S_OK, "I4 2"},
      {"R8 to I4 rounds half to even, up", R8(3.5), VT_I4, S_OK, "I4 4"},
      {"R8 to UI1: the rounded value must fit", R8(-0.5), VT_UI1, S_OK, "UI1 0"},
      {"text with blanks and thousands separator", MakeString(OLESTR(" 1,000 ")), VT_I4, S_OK, "I4 1000"},
      {"letters", MakeString(OLESTR("abc")), VT_I4, DISP_E_TYPEMISMATCH},
      {"R8 0.1 to text, not all 17 digits", R8(0.1), VT_BSTR, S_OK, "BSTR \"0.1\""},
      {"true is -1", MakeValue(VT_BOOL, &VARIANT::boolVal, VARIANT_TRUE), VT_I4, S_OK, "I4 -1"},
      {"empty reads as zero", MakeValue(VT_EMPTY), VT_I4, S_OK, "I4 0"},
      {"null has no value", MakeValue(VT_NULL), VT_I4, DISP_E_TYPEMISMATCH},
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
