#pragma once

#include <stdexcept>
#include <string>

namespace quillon {

// A failure whose message is meant for the person at the screen.
class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A silent end: the command stops and nothing is shown.
class Abort : public std::exception {
 public:
  const char* what() const noexcept override { return "aborted"; }
};

}  // namespace quillon
