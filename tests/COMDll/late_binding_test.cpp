// Late-bound calls: names to ids, and Invoke running the same wrappers as an
// early-bound call, with the argument handling automation callers rely on.
#include <vector>

#include "columns/mutable_columns.h"
#include "events/change_events.h"
#include "lists/mutable_record_list.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

DISPID IdOf(IDispatch* target, const OLECHAR* name) {
  DISPID id = 0;
  LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
  EXPECT_EQ(target->GetIDsOfNames(iid_of<IUnknown>(), names, 1, 0, &id), S_OK) << Narrow(name);
  return id;
}

// One Invoke, with arguments in call order (Invoke wants them last to first).
class Call {
 public:
  template <class... Args>
  explicit Call(Args... args) {
    (args_.push_back(std::move(args)), ...);
    for (auto it = args_.rbegin(); it != args_.rend(); ++it) raw_.push_back(it->get());
  }
  ~Call() {
    SysFreeString(excepInfo.bstrDescription);
    SysFreeString(excepInfo.bstrSource);
  }
  // A property put passes its last argument as the named value.
  HRESULT On(IDispatch* target, DISPID id, WORD flags = DISPATCH_METHOD) {
    const bool put = flags == DISPATCH_PROPERTYPUT;
    DISPPARAMS params{raw_.data(), put ? &putId_ : nullptr, static_cast<UINT>(raw_.size()), put ? 1u : 0u};
    return target->Invoke(id, iid_of<IUnknown>(), 0, flags, &params, result.put(), &excepInfo, &argErr);
  }
  HRESULT On(IDispatch* target, const OLECHAR* name, WORD flags = DISPATCH_METHOD) {
    return On(target, IdOf(target, name), flags);
  }

  unique_variant result;
  EXCEPINFO excepInfo{};
  UINT argErr = 0;

 private:
  std::vector<unique_variant> args_;
  std::vector<VARIANTARG> raw_;
  DISPID putId_ = DISPID_PROPERTYPUT;
};

unique_variant I4(LONG v) { return MakeValue(VT_I4, &VARIANT::lVal, v); }

