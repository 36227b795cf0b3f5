// Calls of the file system that fail.
//
// Method: a workload runs once on a simulated disk to list its calls. Then for every call it runs again with that call
// failing, once or from there on: an error, a write that ends short, no space. The operation hit must either raise one
// StoreError whose text names what it is about, and leave things as they were, or succeed; only an error that says that
// the outcome is unknown may leave either. Then the fault is lifted: the same Database must show that state and do the
// operation again (after an unknown outcome a reopened one). At each step the power is cut in a few copies of the disk,
// which must still have all that was answered, whatever a failed sync has forgotten.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <set>

#include "store/Errors.h"
#include "support/CompanyCheck.h"
#include "support/SeededRandom.h"
#include "support/Trials.h"

namespace quillon::sim {
namespace {

using Wrong = std::optional<std::string>;

struct Call {
  SimCall call;
  std::string site;  // "write DAT"
};

std::string siteOf(const SimEvent& event) {
  const std::string name = event.path.substr(event.path.rfind('/') + 1);
  const auto dot = name.rfind('.');
  return std::string(nameOf(event.call)) + " " + (dot == std::string::npos ? "" : name.substr(dot + 1));
}

bool namesSomething(const std::string& text) {
  for (const char* name : {"Cust", "Det", "Ctl", "Extra", "Quillon", "scratch", "company"})
    if (text.find(name) != std::string::npos) return true;
  return false;
}

// What a run of full length must have met, whatever the store does beside.
constexpr const char* kMustFail[] = {
    "open DAT",        "read DAT",       "write DAT",      "writeParts DAT", "reserve DAT",    "sync DAT",
    "truncate DAT",    "lock DAT",       "remove DAT",     "open IDX",       "read IDX",       "writeParts IDX",
    "reserve IDX",     "sync IDX",       "truncate IDX",   "open BLB",       "read BLB",       "writeParts BLB",
    "reserve BLB",     "sync BLB",       "truncate BLB",   "create JNL",     "read JNL",       "write JNL",
    "reserve JNL",     "sync JNL",       "lock JNL",       "truncate JNL",   "create DAT~new", "write DAT~new",
    "sync DAT~new",    "rename DAT~new", "rename IDX~new", "rename BLB~new", "lock LCK",       "write LCK",
    "scratch scratch", "syncFolder ",    "look ",
};

class FaultRun {
 public:
  FaultRun(const Workload& work, const SimDisk& company, Cuts& cuts)
      : work_(work), disk_(company.imageAfterCut({{}, 0})), cuts_(cuts) {
    clock_.advance(kLaterMicroseconds);
  }

  std::vector<Call> listCalls() {
    std::vector<Call> calls;
    disk_.beforeEvent([&](const SimEvent& event) { calls.push_back({event.call, siteOf(event)}); });
    Worker worker(disk_, clock_, work_.settings);
    for (const Task& task : work_.tasks) worker.run(task);
    worker.close();
    return calls;
  }

  Wrong run(const Fault& fault) {
    noSpace_ = fault.kind == Fault::Kind::noSpace;
    disk_.plan(fault);
    try {
      Worker worker(disk_, clock_, work_.settings);
      worker_ = &worker;
      for (const Task& task : work_.tasks) {
        if (Wrong wrong = runTask(task)) return "in '" + task.describe() + "': " + *wrong;
        if (ended_) break;
      }
      worker.close();
      disk_.plan(std::nullopt);
      Worker last(disk_, clock_, work_.settings);
      last.open();
      if (Wrong wrong = checkOpen(last, now_)) return "opened at the end: " + *wrong;
      if (Wrong wrong = cut()) return "at the end: " + *wrong;
    } catch (const store::StoreError& error) {
      return std::string("raised with the fault lifted: ") + error.what();
    }
    return std::nullopt;
  }

  int raised() const { return raised_; }
  bool faultMet() const { return disk_.faultsRaised() > 0; }

 private:
  Wrong cut() { return disk_.faultsRaised() > 0 ? cuts_.at(disk_, now_, 3) : std::nullopt; }

  // What a task that raised may have left.
  Allowed afterFailure(const Task& task, store::Code code) const {
    if (code == store::Code::outcomeUnknown) return allowedDuring(task);
    if (task.deed == Deed::createTable || task.deed == Deed::dropTable) return {&task.before(), &task.after()};
    Allowed allowed{&task.before()};
    // Earlier changes of a group are published when its cursors close, or go with the one that failed.
    if (task.gathers())
      for (int i = 1; i <= std::min(worker_->posted(), static_cast<int>(task.states.size()) - 1); ++i)
        allowed.push_back(&task.states[static_cast<std::size_t>(i)]);
    return allowed;
  }

  Wrong runTask(const Task& task) {
    try {
      worker_->run(task);
      now_ = {&task.after()};
      if (disk_.faultsRaised() > 0) disk_.plan(std::nullopt);
    } catch (const store::StoreError& error) {
      return goOnAfter(task, error);
    }
    if (disk_.faultsRaised() == 0) return std::nullopt;
    if (Wrong wrong = checkOpen(*worker_, now_)) return "it seemed to succeed, then: " + *wrong;
    return cut();
  }

