// However books came to be what they are, the ledger's reports agree: what the general ledger ends with, its summary,
// the trial balance, GL totals and the statements tell the same balances of each period of each year, and all of them
// balance.
#include <gtest/gtest.h>

#include "form/App.h"
#include "ledger/MakeReports.h"
#include "ledger/Statements.h"
#include "ledger/Totals.h"
#include "reports/Report.h"
#include "support/PostedBooks.h"
#include "support/SimProcess.h"
#include "support/Trials.h"

namespace quillon::ledger {
namespace {

using store::Value;
using Balances = std::map<std::string, Money>;  // of an account with its subaccounts; none is zero

// A report's rows, read as the pages do.
class Rows {
 public:
  Rows(form::App& app, ReportPtr report, const form::Open& open) : report_(std::move(report)), bands_(app.formats()) {
    report_->tell(bands_, open);
    there_ = report_->first();
  }
  explicit operator bool() const { return there_; }
  void next() { there_ = report_->next(); }
  Value value(std::string_view caption) {
    for (const reports::Column& column : bands_.columns)
      if (column.caption == caption) return column.value ? column.value() : report_->value(column.field);
    throw std::runtime_error("no column " + std::string(caption));
  }
  Money amount(std::string_view caption) { return value(caption).asMoney(); }
  std::string account() { return value("Account no.").asText() + "   " + value("Name").asText(); }
  std::string heading() { return bands_.groups.front().heading(); }

 private:
  ReportPtr report_;
  reports::Bands bands_;
  bool there_ = false;
};

class LedgerReports : public testing::TestWithParam<int> {
 protected:
  LedgerReports() {
    disk_.process()->makeFolder(sim::kSharedFolder);
    other_.open();
    sim::makeBooks(other_.database());
    clerk_ = std::make_unique<sim::Clerk>(*files_, clock_, sim::kSharedFolder, desktop_, 99);
  }

  void step() {
    const std::size_t deed = random_.below(8);
    if (deed < 4) {
      const ledger::Voucher voucher = sim::randomVoucher(random_, year_);
      const int id = clerk_->write(voucher);
      if (random_.oneIn(3))
        sim::runOn(other_.database(), "UPDATE JV SET AutoReverse = true WHERE JVID = " + std::to_string(id));
      years_[id] = voucher.period.year;
    } else if (deed < 6) {
      post();
    } else if (deed < 7 && !posted_.empty()) {
      const auto voucher = std::next(posted_.begin(), static_cast<std::ptrdiff_t>(random_.below(posted_.size())));
      if (voucher->second < year_) return;
      ASSERT_TRUE(clerk_->unpost(voucher->first).ok) << clerk_->person.takeHeard();
      years_.insert(posted_.extract(voucher));
    } else {
      post();
      const bool close = random_.oneIn(2);
      ASSERT_TRUE(clerk_->yearEnd(close).ok) << clerk_->person.takeHeard();
      if (close) ++year_;
    }
  }
  void post() {
    ASSERT_TRUE(clerk_->postAll().ok) << clerk_->person.takeHeard();
    posted_.merge(years_);
  }

