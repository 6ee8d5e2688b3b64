// Library objects that listen answer late-bound calls made through a listener
// interface with that listener's names and ids, exactly as the early-bound
// listener method answers; IDispatch itself stays the class's own interface.
#include <algorithm>
#include <functional>
#include <vector>

#include "events/change_events.h"
#include "factory/record_list_utils.h"
#include "grouping/group_mutable_columns.h"
#include "grouping/group_mutable_record_list.h"
#include "lists/mutable_record_list.h"
#include "support/fake_script.h"
#include "support/recording_listener.h"
#include "support/schema.h"

namespace brevo::testing {
namespace {

struct Member {
  const OLECHAR* name;
  DISPID id;
};

// One listener interface: its names, an event it takes, and its early-bound call.
struct ListenerKind {
  const char* label;
  IID iid;
  std::vector<Member> members;
  std::function<com_ptr<IDispatch>()> event;
  std::function<HRESULT(IUnknown* listener, DISPID id, IDispatch* event)> call;
};

template <class Listener, class Event>
HRESULT CallAs(IUnknown* listener, HRESULT (STDMETHODCALLTYPE Listener::*method)(Event*), IDispatch* event) {
  const auto typed = event != nullptr ? com_ptr<IDispatch>(event).query<Event>() : com_ptr<Event>();
  return (static_cast<Listener*>(listener)->*method)(typed.get());
}

class ListenerFaces : public ::testing::Test {
 protected:
  ListenerFaces() {
    list->Create(columns.get());
    list->AddRecord(record.put());
    const auto utils = make_object<RecordListUtils>();
    list->get_RecordList(listView.put());
    utils->GetRecordListByGroup(listView.get(), _bstr_t(OLESTR("G")).GetBSTR(), grouped.put());
    utils->GetMutableRecordListByGroup(list.get(), _bstr_t(OLESTR("G")).GetBSTR(), groupedMutable.put());
    groupedColumns->GroupMutableColumnsImpl::Create(columns.get(), _bstr_t(OLESTR("G")));
  }
  ~ListenerFaces() override {
    grouped.query<IGroupRecordListRaw>()->Unregister();
    groupedMutable.query<IGroupRecordListRaw>()->Unregister();
  }

  // The first record a list's iterator hands out.
  template <class List>
  com_ptr<IDispatch> FirstOf(List* source) {
    com_ptr<IRecordListIterator> iterator;
    source->GetIterator(VARIANT_TRUE, iterator.put());
    com_ptr<IDispatch> first;
    iterator->Next(first.put());
    return first;
  }

  com_ptr<IDispatch> ColumnView() {
    com_ptr<IMutableColumn> column;
    columns->get_MutableColumn(0, column.put());
    com_ptr<IColumn> view;
    column->get_Column(view.put());
    return view.query<IDispatch>();
  }

