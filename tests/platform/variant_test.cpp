// VARIANT ownership: what a value owns, what it only points at, and how copies
// duplicate the one and share the other.
#include <cstring>
#include <memory>

#include "support/test_support.h"

namespace brevo::testing {
namespace {

struct FreeBstr {
  void operator()(OLECHAR* text) const { SysFreeString(text); }
};
using OwnedBstr = std::unique_ptr<OLECHAR, FreeBstr>;

// A value holding a new reference on object.
unique_variant HoldObject(CountedObject& object) {
  object.AddRef();
  return MakeValue(VT_UNKNOWN, &VARIANT::punkVal, static_cast<IUnknown*>(&object));
}

TEST(VariantClearTest, FreesWhatTheValueOwns) {
  VARIANT value;
  std::memset(static_cast<void*>(&value), 0xAB, sizeof value);
  VariantInit(&value);
  EXPECT_EQ(value.vt, VT_EMPTY);
  EXPECT_EQ(VariantClear(&value), S_OK);
  EXPECT_EQ(value.vt, VT_EMPTY);

  CountedObject object;
  value = HoldObject(object).release();
  EXPECT_EQ(VariantClear(&value), S_OK);
  EXPECT_EQ(value.vt, VT_EMPTY);
  EXPECT_EQ(object.refs, 1u);

  value = MakeString(OLESTR("owned")).release();
  EXPECT_EQ(VariantClear(&value), S_OK);  // an unfreed string shows up in the leak check
  EXPECT_EQ(value.vt, VT_EMPTY);
}

TEST(VariantClearTest, LeavesWhatAReferencePointsAt) {
  CountedObject object;
  IUnknown* referencedObject = &object;
  VARIANT value = MakeValue(VT_BYREF | VT_UNKNOWN, &VARIANT::ppunkVal, &referencedObject).release();
  EXPECT_EQ(VariantClear(&value), S_OK);
  EXPECT_EQ(value.vt, VT_EMPTY);
  EXPECT_EQ(object.refs, 1u);

  const OwnedBstr text(SysAllocString(OLESTR("kept")));
  BSTR referencedText = text.get();
  value = MakeValue(VT_BYREF | VT_BSTR, &VARIANT::pbstrVal, &referencedText).release();
  EXPECT_EQ(VariantClear(&value), S_OK);
  EXPECT_EQ(Narrow(referencedText), "kept");  // a freed string trips the sanitizer here
}

TEST(VariantCopyTest, DuplicatesStringsByteForByte) {
  unique_variant sources[] = {MakeString(OLESTR("text")),
                              MakeValue(VT_BSTR, &VARIANT::bstrVal, SysAllocStringByteLen("abc", 3))};
  for (unique_variant& source : sources) {
    const UINT byteLength = SysStringByteLen(source->bstrVal);
    SCOPED_TRACE(byteLength);
    unique_variant copy;
    ASSERT_EQ(VariantCopy(copy.put(), &source.get()), S_OK);
    ASSERT_EQ(copy.vt(), VT_BSTR);
    EXPECT_NE(copy->bstrVal, source->bstrVal);
    EXPECT_EQ(SysStringByteLen(copy->bstrVal), byteLength);
    EXPECT_EQ(std::memcmp(copy->bstrVal, source->bstrVal, byteLength), 0);
  }
}

// Believed Windows behaviour, confirmed under Wine only: the system duplicates
// by byte length, and zero bytes still allocate, so null becomes empty text.
TEST(VariantCopyTest, NullStringCopiesToAnEmptyString) {
  unique_variant source = MakeValue(VT_BSTR, &VARIANT::bstrVal, BSTR{});
  unique_variant copy;
  ASSERT_EQ(VariantCopy(copy.put(), &source.get()), S_OK);
  ASSERT_EQ(copy.vt(), VT_BSTR);
  EXPECT_NE(copy->bstrVal, nullptr);
  EXPECT_EQ(SysStringLen(copy->bstrVal), 0u);
}

TEST(VariantCopyTest, SharesObjectsAndReleasesTheReplacedValue) {
  CountedObject copied;
  CountedObject replaced;
  {
    unique_variant source = HoldObject(copied);
    unique_variant destination = HoldObject(replaced);
    ASSERT_EQ(VariantCopy(&destination.get(), &source.get()), S_OK);
    EXPECT_EQ(destination->punkVal, &copied);
    EXPECT_EQ(copied.refs, 3u);
    EXPECT_EQ(replaced.refs, 1u);
  }
  EXPECT_EQ(copied.refs, 1u);
}

TEST(VariantCopyTest, CopiesAReferenceAsThePointer) {
  const OwnedBstr text(SysAllocString(OLESTR("shared")));
  BSTR referencedText = text.get();
  unique_variant source = MakeValue(VT_BYREF | VT_BSTR, &VARIANT::pbstrVal, &referencedText);
  unique_variant copy;
  ASSERT_EQ(VariantCopy(copy.put(), &source.get()), S_OK);
  EXPECT_EQ(copy.vt(), VT_BYREF | VT_BSTR);
  EXPECT_EQ(copy->pbstrVal, &referencedText);
}

TEST(VariantCopyTest, CopyOntoItselfKeepsTheValue) {
  unique_variant value = MakeString(OLESTR("self"));
  const BSTR before = value->bstrVal;
  EXPECT_EQ(VariantCopy(&value.get(), &value.get()), S_OK);
  EXPECT_EQ(value->bstrVal, before);
  EXPECT_EQ(Narrow(value->bstrVal), "self");
}

TEST(VariantCopyTest, RefusesInvalidKindsAndKeepsTheDestination) {
  const VARTYPE invalidKinds[] = {15, VT_VOID, VT_BYREF | VT_EMPTY, VT_BYREF | VT_NULL, VT_ARRAY | VT_EMPTY};
  for (const VARTYPE vt : invalidKinds) {
    SCOPED_TRACE(vt);
    unique_variant source = MakeValue(vt);
    unique_variant destination = MakeString(OLESTR("kept"));
    EXPECT_EQ(VariantCopy(&destination.get(), &source.get()), DISP_E_BADVARTYPE);
    EXPECT_EQ(Narrow(destination->bstrVal), "kept");
  }
}

TEST(VariantCopyIndTest, CopiesWhatAReferencePointsAt) {
  LONG number = 42;
  unique_variant byRefNumber = MakeValue(VT_BYREF | VT_I4, &VARIANT::plVal, &number);
  unique_variant copy;
  ASSERT_EQ(VariantCopyInd(copy.put(), &byRefNumber.get()), S_OK);
  EXPECT_EQ(copy.vt(), VT_I4);
  EXPECT_EQ(copy->lVal, 42);

  const OwnedBstr text(SysAllocString(OLESTR("deep")));
  BSTR referencedText = text.get();
  unique_variant byRefText = MakeValue(VT_BYREF | VT_BSTR, &VARIANT::pbstrVal, &referencedText);
  ASSERT_EQ(VariantCopyInd(copy.put(), &byRefText.get()), S_OK);
  ASSERT_EQ(copy.vt(), VT_BSTR);
  EXPECT_NE(copy->bstrVal, referencedText);
  EXPECT_EQ(Narrow(copy->bstrVal), "deep");

  unique_variant inner = MakeString(OLESTR("inner"));
  unique_variant byRefVariant = MakeValue(VT_BYREF | VT_VARIANT, &VARIANT::pvarVal, &inner.get());
  ASSERT_EQ(VariantCopyInd(copy.put(), &byRefVariant.get()), S_OK);
  ASSERT_EQ(copy.vt(), VT_BSTR);
  EXPECT_NE(copy->bstrVal, inner->bstrVal);
  EXPECT_EQ(Narrow(copy->bstrVal), "inner");
}

TEST(VariantCopyIndTest, DereferencesInPlace) {
  LONG number = 7;
  unique_variant value = MakeValue(VT_BYREF | VT_I4, &VARIANT::plVal, &number);
  ASSERT_EQ(VariantCopyInd(&value.get(), &value.get()), S_OK);
  EXPECT_EQ(value.vt(), VT_I4);
  EXPECT_EQ(value->lVal, 7);
}

}  // namespace
}  // namespace brevo::testing
