// The listener registry: order, duplicates, removal by identity, the "Before"
// pass with its veto, the "After" pass, failures, and events made lazily.
#include "events/change_events.h"
#include "events/lazy_event.h"
#include "events/listener_registry.h"
#include "events/scripted_listener.h"

namespace brevo::testing {
namespace {

// The same listeners in a registry for each kind of "Before" event.
struct Registries {
  ~Registries() { ClearErrorInfo(); }

  CComObject<ScriptedListener>* Add(const char* name) {
    listeners.push_back(MakeScripted(transcript, name));
    records.Add(listeners.back().get());
    columns.Add(listeners.back().get());
    return listeners.back().get();
  }
  bool BeforeRecord() {
    const auto event = make_object<RecordChangeEvent>();
    event->Initialize(nullptr, 5);
    return records.NotifyBefore(&IRecordChangeListener::ValueBeforeChange, event.get());
  }
  bool BeforeColumn() {
    const auto event = make_object<ColumnsChangeEvent>();
    event->Initialize(nullptr, nullptr);
    return columns.NotifyBefore(&IColumnsChangeListener::ColumnBeforeAdd, event.get());
  }
  HRESULT After() try {
    const auto event = make_object<RecordChangeEvent>();
    event->Initialize(nullptr, 1);
    records.NotifyAfter(&IRecordChangeListener::ValueAfterChange, event.get());
    return S_OK;
  } catch (const _com_error& e) {
    failure = Narrow(e.Description());
    return e.Error();
  }

