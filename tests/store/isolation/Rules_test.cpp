// What processes may do to each other's locks, rows and transactions.
//
// Method: three simulated processes with several cursors each on two tables take random steps one after another, so
// that every order of short pieces of work comes up: opens, exclusive opens, table locks, edits, posts, deletes,
// transactions, kills. Plain rules say for each step which error it must give, and after each what every open cursor of
// every process finds in the tables. At the end nobody holds anything and the files are sound.
#include <gtest/gtest.h>

#include <cstdio>

#include "store/Cursor.h"
#include "store/Verify.h"
#include "support/LockRules.h"
#include "support/SeededRandom.h"
#include "support/SimProcess.h"
#include "support/Trials.h"

namespace quillon::sim {
namespace {

using store::Cursor;
using store::FieldType;
using store::IndexOptions;
using store::TableDef;
using store::Value;
using State = RuleCursor::State;

constexpr const char* kTables[kRuleTables] = {"First", "Second"};

store::Settings impatient() {
  store::Settings settings;
  settings.lockRetryCount = 1;
  settings.cacheBytes = std::size_t{1} << 20;
  return settings;
}

SimDisk emptyTables() {
  SimDisk disk;
  SimClock clock;
  disk.process()->makeFolder(kSharedFolder);
  SimProcess maker(disk, clock, {});
  maker.open();
  for (const char* table : kTables) {
    maker.database().createTable(
        TableDef::of(table, {{"ID", FieldType::integer}, {"V", FieldType::integer}, {"N", FieldType::memo}},
                     {{"", "ID", IndexOptions::unique}, {"ByV", "V"}}));
    Cursor cursor(maker.database(), table);
    cursor.open();
    for (int row = 1; row <= 3; ++row) {
      cursor.insert();
      cursor["ID"] = row;
      cursor["V"] = 0;
      cursor.post();
    }
  }
  return disk;
}

// A process and its cursors.
struct Desk {
  Desk(const SimDisk& disk, SimClock& clock) : process(disk, clock, impatient()) {
    process.open();
    for (int c = 0; c < kRuleCursors; ++c)
      cursors.push_back(std::make_unique<Cursor>(process.database(), kTables[tableOfCursor(c)]));
  }
  SimProcess process;
  std::vector<std::unique_ptr<Cursor>> cursors;
};

class RulesTrial {
 public:
  RulesTrial(const SimDisk& start, std::uint64_t seed) : random_(seed), disk_(start.settled()) {
    for (int table = 0; table < kRuleTables; ++table)
      for (int row = 1; row <= 3; ++row) rules_.putRow(table, row, 0);
    for (int p = 0; p < kRuleProcesses; ++p) desks_.push_back(std::make_unique<Desk>(disk_, clock_));
  }

  void run(int steps) {
    for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) {
      clock_.advance(1);
      step();
      lookAll();
      if (testing::Test::HasFailure()) std::printf("at step %d of:%s\n", i, said_.c_str());
    }
    if (!testing::Test::HasFailure()) finish();
  }

  static inline std::map<int, std::uint64_t> codes;  // how often each came

 private:
  template <typename Call>
  void expect(const std::string& what, int expected, const Call& call) {
    said_ += "\n  " + std::to_string(p_) + "." + std::to_string(c_) + " " + what + " -> " + std::to_string(expected);
    EXPECT_EQ(static_cast<int>(codeOf(call)), expected) << what;
    ++codes[expected];
  }

  Cursor& real() { return *desks_[static_cast<std::size_t>(p_)]->cursors[static_cast<std::size_t>(c_)]; }
  store::Database& database() { return desks_[static_cast<std::size_t>(p_)]->process.database(); }

