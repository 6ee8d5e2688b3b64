// The five event objects: stopped flags, what the getters hand out, and the
// property-change event's strings and propagation id.
#include <functional>

#include "events/change_events.h"
#include "events/scripted_listener.h"

namespace brevo::testing {
namespace {

ULONG RefsOf(IUnknown* object) {
  object->AddRef();
  return object->Release();
}

// The flag after Initialize, after Stop, and after Initialize again.
template <class E, class... Args>
std::vector<VARIANT_BOOL> StoppedFlags(Args... args) {
  const auto event = make_object<E>();
  std::vector<VARIANT_BOOL> flags(3, 7);
  event->Initialize(args...);
  event->IsStopped(&flags[0]);
  event->Stop();
  event->IsStopped(&flags[1]);
  event->Initialize(args...);
  event->IsStopped(&flags[2]);
  return flags;
}

TEST(ChangeEvents, StoppedFlagIsOneOrZeroAndRunsBackwardsForColumns) {
  using Flags = std::vector<VARIANT_BOOL>;
  EXPECT_EQ(StoppedFlags<RecordChangeEvent>(nullptr, 3), (Flags{0, 1, 0}));
  EXPECT_EQ(StoppedFlags<RecordListChangeEvent>(nullptr, nullptr), (Flags{0, 1, 0}));
  EXPECT_EQ(StoppedFlags<RecordListValueChangeEvent>(nullptr, nullptr, 3), (Flags{0, 1, 0}));
  EXPECT_EQ(StoppedFlags<ColumnsChangeEvent>(nullptr, nullptr), (Flags{1, 0, 1}));
}

TEST(ChangeEvents, ReferenceGettersHandOutANewReferenceOrNull) {
  Transcript unused;
  const auto source = MakeScripted(unused, "source");
  const auto changed = MakeScripted(unused, "changed");
  IDispatch* const s = static_cast<IPropertyChangeListener*>(source.get());
  IDispatch* const c = static_cast<IColumnsChangeListener*>(changed.get());
  const auto columns = make_object<ColumnsChangeEvent>();
  const auto list = make_object<RecordListChangeEvent>();
  const auto value = make_object<RecordListValueChangeEvent>();
  const auto record = make_object<RecordChangeEvent>();
  const auto property = make_object<PropertyChangeEvent>();
  const auto initialize = [&](IDispatch* source, IDispatch* changed) {
    columns->Initialize(source, changed);
    list->Initialize(source, changed);
    value->Initialize(source, changed, 12);
    record->Initialize(source, -4);
    property->Initialize(source, nullptr, nullptr, nullptr);
  };
  const std::pair<std::function<HRESULT(IDispatch**)>, IDispatch*> getters[] = {
      {[&](IDispatch** out) { return columns->GetSource(out); }, s},
      {[&](IDispatch** out) { return columns->GetColumnChanged(out); }, c},
      {[&](IDispatch** out) { return list->GetSource(out); }, s},
      {[&](IDispatch** out) { return list->GetRecordChanged(out); }, c},
      {[&](IDispatch** out) { return value->GetSource(out); }, s},
      {[&](IDispatch** out) { return value->GetRecordChanged(out); }, c},
      {[&](IDispatch** out) { return record->GetSource(out); }, s},
      {[&](IDispatch** out) { return property->GetSource(out); }, s},
  };
  initialize(s, c);
  for (const auto& [get, expected] : getters) {
    const ULONG before = RefsOf(expected);
    com_ptr<IDispatch> got;
    EXPECT_EQ(get(got.put()), S_OK);
    EXPECT_EQ(got.get(), expected);
    EXPECT_EQ(RefsOf(expected), before + 1);
  }
  LONG index = 0;
  EXPECT_EQ(value->GetIndex(&index), S_OK);
  EXPECT_EQ(index, 12);
  EXPECT_EQ(record->GetIndex(&index), S_OK);
  EXPECT_EQ(index, -4);

  initialize(nullptr, nullptr);
  for (const auto& [get, expected] : getters) {
    com_ptr<IDispatch> got(expected);
    EXPECT_EQ(get(got.put()), S_OK);
    EXPECT_FALSE(got);
  }
  ClearErrorInfo();
}

// A missing out-pointer is refused before anything is made for it: no
// reference may be taken that could not be handed out.
TEST(ChangeEvents, NullOutPointerIsRefusedWithoutTakingAReference) {
  Transcript unused;
  const auto source = MakeScripted(unused, "source");
  IDispatch* const s = static_cast<IPropertyChangeListener*>(source.get());
  const auto columns = make_object<ColumnsChangeEvent>();
  columns->Initialize(s, s);
  EXPECT_EQ(columns->IsStopped(nullptr), E_POINTER);
  for (const auto getter : {&IColumnsChangeEvent::GetSource, &IColumnsChangeEvent::GetColumnChanged}) {
    const ULONG before = RefsOf(s);
    EXPECT_EQ((columns.get()->*getter)(nullptr), E_POINTER);
    EXPECT_EQ(RefsOf(s), before) << "took a reference it could not hand out";
  }
  ClearErrorInfo();
}

TEST(PropertyChangeEvent, KeepsStringsExactly) {
  const _bstr_t text(OLESTR("Na\x00e9me")), empty(OLESTR("")), none;
  const auto event = make_object<PropertyChangeEvent>();
  ASSERT_EQ(event->Initialize(nullptr, text.GetBSTR(), empty.GetBSTR(), none.GetBSTR()), S_OK);
  BSTR out = nullptr;
  event->GetPropertyName(&out);
  EXPECT_EQ(_bstr_t(out, false), text);
  event->GetOldValue(&out);
  const _bstr_t oldValue(out, false);
  EXPECT_TRUE(!oldValue.is_null() && oldValue.length() == 0) << "empty stays empty";
  event->GetNewValue(&out);
  EXPECT_EQ(out, nullptr);
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
    EXPECT_EQ(first.refs, 3u);
    id.reset();
    event->SetPropagationId(&second);
    EXPECT_EQ(first.refs, 1u);
    EXPECT_EQ(second.refs, 2u);
  }
  EXPECT_EQ(second.refs, 1u) << "released with the event";
}

}  // namespace
}  // namespace brevo::testing
