// The record list utilities: the groups of a list's column names, grouped views
// that leave nothing behind when refused, and the save that always fails.
#include <filesystem>

#include "core/module_lock.h"
#include "events/change_events.h"
#include "factory/record_list_utils.h"
#include "grouping/group_fixture.h"
#include "support/fake_script.h"

namespace brevo::testing {
namespace {

// The mutable list's forms read the same names through the collection's view.
TEST(ListUtils, CountAndNameDistinctGroupsInOrderOfFirstAppearance) {
  const com_ptr<IRecordListUtils> utils(make_object<RecordListUtils>().get());
  // The column names, and the groups named at 0, 1, ...: then "" for the index at the count.
  const std::pair<std::vector<const OLECHAR*>, Transcript> cases[] = {
      {{OLESTR("A.x"), OLESTR("B.y.z"), OLESTR("A.z"), OLESTR("w")}, {"A", "B", ""}},
      {{OLESTR("a.x"), OLESTR("A.y")}, {"a", "A", ""}},
      {{OLESTR("x"), OLESTR("y")}, {""}},
      // A leading "." is an empty group to the count and is skipped by the names.
      {{OLESTR(".x"), OLESTR("x.y")}, {"x", "", ""}},
  };
  ULONG count = 99, mutableCount = 99;
  BSTR name = nullptr;
  for (const auto& [columns, groups] : cases) {
    SCOPED_TRACE(Narrow(columns[0]));
    SourceTable table;
    for (const OLECHAR* column : columns) table.AddColumn(column);
    EXPECT_EQ(utils->GetGroupCount(table.View().get(), &count), S_OK);
    EXPECT_EQ(utils->GetMutableGroupCount(table.list.get(), &mutableCount), S_OK);
    EXPECT_EQ(count + 1, groups.size());
    EXPECT_EQ(mutableCount, count);
    for (ULONG i = 0; i < groups.size(); ++i) {
      EXPECT_EQ(utils->GetGroupName(table.View().get(), i, &name), S_OK);
      EXPECT_EQ(Narrow(_bstr_t(name, false)), groups[i]);  // a null string would read "<null>"
      EXPECT_EQ(utils->GetMutableGroupName(table.list.get(), i, &name), S_OK);
      EXPECT_EQ(Narrow(_bstr_t(name, false)), groups[i]);
    }
  }
  EXPECT_EQ(utils->GetGroupCount(nullptr, &count), E_POINTER);
  EXPECT_EQ(utils->GetMutableGroupName(nullptr, 0, &name), E_POINTER);
}

// Early-bound with anything, late-bound with any number and kind of arguments,
// positional or named: the same failure, and no file.
TEST(ListUtils, SaveToFileFailsTheSameWayWhateverItIsGiven) {
  const com_ptr<IRecordListUtils> utils(make_object<RecordListUtils>().get());
  SourceTable table{{OLESTR("G.a")}};
  const _bstr_t file(OLESTR("brevo-saved.txt"));
  const auto expectRefusal = [](HRESULT hr, const std::string& description) {
    EXPECT_EQ(hr, DISP_E_EXCEPTION);
    EXPECT_EQ(description, "Method SaveToFile not yet implemented.");
  };
  for (IDispatch* list : {static_cast<IDispatch*>(nullptr), static_cast<IDispatch*>(table.list.get())}) {
    for (BSTR name : {static_cast<BSTR>(nullptr), file.GetBSTR()}) {
      const HRESULT hr = utils->SaveToFile(list, name);
      const ErrorSnapshot error = TakeErrorInfo();
      expectRefusal(hr, error.description);
      EXPECT_TRUE(IsEqualGUID(error.guid, iid_of<IRecordListUtils>()));
    }
  }

  const auto listArgument = [&] {
    unique_variant value;
    value->vt = VT_DISPATCH;
    value->pdispVal = com_ptr<IDispatch>(table.list.get()).detach();
    return value;
  };
  const std::vector<std::vector<unique_variant>> positional = [&] {
    std::vector<std::vector<unique_variant>> calls(6);
    calls[1].push_back(listArgument());
    calls[2].push_back(listArgument());
    calls[2].push_back(MakeString(OLESTR("brevo-saved.txt")));
    calls[3].push_back(MakeString(OLESTR("a")));
    calls[3].push_back(MakeValue(VT_R8, &VARIANT::dblVal, 1.5));
    calls[3].push_back(MakeValue(VT_NULL));
    calls[4].push_back(MakeValue(VT_I4, &VARIANT::lVal, LONG{7}));
    for (int i = 0; i < 12; ++i) calls[5].push_back(MakeValue(VT_EMPTY));
    return calls;
  }();
  IDispatch* late = utils.get();
  for (const auto& args : positional) {
    SCOPED_TRACE(args.size());
    std::vector<unique_variant> copies;
    for (const auto& arg : args) copies.emplace_back(arg.get());
    const LateCall call = InvokeByName(late, OLESTR("SaveToFile"), std::move(copies));
    expectRefusal(call.hr, call.description);
  }
  // Named arguments, whatever ids they carry.
  std::vector<VARIANTARG> values{MakeString(OLESTR("f")).release(), MakeValue(VT_I4, &VARIANT::lVal, LONG{1}).release()};
  std::vector<DISPID> names{1, 42};
  DISPPARAMS params{values.data(), names.data(), 2, 2};
  EXCEPINFO error{};
  EXPECT_EQ(late->Invoke(3, GUID{}, 0, DISPATCH_METHOD, &params, nullptr, &error, nullptr), DISP_E_EXCEPTION);
  EXPECT_EQ(Narrow(error.bstrDescription), "Method SaveToFile not yet implemented.");
  SysFreeString(error.bstrDescription);
  SysFreeString(error.bstrSource);
  for (VARIANTARG& value : values) VariantClear(&value);
  EXPECT_FALSE(std::filesystem::exists("brevo-saved.txt"));
}

// Made grouped views of either list form read the rows.
TEST(ListUtils, GroupedViewsOfBothListFormsReadTheRows) {
  const com_ptr<IRecordListUtils> utils(make_object<RecordListUtils>().get());
  const _bstr_t group(OLESTR("G"));
  SourceTable table{{OLESTR("G.a")}};
  table.AddRecord({1});
  com_ptr<IRecordList> grouped;
  com_ptr<IMutableRecordList> mutableGrouped;
  ASSERT_EQ(utils->GetRecordListByGroup(table.View().get(), group.GetBSTR(), grouped.put()), S_OK);
  ASSERT_EQ(utils->GetMutableRecordListByGroup(table.list.get(), group.GetBSTR(), mutableGrouped.put()), S_OK);
  com_ptr<IRecordListIterator> it;
  mutableGrouped->GetIterator(VARIANT_FALSE, it.put());
  EXPECT_EQ(Walk(it.get()), Transcript{"GroupMutableRecord 1"});
  grouped->GetIterator(VARIANT_FALSE, it.put());
  EXPECT_EQ(Walk(it.get()), Transcript{"record 1"}) << "the read-only form hands out the source's records";
  grouped.query<IGroupRecordListRaw>()->Unregister();  // or the pairs would keep themselves alive
  mutableGrouped.query<IGroupRecordListRaw>()->Unregister();
}

// A list of either form that passes everything on to a real list, except that
// it keeps the listeners it is given and logs who registers and unregisters.
class WatchedSource : public implements<WatchedSource, IMutableRecordList, IRecordList> {
 public:
  static constexpr CLSID kClassId = {0x3C0B9F52, 0x1D4E, 0x4A67, {0x9B, 0x21, 0x6E, 0x0F, 0x3A, 0x55, 0x81, 0x7D}};
  explicit WatchedSource(IMutableRecordList* inner) : inner_(inner) {}

