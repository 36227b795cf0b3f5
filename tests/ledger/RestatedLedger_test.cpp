// Statements at the rates of the periods: balances of accounts in a foreign currency against ones worked out in whole
// cents, the rounding, and that there is one at a time, which leaves the ledger alone.
#include "ledger/RestatedLedger.h"

#include <gtest/gtest.h>

#include "ledger/ComposeStatement.h"
#include "ledger/Statements.h"
#include "ledger/Totals.h"
#include "store/schema/CreateCompany.h"
#include "support/LedgerFigures.h"
#include "support/PostedBooks.h"
#include "support/Refusal.h"
#include "support/SimProcess.h"

namespace quillon::ledger {
namespace {

constexpr int kYear = 2026;

// The accounts of a foreign currency, the account for gain and loss, and others that stay; each a line.
class RestatedStatements : public testing::Test {
 protected:
  static constexpr int kBank = 1, kReceivable = 2, kPayable = 3, kGain = 4, kOther = 5, kHome = 6;

  RestatedStatements() {
    disk_.process()->makeFolder(sim::kSharedFolder);
    process_.open();
    store::createCompanyTables(database());
    StatementDefinition statement{.title = "Accounts", .format = "Balance: Compare year"};
    for (int id = kBank; id <= kHome; ++id) {
      const std::string number = std::to_string(id);
      run("INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (" + number + ", '" + number +
          "', '" + number + "', 1)");
      statement.lines.push_back(
          {.seq = id, .heading = number, .type = LineType::detail, .ranges = {{.from = number, .to = number}}});
    }
    run("INSERT INTO FStmt (StmtID, StmtTitle, ColumnFormat) VALUES (1, 'Accounts', 'Balance: Compare year')");
    writeStatementLines(database(), 1, statement);
    addCurrency(1, "1.5", kReceivable, kPayable);
    run("INSERT INTO Bank (BankID, BankName, BankGLAccountID, CurrencyID) VALUES (1, 'Foreign', 1, 1)");
    for (int period = 1; period <= kPeriods; ++period)
      run("UPDATE Currency SET ExchangeRateTY" + std::to_string(period) + " = " + rate(kYear, period) +
          ", ExchangeRateLY" + std::to_string(period) + " = " + rate(kYear - 1, period));
  }
  store::Database& database() { return process_.database(); }
  void run(const std::string& statement) { sim::runOn(database(), statement); }
  void addCurrency(int id, const std::string& exchangeRate, int receivable, int payable) {
    run("INSERT INTO Currency (CurrencyID, CurrencyName, ExchangeRate, ARGLAccountID, APGLAccountID, "
        "ARDiscGLAccountID, "
        "APDiscGLAccountID, GainLossExchangeGLAccntID) VALUES (" +
        std::to_string(id) + ", 'C" + std::to_string(id) + "', " + exchangeRate + ", " + std::to_string(receivable) +
        ", " + std::to_string(payable) + ", 5, 5, 4)");
  }
  void addTotals(int account, int year, const std::string& opening, const std::string& change,
                 const char* sub = "null") {
    std::string fields, values;
    for (int period = 1; period <= kPeriods; ++period) {
      fields += ", " + amountField(period);
      values += ", " + change;
    }
    run("INSERT INTO GLActual (GLAccountID, SubAccount1ID, GLYear, ActualBudget, OpeningBal" + fields + ") VALUES (" +
        std::to_string(account) + ", " + sub + ", " + std::to_string(year) + ", 'A', " + opening + values + ")");
  }
  // In quarters, so that what is worth a multiple of 0.04 comes to whole cents.
  static int quarters(int year, int period) { return (year == kYear ? 2 : 5) + period; }
  static std::string rate(int year, int period) { return Money::fromRaw(quarters(year, period) * 2500).toText(); }

  // By account, this year's balances and last year's.
  std::vector<std::array<Money, 2>> balances(int period, bool autoForex) {
    const Statement statement(database(), {.stmtId = 1, .year = kYear, .period = period, .autoForex = autoForex});
    std::vector<std::array<Money, 2>> all(1);
    for (const Statement::Line& line : statement.lines())
      all.push_back({line.values[0].asMoney(), line.values[1].asMoney()});
    return all;
  }

  sim::SimDisk disk_;
  sim::SimClock clock_;
  sim::SimProcess process_{disk_, clock_, {}};
};

TEST_F(RestatedStatements, ShowForeignBalancesAtThePeriodsRates) {
  addTotals(kBank, kYear, "1000", "-20.04");
  addTotals(kBank, kYear - 1, "40", "80");
  addTotals(kReceivable, kYear, "0", "12");  // and nothing of last year
  addTotals(kReceivable, kYear, "400", "4", "1");
  addTotals(kPayable, kYear, "-600", "-3.16");
  addTotals(kOther, kYear, "200", "7.2");
  addTotals(kGain, kYear, "0", "1");  // none of last year, which is made
  addCurrency(2, "0", kOther, kOther);
  for (int period = 1; period <= kPeriods; ++period) {
    const auto before = balances(period, false), after = balances(period, true);
    Money difference[2];
    for (const int account : {kBank, kReceivable, kPayable})
      for (const int back : {0, 1}) {
        const std::size_t place = static_cast<std::size_t>(account), year = static_cast<std::size_t>(back);
        Money units = before[place][year], stays;
        if (account == kReceivable && back == 0) stays = Money::fromRaw((400 + 4 * period) * Money::kScale);
        units -= stays;
        const Money worth = Money::fromRaw(units.raw() / 4 * quarters(kYear - back, period));
        EXPECT_EQ(after[place][year], worth + stays) << "account " << account << ", period " << period << ", " << back;
        difference[back] += worth - units;
      }
    for (const std::size_t year : {0u, 1u}) {
      EXPECT_EQ(after[kGain][year], before[kGain][year] - difference[year]) << "period " << period;
      EXPECT_EQ(after[kOther][year], before[kOther][year]);
    }
  }
}

TEST_F(RestatedStatements, RoundEachBalanceHalfAwayFromZero) {
  run("UPDATE Currency SET ExchangeRateTY1 = 1.005, ExchangeRateTY2 = 1");
  addTotals(kBank, kYear, "1", "0");
  addTotals(kPayable, kYear, "-1", "0");
  EXPECT_EQ(balances(1, true)[kBank][0], Money::fromRaw(10100));
  EXPECT_EQ(balances(1, true)[kPayable][0], Money::fromRaw(-10100));
  EXPECT_EQ(balances(2, true)[kBank][0], Money::fromRaw(10000));
}

TEST_F(RestatedStatements, AreOneAtATimeAndLeaveTheLedgerAlone) {
  addTotals(kBank, kYear, "1000", "5");
  const StatementRequest request{.stmtId = 1, .year = kYear, .period = 1, .autoForex = true};
  const auto totals = sim::rowsOf(database(), sim::kTotals);
  {
    const Statement first(database(), request);
    EXPECT_EQ(sim::refusalOf([&] { const Statement second(database(), request); }),
              "This report (with Auto-Forex) is already running.\rMultiple instances are not allowed");
  }
  run("UPDATE Currency SET GainLossExchangeGLAccntID = null");
  EXPECT_EQ(sim::refusalOf([&] { const Statement statement(database(), request); }),
            "Currency 'C1' has no account for gain and loss on exchange");
  run("UPDATE Currency SET GainLossExchangeGLAccntID = 4");
  const Statement again(database(), request);
  EXPECT_EQ(sim::rowsOf(database(), sim::kTotals), totals);
}

}  // namespace
}  // namespace quillon::ledger
