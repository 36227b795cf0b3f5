#pragma once

#include <algorithm>
#include <cstdint>

#include "store/Environment.h"

namespace quillon::store {

// Waiting for a lock that is held for moments only: from 50 µs up to 5 ms a try, up to a minute in all.
class Backoff {
 public:
  explicit Backoff(Clock& clock) : clock_(clock), start_(clock.milliseconds()) {}
  // Sleeps; false when the minute is over.
  bool wait() {
    if (clock_.milliseconds() - start_ > kLimitMilliseconds) return false;
    clock_.sleep(pause_);
    pause_ = std::min<std::int64_t>(pause_ * 2, kLongest);
    return true;
  }

 private:
  static constexpr std::int64_t kLimitMilliseconds = 60000;
  static constexpr std::int64_t kLongest = 5000;
  Clock& clock_;
  std::int64_t start_;
  std::int64_t pause_ = 50;
};

}  // namespace quillon::store
