// A process dies and the system lives.
//
// Method: a workload runs once on a simulated disk to count its calls; then, for every one of them, it runs again and
// its process is killed there: nothing written is lost, its locks vanish. In half of the workloads another process has
// the tables open all the time, in the others a new one opens the company. It goes on at once: it must see what was
// answered as done, the operation under way wholly or not at all; it must get the locks of the dead one, write, and
// find what it wrote after a power cut. A new process must see the same and get tables exclusively.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "store/Errors.h"
#include "support/CompanyCheck.h"
#include "support/SeededRandom.h"
#include "support/Trials.h"

namespace quillon::sim {
namespace {

using Wrong = std::optional<std::string>;

class KillRun {
 public:
  KillRun(const Workload& work, const SimDisk& company, bool survivor)
      : work_(work), disk_(company.imageAfterCut({{}, 0})), survives_(survivor) {}

  // Kills before the worker's call `number`; 0: never. False in `killed` when it came to its end before.
  Wrong run(std::uint64_t number, std::uint64_t& calls, bool& killed) {
    SimClock clock;
    clock.advance(kLaterMicroseconds);
    Worker other(disk_, clock, work_.settings);
    Allowed now{&work_.start};
    try {
      if (survives_) {
        other.open();
        other.watch();
      }
      Worker worker(disk_, clock, work_.settings);
      disk_.beforeEvent([&](const SimEvent& event) {
        if (event.process != worker.process() || ++calls != number) return;
        killed = true;
        disk_.killProcess(worker.process());
      });
      killed = false;
      try {
        for (const Task& task : work_.tasks) {
          now = allowedDuring(task);
          worker.run(task);
          if (killed) break;  // a destructor kept it to itself
          now = {&task.after()};
        }
        worker.close();
      } catch (const ProcessKilled&) {
        // The tables are what is looked at.
      } catch (const store::StoreError&) {
        if (!killed) throw;
      }
    } catch (const store::StoreError& error) {
      return std::string("the work itself raised: ") + error.what();
    }
    disk_.beforeEvent({});
    return goOn(other, clock, now, number);
  }

 private:
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
      write(other.database(), written, which);
      Allowed allowed;
      for (CompanyState& state : next) {
        for (auto& [name, table] : written.tables) state.tables[name].rows = table.rows;
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
};

TEST(Kill, LeavesAnsweredWorkAndNoLocks) {
  const Trials trials = Trials::fromEnvironment();
  const std::uint64_t aim = trials.aim(10'000, 30'000);
  std::uint64_t kills = 0, works = 0;
  int failures = 0;
  for (std::uint64_t seed = trials.seed.value_or(1); failures < 5 && kills < aim; ++seed, ++works) {
    const bool survivor = seed % 2 == 0;
    const Workload work = seed % 16 == 1 ? Workload::first(seed) : Workload::make(seed, {3, 1, survivor});
    const SimDisk company = companyDisk(work);
    bool killed = true;
    for (std::uint64_t number = 1; killed; ++number) {
      std::uint64_t calls = 0;
      const Wrong wrong = KillRun(work, company, survivor).run(number, calls, killed);
      ++kills;
      if (!wrong) continue;
      ++failures;
      ADD_FAILURE() << "killed at call " << number << ": " << *wrong << "\n"
                    << work.describe() << "\n"
                    << Trials::repeating(seed, "test_store_crash", "Kill.LeavesAnsweredWorkAndNoLocks");
      break;
    }
    if (trials.seed) break;
  }
  std::printf("%llu works, %llu kills\n", static_cast<unsigned long long>(works),
              static_cast<unsigned long long>(kills));
  if (!trials.seed && failures == 0) {
    EXPECT_GE(kills, aim);
  }
}

}  // namespace
}  // namespace quillon::sim
