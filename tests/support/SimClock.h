#pragma once

#include <functional>

#include "store/Environment.h"

namespace quillon::sim {

// Time that passes only by sleeping. A hook, when set, takes the sleep over and moves the time itself (Schedule does).
class SimClock final : public store::Clock {
 public:
  std::int64_t milliseconds() override { return microseconds_ / 1000; }
  std::int64_t unixSeconds() override { return kEpoch + microseconds_ / 1'000'000; }
  void sleep(std::int64_t microseconds) override {
    if (onSleep_) {
      onSleep_(microseconds);
    } else {
      advance(microseconds);
    }
  }
  std::int64_t microseconds() const { return microseconds_; }
  void advance(std::int64_t microseconds) { microseconds_ += microseconds; }
  void onSleep(std::function<void(std::int64_t)> hook) { onSleep_ = std::move(hook); }

 private:
  static constexpr std::int64_t kEpoch = 1'700'000'000;  // any day will do, as long as it is the same in every run
  std::int64_t microseconds_ = 0;
  std::function<void(std::int64_t)> onSleep_;
};

}  // namespace quillon::sim
