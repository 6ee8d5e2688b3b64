// The Enable...Events switch of a raising object, and the uncounted back link.
#include "events/events_switch.h"
#include "events/weak_reference.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

// Steps: "on" (-1), "one" (1), "off" (0), or "mark N". The transcript gets one
// line per summary and the final state.
std::vector<std::string> RunSteps(const std::vector<std::string>& steps) {
  EventsSwitch<3> events;
  std::vector<std::string> heard;
  const auto summary = [&](std::size_t kind) {
    heard.push_back("summary " + std::to_string(kind) + (events.enabled() ? " while on" : " while off"));
  };
  for (const std::string& step : steps) {
    if (step == "on") events.Switch(VARIANT_TRUE, summary);
    if (step == "one") events.Switch(1, summary);
    if (step == "off") events.Switch(VARIANT_FALSE, summary);
    if (step.starts_with("mark ")) events.MarkPending(std::stoul(step.substr(5)));
  }
  std::string state = events.enabled() ? "on, pending:" : "off, pending:";
  for (std::size_t kind = 0; kind < 3; ++kind) {
    if (events.pending(kind)) state += " " + std::to_string(kind);
  }
  heard.push_back(state);
  return heard;
}

TEST(EventsSwitch, SummarisesPendingKindsOnlyWhenSwitchedBackOn) {
  struct Case {
    const char* what;
    std::vector<std::string> steps;
    std::vector<std::string> heard;
  };
  const Case cases[] = {
      {"starts on with nothing pending", {}, {"on, pending:"}},
      {"off to on, in kind order, before it reads on",
       {"off", "mark 2", "mark 0", "mark 2", "on"},
       {"summary 0 while off", "summary 2 while off", "on, pending:"}},
      {"off to 1 is switching on too", {"off", "mark 1", "one"}, {"summary 1 while off", "on, pending:"}},
      {"the current value changes nothing", {"mark 1", "on", "off", "mark 2", "off"}, {"off, pending: 2"}},
      {"on to off clears without a summary", {"mark 1", "off", "on"}, {"on, pending:"}},
      {"-1 to 1 clears without a summary", {"mark 0", "one"}, {"on, pending:"}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(RunSteps(c.steps), c.heard) << c.what;
  }
}

TEST(WeakReference, HoldsWithoutCounting) {
  CountedObject target;
  WeakReference<IUnknown> link(&target);
  WeakReference<IUnknown> copy = link;
  EXPECT_EQ(target.refs, 1u);
  EXPECT_EQ(copy.get(), &target);
  link.reset();
  EXPECT_FALSE(link);
  EXPECT_EQ(target.refs, 1u);
}

}  // namespace
}  // namespace brevo::testing
