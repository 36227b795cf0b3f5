#pragma once

#include <concepts>
#include <exception>
#include <utility>

namespace quillon::form {

// The steps by which something ends: each is done whatever the ones before it raised.
class Ending {
 public:
  template <std::invocable Step>
  void step(Step&& step) {
    try {
      std::forward<Step>(step)();
    } catch (...) {
      if (!first_) first_ = std::current_exception();
    }
  }
  // Passes on the first error of the steps, if there was one.
  void raise() {
    if (first_) std::rethrow_exception(std::exchange(first_, nullptr));
  }

 private:
  std::exception_ptr first_;
};

}  // namespace quillon::form
