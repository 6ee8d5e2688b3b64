// The read-only views an object hands out. The object holds a counted
// reference to its current view only; every view it ever made is known without
// a count, so that each can be told when the object goes, and a view leaves
// the set when it dies. A view that Clear dropped therefore keeps presenting
// its object for as long as both live.
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "core/com_ptr.h"

namespace brevo {

template <class ViewImpl, class Interface>
class ViewSet {
 public:
  ViewSet() = default;
  ViewSet(const ViewSet&) = delete;
  ViewSet& operator=(const ViewSet&) = delete;

  // The current view; make() gives a new view object when there is none.
  template <class Make>
  com_ptr<Interface> Current(Make&& make) {
    if (!current_) {
      auto made = make();
      all_.push_back(made.get());
      current_ = com_ptr<Interface>(made.get());
    }
    return current_;
  }
  // The next request makes a new view; the dropped one stays bound.
  void DropCurrent() noexcept { current_.reset(); }
  // The object goes: every view answers E_POINTER from now on.
  void OwnerGone() noexcept {
    for (ViewImpl* view : std::exchange(all_, {})) view->ParentGone();
  }
  void Forget(ViewImpl* view) noexcept { std::erase(all_, view); }

 private:
  com_ptr<Interface> current_;
  std::vector<ViewImpl*> all_;
};

}  // namespace brevo
