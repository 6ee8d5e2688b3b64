// Element access with the runtime's bounds check: an index outside the
// container ends the process through the invalid-parameter path.
#pragma once

#include <cstddef>

#include "platform/com.h"

namespace brevo {

template <class Container>
auto& CheckedAt(Container& container, std::size_t index) {
  if (index >= container.size()) platform::InvalidParameter();
  return container[index];
}

}  // namespace brevo
