// Whatever is posted, unposted and purged, in whatever order: history and totals are those of the vouchers that stand
// posted, and the audit agrees.
//
// Method of the random work: vouchers come from the writer that the subledgers call, runs and unpostings go through the
// screens, and the model works out both stores anew from the vouchers alone.
#include "ledger/PostVouchers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "form/Input.h"
#include "form/Transaction.h"
#include "ledger/Screens.h"
#include "ledger/WriteVoucher.h"
#include "shell/Session.h"
#include "store/Query.h"
#include "store/schema/CreateCompany.h"
#include "support/LedgerFigures.h"
#include "support/ScriptedPerson.h"
#include "support/SeededRandom.h"
#include "support/SimDesktop.h"
#include "support/SimProcess.h"
#include "support/Trials.h"

namespace quillon::ledger {
namespace {

using sim::auditText;
using sim::kHistory;
using sim::kTotals;
using sim::Rows;
using sim::rowsOf;
using store::Value;

int writeOne(store::Database& database, const Voucher& voucher) {
  store::Cursor control(database, "JVCtl");
  control.setExclusive(true);
  control.open();
  int id = 0;
  form::transact(database, {"JV", "JVDet", "JVCtl"}, [&] { id = VoucherWriter(control).write(voucher); });
  return id;
}

VoucherLine lineOf(int account, Money amount, int subaccount = 0) {
  VoucherLine line{.account = account, .subaccounts = {}, .amount = amount};
  if (subaccount > 0) line.subaccounts[1] = subaccount;
  return line;
}

class PostVouchersTest : public testing::Test {
 protected:
  PostVouchersTest() {
    disk_.process()->makeFolder(sim::kSharedFolder);
    other_.open();
    store::createCompanyTables(other_.database());
    run("INSERT INTO Company (CompanyName, FiscalYear) VALUES ('Pine', 2025)");
    for (const std::string id : {"1", "2", "3"}) {
      run("INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (" + id + ", '" + id + "', '" +
          id + "', 1)");
      run("INSERT INTO GLAcSub2 (SubAccountID, SubAccount, SubAccountName) VALUES (" + id + ", '" + id + "', '" + id +
          "')");
    }
    shell::registerScreens(session_);
    ledger::registerScreens(session_);
    session_.attach(sim::kSharedFolder);
  }
  ~PostVouchersTest() override { session_.detach(); }

  store::Database& database() { return session_.database(); }
  void run(const std::string& statement) { store::Query(other_.database(), statement).execute(); }

  // The run, with OK.
  form::Ended postAll() {
    form::Ended ended;
    person_.modals.push_back([&](form::Screen& screen) {
      form::Input input(session_.app());
      ended = input.click(screen, *screen.find("btnOK"));
    });
    session_.app().runModal("TfrmJVsPost");
    return ended;
  }
  form::Ended unpost(int id) {
    person_.answers.push_front(form::Button::yes);
    form::Screen& screen = session_.app().open("TfrmJV", {.locate = {{"JVID", Value(id)}}});
    form::Input input(session_.app());
    const form::Ended ended = input.click(screen, *screen.find("btnUnpost"));
    session_.app().dismiss(screen);
    return ended;
  }

  sim::SimDisk disk_;
  sim::SimClock clock_;
  sim::SimProcess other_{disk_, clock_, {}};
  std::unique_ptr<store::FileSystem> files_ = disk_.process();
  sim::ScriptedPerson person_;
  sim::SimDesktop desktop_;
  shell::Session session_{store::Environment{*files_, clock_, "BEN", "PC", 99}, person_, desktop_};
};

// The vouchers as they were written, and what the ledger has to hold of them.
class Model {
 public:
  struct Kept {
    Voucher voucher;
    bool reverses = false, posted = false;
    std::multimap<int, std::string> history = {};  // by year
  };
  std::map<int, Kept> vouchers;

