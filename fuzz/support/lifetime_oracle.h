// The leak oracle: every library object an input made is gone once the input
// has released what it holds.
#pragma once

namespace brevo::fuzz {

class LifetimeOracle {
 public:
  LifetimeOracle() noexcept;
  // Ends the process with a message when the module lock count did not return
  // to its value at construction.
  void Check(const char* target) const;

 private:
  long before_;
};

}  // namespace brevo::fuzz
