// The registrar-script runner, below a scratch key of the classes root.
#include <vector>

#include "COMDll/registry_script.h"
#include "support/test_support.h"

namespace brevo::testing {
namespace {

constexpr const char* kTree = R"(
HKCR
{
  NoRemove BrevoScriptTest
  {
    NoRemove Kept = s 'kept'
    {
      'Gone %ID%' = s '100%%'
      {
        val Name = s '%ID%'
        Deep = s 'deep'
      }
    }
    Plain = s 'plain'
  }
})";

struct Read {
  const OLECHAR* key;
  const OLECHAR* name;
  const char* value;
};

struct Case {
  const char* what;
  const char* script;
  ScriptMode mode;
  std::vector<Read> after;
};

// A value the scripts do not name, below a key they do.
const Read kStale{OLESTR("BrevoScriptTest\\Kept\\Stale"), nullptr, "stale"};

// Each case starts from the stale value alone, or with kTree registered for
// unregistering.
TEST(RegistryScript, WritesRemovesAndRefusesAsTheScriptSays) {
  const std::vector<Case> cases = {
      {"register: nested keys, defaults, named values, variables, quoted and bare names", kTree,
       ScriptMode::kRegister,
       {kStale,
        {OLESTR("BrevoScriptTest\\Kept"), nullptr, "kept"},
        {OLESTR("BrevoScriptTest\\Kept\\Gone {0A}"), nullptr, "100%"},
        {OLESTR("BrevoScriptTest\\Kept\\Gone {0A}"), OLESTR("Name"), "{0A}"},
        {OLESTR("BrevoScriptTest\\Kept\\Gone {0A}\\Deep"), nullptr, "deep"},
        {OLESTR("BrevoScriptTest\\Plain"), nullptr, "plain"}}},
      {"unregister: NoRemove keys stay and are looked into, the others go with all below", kTree,
       ScriptMode::kUnregister,
       {kStale,
        {OLESTR("BrevoScriptTest\\Kept"), nullptr, "kept"},
        {OLESTR("BrevoScriptTest\\Kept\\Gone {0A}"), OLESTR("Name"), "<missing>"},
        {OLESTR("BrevoScriptTest\\Kept\\Gone {0A}\\Deep"), nullptr, "<missing>"},
        {OLESTR("BrevoScriptTest\\Plain"), nullptr, "<missing>"}}},
      {"ForceRemove clears the key before writing it", "HKCR { BrevoScriptTest { ForceRemove Kept = s 'fresh' } }",
       ScriptMode::kRegister, {{OLESTR("BrevoScriptTest\\Kept"), nullptr, "fresh"}, {kStale.key, nullptr, "<missing>"}}},
      {"keywords and the root in any case", "hkcr { noremove BrevoScriptTest { Plain { VAL v = S 'x' } } }",
       ScriptMode::kRegister, {{OLESTR("BrevoScriptTest\\Plain"), OLESTR("v"), "x"}}},
  };
  // Each would write Early before its fault.
  const char* const malformed[] = {
      "HKCR { BrevoScriptTest { Early = s 'e' Late = s '%NOPE%' } }",
      "HKCR { BrevoScriptTest { Early = s 'e' Late = s '50%' } }",
      "HKCR { BrevoScriptTest { Early = s 'e' Late = s 'open } }",
      "HKCR { BrevoScriptTest { Early = s 'e' Late = d '1' } }",
      "HKCR { BrevoScriptTest { Early = s 'e' '' = s 'unnamed' } }",
      "HKCR { BrevoScriptTest { Early = s 'e' Late { } }",
      "HKCR { BrevoScriptTest { Early = s 'e' } } HKLM { Software }",
  };
  const ScriptVariable variables[] = {{OLESTR("ID"), OLESTR("{0A}")}};
  const auto run = [&](const char* script, ScriptMode mode) { return RunRegistryScript(script, variables, mode); };
  const auto reset = [&](const char* tree) {
    ASSERT_EQ(platform::DeleteRegistryTree(OLESTR("BrevoScriptTest")), S_OK);
    ASSERT_EQ(platform::SetRegistryString(kStale.key, nullptr, OLESTR("stale")), S_OK);
    if (tree != nullptr) {
      ASSERT_EQ(run(tree, ScriptMode::kRegister), S_OK);
    }
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    reset(c.mode == ScriptMode::kUnregister ? c.script : nullptr);
    EXPECT_EQ(run(c.script, c.mode), S_OK);
    for (const Read& read : c.after) EXPECT_EQ(ReadRegistry(read.key, read.name), read.value) << Narrow(read.key);
  }
  for (const char* script : malformed) {
    SCOPED_TRACE(script);
    reset(nullptr);
    EXPECT_EQ(run(script, ScriptMode::kRegister), kMalformedScript);
    EXPECT_EQ(ReadRegistry(OLESTR("BrevoScriptTest\\Early")), "<missing>");
  }
  EXPECT_EQ(platform::DeleteRegistryTree(OLESTR("BrevoScriptTest")), S_OK);
}

}  // namespace
}  // namespace brevo::testing