  std::vector<ListenerKind> Kinds() {
    IDispatch* source = record.get();
    return {
        {"IRecordChangeListener", iid_of<IRecordChangeListener>(),
         {{OLESTR("ValueAfterChange"), 1}, {OLESTR("ValueBeforeChange"), 2}},
         [=] {
           auto e = make_object<RecordChangeEvent>();
           e->RecordChangeEventImpl::Initialize(source, 0);
           return com_ptr<IDispatch>(static_cast<IRecordChangeEvent*>(e.get()));
         },
         [](IUnknown* l, DISPID id, IDispatch* e) {
           return CallAs(l, id == 1 ? &IRecordChangeListener::ValueAfterChange : &IRecordChangeListener::ValueBeforeChange,
                         e);
         }},
        {"IPropertyChangeListener", iid_of<IPropertyChangeListener>(), {{OLESTR("PropertyChange"), 1}},
         [=] {
           auto e = make_object<PropertyChangeEvent>();
           e->PropertyChangeEventImpl::Initialize(source, _bstr_t(OLESTR("ColumnName")), _bstr_t(OLESTR("G.a")),
                                                  _bstr_t(OLESTR("G.b")));
           return com_ptr<IDispatch>(static_cast<IPropertyChangeEvent*>(e.get()));
         },
         [](IUnknown* l, DISPID, IDispatch* e) { return CallAs(l, &IPropertyChangeListener::PropertyChange, e); }},
        {"IColumnsChangeListener", iid_of<IColumnsChangeListener>(),
         {{OLESTR("ColumnBeforeAdd"), 1}, {OLESTR("ColumnAfterAdd"), 2}, {OLESTR("ColumnBeforeRemove"), 3},
          {OLESTR("ColumnAfterRemove"), 4}},
         [this] {
           com_ptr<IMutableColumn> column;
           columns->get_MutableColumn(0, column.put());
           auto e = make_object<ColumnsChangeEvent>();
           e->ColumnsChangeEventImpl::Initialize(columns.get(), column.get());
           return com_ptr<IDispatch>(static_cast<IColumnsChangeEvent*>(e.get()));
         },
         [](IUnknown* l, DISPID id, IDispatch* e) {
           using L = IColumnsChangeListener;
           constexpr HRESULT (STDMETHODCALLTYPE L::*methods[])(IColumnsChangeEvent*) = {
               &L::ColumnBeforeAdd, &L::ColumnAfterAdd, &L::ColumnBeforeRemove, &L::ColumnAfterRemove};
           return CallAs(l, methods[id - 1], e);
         }},
        {"IRecordListChangeListener", iid_of<IRecordListChangeListener>(),
         {{OLESTR("RecordBeforeAdd"), 1}, {OLESTR("RecordAfterAdd"), 2}, {OLESTR("RecordBeforeRemove"), 3},
          {OLESTR("RecordAfterRemove"), 4}},
         [this, source] {
           auto e = make_object<RecordListChangeEvent>();
           e->RecordListChangeEventImpl::Initialize(list.get(), source);
           return com_ptr<IDispatch>(static_cast<IRecordListChangeEvent*>(e.get()));
         },
         [](IUnknown* l, DISPID id, IDispatch* e) {
           using L = IRecordListChangeListener;
           constexpr HRESULT (STDMETHODCALLTYPE L::*methods[])(IRecordListChangeEvent*) = {
               &L::RecordBeforeAdd, &L::RecordAfterAdd, &L::RecordBeforeRemove, &L::RecordAfterRemove};
           return CallAs(l, methods[id - 1], e);
         }},
        {"IRecordListValueChangeListener", iid_of<IRecordListValueChangeListener>(),
         {{OLESTR("ValueBeforeChange"), 1}, {OLESTR("ValueAfterChange"), 2}},
         [this, source] {
           auto e = make_object<RecordListValueChangeEvent>();
           e->RecordListValueChangeEventImpl::Initialize(list.get(), source, 0);
           return com_ptr<IDispatch>(static_cast<IRecordListValueChangeEvent*>(e.get()));
         },
         [](IUnknown* l, DISPID id, IDispatch* e) {
           return CallAs(l,
                         id == 1 ? &IRecordListValueChangeListener::ValueBeforeChange
                                 : &IRecordListValueChangeListener::ValueAfterChange,
                         e);
         }},
    };
  }

