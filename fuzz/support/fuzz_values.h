// Values for the library's parameters read from the input: VARIANTs of every
// kind the runtime knows (plain, by reference, as arrays) and of kinds it
// refuses, odd-length and null strings, NaN, infinities and the integer limits.
#pragma once

#include <array>
#include <deque>
#include <vector>

#include "core/bstr_t.h"
#include "core/com_ptr.h"
#include "core/unique_variant.h"
#include "fuzz/support/byte_reader.h"

namespace brevo::fuzz {

class ValueMaker {
 public:
  explicit ValueMaker(ByteReader& in) : in_(in) {}

  // Objects a VT_UNKNOWN / VT_DISPATCH value may carry (null is always possible).
  void Offer(IUnknown* object) { objects_.emplace_back(object); }
  void Forget() { objects_.clear(); }

  // By-reference values point into storage owned by this maker: keep the
  // maker alive while the value is in use.
  unique_variant Value();
  _bstr_t Text();
  // An object offered before, or null.
  com_ptr<IUnknown> Object();
  // Every object Object() has handed out.
  const std::vector<com_ptr<IUnknown>>& Handed() const noexcept { return handed_; }
  double Real();
  float Single();
  LONGLONG Int64();
  LONG Int32();
  SHORT Int16();
  VARIANT_BOOL Boolean();

 private:
  void FillPlain(VARIANT& value, VARTYPE base);
  void PointAt(VARIANT& value, VARTYPE base);

  ByteReader& in_;
  std::vector<com_ptr<IUnknown>> objects_;
  std::vector<com_ptr<IUnknown>> handed_;
  std::deque<unique_variant> pointees_;
  std::deque<std::array<unsigned char, 16>> raw_;
};

}  // namespace brevo::fuzz