TEST(LateBinding, NamesMapToTheirIdsWhateverTheCase) {
  const auto list = make_object<MutableRecordList>();
  IDispatch* target = static_cast<IMutableRecordList*>(list.get());
  EXPECT_EQ(IdOf(target, OLESTR("Columns")), 7);
  EXPECT_EQ(IdOf(target, OLESTR("get_columns")), 7);
  EXPECT_EQ(IdOf(target, OLESTR("ADDRECORD")), 3);

  // A method with its parameters: each parameter is its position.
  LPOLESTR withParams[] = {const_cast<LPOLESTR>(OLESTR("GetFilteredIterator")),
                           const_cast<LPOLESTR>(OLESTR("synchronized")), const_cast<LPOLESTR>(OLESTR("condition"))};
  DISPID ids[3] = {};
  EXPECT_EQ(target->GetIDsOfNames(iid_of<IUnknown>(), withParams, 3, 0, ids), S_OK);
  EXPECT_EQ(std::vector<DISPID>(ids, ids + 3), (std::vector<DISPID>{11, 1, 0}));

  LPOLESTR unknown[] = {const_cast<LPOLESTR>(OLESTR("NoSuchMember"))};
  EXPECT_EQ(target->GetIDsOfNames(iid_of<IUnknown>(), unknown, 1, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[0], DISPID_UNKNOWN);
  EXPECT_EQ(Call().On(target, 6), DISP_E_MEMBERNOTFOUND) << "ids without a name are gaps";
}

TEST(LateBinding, InvokeRunsTheMethodAndReportsItsErrors) {
  const auto columns = make_object<MutableColumns>();
  IDispatch* target = static_cast<IMutableColumns*>(columns.get());
  Call first(MakeString(OLESTR("Address.City")), I4(1));
  ASSERT_EQ(first.On(target, OLESTR("AddColumn")), S_OK);
  EXPECT_EQ(first.result.vt(), VT_DISPATCH) << "objects reach scripts as IDispatch";

  Call again(MakeString(OLESTR("Address.City")), I4(1));
  EXPECT_EQ(again.On(target, OLESTR("AddColumn")), DISP_E_EXCEPTION);
  EXPECT_EQ(again.excepInfo.scode, DISP_E_EXCEPTION);
  EXPECT_EQ(Narrow(again.excepInfo.bstrDescription), "Name property must be unique.");

  EXPECT_EQ(Call(MakeString(OLESTR("b"))).On(target, OLESTR("AddColumn")), DISP_E_BADPARAMCOUNT);
  Call wrongType(MakeString(OLESTR("b")), MakeString(OLESTR("ten")));
  EXPECT_EQ(wrongType.On(target, OLESTR("AddColumn")), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(wrongType.argErr, 0u) << "rgvarg index of the bad argument";
}

TEST(LateBinding, ArgumentsAreCoercedDereferencedAndPropertiesPut) {
  const auto columns = make_object<MutableColumns>();
  IDispatch* target = static_cast<IMutableColumns*>(columns.get());
  // A by-reference name and a string type code, as a script might pass them.
  _bstr_t name(OLESTR("Zip"));
  BSTR raw = name.GetBSTR();
  ASSERT_EQ(Call(MakeValue(VT_BYREF | VT_BSTR, &VARIANT::pbstrVal, &raw), MakeString(OLESTR("10")))
                .On(target, OLESTR("AddColumn")),
            S_OK);

  // A property with an argument, read as a method call: cols.MutableColumn(0).
  Call column(I4(0));
  ASSERT_EQ(column.On(target, OLESTR("MutableColumn"), DISPATCH_METHOD | DISPATCH_PROPERTYGET), S_OK);
  IDispatch* zip = column.result->pdispVal;
  EXPECT_EQ(Call(MakeString(OLESTR("Postcode"))).On(zip, OLESTR("DisplayName"), DISPATCH_PROPERTYPUT), S_OK);
  Call read;
  ASSERT_EQ(read.On(zip, OLESTR("DisplayName"), DISPATCH_PROPERTYGET), S_OK);
  EXPECT_EQ(Narrow(read.result->bstrVal), "Postcode");
  Call type;
  ASSERT_EQ(type.On(zip, OLESTR("ColumnType"), DISPATCH_PROPERTYGET), S_OK);
  EXPECT_EQ(type.result->ulVal, 10u);

  // An index of another number kind is coerced like the runtime does it: 0 as
  // a double or an unsigned number reads column 0, a negative one does not fit.
  EXPECT_EQ(Call(MakeValue(VT_R8, &VARIANT::dblVal, 0.0)).On(target, OLESTR("MutableColumn")), S_OK);
  EXPECT_EQ(Call(MakeValue(VT_UI4, &VARIANT::ulVal, ULONG{0})).On(target, OLESTR("MutableColumn")), S_OK);
  EXPECT_EQ(Call(I4(-1)).On(target, OLESTR("MutableColumn")), DISP_E_OVERFLOW);

  // Null (a script's null) is a null listener: added without complaint.
  EXPECT_EQ(Call(MakeValue(VT_NULL)).On(target, OLESTR("AddColumnsChangeListener")), S_OK);
}

// Scripts tell a boolean from a number by its kind; the 16 bits stay as they
// are: a stopped event answers 1, not -1 (a column event starts stopped).
TEST(LateBinding, StoppedFlagsAreBooleansOfOne) {
  const auto record = make_object<RecordChangeEvent>();
  record->Stop();
  const auto columns = make_object<ColumnsChangeEvent>();
  for (IDispatch* event : {static_cast<IDispatch*>(static_cast<IRecordChangeEvent*>(record.get())),
                           static_cast<IDispatch*>(static_cast<IColumnsChangeEvent*>(columns.get()))}) {
    Call isStopped;
    ASSERT_EQ(isStopped.On(event, OLESTR("IsStopped")), S_OK);
    EXPECT_EQ(isStopped.result.vt(), VT_BOOL);
    EXPECT_EQ(isStopped.result->boolVal, 1);
  }
}

}  // namespace
}  // namespace brevo::testing