  Transcript log;
  com_ptr<IRecordListChangeListener> changeListener;
  com_ptr<IRecordListValueChangeListener> valueListener;

  STDMETHODIMP Create(IMutableColumns* c) override { return inner_->Create(c); }
  STDMETHODIMP AddRecord(IMutableRecord** r) override { return inner_->AddRecord(r); }
  STDMETHODIMP Clear() override { return inner_->Clear(); }
  STDMETHODIMP CompareTo(IMutableRecordList* o, LONG* r) override { return inner_->CompareTo(o, r); }
  STDMETHODIMP CompareTo(IDispatch*, LONG*) override { return E_NOTIMPL; }
  STDMETHODIMP get_Columns(IMutableColumns** c) override { return inner_->get_Columns(c); }
  STDMETHODIMP get_Columns(IColumns** view) override {
    com_ptr<IMutableColumns> columns;
    inner_->get_Columns(columns.put());
    return columns->get_Columns(view);
  }
  STDMETHODIMP get_RecordList(IRecordList** v) override { return inner_->get_RecordList(v); }
  STDMETHODIMP get_Size(ULONG* n) override { return inner_->get_Size(n); }
  STDMETHODIMP GetIterator(VARIANT_BOOL s, IRecordListIterator** i) override { return inner_->GetIterator(s, i); }
  STDMETHODIMP GetFilteredIterator(IRecordCondition* c, VARIANT_BOOL s, IRecordListIterator** i) override {
    return inner_->GetFilteredIterator(c, s, i);
  }
  STDMETHODIMP GetSortedIterator(IRecordComparator* c, VARIANT_BOOL s, IRecordListIterator** i) override {
    return inner_->GetSortedIterator(c, s, i);
  }
  STDMETHODIMP EnableMutableRecordListEvents(VARIANT_BOOL f) override { return inner_->EnableMutableRecordListEvents(f); }
  STDMETHODIMP EnableRecordListEvents(VARIANT_BOOL f) override { return inner_->EnableMutableRecordListEvents(f); }
  STDMETHODIMP AddRecordListChangeListener(IRecordListChangeListener* l) override {
    return Keep("add change listener", changeListener, l);
  }
  STDMETHODIMP RemoveRecordListChangeListener(IRecordListChangeListener*) override {
    return Note("remove change listener");
  }
  STDMETHODIMP AddRecordListValueChangeListener(IRecordListValueChangeListener* l) override {
    return Keep("add value listener", valueListener, l);
  }
  STDMETHODIMP RemoveRecordListValueChangeListener(IRecordListValueChangeListener*) override {
    return Note("remove value listener");
  }

