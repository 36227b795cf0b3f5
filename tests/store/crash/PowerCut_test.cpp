// Power cuts in short work, in long histories of several processes, and in the recovery from a cut.
//
// Method: a workload runs once on a simulated disk. Before its calls that change the disk, and after each operation,
// the power is cut in copies of the disk: every subset of the unsynced operations kept, lost or torn where they are
// few, chances where they are many. Each copy is opened as the next user would, which recovers it; its contents must
// equal what was answered as done, with the operation under way wholly there or not at all. The verifier must find
// nothing, more must be writable, and survive a second cut. Copies that equal an earlier one are passed over. Short
// work is cut at every call, long work at some; there the copies are also cut again while they are recovered, and those
// copies again.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>

#include "store/Errors.h"
#include "support/CompanyCheck.h"
#include "support/SeededRandom.h"
#include "support/Trials.h"

namespace quillon::sim {
namespace {

struct Tally {
  std::uint64_t images = 0, repeated = 0, moments = 0, works = 0;
};

struct Plan {
  WorkShape shape;
  std::size_t imagesAtOnce;
  std::size_t momentsPassed = 1;  // of so many one is looked at
  bool recovering = false;        // cuts while the copy is recovered
};

constexpr Plan kShort[] = {{{3, 1, false}, 10}, {{3, 2, false}, 10}};
constexpr Plan kLong = {{60, 3, false}, 6, 12};
constexpr Plan kRecovering = {{30, 3, false}, 2, 40, true};

Workload workOf(std::uint64_t seed, const Plan& plan) {
  return seed % 32 == 1 ? Workload::first(seed) : Workload::make(seed, plan.shape);
}

// Runs the workload; the first image that is wrong ends it.
class PowerCutRun {
 public:
  PowerCutRun(const Workload& work, std::uint64_t seed, const Plan& plan)
      : work_(work), plan_(plan), random_(seed), cuts_(work, seed), disk_(companyDisk(work)) {}

  std::optional<std::string> run(Tally& tally) {
    now_ = {&work_.start};
    disk_.beforeEvent([&](const SimEvent& event) {
      if (changesDisk(event.call)) look();
    });
    try {
      SimClock clock;
      clock.advance(kLaterMicroseconds);
      std::vector<std::unique_ptr<Worker>> workers;
      for (const Task& task : work_.tasks) {
        while (workers.size() <= static_cast<std::size_t>(task.process))
          workers.push_back(std::make_unique<Worker>(disk_, clock, work_.settings));
        Worker& worker = *workers[static_cast<std::size_t>(task.process)];
        now_ = allowedDuring(task);
        worker.run(task);
        now_ = {&task.after()};
        look();
      }
      if (!wrong_)
        if (auto wrong = checkOpen(*workers[static_cast<std::size_t>(work_.tasks.back().process)], now_))
          wrong_ = "at the end: " + *wrong;
      workers.clear();
    } catch (const store::StoreError& error) {
      if (!wrong_) wrong_ = std::string("the work itself raised: ") + error.what();
    }
    look();
    tally.images += cuts_.images();
    tally.repeated += cuts_.repeated();
    tally.moments += moments_;
    ++tally.works;
    return wrong_;
  }

 private:
  void look() {
    if (wrong_ || !random_.oneIn(plan_.momentsPassed)) return;
    ++moments_;
    wrong_ = plan_.recovering ? cuts_.recovering(disk_, now_, plan_.imagesAtOnce)
                              : cuts_.at(disk_, now_, plan_.imagesAtOnce);
  }

  const Workload& work_;
  const Plan& plan_;
  SeededRandom random_;
  Cuts cuts_;
  SimDisk disk_;
  Allowed now_;
  std::uint64_t moments_ = 0;
  std::optional<std::string> wrong_;
};

template <typename PlanOf>
void cutUntil(const char* test, std::uint64_t aim, std::uint64_t imagesPerWork, const PlanOf& planOf) {
  const Trials trials = Trials::fromEnvironment();
  Tally tally;
  const auto start = std::chrono::steady_clock::now();
  int failures = 0;
  for (std::uint64_t seed = trials.seed.value_or(1); failures < 5 && tally.images < aim; ++seed) {
    const Plan& plan = planOf(seed);
    const Workload work = workOf(seed, plan);
    if (const auto wrong = PowerCutRun(work, seed, plan).run(tally)) {
      ++failures;
      ADD_FAILURE() << *wrong << "\n" << work.describe() << "\n" << Trials::repeating(seed, "test_store_crash", test);
    }
    if (trials.seed) break;
  }
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::printf("%llu works, cut at %llu moments: %llu images checked (%.0f a second), %llu more were repetitions\n",
              static_cast<unsigned long long>(tally.works), static_cast<unsigned long long>(tally.moments),
              static_cast<unsigned long long>(tally.images), static_cast<double>(tally.images) / seconds,
              static_cast<unsigned long long>(tally.repeated));
  if (!trials.seed && failures == 0) {
    EXPECT_GE(tally.works, aim / imagesPerWork);
    EXPECT_GE(tally.images, aim);
  }
}

TEST(PowerCut, LeavesWhatWasAnsweredAndNothingHalf) {
  const std::uint64_t aim = Trials::fromEnvironment().aim(20'000, 60'000);
  cutUntil("PowerCut.LeavesWhatWasAnsweredAndNothingHalf", aim, 1000,
           [](std::uint64_t seed) -> const Plan& { return kShort[seed % 4 == 3]; });
}

TEST(PowerCut, InLongHistoriesLeavesWhatWasAnswered) {
  const std::uint64_t aim = Trials::fromEnvironment().aim(6'000, 40'000);
  cutUntil("PowerCut.InLongHistoriesLeavesWhatWasAnswered", aim, 2000,
           [](std::uint64_t) -> const Plan& { return kLong; });
}

TEST(PowerCut, InRecoveryAgainAndAgainLosesNothing) {
  const std::uint64_t aim = Trials::fromEnvironment().aim(4'000, 20'000);
  cutUntil("PowerCut.InRecoveryAgainAndAgainLosesNothing", aim, 4000,
           [](std::uint64_t) -> const Plan& { return kRecovering; });
}

}  // namespace
}  // namespace quillon::sim
