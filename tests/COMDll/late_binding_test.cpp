// Late-bound calls: names to ids, and Invoke running the same wrappers as an
// early-bound call, with the argument handling automation callers rely on.
#include <vector>

#include "columns/mutable_columns.h"
#include "events/change_events.h"
#include "lists/mutable_record_list.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

// Arguments in call order; Invoke wants them last to first.
class Call {
 public:
  explicit Call(std::vector<unique_variant> args) : args_(std::move(args)) {
    for (auto it = args_.rbegin(); it != args_.rend(); ++it) raw_.push_back(it->get());
    params_.rgvarg = raw_.data();
    params_.cArgs = static_cast<UINT>(raw_.size());
  }
  // Marks the last argument as the value of a property put.
  Call& AsPut() {
    params_.rgdispidNamedArgs = &putId_;
    params_.cNamedArgs = 1;
    return *this;
  }
  HRESULT On(IDispatch* target, DISPID id, WORD flags) {
    excepInfo = EXCEPINFO{};
    return target->Invoke(id, iid_of<IUnknown>(), 0, flags, &params_, result.put(), &excepInfo, &argErr);
  }
  ~Call() {
    SysFreeString(excepInfo.bstrDescription);
    SysFreeString(excepInfo.bstrSource);
  }

  unique_variant result;
  EXCEPINFO excepInfo{};
  UINT argErr = 0;

 private:
  std::vector<unique_variant> args_;
  std::vector<VARIANTARG> raw_;
  DISPPARAMS params_{};
  DISPID putId_ = DISPID_PROPERTYPUT;
};

unique_variant I4(LONG v) { return MakeValue(VT_I4, &VARIANT::lVal, v); }

DISPID IdOf(IDispatch* target, const OLECHAR* name) {
  DISPID id = 0;
  LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
  EXPECT_EQ(target->GetIDsOfNames(iid_of<IUnknown>(), names, 1, 0, &id), S_OK) << Narrow(name);
  return id;
}

std::vector<unique_variant> Args(std::initializer_list<unique_variant (*)()> makers) {
  std::vector<unique_variant> args;
  for (auto make : makers) args.push_back(make());
  return args;
}