  Wrong goOnAfter(const Task& task, const store::StoreError& error) {
    ++raised_;
    const std::string text = error.what();
    disk_.plan(std::nullopt);
    const bool unknown = error.code() == store::Code::outcomeUnknown;
    if (disk_.faultsRaised() == 0) return "raised without a fault: " + text;
    if (text.empty() || (!unknown && !namesSomething(text))) return "a text that names nothing: '" + text + "'";
    if (noSpace_ && !unknown && (error.code() != store::Code::noSpace || text.find("Free some space") == text.npos))
      return "a full disk is told as '" + text + "'";
    if (task.deed == Deed::post && !worker_->stayedInEdit()) return "raised '" + text + "' and left the edited row";
    now_ = afterFailure(task, error.code());
    if (Wrong wrong = cut()) return "raised '" + text + "', then: " + *wrong;
    if (unknown || text.find("open it again") != std::string::npos) worker_->close();
    if (!worker_->isOpen()) worker_->open();
    if (task.gathers()) tellLost();
    const CompanyState* found = nullptr;
    if (Wrong wrong = checkOpen(*worker_, now_, &found)) return "raised '" + text + "', then: " + *wrong;
    if (task.deed == Deed::createTable || task.deed == Deed::dropTable) {
      // What was refused may be seen and not be safe, or the other way round.
      ended_ = !found->sameRows(task.before());
      if (ended_) return std::nullopt;
    } else {
      now_.erase(std::remove_if(now_.begin(), now_.end(), [&](const auto* state) { return !state->sameRows(*found); }),
                 now_.end());
      if (Wrong wrong = cut()) return "raised '" + text + "', looked at, then: " + *wrong;
    }
    if (!found->sameRows(task.before())) {
      ended_ = !found->sameRows(task.after());  // half of a group: the rest of the work does not fit any more
      return std::nullopt;
    }
    try {
      worker_->run(task);
    } catch (const store::StoreError& again) {
      return "raised '" + text + "', and again with the fault lifted: " + again.what();
    }
    now_ = {&task.after()};
    if (Wrong wrong = checkOpen(*worker_, now_)) return "done again after '" + text + "': " + *wrong;
    return cut();
  }

  // Rows that had been answered as gathered went with the one that failed: that is told once more.
  void tellLost() {
    try {
      worker_->database().settle();
    } catch (const store::StoreError&) {
      // Here it says only how many there were.
    }
  }

  const Workload& work_;
  SimDisk disk_;
  Cuts& cuts_;
  SimClock clock_;
  Worker* worker_ = nullptr;
  Allowed now_{&work_.start};
  bool ended_ = false;
  bool noSpace_ = false;
  int raised_ = 0;
};

bool needsSpace(SimCall call) {
  switch (call) {
    case SimCall::create:
    case SimCall::scratch:
    case SimCall::write:
    case SimCall::writeParts:
    case SimCall::reserve:
    case SimCall::rename:
    case SimCall::syncFolder:
    case SimCall::sync:
      return true;
    default:
      return false;
  }
}

std::vector<Fault> faultsAt(std::uint64_t number, SimCall call) {
  std::vector<Fault> faults;
  for (const bool forGood : {false, true}) {
    faults.push_back({Fault::Kind::ioFailed, number, forGood});
    if (needsSpace(call)) faults.push_back({Fault::Kind::noSpace, number, forGood});
    if (call == SimCall::write || call == SimCall::writeParts)
      faults.push_back({Fault::Kind::shortWrite, number, forGood});
  }
  return faults;
}

TEST(Faults, RaiseOnceOrSucceedAndLoseNothing) {
  const Trials trials = Trials::fromEnvironment();
  const std::uint64_t aim = trials.aim(5'000, 20'000);
  std::set<std::string> met, failed;
  std::uint64_t points = 0, works = 0, images = 0, raised = 0;
  int failures = 0;
  const auto enough = [&] {
    const bool all = trials.share < 1 || std::all_of(std::begin(kMustFail), std::end(kMustFail),
                                                     [&](const char* site) { return failed.contains(site); });
    return points >= (all ? aim : 4 * aim);
  };
  for (std::uint64_t seed = trials.seed.value_or(1); failures < 5 && !enough(); ++seed, ++works) {
    const Workload work = seed % 16 == 1 ? Workload::first(seed) : Workload::make(seed, {2, 1, false});
    const SimDisk company = companyDisk(work);
    Cuts cuts(work, seed);
    const std::vector<Call> calls = FaultRun(work, company, cuts).listCalls();
    for (std::size_t i = 0; i < calls.size() && failures < 5; ++i) {
      met.insert(calls[i].site);
      for (const Fault& fault : faultsAt(i + 1, calls[i].call)) {
        FaultRun run(work, company, cuts);
        const Wrong wrong = run.run(fault);
        ++points;
        raised += static_cast<std::uint64_t>(run.raised());
        if (run.faultMet()) failed.insert(calls[i].site);
        if (!wrong) continue;
        ++failures;
        ADD_FAILURE() << "call " << i + 1 << " (" << calls[i].site << "), kind " << static_cast<int>(fault.kind)
                      << (fault.forGood ? ", for good: " : ", once: ") << *wrong << "\n"
                      << work.describe() << "\n"
                      << Trials::repeating(seed, "test_store_fault", "Faults.RaiseOnceOrSucceedAndLoseNothing");
        break;
      }
    }
    images += cuts.images();
    if (trials.seed) break;
  }
  std::printf("%llu works, %llu faults at %zu kinds of call, %llu errors raised, %llu images after power cuts\n",
              static_cast<unsigned long long>(works), static_cast<unsigned long long>(points), failed.size(),
              static_cast<unsigned long long>(raised), static_cast<unsigned long long>(images));
  if (trials.seed || failures > 0) return;
  EXPECT_GE(points, aim);
  for (const std::string& site : met) EXPECT_TRUE(failed.contains(site)) << "never failed: " << site;
  if (trials.share < 1) return;
  for (const char* site : kMustFail) EXPECT_TRUE(failed.contains(site)) << "never failed: " << site;
}

}  // namespace
}  // namespace quillon::sim
