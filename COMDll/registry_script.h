// Runs a registrar script (.rgs) against the classes root. The subset:
//
//   HKCR
//   {
//     NoRemove|ForceRemove 'name' = s 'default value'
//     {
//       val Name = s 'value'
//       ...nested keys...
//     }
//   }
//
// Names are 'quoted' or bare words; flags, the default value and the braces
// are optional; %NAME% stands for a variable's value and %% for %.
#pragma once

#include <span>
#include <string_view>

#include "platform/com.h"

namespace brevo {

enum class ScriptMode {
  kRegister,    // writes every key and value; a ForceRemove key is emptied first
  kUnregister,  // removes every key not marked NoRemove, with all below it
};

struct ScriptVariable {
  std::basic_string_view<OLECHAR> name;  // without the % marks
  std::basic_string_view<OLECHAR> value;
};

// What a script that does not parse, or names an unknown root or variable,
// returns; such a script writes nothing.
inline const HRESULT kMalformedScript = HRESULT_FROM_WIN32(ERROR_BADKEY);

// The script's text is in the ANSI code page. Stops at the first failing
// registry call and returns its result.
HRESULT RunRegistryScript(std::string_view script, std::span<const ScriptVariable> variables,
                          ScriptMode mode) noexcept;

}  // namespace brevo
