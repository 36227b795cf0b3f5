// A process dies and the system lives.
//
// Method: a workload runs once on a simulated disk to count its calls; then, for every one of them, it runs again and
// its process is killed there: nothing written is lost, its locks vanish. In half of the workloads another process has
// the tables open all the time, in the others a new one opens the company. It goes on at once: it must see what was
// answered as done, the operation under way wholly or not at all; it must get the locks of the dead one, write, and
// find what it wrote after a power cut. A new process must see the same and get tables exclusively.
//
// Now and then another process comes first, begins to put right what the dead one left, and dies over it. Where a table
// was being made or dropped and is not there, it is made again, with the power cut at every step of that.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>

#include "store/Errors.h"
#include "support/CompanyCheck.h"
#include "support/SeededRandom.h"
#include "support/Trials.h"

namespace quillon::sim {
namespace {

using Wrong = std::optional<std::string>;

// Before which call the worker dies, and the one who comes after it.
struct Deaths {
  std::uint64_t worker;
  std::uint64_t heir = 0;  // 0: there is none
};

class KillRun {
 public:
  KillRun(const Workload& work, const SimDisk& company, bool survivor)
      : work_(work), disk_(company.imageAfterCut({{}, 0})), survives_(survivor) {}

  // The deed that the worker died in; empty: it came to its end before.
  const std::string& killedIn() const { return killedIn_; }
  bool heirKilled() const { return heirKilled_; }

  Wrong run(const Deaths& deaths) {
    SimClock clock;
    clock.advance(kLaterMicroseconds);
    Worker other(disk_, clock, work_.settings);
    std::string deed = "opening";
    bool killed = false;
    Allowed now{&work_.start};
    try {
      if (survives_) {
        other.open();
        other.watch();
      }
      Worker worker(disk_, clock, work_.settings);
      killAt(worker, deaths.worker, killed);
      try {
        worker.open();
        for (const Task& task : work_.tasks) {
          if (killed) break;  // a destructor kept it to itself
          deed = task.name();
          now = allowedDuring(task);
          worker.run(task);
          if (!killed) now = {&task.after()};
        }
        if (!killed) deed = "closing";
        worker.close();
      } catch (const ProcessKilled&) {
        // The tables are what is looked at.
      } catch (const store::StoreError&) {
        if (!killed) throw;
      }
    } catch (const store::StoreError& error) {
      return std::string("the work itself raised: ") + error.what();
    }
    if (killed) killedIn_ = deed;
    try {
      if (deaths.heir > 0) inherit(clock, now, deaths.heir);
    } catch (const store::StoreError& error) {
      return std::string("the heir: ") + error.what();
    }
    disk_.beforeEvent({});
    return goOn(other, clock, now, deaths.worker);
  }

 private:
  void killAt(const Worker& worker, std::uint64_t number, bool& killed) {
    disk_.beforeEvent(
        [this, process = worker.process(), number, &killed, calls = std::uint64_t{0}](const auto& event) mutable {
          if (event.process != process || ++calls != number) return;
          killed = true;
          disk_.killProcess(process);
        });
  }

  // Opens the company, reads it and takes locks, and with that brings in what the dead one left; dies in the middle.
  void inherit(SimClock& clock, const Allowed& now, std::uint64_t number) {
    Worker heir(disk_, clock, work_.settings);
    killAt(heir, number, heirKilled_);
    try {
      heir.open();
      for (const auto& [name, table] : now.front()->tables) {
        if (!heir.database().exists(name)) continue;
        store::Cursor cursor(heir.database(), name);
        cursor.open();
        cursor.lockTable();
      }
      heir.close();
    } catch (const ProcessKilled&) {
      // As the worker before it.
    } catch (const store::StoreError&) {
      if (!heirKilled_) throw;
    }
    disk_.beforeEvent({});
  }

