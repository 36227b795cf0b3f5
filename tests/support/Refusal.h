#pragma once

#include <functional>
#include <string>

#include "base/Errors.h"

namespace quillon::sim {

// What a call that is refused says; empty when it is not.
inline std::string refusalOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const Error& error) {
    return error.what();
  }
  return "";
}

}  // namespace quillon::sim