 private:
  HRESULT Note(const char* what) {
    log.push_back(what);
    return S_OK;
  }
  template <class Listener>
  HRESULT Keep(const char* what, com_ptr<Listener>& slot, Listener* listener) {
    slot = com_ptr<Listener>(listener);
    return Note(what);
  }

  com_ptr<IMutableRecordList> inner_;
};

// A grouped view whose columns check fails keeps what it did before the check:
// its source and the three registrations. Nobody holds it, so it lives on
// with its source, and its column handler, never calling Stop, refuses every
// later column change of the source. It follows its source safely meanwhile.
TEST(ListUtils, ARefusedGroupedViewStaysRegisteredAndHarmless) {
  const com_ptr<IRecordListUtils> utils(make_object<RecordListUtils>().get());
  const _bstr_t group(OLESTR("G"));
  for (const bool mutableForm : {false, true}) {
    SCOPED_TRACE(mutableForm ? "mutable" : "read-only");
    SourceTable table{{OLESTR("G.a"), OLESTR("c")}};
    const auto record = table.AddRecord({5});
    const auto source = make_object<WatchedSource>(table.list.get());
    com_ptr<IDispatch> refused;
    const HRESULT hr = mutableForm ? utils->GetMutableRecordListByGroup(
                                         source.get(), group.GetBSTR(), reinterpret_cast<IMutableRecordList**>(refused.put()))
                                   : utils->GetRecordListByGroup(source.get(), group.GetBSTR(),
                                                                 reinterpret_cast<IRecordList**>(refused.put()));
    ExpectFailure(hr, "No such group found in recordlist.");
    EXPECT_FALSE(refused);
    EXPECT_EQ(source->log, (Transcript{"add value listener", "add change listener"})) << "nothing undone";
    const auto halfBuilt = source->changeListener;
    ASSERT_TRUE(halfBuilt);

    ExpectFailure(table.AddColumn(OLESTR("G.b")), "Failed to add column.");
    ExpectFailure(table.RemoveColumn(OLESTR("c")), "Failed to remove column.");

    // Every notification it can get, with and without an event: no crash.
    const auto listEvent = make_object<RecordListChangeEvent>();
    listEvent->RecordListChangeEventImpl::Initialize(table.list.get(), record.get());
    const auto valueEvent = make_object<RecordListValueChangeEvent>();
    valueEvent->RecordListValueChangeEventImpl::Initialize(table.list.get(), record.get(), 0);
    for (IRecordListChangeEvent* e : {static_cast<IRecordListChangeEvent*>(listEvent.get()),
                                      static_cast<IRecordListChangeEvent*>(nullptr)}) {
      EXPECT_EQ(halfBuilt->RecordBeforeAdd(e), S_OK);
      EXPECT_EQ(halfBuilt->RecordAfterAdd(e), S_OK);
      EXPECT_EQ(halfBuilt->RecordBeforeRemove(e), S_OK);
      EXPECT_EQ(halfBuilt->RecordAfterRemove(e), S_OK);
    }
    for (IRecordListValueChangeEvent* e : {static_cast<IRecordListValueChangeEvent*>(valueEvent.get()),
                                           static_cast<IRecordListValueChangeEvent*>(nullptr)}) {
      EXPECT_EQ(source->valueListener->ValueBeforeChange(e), S_OK);
      EXPECT_EQ(source->valueListener->ValueAfterChange(e), S_OK);
    }
    const auto columnsListener = halfBuilt.query<IColumnsChangeListener>();
    EXPECT_EQ(table.columns->EnableMutableColumnsEvents(VARIANT_FALSE), S_OK);
    EXPECT_EQ(table.AddColumn(OLESTR("H.x")), S_OK);
    EXPECT_EQ(table.columns->EnableMutableColumnsEvents(VARIANT_TRUE), S_OK) << "the summary reaches it";
    EXPECT_EQ(columnsListener->ColumnAfterAdd(nullptr), E_POINTER);
    EXPECT_EQ(columnsListener->ColumnAfterRemove(nullptr), E_POINTER);
    ClearErrorInfo();
    EXPECT_EQ(record->SetValueAsInt32(0, 6), S_OK);

    // As a list: the source's rows, through the columns it has.
    const auto list = halfBuilt.query<IRecordListChangeListener>().query<IDispatch>();
    ULONG size = 0;
    com_ptr<IRecordListIterator> it;
    if (mutableForm) {
      const auto grouped = list.query<IMutableRecordList>();
      grouped->get_Size(&size);
      grouped->GetIterator(VARIANT_TRUE, it.put());
    } else {
      const auto grouped = list.query<IRecordList>();
      grouped->get_Size(&size);
      grouped->GetIterator(VARIANT_TRUE, it.put());
    }
    EXPECT_EQ(size, 1u);
    ULONG walked = 0;
    for (VARIANT_BOOL more = VARIANT_FALSE; it->HasNext(&more) == S_OK && more != VARIANT_FALSE; ++walked) {
      com_ptr<IDispatch> next;
      EXPECT_EQ(it->Next(next.put()), S_OK);
      EXPECT_TRUE(next);
    }
    EXPECT_EQ(walked, 1u);

    // The client that knows the pair can still part it.
    com_ptr<IColumns> view;
    table.columns->get_Columns(view.put());
    EXPECT_EQ(view->RemoveColumnsChangeListener(columnsListener.get()), S_OK);
    source->changeListener.reset();
    source->valueListener.reset();
  }
  // A source that fails after the list registered (it has no columns) keeps
  // those registrations too.
  const auto bare = make_object<MutableRecordList>();
  const auto failing = make_object<WatchedSource>(bare.get());
  com_ptr<IMutableRecordList> refused;
  EXPECT_EQ(utils->GetMutableRecordListByGroup(failing.get(), group.GetBSTR(), refused.put()), E_POINTER);
  EXPECT_EQ(failing->log, (Transcript{"add value listener", "add change listener"}));
  failing->changeListener.reset();
  failing->valueListener.reset();
}

}  // namespace
}  // namespace brevo::testing