  Transcript transcript;
  std::string failure;
  std::vector<com_ptr<CComObject<ScriptedListener>>> listeners;
  ListenerRegistry<IRecordChangeListener> records{OLESTR("Cannot remove the test listener.")};
  ListenerRegistry<IColumnsChangeListener> columns{OLESTR("Cannot remove the test listener.")};
};

std::string RemovalMessage(auto& registry, auto* listener) {
  try {
    registry.Remove(listener);
  } catch (const EBvException& e) {
    return Narrow(e.GetDescription());
  }
  return "removed";
}

TEST(ListenerRegistry, DuplicatesAreHeardTwiceAndTheFirstIsRemovedFirst) {
  Registries r;
  auto* a = r.Add("a");
  r.Add("b");
  r.records.Add(a);
  EXPECT_TRUE(r.BeforeRecord());
  r.records.Remove(a);
  EXPECT_TRUE(r.BeforeRecord());
  r.records.Remove(a);
  EXPECT_EQ(RemovalMessage(r.records, a), "Cannot remove the test listener.");
  EXPECT_EQ(r.transcript, (Transcript{"a.ValueBeforeChange(5)", "b.ValueBeforeChange(5)", "a.ValueBeforeChange(5)",
                                      "b.ValueBeforeChange(5)", "a.ValueBeforeChange(5)"}));
}

TEST(ListenerRegistry, RemovalMatchesTheComIdentity) {
  Transcript transcript;
  const auto a = MakeScripted(transcript, "a");
  const auto b = MakeScripted(transcript, "b");
  IDispatch* const viaProperty = static_cast<IPropertyChangeListener*>(a.get());
  IDispatch* const viaColumns = static_cast<IColumnsChangeListener*>(a.get());
  ASSERT_NE(viaProperty, viaColumns);
  ListenerRegistry<IDispatch> any{OLESTR("Cannot remove.")};
  any.Add(viaProperty);
  any.Add(static_cast<IPropertyChangeListener*>(b.get()));
  any.Remove(viaColumns);
  EXPECT_EQ(any.size(), 1u);
  EXPECT_EQ(RemovalMessage(any, viaColumns), "Cannot remove.");
}

TEST(ListenerRegistry, BeforePassEndsAfterTheListenerThatLeavesTheEventStopped) {
  struct Case {
    const char* what;
    bool columnsEvent;
    bool firstStops;
    bool goesOn;
    Transcript heard;
  };
  const Case cases[] = {
      {"record, nobody stops", false, false, true, {"a.ValueBeforeChange(5)", "b.ValueBeforeChange(5)"}},
      {"record, first stops", false, true, false, {"a.ValueBeforeChange(5)"}},
      // The columns event starts stopped: only Stop lets the pass go on.
      {"columns, nobody stops", true, false, false, {"a.ColumnBeforeAdd"}},
      {"columns, first stops", true, true, true, {"a.ColumnBeforeAdd", "b.ColumnBeforeAdd"}},
  };
  for (const Case& c : cases) {
    Registries r;
    r.Add("a")->stop = c.firstStops;
    r.Add("b");
    EXPECT_EQ(c.columnsEvent ? r.BeforeColumn() : r.BeforeRecord(), c.goesOn) << c.what;
    EXPECT_EQ(r.transcript, c.heard) << c.what;
  }
}

TEST(ListenerRegistry, BeforePassCallsListenersAddedDuringItAndFailsAtANullEntry) {
  Registries r;
  r.Add("a")->during = [&] {
    if (r.records.size() == 2) r.records.Add(MakeScripted(r.transcript, "late").get());
  };
  r.Add("b");
  EXPECT_TRUE(r.BeforeRecord());
  r.records.Add(nullptr);
  r.Add("c");
  try {
    r.BeforeRecord();
    ADD_FAILURE() << "a null entry was skipped";
  } catch (const _com_error& e) {
    EXPECT_EQ(e.Error(), E_POINTER);
  }
  EXPECT_EQ(r.transcript, (Transcript{"a.ValueBeforeChange(5)", "b.ValueBeforeChange(5)", "late.ValueBeforeChange(5)",
                                      "a.ValueBeforeChange(5)", "b.ValueBeforeChange(5)", "late.ValueBeforeChange(5)"}));
}

TEST(ListenerRegistry, AfterPassIgnoresStopAndEndsAtAFailureWithItsResult) {
  for (const bool supports : {true, false}) {
    Registries r;
    r.Add("a")->stop = true;
    auto* b = r.Add("b");
    b->result = static_cast<HRESULT>(0x80040123);
    b->errorText = OLESTR("Told by the listener.");
    b->supportsErrorInfo = supports;
    r.Add("c");
    EXPECT_EQ(r.After(), static_cast<HRESULT>(0x80040123));
    // The listener's error info travels only when it says it supports it.
    EXPECT_EQ(r.failure, supports ? "Told by the listener." : "<null>");
    EXPECT_EQ(r.transcript, (Transcript{"a.ValueAfterChange(1)", "b.ValueAfterChange(1)"}));
  }
}

TEST(ListenerRegistry, LazyEventIsMadeOnlyWhenSomeoneListens) {
  Registries r;
  int made = 0;
  const auto init = [&](RecordChangeEvent& e) {
    ++made;
    e.RecordChangeEventImpl::Initialize(nullptr, 9);
  };
  {
    auto unheard = MakeLazyEvent<RecordChangeEvent>(init);
    EXPECT_TRUE(r.records.NotifyBefore(&IRecordChangeListener::ValueBeforeChange, unheard));
    r.records.NotifyAfter(&IRecordChangeListener::ValueAfterChange, unheard);
    EXPECT_EQ(made, 0);
    EXPECT_EQ(ModuleLock::Count(), 0);
  }
  r.Add("a");
  r.Add("b");
  auto heard = MakeLazyEvent<RecordChangeEvent>(init);
  EXPECT_TRUE(r.records.NotifyBefore(&IRecordChangeListener::ValueBeforeChange, heard));
  r.records.NotifyAfter(&IRecordChangeListener::ValueAfterChange, heard);
  EXPECT_EQ(made, 1) << "one event for every listener and both passes";
  EXPECT_EQ(r.transcript, (Transcript{"a.ValueBeforeChange(9)", "b.ValueBeforeChange(9)", "a.ValueAfterChange(9)",
                                      "b.ValueAfterChange(9)"}));
}

}  // namespace
}  // namespace brevo::testing
