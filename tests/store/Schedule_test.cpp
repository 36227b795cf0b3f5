// Schedules must repeat exactly, reach every order and let time pass for sleepers.

#include "support/Schedule.h"

#include <gtest/gtest.h>

#include <set>

namespace quillon::sim {
namespace {

struct Outcome {
  std::string order;
  std::vector<int> trace;
  std::int64_t time = 0;
};

// Three processes append their letter to one text, with a disk event before each.
template <class Choice>
Outcome letters(const Choice& choice) {
  SimDisk disk;
  SimClock clock;
  Schedule schedule(clock, choice);
  schedule.watch(disk);
  Outcome run;
  for (const char letter : {'a', 'b', 'c'}) {
    schedule.add([&run, &disk, letter] {
      const auto files = disk.process();
      for (int i = 0; i < 3; ++i) {
        files->exists("A.DAT");
        run.order += letter;
      }
    });
  }
  schedule.run();
  schedule.rethrow();
  return {run.order, schedule.trace(), clock.microseconds()};
}

TEST(Schedule, RepeatsFromItsSeedAndFromItsTrace) {
  std::set<std::string> orders;
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    const Outcome run = letters(seed);
    EXPECT_EQ(letters(seed).order, run.order) << seed;
    const Outcome again = letters(run.trace);
    EXPECT_EQ(again.order, run.order) << seed;
    EXPECT_EQ(again.trace, run.trace) << seed;
    EXPECT_EQ(again.time, run.time) << seed;
    orders.insert(run.order);
  }
  EXPECT_GT(orders.size(), 30u);
  EXPECT_EQ(letters(std::vector<int>{}).order, "aaabbbccc");
  EXPECT_EQ(letters(std::vector<int>{2, 2, 0}).order, "caaabbbcc");
}

TEST(Schedule, SleepersWakeAmongTheStepsOfOthersAndTimeJumpsWhenAllSleep) {
  SimDisk disk;
  SimClock clock;
  Schedule schedule(clock, std::vector<int>(40, 0));  // the sleeper goes first whenever it is awake
  schedule.watch(disk);
  std::string order;
  schedule.add([&] {
    clock.sleep(100);  // five yield points of the other
    order += 's';
    clock.sleep(60'000'000);
    order += 'S';
  });
  schedule.add([&] {
    const auto files = disk.process();
    for (int i = 0; i < 10; ++i) {
      files->exists("A.DAT");
      order += 'x';
      if (i == 6) clock.sleep(1'000'000);
    }
  });
  schedule.run();
  EXPECT_EQ(order, "xxxxsxxxxxxS");
  EXPECT_GE(clock.milliseconds(), 60'000);
  EXPECT_LT(clock.milliseconds(), 60'010);
  clock.sleep(5000);  // outside of the processes it simply passes
  EXPECT_GE(clock.milliseconds(), 60'005);
}

}  // namespace
}  // namespace quillon::sim