  const com_ptr<IMutableColumns> columns = Schema({{OLESTR("G.a"), 3}});
  const com_ptr<IMutableRecordList> list{make_object<MutableRecordList>().get()};
  com_ptr<IMutableRecord> record;
  com_ptr<IRecordList> listView;
  com_ptr<IRecordList> grouped;
  com_ptr<IMutableRecordList> groupedMutable;
  const com_ptr<CComObject<GroupMutableColumns>> groupedColumns = make_object<GroupMutableColumns>();
};

std::vector<DISPID> IdsOf(IDispatch* target, std::vector<const OLECHAR*> names, HRESULT expected = S_OK) {
  std::vector<DISPID> ids(names.size());
  EXPECT_EQ(target->GetIDsOfNames(GUID{}, const_cast<LPOLESTR*>(names.data()), static_cast<UINT>(names.size()), 0,
                                  ids.data()),
            expected);
  return ids;
}

TEST_F(ListenerFaces, EachListenerInterfaceAnswersItsOwnTable) {
  com_ptr<IRecord> recordView;
  record->get_Record(recordView.put());
  struct Row {
    const char* object;
    com_ptr<IDispatch> target;
    std::vector<const char*> kinds;
  };
  const Row rows[] = {
      {"Record", recordView.query<IDispatch>(), {"IRecordChangeListener"}},
      {"MutableRecordList", list.query<IDispatch>(), {"IRecordChangeListener"}},
      {"Column", ColumnView(), {"IPropertyChangeListener"}},
      {"MutableColumns", columns.query<IDispatch>(), {"IPropertyChangeListener"}},
      {"RecordList", listView.query<IDispatch>(), {"IRecordListChangeListener", "IRecordListValueChangeListener"}},
      {"GroupRecordList", grouped.query<IDispatch>(),
       {"IRecordListChangeListener", "IRecordListValueChangeListener", "IColumnsChangeListener"}},
      {"GroupMutableRecordList", groupedMutable.query<IDispatch>(),
       {"IRecordListChangeListener", "IRecordListValueChangeListener", "IColumnsChangeListener"}},
      {"GroupRecord", FirstOf(grouped.get()), {"IRecordChangeListener"}},
      {"GroupMutableRecord", FirstOf(groupedMutable.get()), {"IRecordChangeListener"}},
      {"GroupMutableColumns", com_ptr<IDispatch>(static_cast<IMutableColumns*>(groupedColumns.get())),
       {"IColumnsChangeListener", "IPropertyChangeListener"}},
  };
  const auto kinds = Kinds();
  int pairs = 0;
  for (const Row& row : rows) {
    ASSERT_TRUE(row.target) << row.object;
    for (const ListenerKind& kind : kinds) {
      if (std::find_if(row.kinds.begin(), row.kinds.end(), [&](const char* k) { return std::string(k) == kind.label; }) ==
          row.kinds.end()) {
        continue;
      }
      SCOPED_TRACE(std::string(row.object) + " as " + kind.label);
      ++pairs;
      com_ptr<IUnknown> listener;
      ASSERT_EQ(row.target->QueryInterface(kind.iid, listener.put_void()), S_OK);
      auto* late = reinterpret_cast<IDispatch*>(listener.get());

      IdsOf(late, {OLESTR("CompareTo")}, DISP_E_UNKNOWNNAME);
      for (const Member& member : kind.members) {
        EXPECT_EQ(IdsOf(late, {member.name, OLESTR("pEvent")}), (std::vector<DISPID>{member.id, 0}));
        // A real event, and none at all (a listener may be handed a null event).
        for (const bool withEvent : {true, false}) {
          const auto early = withEvent ? kind.event() : com_ptr<IDispatch>();
          const HRESULT earlyHr = kind.call(listener.get(), member.id, early.get());
          const std::string earlyError = TakeErrorInfo().description;
          unique_variant argument;
          argument->vt = VT_DISPATCH;
          argument->pdispVal = withEvent ? kind.event().detach() : nullptr;
          const LateCall call = InvokeByName(late, member.name, {std::move(argument)});
          EXPECT_EQ(call.hr, FAILED(earlyHr) ? DISP_E_EXCEPTION : S_OK) << Narrow(member.name) << withEvent;
          EXPECT_EQ(call.description, earlyError) << Narrow(member.name) << withEvent;
        }
      }

      UINT count = 9;
      UINT expected = 9;
      ASSERT_EQ(late->GetTypeInfoCount(&count), S_OK);
      DispatchGetTypeInfoCount(kind.iid, &expected);
      EXPECT_EQ(count, expected);
      com_ptr<ITypeInfo> viaFace, own;
      EXPECT_EQ(late->GetTypeInfo(0, 0, viaFace.put()), LibraryTypeInfo(kind.iid, own.put()));
      EXPECT_EQ(viaFace.get(), own.get()) << "the listener's own type information";
    }
    // IDispatch itself is the class's own interface.
    const auto dispatch = row.target.query<IDispatch>();
    EXPECT_NE(IdsOf(dispatch.get(), {OLESTR("CompareTo")})[0], DISPID_UNKNOWN) << row.object;
  }
  EXPECT_EQ(pairs, 16);
}

// A listener face reached by a client holding only that interface: the call
// runs the listener method, not the class method that shares its id.
TEST_F(ListenerFaces, InvokeRunsTheListenerMethodNotTheClassMethod) {
  com_ptr<IRecord> recordView;
  record->get_Record(recordView.put());
  Transcript heard;
  const auto recorder = MakeRecorder("view", heard);
  recordView->AddRecordChangeListener(recorder.get());
  const auto listener = recordView.query<IRecordChangeListener>();
  unique_variant argument;
  argument->vt = VT_DISPATCH;
  argument->pdispVal = Kinds()[0].event().detach();
  // Id 2 is CompareTo on the record and ValueBeforeChange on the listener.
  std::vector<VARIANTARG> args{argument.get()};
  DISPPARAMS params{args.data(), nullptr, 1, 0};
  EXPECT_EQ(listener->Invoke(2, GUID{}, 0, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(heard, (Transcript{"view.ValueBeforeChange(0)"}));
}

}  // namespace
}  // namespace brevo::testing