  std::vector<int> posted() const {
    std::vector<int> ids;
    for (const auto& [id, kept] : vouchers)
      if (kept.posted) ids.push_back(id);
    return ids;
  }
  void post() {
    for (auto& [id, kept] : vouchers) {
      if (std::exchange(kept.posted, true)) continue;
      eachEntry(kept, [&, id = id, &into = kept](const std::string& key, Period period, Money amount) {
        into.history.emplace(period.year, historyOf(key, period, amount) + std::to_string(id) + " ");
        touched_[key].insert(period.key());
      });
    }
  }
  // False: of what was purged only a part, which leaves no trace of it; no audit can tell from then on.
  bool unpost(int id) {
    Kept& kept = vouchers.at(id);
    kept.posted = false;
    const std::size_t whole = kept.voucher.lines.size() * (kept.reverses ? 2 : 1), left = kept.history.size();
    if (kept.history.empty())
      eachEntry(kept, [&](const std::string& key, Period period, Money amount) {
        cancelling_.emplace(period.year, historyOf(key, period, -amount) + "null ");
      });
    kept.history.clear();
    return left == 0 || left == whole;
  }
  void purge(int beforeYear) {
    const auto old = [&](const auto& row) { return row.first < beforeYear; };
    std::erase_if(cancelling_, old);
    for (auto& [id, kept] : vouchers) std::erase_if(kept.history, old);
  }
  // Where all is gone the audit takes none of it for purged.
  bool hasHistory() const {
    return std::ranges::any_of(vouchers, [](const auto& some) { return !some.second.history.empty(); });
  }
  Rows history() const {
    Rows rows;
    for (const auto& [year, row] : cancelling_) rows.insert(row);
    for (const auto& [id, kept] : vouchers)
      for (const auto& [year, row] : kept.history) rows.insert(row);
    return rows;
  }
  // Of each month that was ever posted to.
  Rows totals() const {
    std::map<std::string, std::map<int, Money>> sums;
    for (const auto& [key, periods] : touched_)
      for (const int period : periods) sums[key][period];
    for (const auto& [id, kept] : vouchers)
      if (kept.posted)
        eachEntry(kept,
                  [&](const std::string& key, Period period, Money amount) { sums[key][period.key()] += amount; });
    std::map<std::string, std::map<int, std::string>> years;
    for (const auto& [key, months] : sums)
      for (const auto& [period, sum] : months)
        years[key + std::to_string(period / 100) + " A null "][period % 100] = sum.toText();
    Rows rows;
    for (const auto& [key, months] : years) {
      std::string row = key;
      for (int month = 1; month <= 12; ++month) row += (months.contains(month) ? months.at(month) : "null") + " ";
      rows.insert(row);
    }
    return rows;
  }

 private:
  static std::string historyOf(const std::string& key, Period period, Money amount) {
    return key + std::to_string(period.year) + " " + std::to_string(period.number) + " " + amount.toText() + " ";
  }
  template <typename Action>
  static void eachEntry(const Kept& kept, const Action& action) {
    const Period period = kept.voucher.period;
    const Period next = period.number == 12 ? Period{period.year + 1, 1} : Period{period.year, period.number + 1};
    for (const VoucherLine& line : kept.voucher.lines) {
      const std::string key = line.account.toText() + " null " + line.subaccounts[1].toText() + " null ";
      const Money amount = line.amount.asMoney();
      action(key, period, amount);
      if (kept.reverses) action(key, next, Money() - amount);
    }
  }