  // Steps of the survivor that need what the dead process may have held: a record, a table, a transaction.
  void write(store::Database& database, CompanyState& state, std::uint64_t which) {
    if (state.tables.contains("Det")) writeDet(database, state, which);
    if (!state.tables.contains("Extra")) return;
    store::Cursor extra(database, "Extra");
    extra.open();
    add(extra, state);
  }

  void writeDet(store::Database& database, CompanyState& state, std::uint64_t which) {
    store::Cursor cursor(database, "Det");
    cursor.setRowOrder();
    cursor.open();
    if (which % 3 == 1) cursor.lockTable();
    if (which % 3 == 2) database.startTransaction({"Cust", "Det"});
    if (!state.tables["Det"].rows.empty()) {
      cursor.edit();
      cursor["Amount"] = 77;
      cursor.post();
      state.tables["Det"].rows.front().amount = 77;
    }
    add(cursor, state);
    if (which % 3 == 1) cursor.unlockTable();
    if (which % 3 == 2) database.commit();
  }

  void add(store::Cursor& cursor, CompanyState& state) {
    const ModelRow row{3, 4, "other", {}};
    cursor.insert();
    putRow(cursor, row);
    cursor.post();
    state.tables[cursor.definition().name].rows.push_back(row);
  }

  Wrong goOn(Worker& other, SimClock& clock, const Allowed& now, std::uint64_t which) {
    try {
      if (!other.isOpen()) other.open();
      const CompanyState* found = nullptr;
      if (auto wrong = checkOpen(other, now, &found)) return "the survivor: " + *wrong;
      // A commit that was in the journal only comes in with the next lock; it never goes back behind what was seen.
      const Allowed later(std::find(now.begin(), now.end(), found), now.end());
      for (const auto& [name, table] : found->tables) {
        store::Cursor cursor(other.database(), name);
        cursor.open();
        cursor.lockTable();
      }
      if (auto wrong = checkOpen(other, later, &found)) return "the survivor with a lock: " + *wrong;
      // Which number comes next is not to be seen in the rows: any allowed state with these rows will do.
      std::vector<CompanyState> next;
      for (const CompanyState* state : later)
        if (state->sameRows(*found)) next.push_back(*state);
      CompanyState written = next.front();
      if (auto wrong = makeAgain(other.database(), written, now, which))
        return "the survivor making a table: " + *wrong;
      write(other.database(), written, which);
      Allowed allowed;
      for (CompanyState& state : next) {
        for (const auto& [name, table] : written.tables) state.tables[name].rows = table.rows;
        allowed.push_back(&state);
      }
      if (auto wrong = checkOpen(other, allowed)) return "the survivor after writing: " + *wrong;
      if (auto wrong = cutNow(allowed, now, which)) return "after the survivor's write and a cut: " + *wrong;
      if (which % 2 == 0) other.close();
      Worker third(disk_, clock, work_.settings);
      third.open();
      if (auto wrong = checkOpen(third, allowed)) return "a new process: " + *wrong;
      if (which % 2 != 0) return std::nullopt;
      for (const auto& [name, table] : found->tables) {
        store::Cursor cursor(third.database(), name);
        cursor.setExclusive(true);
        cursor.open();
      }
    } catch (const store::StoreError& error) {
      return std::string("after the kill raised: ") + error.what();
    }
    return std::nullopt;
  }

  // Until it is made, an earlier one that was not answered as dropped may come back.
  Wrong makeAgain(store::Database& database, CompanyState& state, const Allowed& now, std::uint64_t which) {
    const auto had = [](const CompanyState* one) { return one->tables.contains("Extra"); };
    if (heirKilled_ || had(&state) || std::none_of(now.begin(), now.end(), had)) return std::nullopt;
    CompanyState made = state;
    made.tables["Extra"] = {};
    Allowed allowed = now;
    allowed.push_back(&made);
    Cuts cuts(work_, which);
    Wrong wrong;
    disk_.beforeEvent([&](const SimEvent& event) {
      if (!wrong && changesDisk(event.call)) wrong = cuts.at(disk_, allowed, 24);
    });
    database.createTable(modelDefinition("Extra"));
    disk_.beforeEvent({});
    state = made;
    return wrong;
  }