  void step() {
    p_ = static_cast<int>(random_.below(kRuleProcesses));
    c_ = static_cast<int>(random_.below(kRuleCursors));
    const RuleCursor& cursor = rules_.cursor(p_, c_);
    const std::size_t kind = random_.below(100);
    if (kind < 8) return transaction();
    if (kind < 9) return kill();
    if (kind < 11) {
      rules_.settle(p_);
      return expect("settle", 0, [&] { database().settle(); });
    }
    if (cursor.state == State::closed) {
      const bool exclusive = random_.oneIn(12);
      const int code = rules_.open(p_, c_, exclusive);
      return expect(exclusive ? "open exclusively" : "open", code, [&] {
        real().setExclusive(exclusive);
        real().open();
      });
    }
    if (kind < 18) {
      rules_.close(p_, c_);
      return expect("close", 0, [&] { real().close(); });
    }
    if (kind < 26) return lock();
    if (cursor.state != State::browse) return finishRow();
    if (!cursor.row || random_.oneIn(4)) return goTo();
    change();
  }

  void lock() {
    if (random_.oneIn(2)) {
      const int code = rules_.lockTable(p_, c_);
      return expect("lockTable", code, [&] { real().lockTable(); });
    }
    rules_.unlockTable(p_, c_);
    expect("unlockTable", 0, [&] { real().unlockTable(); });
  }

  void goTo() {
    const int row = 1 + static_cast<int>(random_.below(static_cast<std::size_t>(random_.oneIn(3) ? lastRow_ : 3)));
    const bool there = rules_.goTo(p_, c_, row);
    expect("goTo " + std::to_string(row) + (there ? "" : " (none)"), 0,
           [&] { EXPECT_EQ(real().findKey({row}), there) << "row " << row; });
  }

  void change() {
    if (random_.oneIn(8)) {
      const int code = rules_.remove(p_, c_);
      return expect("remove", code, [&] { real().remove(); });
    }
    if (random_.oneIn(5)) {
      rules_.insert(p_, c_, ++lastRow_);
      rules_.cursor(p_, c_).typed = ++lastValue_;
      return expect("insert " + std::to_string(lastRow_), 0, [&] {
        real().insert();
        real()["ID"] = lastRow_;
        real()["V"] = lastValue_;
        if (random_.oneIn(3)) real()["N"] = std::string(random_.below(900) + 1, 'n');
      });
    }
    const int code = rules_.edit(p_, c_);
    if (code == 0) rules_.cursor(p_, c_).typed = ++lastValue_;
    expect("edit", code, [&] {
      real().edit();
      real()["V"] = lastValue_;
    });
  }

  void finishRow() {
    if (random_.oneIn(3)) {
      rules_.cancel(p_, c_);
      return expect("cancel", 0, [&] { real().cancel(); });
    }
    const int code = rules_.post(p_, c_);
    expect("post", code, [&] { real().post(); });
  }

  void transaction() {
    if (rules_.inTransaction(p_) && random_.percent(90)) {
      const bool commits = random_.oneIn(2);
      commits ? rules_.commit(p_) : rules_.rollback(p_);
      return expect(commits ? "commit" : "rollback", 0, [&] { commits ? database().commit() : database().rollback(); });
    }
    std::set<int> tables{static_cast<int>(random_.below(kRuleTables))};
    if (random_.oneIn(2)) tables = {0, 1};
    const int code = rules_.startTransaction(p_, tables);
    std::vector<std::string> names;
    for (const int table : tables) names.insert(names.begin(), kTables[table]);
    expect("start of " + std::to_string(tables.size()) + " from " + kTables[*tables.begin()], code,
           [&] { database().startTransaction(names); });
  }

  void kill() {
    said_ += "\n  " + std::to_string(p_) + " is killed";
    desks_[static_cast<std::size_t>(p_)]->process.kill();
    desks_[static_cast<std::size_t>(p_)] = std::make_unique<Desk>(disk_, clock_);
    rules_.kill(p_);
  }

  void lookAll() {
    for (int p = 0; p < kRuleProcesses; ++p)
      for (int c = 0; c < kRuleCursors && !testing::Test::HasFailure(); ++c) look(p, c);
  }

