// Messages that carry a number: narrow text with the number in unsigned
// decimal, widened with the ANSI code page.
#pragma once

#include <string>

#include "core/bstr_t.h"
#include "core/number_text.h"

namespace brevo {

inline _bstr_t MessageWithIndex(const char* text, ULONG index) {
  return _bstr_t((std::string(text) + FormatUnsigned(index)).c_str());
}

}  // namespace brevo