  // A table dropped by the dead process, whose drop was not answered, may come back.
  Wrong cutNow(const Allowed& seen, const Allowed& now, std::uint64_t which) {
    std::vector<CompanyState> dropped;
    for (const CompanyState* state : seen)
      if (!state->tables.contains("Extra") && now.front()->tables.contains("Extra")) {
        dropped.push_back(*state);
        dropped.back().tables["Extra"] = now.front()->tables.at("Extra");
      }
    Allowed allowed = seen;
    for (const CompanyState& state : dropped) allowed.push_back(&state);
    const CutChoice all{std::vector<Fate>(disk_.pendingCount(), Fate::lost), 0};
    return checkImage(disk_.imageAfterCut(all), work_, allowed, false, which);
  }

  const Workload& work_;
  SimDisk disk_;
  bool survives_;
  std::string killedIn_;
  bool heirKilled_ = false;
};

// Every deed of theirs is walked through with a kill at each of its calls (docs/STORE.md).
constexpr const char* kMustDie[] = {"opening",    "post",        "transaction",  "rolled back",    "locked group",
                                    "bulk group", "take number", "empty table",  "create table",   "drop table",
                                    "checkpoint", "reopen",      "repair table", "optimize table", "closing"};

TEST(Kill, LeavesAnsweredWorkAndNoLocks) {
  const Trials trials = Trials::fromEnvironment();
  const std::uint64_t aim = trials.aim(10'000, 30'000);
  std::uint64_t kills = 0, works = 0, heirs = 0;
  std::map<std::string, std::uint64_t> deeds;
  int failures = 0;
  for (std::uint64_t seed = trials.seed.value_or(1); failures < 5 && kills < aim; ++seed, ++works) {
    const bool survivor = seed % 2 == 0;
    const Workload work =
        seed % 16 == 1 ? Workload::first(seed) : Workload::make(seed, {3, 1, survivor, seed % 16 == 2});
    const SimDisk company = companyDisk(work);
    SeededRandom random(seed);
    bool killed = true;
    for (Deaths deaths{1}; killed; ++deaths.worker) {
      deaths.heir = random.oneIn(4) ? 1 + random.below(60) : 0;
      KillRun run(work, company, survivor);
      const Wrong wrong = run.run(deaths);
      killed = !run.killedIn().empty();
      if (killed) ++deeds[run.killedIn()];
      kills += killed ? 1 : 0;
      heirs += run.heirKilled() ? 1 : 0;
      if (!wrong) continue;
      ++failures;
      ADD_FAILURE() << "killed at call " << deaths.worker << " (" << run.killedIn() << "), the heir at " << deaths.heir
                    << ": " << *wrong << "\n"
                    << work.describe() << "\n"
                    << Trials::repeating(seed, "test_store_crash", "Kill.LeavesAnsweredWorkAndNoLocks");
      break;
    }
    if (trials.seed) break;
  }
  std::printf("%llu works, %llu kills, %llu more of an heir\n", static_cast<unsigned long long>(works),
              static_cast<unsigned long long>(kills), static_cast<unsigned long long>(heirs));
  for (const auto& [deed, count] : deeds)
    std::printf("  %s %llu\n", deed.c_str(), static_cast<unsigned long long>(count));
  if (trials.seed || failures > 0) return;
  EXPECT_GE(kills, aim);
  EXPECT_GE(heirs, aim / 20);
  if (trials.share < 1) return;
  for (const char* deed : kMustDie) EXPECT_GT(deeds[deed], 0) << "nobody died in: " << deed;
}

}  // namespace
}  // namespace quillon::sim
