// Late-bound calls: names to ids, and Invoke running the same wrappers as an
// early-bound call, with the argument handling automation callers rely on.
#include <vector>

#include "columns/mutable_columns.h"
#include "events/change_events.h"
#include "lists/mutable_record_list.h"
#include "support/fake_script.h"

namespace brevo::testing {
namespace {

// The ids of a member and then of its parameters, looked up together.
std::vector<DISPID> IdsOf(IDispatch* target, std::vector<const OLECHAR*> names, HRESULT expected = S_OK) {
  std::vector<DISPID> ids(names.size());
  const auto raw = const_cast<LPOLESTR*>(names.data());
  EXPECT_EQ(target->GetIDsOfNames(iid_of<IUnknown>(), raw, static_cast<UINT>(names.size()), 0, ids.data()), expected);
  return ids;
}

// Invoke where InvokeByName's method call is not enough: arguments in call order
// (Invoke wants them last to first), a put's value as the named argument.
HRESULT Invoke(IDispatch* target, DISPID id, WORD flags, std::vector<unique_variant> args = {},
               VARIANT* result = nullptr, UINT* argErr = nullptr) {
  std::vector<VARIANTARG> reversed;
  for (auto it = args.rbegin(); it != args.rend(); ++it) reversed.push_back(it->get());
  DISPID named = DISPID_PROPERTYPUT;
  const UINT puts = flags == DISPATCH_PROPERTYPUT ? 1 : 0;
  DISPPARAMS params{reversed.data(), &named, static_cast<UINT>(reversed.size()), puts};
  return target->Invoke(id, iid_of<IUnknown>(), 0, flags, &params, result, nullptr, argErr);
}

unique_variant I4(LONG v) { return MakeValue(VT_I4, &VARIANT::lVal, v); }

TEST(LateBinding, NamesMapToTheirIdsWhateverTheCase) {
  const auto list = make_object<MutableRecordList>();
  IDispatch* target = static_cast<IMutableRecordList*>(list.get());
  EXPECT_EQ(IdsOf(target, {OLESTR("get_columns")}), std::vector<DISPID>{7});
  EXPECT_EQ(IdsOf(target, {OLESTR("ADDRECORD")}), std::vector<DISPID>{3});
  // Each parameter's id is its position.
  EXPECT_EQ(IdsOf(target, {OLESTR("GetFilteredIterator"), OLESTR("synchronized"), OLESTR("condition")}),
            (std::vector<DISPID>{11, 1, 0}));
  EXPECT_EQ(IdsOf(target, {OLESTR("NoSuchMember")}, DISP_E_UNKNOWNNAME), std::vector<DISPID>{DISPID_UNKNOWN});
  EXPECT_EQ(Invoke(target, 6, DISPATCH_METHOD), DISP_E_MEMBERNOTFOUND) << "ids without a name are gaps";
}

TEST(LateBinding, InvokeRunsTheMethodAndReportsItsErrors) {
  const auto columns = make_object<MutableColumns>();
  IDispatch* target = static_cast<IMutableColumns*>(columns.get());
  const LateCall first = InvokeByName(target, OLESTR("AddColumn"), {MakeString(OLESTR("Address.City")), I4(1)});
  ASSERT_EQ(first.hr, S_OK);
  EXPECT_EQ(first.answer.vt(), VT_DISPATCH) << "objects reach scripts as IDispatch";
  const LateCall again = InvokeByName(target, OLESTR("AddColumn"), {MakeString(OLESTR("Address.City")), I4(1)});
  EXPECT_EQ(again.hr, DISP_E_EXCEPTION);
  EXPECT_EQ(again.description, "Name property must be unique.");
  EXPECT_EQ(InvokeByName(target, OLESTR("AddColumn"), {MakeString(OLESTR("b"))}).hr, DISP_E_BADPARAMCOUNT);
  UINT argErr = 99;
  EXPECT_EQ(Invoke(target, IdsOf(target, {OLESTR("AddColumn")})[0], DISPATCH_METHOD,
                   {MakeString(OLESTR("b")), MakeString(OLESTR("ten"))}, nullptr, &argErr),
            DISP_E_TYPEMISMATCH);
  EXPECT_EQ(argErr, 0u) << "rgvarg index of the bad argument";
}

TEST(LateBinding, ArgumentsAreCoercedDereferencedAndPropertiesPut) {
  const auto columns = make_object<MutableColumns>();
  IDispatch* target = static_cast<IMutableColumns*>(columns.get());
  // A by-reference name and a string type code, as a script might pass them.
  unique_variant name = MakeString(OLESTR("Zip"));
  const unique_variant byRef = MakeValue(VT_BYREF | VT_BSTR, &VARIANT::pbstrVal, &name->bstrVal);
  ASSERT_EQ(InvokeByName(target, OLESTR("AddColumn"), {byRef, MakeString(OLESTR("10"))}).hr, S_OK);

  const LateCall column = InvokeByName(target, OLESTR("MutableColumn"), {I4(0)});
  ASSERT_EQ(column.hr, S_OK);
  IDispatch* zip = column.answer->pdispVal;
  EXPECT_EQ(InvokeByName(zip, OLESTR("ColumnType")).answer->ulVal, 10u);
  const DISPID displayName = IdsOf(zip, {OLESTR("DisplayName")})[0];
  EXPECT_EQ(Invoke(zip, displayName, DISPATCH_PROPERTYPUT, {MakeString(OLESTR("Postcode"))}), S_OK);
  unique_variant read;
  ASSERT_EQ(Invoke(zip, displayName, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {}, read.put()), S_OK);
  EXPECT_EQ(Narrow(read->bstrVal), "Postcode");
  // An index of another number kind is coerced like the runtime does it; a negative one does not fit.
  EXPECT_EQ(InvokeByName(target, OLESTR("MutableColumn"), {MakeValue(VT_R8, &VARIANT::dblVal, 0.0)}).hr, S_OK);
  EXPECT_EQ(InvokeByName(target, OLESTR("MutableColumn"), {I4(-1)}).hr, DISP_E_OVERFLOW);
  // Null (a script's null) is a null listener: added without complaint.
  EXPECT_EQ(InvokeByName(target, OLESTR("AddColumnsChangeListener"), {MakeValue(VT_NULL)}).hr, S_OK);
}

// Scripts tell a boolean from a number by its kind; the 16 bits stay as they
// are: a stopped event answers 1, not -1 (a column event starts stopped).
TEST(LateBinding, StoppedFlagIsABooleanOfOne) {
  const auto event = make_object<ColumnsChangeEvent>();
  const LateCall isStopped = InvokeByName(static_cast<IColumnsChangeEvent*>(event.get()), OLESTR("IsStopped"));
  EXPECT_EQ(isStopped.answer.vt(), VT_BOOL);
  EXPECT_EQ(isStopped.answer->boolVal, 1);
}

}  // namespace
}  // namespace brevo::testing
