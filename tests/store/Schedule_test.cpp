// Schedules must repeat exactly, reach every order, let time pass for sleepers and end the killed.

#include "support/Schedule.h"

#include <gtest/gtest.h>

#include <set>

namespace quillon::sim {
namespace {

using store::LockMode;
using store::OpenMode;

Bytes bytes(std::string_view text) { return std::as_bytes(std::span(text)); }

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

// Two processes add to a number in a file under a lock that they wait for by sleeping; with the lock no addition is
// lost in any order, without it some order must lose one.
int added(std::uint64_t seed, bool locking, int killedAt) {
  SimDisk disk;
  SimClock clock;
  Schedule schedule(clock, seed);
  disk.process()->open("N", OpenMode::create)->write(0, bytes(std::string(1, '\0')));
  schedule.watch(disk);
  int done = 0;
  for (int p = 0; p < 3; ++p) {
    const auto files = std::make_shared<std::unique_ptr<store::FileSystem>>(disk.process());
    const int number = disk.lastProcess();
    schedule.add(
        [&, files] {
          const auto file = (*files)->open("N", OpenMode::existing);
          for (int i = 0; i < 4; ++i) {
            while (locking && !file->lock(9, 1, LockMode::exclusive)) clock.sleep(50);
            char n = 0;
            file->read(0, &n, 1);
            ++n;
            file->write(0, bytes(std::string(1, n)));
            ++done;
            if (locking) file->unlock(9, 1);
          }
        },
        [&disk, number] { disk.killProcess(number); });
  }
  if (killedAt > 0) schedule.killAt(0, static_cast<std::uint64_t>(killedAt));
  schedule.run();
  schedule.rethrow();
  EXPECT_EQ(schedule.killed(0), killedAt > 0);
  EXPECT_FALSE(schedule.killed(1));
  return done - static_cast<int>(disk.content("N")[0]);
}

TEST(Schedule, LocksKeepConcurrentAdditionsWhole) {
  int lost = 0;
  for (std::uint64_t seed = 1; seed <= 40; ++seed) {
    EXPECT_EQ(added(seed, true, 0), 0) << seed;
    lost += added(seed, false, 0) > 0;
  }
  EXPECT_GT(lost, 20);
}

TEST(Schedule, AKilledProcessFreesItsLocksSoThatTheOthersEnd) {
  for (int at = 1; at <= 8; ++at) {
    for (std::uint64_t seed = 1; seed <= 5; ++seed) EXPECT_EQ(added(seed, true, at), 0) << seed << " at " << at;
  }
}

}  // namespace
}  // namespace quillon::sim
