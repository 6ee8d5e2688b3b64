// Capacity made ahead of a change, so that the push_backs that make the change
// cannot fail halfway. Growth stays geometric, as push_back's own.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace brevo {

template <class T>
void RoomFor(std::vector<T>& items, std::size_t size) {
  if (size > items.capacity()) items.reserve(std::max(size, items.capacity() * 2));
}

}  // namespace brevo
