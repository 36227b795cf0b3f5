// What a year end writes: figures of any books, waiting for whoever holds the totals, cuts, and what the audit makes of
// openings.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>

#include "form/Input.h"
#include "ledger/CarryForward.h"
#include "ledger/Screens.h"
#include "store/Query.h"
#include "store/schema/CreateCompany.h"
#include "support/LedgerFigures.h"
#include "support/SeededRandom.h"
#include "support/Trials.h"
#include "support/Workplace.h"
#include "support/YearEndFigures.h"

namespace quillon::ledger {
namespace {

using sim::auditText;
using sim::kTotals;
using sim::rowsOf;
using store::Value;

constexpr int kRetainedEarnings = 5;

void run(store::Database& database, const std::string& statement) { store::Query(database, statement).execute(); }

// An account of each type, one for retained earnings, and totals of two years, with and without subaccounts.
void fillBooks(store::Database& database, sim::SeededRandom& random) {
  run(database, "INSERT INTO Company (CompanyNo, CompanyName, FiscalYear) VALUES (1, 'Pine', 2025)");
  for (int id = 1; id <= kRetainedEarnings + 1; ++id) {
    const std::string text = std::to_string(id);
    run(database, "INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType, RetainedEarnings) VALUES (" +
                      text + ", '" + text + "', '" + text + "', " + std::to_string(std::min(id, 5)) + ", " +
                      (id == kRetainedEarnings ? "true" : "false") + ")");
  }
  for (const std::string id : {"1", "2", "3"})
    run(database, "INSERT INTO GLAcSub2 (SubAccountID, SubAccount, SubAccountName) VALUES (" + id + ", '" + id +
                      "', '" + id + "')");
  store::Cursor totals(database, "GLActual");
  totals.open();
  const auto amount = [&] {
    return random.oneIn(4) ? Money() : Money::fromRaw(static_cast<std::int64_t>(random.below(2'000'001)) - 1'000'000);
  };
  const store::Database::BulkScope bulk(database);
  for (int account = 1; account <= kRetainedEarnings + 1; ++account)
    for (int subaccount = 0; subaccount <= 3; ++subaccount) {
      bool opened = account != 3 && account != 4;  // a row that posting added has no opening
      for (int year = 2025; year <= 2026; ++year) {
        if (random.oneIn(3)) {
          opened = false;
          continue;
        }
        totals.append();
        totals["GLAccountID"] = account;
        if (subaccount > 0) totals["SubAccount2ID"] = subaccount;
        totals["GLYear"] = year;
        totals["ActualBudget"] = "A";
        if (opened) totals["OpeningBal"] = amount();
        totals["Amount" + std::to_string(1 + random.below(12))] = amount();
        totals.post();
        opened = true;
      }
    }
  database.settle();
}

// As the run does, with a publish every few rows.
void carry(store::Database& database, sim::SimClock& clock) {
  store::Cursor totals(database, "GLActual");
  totals.open();
  totals.lockTable();
  carryForward(totals, 2025, kRetainedEarnings, [&](long, long) { clock.advance(400'000); });
  totals.flush();
  totals.unlockTable();
}

class YearEnd : public testing::Test, protected sim::Workplace {
 protected:
  YearEnd() {
    disk_.process()->makeFolder(sim::kSharedFolder);
    other_.open();
    store::createCompanyTables(other_.database());
    shell::registerScreens(session_);
    ledger::registerScreens(session_);
    session_.attach(sim::kSharedFolder);
  }
  ~YearEnd() override { session_.detach(); }

  store::Database& database() { return session_.database(); }
  form::Ended runYearEnd(int year) {
    form::Ended ended;
    person_.modals.push_back([&](form::Screen& screen) {
      form::Input input(session_.app());
      ended = input.click(screen, *screen.find("btnOK"));
    });
    confirmed_ = session_.app().runModal("TfrmYearEnd", {.values = {{"year", Value(year)}}}).confirmed;
    return ended;
  }

  bool confirmed_ = false;
};

TEST_F(YearEnd, CarriesForwardAnyBooks) {
  const sim::Trials trials = sim::Trials::fromEnvironment();
  for (std::uint64_t round = 0; round < trials.aim(40, 1000); ++round) {
    const std::uint64_t seed = trials.seed.value_or(round);
    SCOPED_TRACE(sim::Trials::repeating(seed, "test_ledger", "YearEnd.CarriesForwardAnyBooks"));
    sim::SeededRandom random(seed);
    for (const char* table : {"GLActual", "GLAccnt", "GLAcSub2", "Company"})
      run(other_.database(), std::string("DELETE FROM ") + table);
    fillBooks(other_.database(), random);
    ASSERT_TRUE(runYearEnd(2025).ok) << person_.takeHeard();
    ASSERT_TRUE(confirmed_);
    ASSERT_EQ(sim::carryFaults(database(), 2025), "");
    const sim::Rows once = rowsOf(database(), kTotals);
    ASSERT_TRUE(runYearEnd(2025).ok);
    ASSERT_EQ(rowsOf(database(), kTotals), once);
  }
}

TEST_F(YearEnd, WaitsForWhoeverHoldsTheTotals) {
  sim::SeededRandom random(1);
  fillBooks(other_.database(), random);
  const sim::Rows before = rowsOf(database(), kTotals);
  store::Cursor totals(other_.database(), "GLActual");
  totals.open();
  totals.lockTable();
  person_.answers = {form::Button::retry, form::Button::cancel};
  EXPECT_EQ(runYearEnd(2025).code, 10258);
  EXPECT_FALSE(confirmed_);
  const std::string words = "error: Unable to lock GL Actual table... this table is being updated by another job.";
  EXPECT_EQ(std::ranges::count(person_.heard, words), 2) << person_.takeHeard();
  EXPECT_EQ(rowsOf(database(), kTotals), before);
  totals.unlockTable();
  EXPECT_TRUE(runYearEnd(2025).ok);
  EXPECT_TRUE(confirmed_);
  totals.lockTable();  // it is free again
}

// A process that ends, and a power cut, at some moments of a run: the next run leaves what one alone would have left.
TEST_F(YearEnd, IsPutRightByRunningItAgain) {
  sim::SeededRandom random(2);
  fillBooks(other_.database(), random);
  const sim::SimDisk books = disk_.settled();
  sim::Rows full, none = rowsOf(database(), kTotals);
  std::uint64_t start = 0, end = 0;
  {
    sim::SimDisk disk = books.settled();
    sim::SimProcess process(disk, clock_, {});
    process.open();
    start = disk.events();
    carry(process.database(), clock_);
    end = disk.events();
    full = rowsOf(process.database(), kTotals);
  }
  std::set<std::string> seen;
  for (std::uint64_t at = start + 1; at <= end; at += std::max<std::uint64_t>(1, (end - start) / 40)) {
    sim::SimDisk disk = books.settled();
    sim::SimProcess process(disk, clock_, {});
    process.open();
    disk.stopAt(at);
    try {
      carry(process.database(), clock_);
    } catch (const sim::ProcessKilled&) {
    }
    const sim::CutChooser cuts(disk, 2, at);
    for (std::size_t i = 0; i <= cuts.count(); ++i) {
      sim::SimProcess after(i == cuts.count() ? disk.settled() : disk.imageAfterCut(cuts.choice(i)), clock_, {});
      after.open();
      const sim::Rows left = rowsOf(after.database(), kTotals);
      seen.insert(left == none ? "none" : left == full ? "full" : "some");
      carry(after.database(), clock_);
      EXPECT_EQ(rowsOf(after.database(), kTotals), full) << "cut at event " << at;
    }
  }
  EXPECT_EQ(seen.size(), 3u) << "the moments miss one of the three";
}

// Each is put right again, so that the next one is alone.
TEST_F(YearEnd, TheAuditFindsOpeningsThatItWouldNotWrite) {
  sim::SeededRandom random(3);
  fillBooks(other_.database(), random);
  ASSERT_TRUE(runYearEnd(2025).ok);
  // These books do not balance, which is another finding.
  const auto openings = [&] {
    std::string text, line;
    std::istringstream all(auditText(database()));
    while (std::getline(all, line))
      if (line.find("OpeningBal:") != std::string::npos || line.find("retained") != std::string::npos) text += line;
    return text;
  };
  // While 2025 is open the openings behind it may change yet.
  run(database(), "UPDATE GLActual SET OpeningBal = OpeningBal + 1 WHERE GLYear = 2026 AND GLAccountID = 1");
  EXPECT_EQ(openings(), "");
  run(database(), "UPDATE Company SET FiscalYear = 2026");
  EXPECT_NE(openings(), "");
  ASSERT_TRUE(runYearEnd(2025).ok);
  ASSERT_EQ(openings(), "");
  struct Planted {
    const char *statement, *undo, *finding;
  };
  const Planted cases[] = {
      {"UPDATE GLActual SET OpeningBal = COALESCE(OpeningBal, 0) + 0.0001 WHERE GLYear = 2026 AND GLAccountID = 6",
       "UPDATE GLActual SET OpeningBal = OpeningBal - 0.0001 WHERE GLYear = 2026 AND GLAccountID = 6", "6;-;"},
      {"UPDATE GLActual SET OpeningBal = 1 WHERE GLYear = 2026 AND GLAccountID = 3",
       "UPDATE GLActual SET OpeningBal = 0 WHERE GLYear = 2026 AND GLAccountID = 3", "OpeningBal: 1, 0"},
      {"UPDATE GLActual SET GLYear = 1926 WHERE GLYear = 2026 AND GLAccountID = 5 AND SubAccount2ID IS NULL",
       "UPDATE GLActual SET GLYear = 2026 WHERE GLYear = 1926", "5;-;-;-;2026, OpeningBal: no row"},
      {"UPDATE GLActual SET Amount9 = COALESCE(Amount9, 0) + 5 WHERE GLYear = 2025 AND GLAccountID = 4",
       "UPDATE GLActual SET Amount9 = Amount9 - 5 WHERE GLYear = 2025 AND GLAccountID = 4", "5;-;-;-;2026, OpeningBal"},
      {"UPDATE GLAccnt SET RetainedEarnings = false",
       "UPDATE GLAccnt SET RetainedEarnings = true WHERE GLAccountID = 5", "retained earnings accounts: 0, 1"},
      {"UPDATE GLAccnt SET RetainedEarnings = true WHERE GLAccountID = 6",
       "UPDATE GLAccnt SET RetainedEarnings = false WHERE GLAccountID = 6", "retained earnings accounts: 2, 1"},
  };
  for (const Planted& planted : cases) {
    EXPECT_GT(store::Query(database(), planted.statement).execute(), 0u) << planted.statement;
    EXPECT_NE(openings().find(planted.finding), std::string::npos) << planted.statement << "\n" << openings();
    store::Query(database(), planted.undo).execute();
    EXPECT_EQ(openings(), "") << planted.undo;
  }
}

}  // namespace
}  // namespace quillon::ledger
