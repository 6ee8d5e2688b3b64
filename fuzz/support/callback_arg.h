// The pointer a client passes where the library takes callback interface I:
// the object's own I when it has one, else (a script object) its IDispatch
// posing as I, which the library recognises and wraps.
#pragma once

#include "core/com_ptr.h"

namespace brevo::fuzz {

template <class I>
class CallbackArg {
 public:
  explicit CallbackArg(IUnknown* object) {
    const com_ptr<IUnknown> held(object);
    typed_ = held.try_query<I>();
    if (!typed_) script_ = held.try_query<IDispatch>();
  }
  I* get() const noexcept { return typed_ ? typed_.get() : reinterpret_cast<I*>(script_.get()); }

 private:
  com_ptr<I> typed_;
  com_ptr<IDispatch> script_;
};

}  // namespace brevo::fuzz