TEST(LateBinding, NamesMapToTheirIdsWhateverTheCase) {
  const auto list = make_object<MutableRecordList>();
  IDispatch* target = static_cast<IMutableRecordList*>(list.get());
  EXPECT_EQ(IdOf(target, OLESTR("Columns")), 7);
  EXPECT_EQ(IdOf(target, OLESTR("get_columns")), 7);
  EXPECT_EQ(IdOf(target, OLESTR("ADDRECORD")), 3);

  LPOLESTR withParams[] = {const_cast<LPOLESTR>(OLESTR("GetFilteredIterator")),
                           const_cast<LPOLESTR>(OLESTR("synchronized")), const_cast<LPOLESTR>(OLESTR("condition"))};
  DISPID ids[3] = {};
  EXPECT_EQ(target->GetIDsOfNames(iid_of<IUnknown>(), withParams, 3, 0, ids), S_OK);
  EXPECT_EQ(ids[0], 11);
  EXPECT_EQ(ids[1], 1);
  EXPECT_EQ(ids[2], 0);

  LPOLESTR unknown[] = {const_cast<LPOLESTR>(OLESTR("NoSuchMember"))};
  DISPID id = 0;
  EXPECT_EQ(target->GetIDsOfNames(iid_of<IUnknown>(), unknown, 1, 0, &id), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(id, DISPID_UNKNOWN);
  Call gap({});
  EXPECT_EQ(gap.On(target, 6, DISPATCH_METHOD), DISP_E_MEMBERNOTFOUND) << "ids without a name are gaps";
}

TEST(LateBinding, InvokeRunsTheMethodAndReportsItsErrors) {
  const auto columns = make_object<MutableColumns>();
  IDispatch* target = static_cast<IMutableColumns*>(columns.get());
  const DISPID add = IdOf(target, OLESTR("AddColumn"));

  Call first(Args({[] { return MakeString(OLESTR("Address.City")); }, [] { return I4(1); }}));
  ASSERT_EQ(first.On(target, add, DISPATCH_METHOD), S_OK);
  EXPECT_EQ(first.result.vt(), VT_DISPATCH) << "objects reach scripts as IDispatch";

  Call again(Args({[] { return MakeString(OLESTR("Address.City")); }, [] { return I4(1); }}));
  EXPECT_EQ(again.On(target, add, DISPATCH_METHOD), DISP_E_EXCEPTION);
  EXPECT_EQ(again.excepInfo.scode, DISP_E_EXCEPTION);
  EXPECT_EQ(Narrow(again.excepInfo.bstrDescription), "Name property must be unique.");

  Call size({});
  ASSERT_EQ(size.On(target, IdOf(target, OLESTR("Size")), DISPATCH_PROPERTYGET), S_OK);
  EXPECT_EQ(size.result.vt(), VT_I4);
  EXPECT_EQ(size.result->lVal, 1);

  Call missing(Args({[] { return MakeString(OLESTR("b")); }}));
  EXPECT_EQ(missing.On(target, add, DISPATCH_METHOD), DISP_E_BADPARAMCOUNT);
  Call wrongType(Args({[] { return MakeString(OLESTR("b")); }, [] { return MakeString(OLESTR("ten")); }}));
  EXPECT_EQ(wrongType.On(target, add, DISPATCH_METHOD), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(wrongType.argErr, 0u) << "rgvarg index of the bad argument";
}

TEST(LateBinding, ArgumentsAreCoercedDereferencedAndPropertiesPut) {
  const auto columns = make_object<MutableColumns>();
  IDispatch* target = static_cast<IMutableColumns*>(columns.get());
  // A string type code, as a script might pass it, and a by-reference name.
  static BSTR name = SysAllocString(OLESTR("Zip"));
  Call add(Args({[] { return MakeValue(VT_BYREF | VT_BSTR, &VARIANT::pbstrVal, &name); },
                 [] { return MakeString(OLESTR("10")); }}));
  ASSERT_EQ(add.On(target, IdOf(target, OLESTR("AddColumn")), DISPATCH_METHOD), S_OK);

  // A property with an argument, read as a method call: cols.MutableColumn(0).
  Call column(Args({[] { return I4(0); }}));
  ASSERT_EQ(column.On(target, IdOf(target, OLESTR("MutableColumn")), DISPATCH_METHOD | DISPATCH_PROPERTYGET), S_OK);
  IDispatch* zip = column.result->pdispVal;
  Call put(Args({[] { return MakeString(OLESTR("Postcode")); }}));
  EXPECT_EQ(put.AsPut().On(zip, IdOf(zip, OLESTR("DisplayName")), DISPATCH_PROPERTYPUT), S_OK);
  Call read({});
  ASSERT_EQ(read.On(zip, IdOf(zip, OLESTR("DisplayName")), DISPATCH_PROPERTYGET), S_OK);
  EXPECT_EQ(Narrow(read.result->bstrVal), "Postcode");
  Call type({});
  ASSERT_EQ(type.On(zip, IdOf(zip, OLESTR("ColumnType")), DISPATCH_PROPERTYGET), S_OK);
  EXPECT_EQ(type.result->ulVal, 10u);

  // An index given as a number of another kind is coerced like the runtime
  // does it: 0 as a double or an unsigned number reads column 0, a negative
  // number does not fit an unsigned index.
  using Maker = unique_variant (*)();
  for (const Maker index : {Maker{[] { return MakeValue(VT_R8, &VARIANT::dblVal, 0.0); }},
                            Maker{[] { return MakeValue(VT_UI4, &VARIANT::ulVal, ULONG{0}); }}}) {
    Call other(Args({index}));
    EXPECT_EQ(other.On(target, IdOf(target, OLESTR("MutableColumn")), DISPATCH_METHOD), S_OK);
  }
  Call negative(Args({[] { return I4(-1); }}));
  EXPECT_EQ(negative.On(target, IdOf(target, OLESTR("MutableColumn")), DISPATCH_METHOD), DISP_E_OVERFLOW);

  // Null (a script's null) is a null listener: added without complaint.
  Call listen(Args({[] { return MakeValue(VT_NULL); }}));
  EXPECT_EQ(listen.On(target, IdOf(target, OLESTR("AddColumnsChangeListener")), DISPATCH_METHOD), S_OK);
  SysFreeString(name);
  name = nullptr;
}

// Scripts tell a boolean from a number by its kind; the 16 bits stay as they
// are (a stopped event answers 1, not -1).
template <class Event>
unique_variant StoppedFlagOf(bool stop) {
  const auto event = make_object<Event>();
  if (stop) event->Stop();
  const auto target = event.template try_query<IDispatch>();
  Call isStopped({});
  EXPECT_EQ(isStopped.On(target.get(), IdOf(target.get(), OLESTR("IsStopped")), DISPATCH_METHOD), S_OK);
  return std::move(isStopped.result);
}

TEST(LateBinding, StoppedFlagsAreBooleans) {
  for (const unique_variant& flag : {StoppedFlagOf<RecordChangeEvent>(true), StoppedFlagOf<RecordListChangeEvent>(true),
                                     StoppedFlagOf<RecordListValueChangeEvent>(true)}) {
    EXPECT_EQ(flag.vt(), VT_BOOL);
    EXPECT_EQ(flag->boolVal, 1);
  }
  const unique_variant columns = StoppedFlagOf<ColumnsChangeEvent>(false);
  EXPECT_EQ(columns.vt(), VT_BOOL);
}

}  // namespace
}  // namespace brevo::testing
