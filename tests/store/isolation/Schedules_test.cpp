// Processes that work at the same time leave and see what they could have left and seen one after another.
//
// Method: two or three simulated processes run short random programs over two tables and a control table: rows raised,
// made and deleted, transactions over both tables that commit or roll back, groups under a table lock or in a bulk
// scope, numbers taken under an exclusive open, reads of both tables in one snapshot. A schedule changes between them
// at calls of the disk and at sleeps; in a third of the runs one process dies at such a point. Every value seen is
// written down with the time of the question and of the answer, and a search must find one serial order that explains
// it all, the final contents too. Then the files must be sound and nobody hold anything.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <optional>

#include "store/Cursor.h"
#include "store/Verify.h"
#include "support/Clerk.h"
#include "support/Schedule.h"
#include "support/SeededRandom.h"
#include "support/Serial.h"
#include "support/SimProcess.h"
#include "support/Trials.h"

namespace quillon::sim {
namespace {

using namespace clerk;
using store::Cursor;
using store::FieldType;
using store::IndexOptions;
using store::TableDef;

constexpr std::int64_t kLongestDeed = 20'000'000;  // microseconds; waiting for somebody for good takes a minute

SerialState startState() { return {{{{{1, 0}, {2, 0}}, {{1, 0}, {2, 0}}}}, 0}; }

SimDisk company() {
  SimDisk disk;
  SimClock clock;
  disk.process()->makeFolder(kSharedFolder);
  SimProcess maker(disk, clock, {});
  maker.open();
  for (const char* table : kTables)
    maker.database().createTable(
        TableDef::of(table, {{"ID", FieldType::integer}, {"V", FieldType::integer}, {"N", FieldType::memo}},
                     {{"", "ID", IndexOptions::unique}, {"ByV", "V", IndexOptions::none, "V"}}));
  maker.database().createTable(TableDef::of("Control", {{"Last", FieldType::integer}}));
  for (const char* table : {"First", "Second"})
    for (int row = 1; row <= 2; ++row) {
      Cursor cursor(maker.database(), table);
      cursor.open();
      cursor.insert();
      cursor["ID"] = row;
      cursor["V"] = 0;
      cursor.post();
    }
  Cursor control(maker.database(), "Control");
  control.open();
  control.insert();
  control["Last"] = 0;
  control.post();
  return disk;
}

struct Tally {
  std::uint64_t schedules = 0, kills = 0, deeds = 0, refused = 0, yields = 0;
};

struct Plan {
  std::vector<std::vector<Deed>> programs;
  int victim = -1;
  std::uint64_t killAt = 0;
};

void addFinal(SimDisk& disk, SimClock& clock, SerialHistory& history) {
  SimProcess last(disk, clock, settings(1));
  last.open();
  SerialDeed read, number;
  read.what = number.what = "at the end";
  read.from = number.from = clock.microseconds() + 1;
  read.to = number.to = clock.microseconds() + 2;
  read.read.emplace();
  for (int which = 0; which < 2; ++which) {
    Cursor cursor(last.database(), kTables[which]);
    cursor.setExclusive(true);
    cursor.open();
    for (; !cursor.eof(); cursor.next())
      read.read->rows[static_cast<std::size_t>(which)][cursor["ID"].asInt()] = cursor["V"].asInt();
  }
  Cursor control(last.database(), "Control");
  control.setExclusive(true);
  control.open();
  number.number = control["Last"].asInt() + 1;
  control.close();
  history.push_back({read, number});
  const auto report = store::verifyOpen(last.database());
  for (const auto& finding : report.findings) ADD_FAILURE() << finding.table << ": " << finding.text;
}

// False when the victim came to its end before.
bool runPlan(const SimDisk& start, const Plan& plan, std::uint64_t seed, Tally& tally) {
  SimDisk disk = start.settled();
  SimClock clock;
  SerialHistory history(plan.programs.size());
  std::vector<std::unique_ptr<SimProcess>> processes;
  std::vector<std::unique_ptr<Clerk>> clerks;
  bool died = false;
  {
    Schedule schedule(clock, seed);
    schedule.watch(disk);
    for (std::size_t p = 0; p < plan.programs.size(); ++p) {
      processes.push_back(std::make_unique<SimProcess>(disk, clock, settings(seed)));
      clerks.push_back(std::make_unique<Clerk>(*processes[p], clock, static_cast<int>(p), seed * 7 + p, history[p]));
      schedule.add([&, p] { clerks[p]->run(plan.programs[p]); }, [&, p] { processes[p]->kill(); });
    }
    if (plan.victim >= 0) schedule.killAt(plan.victim, plan.killAt);
    schedule.run();
    died = plan.victim >= 0 && schedule.killed(plan.victim);
    for (int p = 0; p < static_cast<int>(plan.programs.size()); ++p) {
      const auto& clerk = *clerks[static_cast<std::size_t>(p)];
      tally.yields += schedule.yieldPoints(p);
      tally.refused += static_cast<std::uint64_t>(clerk.refused());
      tally.deeds += history[static_cast<std::size_t>(p)].size();
      EXPECT_LT(clerk.longest(), kLongestDeed) << "process " << p << " waited too long";
      try {
        if (const auto error = schedule.error(p)) std::rethrow_exception(error);
      } catch (const std::exception& error) {
        ADD_FAILURE() << "process " << p << ": " << error.what();
      }
    }
  }
  clerks.clear();
  processes.clear();
  ++tally.schedules;
  tally.kills += died;
  try {
    addFinal(disk, clock, history);
  } catch (const store::StoreError& error) {
    ADD_FAILURE() << "at the end: " << error.what();
  }
  EXPECT_TRUE(isSerial(startState(), history)) << "no serial order explains this:\n";
  if (testing::Test::HasFailure()) std::printf("%s", describe(history).c_str());
  return died;
}

Plan randomPlan(std::uint64_t seed) {
  SeededRandom random(seed);
  Plan plan;
  plan.programs.resize(2 + random.below(2));
  for (auto& program : plan.programs) {
    const std::size_t deeds = 2 + random.below(4);
    for (std::size_t i = 0; i < deeds; ++i) program.push_back(static_cast<Deed>(random.below(kDeeds)));
  }
  if (random.oneIn(3)) {
    plan.victim = static_cast<int>(random.below(plan.programs.size()));
    plan.killAt = 1 + random.below(plan.programs[static_cast<std::size_t>(plan.victim)].size() * 60);
  }
  return plan;
}

TEST(Schedules, LeaveAndShowWhatSomeSerialOrderWould) {
  const auto trials = Trials::fromEnvironment();
  const SimDisk start = company();
  const std::uint64_t first = trials.seed.value_or(1);
  const std::uint64_t count = trials.seed ? 1 : std::max<std::uint64_t>(trials.aim(5000, 20000), 1);
  Tally tally;
  for (std::uint64_t seed = first; seed < first + count; ++seed) {
    runPlan(start, randomPlan(seed), seed, tally);
    if (HasFailure())
      FAIL() << Trials::repeating(seed, "test_store_isolation", "Schedules.LeaveAndShowWhatSomeSerialOrderWould");
  }
  std::printf("%llu schedules, %llu kills, %llu pieces of work, %llu refused, %llu changes of process possible\n",
              static_cast<unsigned long long>(tally.schedules), static_cast<unsigned long long>(tally.kills),
              static_cast<unsigned long long>(tally.deeds), static_cast<unsigned long long>(tally.refused),
              static_cast<unsigned long long>(tally.yields));
  if (trials.seed) return;
  EXPECT_GE(tally.kills, count / 8);
  EXPECT_GE(tally.deeds, count * 6);
  EXPECT_GE(tally.refused, count / 20);
}

// A process dies at every point of a commit over two tables while others read both, wait for it, and go on after it.
TEST(Schedules, ADeathAtAnyPointOfACommitShowsAllOfItOrNothing) {
  const auto trials = Trials::fromEnvironment();
  const SimDisk start = company();
  const std::uint64_t first = trials.seed.value_or(1);
  const std::uint64_t rounds = trials.seed ? 1 : std::max<std::uint64_t>(trials.aim(4, 20), 1);
  Tally tally;
  for (std::uint64_t seed = first; seed < first + rounds; ++seed) {
    Plan plan;
    plan.programs = {{Deed::transfer, Deed::transfer},
                     {Deed::read, Deed::read, Deed::read, Deed::read, Deed::read, Deed::read},
                     {Deed::read, seed % 2 ? Deed::raise : Deed::transfer, Deed::read}};
    plan.victim = 0;
    for (plan.killAt = 1; runPlan(start, plan, seed, tally) && !HasFailure(); ++plan.killAt) {
    }
    if (HasFailure())
      FAIL() << "killed at " << plan.killAt << ", "
             << Trials::repeating(seed, "test_store_isolation",
                                  "Schedules.ADeathAtAnyPointOfACommitShowsAllOfItOrNothing");
  }
  std::printf("%llu deaths\n", static_cast<unsigned long long>(tally.kills));
  EXPECT_GE(tally.kills, rounds * 60);
}

}  // namespace
}  // namespace quillon::sim
