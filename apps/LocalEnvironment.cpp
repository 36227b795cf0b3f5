#include "apps/LocalEnvironment.h"

#include <unistd.h>

#include <ctime>

#include "platform/Account.h"

namespace quillon::apps {

namespace {

// The machine's time of day on another day.
class DayClock final : public store::Clock {
 public:
  explicit DayClock(Date day) : day_(day) {}
  std::int64_t milliseconds() override { return store::systemClock().milliseconds(); }
  void sleep(std::int64_t microseconds) override { store::systemClock().sleep(microseconds); }
  std::int64_t unixSeconds() override {
    const auto now = static_cast<std::time_t>(store::systemClock().unixSeconds());
    std::tm local{};
    localtime_r(&now, &local);
    local.tm_year = day_.year() - 1900;
    local.tm_mon = static_cast<int>(day_.month()) - 1;
    local.tm_mday = static_cast<int>(day_.day());
    local.tm_isdst = -1;
    return std::mktime(&local);
  }

 private:
  Date day_;
};

}  // namespace

LocalEnvironment::LocalEnvironment(std::optional<Date> today)
    : givenDay_(today ? std::make_unique<DayClock>(*today) : nullptr),
      environment_{.files = files_,
                   .clock = givenDay_ ? *givenDay_ : store::systemClock(),
                   .user = platform::userName(),
                   .machine = platform::machineName(),
                   .process = ::getpid()} {}

}  // namespace quillon::apps