  std::map<std::string, std::set<int>> touched_;
  std::multimap<int, std::string> cancelling_;  // by year
};

// Of a period in `fromYear` or the year after it.
Voucher randomVoucher(sim::SeededRandom& random, int fromYear) {
  const auto below = [&](std::size_t limit) { return static_cast<int>(random.below(limit)); };
  Voucher voucher{.period = {fromYear + below(2), random.oneIn(3) ? 12 : 1 + below(12)},
                  .source = "AR",
                  .transType = "Inv",
                  .date = Date(2025, 6, 1 + static_cast<unsigned>(random.below(30))),
                  .description = "some",
                  .documents = {{"CustomerID", 1 + below(9)}}};
  Money rest;
  for (int lines = below(5); lines > 0; --lines) {
    const Money amount = Money::fromRaw(below(2'000'001) - 1'000'000);
    voucher.lines.push_back(lineOf(1 + below(3), amount, below(3)));
    rest -= amount;
  }
  if (!voucher.lines.empty()) voucher.lines.push_back(lineOf(1, rest));
  return voucher;
}

class RandomPosting : public PostVouchersTest, public testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(Seeds, RandomPosting, testing::Range(1, 9));

TEST_P(RandomPosting, LeavesWhatTheVouchersSay) {
  const sim::Trials trials = sim::Trials::fromEnvironment();
  const std::uint64_t seed = trials.seed.value_or(static_cast<std::uint64_t>(GetParam()));
  SCOPED_TRACE(sim::Trials::repeating(seed, "test_ledger", "*RandomPosting*/0"));
  sim::SeededRandom random(seed);
  Model model;
  bool auditable = true;
  int year = 2025;  // what comes before it was purged, and takes no more vouchers
  for (std::uint64_t step = 0; step < trials.aim(80, 800); ++step) {
    const std::vector<int> posted = model.posted();
    const std::size_t deed = random.below(10);
    if (deed < 4) {
      Model::Kept kept{.voucher = randomVoucher(random, year), .reverses = random.oneIn(3)};
      const int id = writeOne(database(), kept.voucher);
      if (kept.reverses) run("UPDATE JV SET AutoReverse = true WHERE JVID = " + std::to_string(id));
      model.vouchers.emplace(id, std::move(kept));
    } else if (deed < 6) {
      ASSERT_TRUE(postAll().ok) << person_.takeHeard();
      model.post();
    } else if (deed < 9 && !posted.empty()) {
      const int id = posted[random.below(posted.size())];
      ASSERT_TRUE(unpost(id).ok) << person_.takeHeard();
      if (!model.unpost(id)) auditable = false;
    } else if (random.oneIn(4)) {
      if (random.oneIn(3)) ++year;
      ASSERT_TRUE(postAll().ok);
      model.post();
      run("DELETE FROM GLHist WHERE GLYear < " + std::to_string(year));
      model.purge(year);
    }
    ASSERT_EQ(rowsOf(database(), kTotals), model.totals()) << "step " << step;
    ASSERT_EQ(rowsOf(database(),
                     "SELECT GLAccountID, SubAccount1ID, SubAccount2ID, SubAccount3ID, GLYear, GLPeriod, Amount, JVID "
                     "FROM GLHist"),
              model.history())
        << "step " << step;
    if (auditable && model.hasHistory()) {
      ASSERT_EQ(auditText(database()), "") << "step " << step;
    }
  }
}

// Whoever gives up at the second table leaves the first one free.
TEST_F(PostVouchersTest, WaitsForWhoeverHoldsTheTotals) {
  const int id = writeOne(database(), {.period = {2025, 3},
                                       .source = "AR",
                                       .transType = "Pmt",
                                       .date = Date(2025, 3, 1),
                                       .lines = {lineOf(1, Money::fromRaw(5)), lineOf(2, Money::fromRaw(-5))}});
  store::Cursor totals(other_.database(), "GLActual"), vouchers(other_.database(), "JV");
  totals.open();
  vouchers.open();
  const std::string words = std::string("error: ") + kTotalsAreLocked;
  const auto expectRefused = [&](const std::function<form::Ended()>& deed) {
    totals.lockTable();
    person_.answers = {form::Button::retry, form::Button::cancel};
    person_.heard.clear();
    EXPECT_EQ(deed().code, 10258);
    EXPECT_EQ(std::ranges::count(person_.heard, words), 2) << person_.takeHeard();
    totals.unlockTable();
    vouchers.lockTable();
    vouchers.unlockTable();
  };
  expectRefused([this] { return postAll(); });
  EXPECT_EQ(rowsOf(database(), kHistory).size(), 0u);
  EXPECT_TRUE(postAll().ok) << person_.takeHeard();
  expectRefused([&] { return unpost(id); });
  EXPECT_EQ(rowsOf(database(), kHistory).size(), 2u);
}

TEST_F(PostVouchersTest, NumbersAreFreeInTheirPeriodOnly) {
  const auto next = [this](int number, Period period) {
    run("UPDATE JVCtl SET NextJVNumber = " + std::to_string(number));
    const int id =
        writeOne(database(), {.period = period,
                              .source = "AP",
                              .transType = "Inv",
                              .date = Date(2025, 3, 1),
                              .lines = {lineOf(1, Money::fromRaw(70000)), lineOf(2, Money::fromRaw(-70000))}});
    return *rowsOf(database(),
                   "SELECT JVNumber, JVAmount, Posted, AutoReverse, NextJVNumber - JVNumber FROM JV, JVCtl "
                   "WHERE JVID = " +
                       std::to_string(id))
                .begin();
  };
  for (const auto& [number, period, given] : {std::tuple{0, Period{2025, 1}, 1001},
                                              {1001, {2025, 1}, 1002},
                                              {1001, {2025, 2}, 1001},
                                              {1000, {2025, 1}, 1003},
                                              {10000000, {2025, 1}, 10000000},
                                              {10000000, {2025, 1}, 10000001},
                                              {10000001, {2025, 1}, 1004}})
    EXPECT_EQ(next(number, period), std::to_string(given) + " 7 False False 1 ") << number;
}

}  // namespace
}  // namespace quillon::ledger
