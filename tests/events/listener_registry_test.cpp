// The listener registry's passes, the Enable...Events switch, and the event
// objects' stopped flags and propagation id. Vetoes, removal by COM identity
// and the reference getters are checked on the raising objects.
#include "events/change_events.h"
#include "events/events_switch.h"
#include "events/lazy_event.h"
#include "events/listener_registry.h"
#include "events/scripted_listener.h"

namespace brevo::testing {
namespace {

// Record change events at index 5, made only when someone listens.
struct Registry {
  ~Registry() { ClearErrorInfo(); }
  CComObject<ScriptedListener>* Add(const char* name) {
    listeners.push_back(MakeScripted(transcript, name));
    records.Add(listeners.back().get());
    return listeners.back().get();
  }
  // Runs a pass; tells the code and message it fails with.
  std::pair<HRESULT, std::string> Pass(bool before) try {
    auto event = MakeLazyEvent<RecordChangeEvent>(
        [](RecordChangeEvent& e) { e.RecordChangeEventImpl::Initialize(nullptr, 5); });
    if (before) records.NotifyBefore(&IRecordChangeListener::ValueBeforeChange, std::move(event));
    else records.NotifyAfter(&IRecordChangeListener::ValueAfterChange, std::move(event));
    return {S_OK, ""};
  } catch (const _com_error& e) {
    return {e.Error(), Narrow(e.Description())};
  }
  Transcript transcript;
  std::vector<com_ptr<CComObject<ScriptedListener>>> listeners;
  ListenerRegistry<IRecordChangeListener> records{OLESTR("Cannot remove the test listener.")};
};

// Duplicates are heard twice and removed one at a time; a listener added
// during a pass is called in it; a null entry fails when its turn comes.
TEST(ListenerRegistry, BeforePassCallsEachEntryInOrderUpToANullOne) {
  Registry r;
  auto* a = r.Add("a");
  r.Add("b")->during = [&] {
    if (r.records.size() == 1) r.records.Add(MakeScripted(r.transcript, "late").get());
  };
  r.records.Add(a);
  r.Pass(true);
  r.records.Remove(a);
  r.Pass(true);
  r.records.Remove(a);
  r.Pass(true);
  r.records.Add(nullptr);
  r.Add("c");
  EXPECT_EQ(r.Pass(true).first, E_POINTER);
  const std::string a5 = "a.ValueBeforeChange(5)", b5 = "b.ValueBeforeChange(5)", late5 = "late.ValueBeforeChange(5)";
  EXPECT_EQ(r.transcript, (Transcript{a5, b5, a5, b5, a5, b5, late5, b5, late5}));
}

// The listener's error info travels only when it says it supports it.
TEST(ListenerRegistry, AfterPassIgnoresStopAndEndsAtAFailureWithItsResult) {
  for (const bool supports : {true, false}) {
    Registry r;
    r.Add("a")->stop = true;
    auto* b = r.Add("b");
    b->result = static_cast<HRESULT>(0x80040123);
    b->errorText = OLESTR("Told by the listener.");
    b->supportsErrorInfo = supports;
    r.Add("c");
    const std::string told = supports ? "Told by the listener." : "<null>";
    EXPECT_EQ(r.Pass(false), std::make_pair(static_cast<HRESULT>(0x80040123), told));
    EXPECT_EQ(r.transcript, (Transcript{"a.ValueAfterChange(5)", "b.ValueAfterChange(5)"}));
  }
}

// Steps: T switches to -1, O to 1, F to 0; a digit marks that kind pending.
// Heard: each summary's kind with + or - for how the switch read meanwhile,
// then the final state and the kinds still pending.
TEST(EventsSwitch, SummarisesPendingKindsOnlyWhenSwitchedBackOn) {
  const struct { const char* what; std::string steps, heard; } cases[] = {
      {"off to on, in kind order, before it reads on", "F202T", "0- 2- on:"},
      {"off to 1 is switching on too", "F1O", "1- on:"},
      {"-1 to 1 clears without a summary", "0O", "on:"},
  };
  for (const auto& c : cases) {
    EventsSwitch<3> events;
    std::string heard;
    const auto summary = [&](std::size_t kind) { heard += std::to_string(kind) + (events.enabled() ? "+ " : "- "); };
    for (const char step : c.steps) {
      if (step >= '0' && step <= '2') events.MarkPending(static_cast<std::size_t>(step - '0'));
      else events.Switch(step == 'T' ? VARIANT_TRUE : step == 'O' ? 1 : VARIANT_FALSE, summary);
    }
    heard += events.enabled() ? "on:" : "off:";
    for (std::size_t kind = 0; kind < 3; ++kind) heard += events.pending(kind) ? " " + std::to_string(kind) : "";
    EXPECT_EQ(heard, c.heard) << c.what;
  }
}

// The stopped flag after Initialize and after Stop: 0 and 1, backwards for columns.
TEST(ChangeEvents, StoppedFlagIsOneOrZeroAndRunsBackwardsForColumns) {
  const auto flags = [](auto event, auto... args) {
    std::pair<VARIANT_BOOL, VARIANT_BOOL> flags{7, 7};
    event->Initialize(args...);
    event->IsStopped(&flags.first);
    event->Stop();
    event->IsStopped(&flags.second);
    return flags;
  };
  const std::pair<VARIANT_BOOL, VARIANT_BOOL> kept(0, 1), inverted(1, 0);
  EXPECT_EQ(flags(make_object<RecordListValueChangeEvent>(), nullptr, nullptr, 3), kept);
  EXPECT_EQ(flags(make_object<ColumnsChangeEvent>(), nullptr, nullptr), inverted);
}

TEST(PropertyChangeEvent, PropagationIdIsCountedAndReplacedOnlyByAnotherObject) {
  CountedObject first, second;
  {
    const auto event = make_object<PropertyChangeEvent>();
    com_ptr<IUnknown> id;
    EXPECT_EQ(event->GetPropagationId(id.put()), S_OK);
    EXPECT_FALSE(id);
    event->SetPropagationId(&first);
    event->SetPropagationId(&first);
    EXPECT_EQ(first.refs, 2u) << "the same id again takes no further reference";
    EXPECT_EQ(event->GetPropagationId(id.put()), S_OK);
    EXPECT_EQ(id.get(), &first);
    event->SetPropagationId(&second);
    EXPECT_EQ(first.refs, 2u) << "only the caller's reference is left";
    EXPECT_EQ(second.refs, 2u);
  }
  EXPECT_EQ(second.refs, 1u) << "released with the event";
}

}  // namespace
}  // namespace brevo::testing