  void look(int p, int c) {
    Cursor& cursor = *desks_[static_cast<std::size_t>(p)]->cursors[static_cast<std::size_t>(c)];
    const RuleCursor& rule = rules_.cursor(p, c);
    const std::string who = std::to_string(p) + "." + std::to_string(c);
    ASSERT_EQ(static_cast<int>(cursor.state()), static_cast<int>(rule.state)) << who;
    if (rule.state == State::closed) return;
    const auto& rows = rules_.view(p, tableOfCursor(c));
    EXPECT_EQ(cursor.recordCount(), rows.size()) << who;
    for (int row = 1; row <= lastRow_; ++row) {
      const auto found = rows.find(row);
      const Value value = cursor.lookup("ID", {row}, "V");
      EXPECT_EQ(value.toText(), found == rows.end() ? "null" : std::to_string(found->second)) << who << " row " << row;
    }
    if (rule.state == State::browse) return;
    EXPECT_EQ(cursor["ID"].asInt(), rule.typedRow) << who;
    EXPECT_EQ(cursor["V"].asInt(), rule.typed) << who;
  }

  void finish() {
    for (int p = 0; p < kRuleProcesses; ++p) {
      rules_.settle(p);
      if (rules_.inTransaction(p)) rules_.rollback(p);
      for (int c = 0; c < kRuleCursors; ++c) rules_.cursor(p, c) = {};
      if (random_.oneIn(2)) {
        desks_[static_cast<std::size_t>(p)]->cursors.clear();
      }
      desks_[static_cast<std::size_t>(p)].reset();
    }
    desks_.clear();
    SimProcess last(disk_, clock_, impatient());
    last.open();
    for (int table = 0; table < kRuleTables; ++table) {
      Cursor cursor(last.database(), kTables[table]);
      cursor.setExclusive(true);
      EXPECT_EQ(codeOf([&] { cursor.open(); }), store::Code{}) << "a lock was left behind";
      LockRules::Rows rows;
      for (; cursor.isOpen() && !cursor.eof(); cursor.next()) rows[cursor["ID"].asInt()] = cursor["V"].asInt();
      EXPECT_EQ(rows, rules_.view(0, table)) << said_;
    }
    const auto report = store::verifyOpen(last.database());
    for (const auto& finding : report.findings) ADD_FAILURE() << finding.table << ": " << finding.text;
  }

  SeededRandom random_;
  SimDisk disk_;
  SimClock clock_;
  LockRules rules_;
  std::vector<std::unique_ptr<Desk>> desks_;
  int p_ = 0, c_ = 0, lastRow_ = 3, lastValue_ = 0;
  std::string said_;
};

TEST(Rules, SayWhatEachStepOfThreeProcessesGives) {
  const auto trials = Trials::fromEnvironment();
  const SimDisk start = emptyTables();
  const std::uint64_t first = trials.seed.value_or(1);
  const std::uint64_t count = trials.seed ? 1 : std::max<std::uint64_t>(trials.aim(1500, 10000), 1);
  for (std::uint64_t seed = first; seed < first + count; ++seed) {
    RulesTrial(start, seed).run(100);
    if (HasFailure()) {
      FAIL() << Trials::repeating(seed, "test_store_isolation", "Rules.SayWhatEachStepOfThreeProcessesGives");
    }
  }
  std::printf("%llu runs of 100 steps; codes:", static_cast<unsigned long long>(count));
  for (const auto& [code, times] : RulesTrial::codes)
    std::printf(" %d %llu times", code, static_cast<unsigned long long>(times));
  std::printf("\n");
  if (count < 100) return;
  for (const int code : {10258, 8708, 11013, 9015}) EXPECT_GT(RulesTrial::codes[code], count / 10) << code;
}

}  // namespace
}  // namespace quillon::sim
