#include <cerrno>
#include <ctime>

#include "store/Environment.h"

namespace quillon::store {
namespace {

class SystemClock final : public Clock {
 public:
  // The coarse clock is a plain memory read; lock waits need no better than its few milliseconds.
  std::int64_t milliseconds() override {
    const timespec now = read(CLOCK_MONOTONIC_COARSE);
    return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
  }
  std::int64_t unixSeconds() override { return read(CLOCK_REALTIME).tv_sec; }
  void sleep(std::int64_t microseconds) override {
    if (microseconds <= 0) return;
    timespec left{microseconds / 1'000'000, microseconds % 1'000'000 * 1000};
    while (::clock_nanosleep(CLOCK_MONOTONIC, 0, &left, &left) == EINTR) {
    }
  }

 private:
  static timespec read(clockid_t id) {
    timespec now{};
    ::clock_gettime(id, &now);
    return now;
  }
};

}  // namespace

Clock& systemClock() {
  static SystemClock clock;
  return clock;
}

}  // namespace quillon::store
