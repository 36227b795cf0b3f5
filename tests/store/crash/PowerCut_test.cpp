// Power cuts in short work.
//
// Method: a workload of one to three operations runs once on a simulated disk. Before each of its calls that changes
// the disk, and at its end, the power is cut in copies of the disk: every subset of the unsynced operations kept, lost
// or torn where they are few, chances where they are many. Each copy is opened as the next user would, which recovers
// it; its contents must equal what was answered as done, with the operation under way wholly there or not at all. The
// verifier must find nothing, more must be writable, and survive a second cut. Copies that equal an earlier one are
// passed over.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>

#include "store/Errors.h"
#include "support/CompanyCheck.h"
#include "support/Trials.h"

namespace quillon::sim {
namespace {

bool changesDisk(SimCall call) {
  switch (call) {
    case SimCall::open:
    case SimCall::read:
    case SimCall::lock:
    case SimCall::lockTest:
    case SimCall::look:
    case SimCall::scratch:
      return false;
    default:
      return true;
  }
}

struct Tally {
  std::uint64_t images = 0, repeated = 0, moments = 0, works = 0;
};

// Runs the workload; the first image that is wrong ends it.
class PowerCutRun {
 public:
  PowerCutRun(const Workload& work, std::uint64_t seed, std::size_t limit, SimOptions options = {})
      : work_(work), cuts_(work, seed), limit_(limit), disk_(companyDisk(work, options)) {}

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
    if (wrong_) return;
    ++moments_;
    wrong_ = cuts_.at(disk_, now_, limit_);
  }

  const Workload& work_;
  Cuts cuts_;
  std::size_t limit_;
  SimDisk disk_;
  Allowed now_;
  std::uint64_t moments_ = 0;
  std::optional<std::string> wrong_;
};

Workload workOf(std::uint64_t seed) {
  return seed % 32 == 1 ? Workload::first(seed) : Workload::make(seed, {3, seed % 4 == 3 ? 2 : 1, false});
}

TEST(PowerCut, LeavesWhatWasAnsweredAndNothingHalf) {
  const Trials trials = Trials::fromEnvironment();
  const std::uint64_t aim = trials.aim(30'000, 60'000);
  Tally tally;
  const auto start = std::chrono::steady_clock::now();
  int failures = 0;
  for (std::uint64_t seed = trials.seed.value_or(1); failures < 5 && tally.images < aim; ++seed) {
    const Workload work = workOf(seed);
    if (const auto wrong = PowerCutRun(work, seed, 10).run(tally)) {
      ++failures;
      ADD_FAILURE() << *wrong << "\n"
                    << work.describe() << "\n"
                    << Trials::repeating(seed, "test_store_crash", "PowerCut.LeavesWhatWasAnsweredAndNothingHalf");
    }
    if (trials.seed) break;
  }
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::printf("%llu works, cut at %llu moments: %llu images checked (%.0f a second), %llu more were repetitions\n",
              static_cast<unsigned long long>(tally.works), static_cast<unsigned long long>(tally.moments),
              static_cast<unsigned long long>(tally.images), static_cast<double>(tally.images) / seconds,
              static_cast<unsigned long long>(tally.repeated));
  if (!trials.seed && failures == 0) {
    EXPECT_GE(tally.works, aim / 1000);
    EXPECT_GE(tally.images, aim);
  }
}

// The loop above must be able to see a disk that lies.
void expectFound(SimOptions planted, std::uint64_t most) {
  Tally tally;
  std::optional<std::string> found;
  for (std::uint64_t seed = 1; !found && tally.images < most; ++seed)
    found = PowerCutRun(workOf(seed), seed, 10, planted).run(tally);
  EXPECT_TRUE(found) << "not found in " << tally.images << " images";
  std::printf("found after %llu images\n", static_cast<unsigned long long>(tally.images));
}

TEST(PowerCut, FindsASyncThatDoesNothing) {
  SimOptions planted;
  planted.ignoreSync = true;
  expectFound(planted, 500);
}

TEST(PowerCut, FindsAFolderSyncThatDoesNothing) {
  SimOptions planted;
  planted.ignoreFolderSync = true;
  expectFound(planted, 2000);
}

}  // namespace
}  // namespace quillon::sim
