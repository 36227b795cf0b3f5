#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace quillon::sim {

// An environment variable with another value, or without one, until the end of the scope.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const std::optional<std::string>& value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    put(value);
  }
  ~ScopedVariable() { put(before_); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  void put(const std::optional<std::string>& value) const {
    if (value)
      ::setenv(name_, value->c_str(), 1);
    else
      ::unsetenv(name_);
  }

  const char* name_;
  std::optional<std::string> before_;
};

}  // namespace quillon::sim