  Rows rows(ReportPtr (*make)(shell::Session&), const form::Open& open) {
    return {clerk_->session.app(), make(clerk_->session), open};
  }
  static void keep(Balances& balances, const std::string& account, Money balance) {
    if (balance == Money())
      balances.erase(account);
    else
      balances[account] = balance;
  }
  Balances generalLedger(const form::Open& open) {
    Balances balances;
    for (Rows all = rows(makeTrptGeneralLedger, open); all; all.next())
      keep(balances, all.heading(), all.amount("Balance"));
    return balances;
  }
  Balances summary(const form::Open& open) {
    Balances balances;
    for (Rows all = rows(makeTrptGeneralLedgerSummary, open); all; all.next()) {
      keep(balances, all.account(), all.amount("Balance"));
      EXPECT_EQ(all.amount("Opening Balance") + all.amount("Debits") - all.amount("Credits"), all.amount("Balance"))
          << all.account();
    }
    return balances;
  }
  Balances trialBalance(const form::Open& open) {
    Balances balances;
    for (Rows all = rows(makeTrptTrialBalance, open); all; all.next())
      keep(balances, all.account(), all.amount("Debit") - all.amount("Credit"));
    return balances;
  }
  Balances totals(int year, int period) {
    Balances balances;
    for (Rows all = rows(makeTrptGLBalances,
                         {.filter = "a.GLYear = " + std::to_string(year), .values = {{"data", Value("Balance")}}});
         all; all.next())
      keep(balances, all.account(), all.amount("Period " + std::to_string(period)));
    return balances;
  }
  // Of each type of account what the balances come to.
  static std::map<AccountType, Money> byType(const Balances& balances) {
    constexpr std::array kTypes = {AccountType::asset, AccountType::revenue, AccountType::expense, AccountType::equity};
    std::map<AccountType, Money> sums;
    for (const auto& [account, balance] : balances)
      sums[kTypes.at(static_cast<std::size_t>(account.front() - '1'))] += balance;
    return sums;
  }
  Money ofStatement(StatementRequest request, const std::string& heading, std::size_t column) {
    const Statement statement(clerk_->database(), request);
    for (const Statement::Line& line : statement.lines())
      if (line.heading == heading) return line.values.at(column).asMoney();
    throw std::runtime_error(heading);
  }

  void check(int year, int period) {
    SCOPED_TRACE("period " + std::to_string(period) + "/" + std::to_string(year));
    const form::Open open{.values = {{"year", Value(year)}, {"period", Value(period)}}};
    const int last = period == 0 ? kPeriods : period;
    const Balances all = totals(year, last);
    EXPECT_EQ(trialBalance(open), all);
    EXPECT_EQ(generalLedger(open), all);
    EXPECT_EQ(summary(open), all);
    seen_ += all.size();
    std::map<AccountType, Money> sums = byType(all);
    const Money income = -sums[AccountType::revenue] - sums[AccountType::expense];
    EXPECT_EQ(sums[AccountType::asset], income - sums[AccountType::equity]);
    const StatementRequest sheet{.year = year, .period = last};
    EXPECT_EQ(ofStatement(sheet, "Total Assets", 0), sums[AccountType::asset]);
    EXPECT_EQ(ofStatement(sheet, "Total Liabilities & Equity", 0), sums[AccountType::asset]);
    const StatementRequest statement{.builtIn = StatementKind::incomeStatement, .year = year, .period = last};
    EXPECT_EQ(ofStatement(sheet, "Retained Earnings Current Year", 0), income);
    EXPECT_EQ(ofStatement(statement, "Net Income", 1), income);
  }

  sim::SimDisk disk_;
  sim::SimClock clock_;
  sim::SimProcess other_{disk_, clock_, {}};
  sim::SimDesktop desktop_;
  std::unique_ptr<store::FileSystem> files_ = disk_.process();
  std::unique_ptr<sim::Clerk> clerk_;
  sim::SeededRandom random_{0};
  std::map<int, int> years_, posted_;  // vouchers and their years
  int year_ = 2025;                    // the first open one
  std::size_t seen_ = 0;
};
INSTANTIATE_TEST_SUITE_P(Seeds, LedgerReports, testing::Range(1, 5));

TEST_P(LedgerReports, TellTheSameBalances) {
  const sim::Trials trials = sim::Trials::fromEnvironment();
  const std::uint64_t seed = trials.seed.value_or(static_cast<std::uint64_t>(GetParam()));
  SCOPED_TRACE(sim::Trials::repeating(seed, "test_ledger", "*TellTheSame*/0"));
  random_ = sim::SeededRandom(seed);
  for (std::uint64_t at = 1; at <= trials.aim(60, 600); ++at) {
    ASSERT_NO_FATAL_FAILURE(step()) << "step " << at;
    if (at % 6 != 0) continue;
    for (int year = year_ - 1; year <= year_ + 1; ++year)
      for (const int period : {0, 1, 1 + static_cast<int>(random_.below(12)), 12}) check(year, period);
    ASSERT_FALSE(HasFailure()) << "step " << at;
  }
  EXPECT_GT(seen_, 0u);
}

}  // namespace
}  // namespace quillon::ledger
