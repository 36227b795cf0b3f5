#pragma once

#include "store/Errors.h"

namespace quillon::sim {

// The code of the store's error that a call raises; Code{} for none.
template <typename Call>
store::Code codeOf(const Call& call) {
  try {
    call();
    return {};
  } catch (const store::StoreError& error) {
    return error.code();
  }
}

}  // namespace quillon::sim
