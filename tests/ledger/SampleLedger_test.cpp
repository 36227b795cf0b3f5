// On the books of the sample company: they are as posting would have left them, a posting is whole or not at all, and
// the audit finds what was changed behind its back.
#include <gtest/gtest.h>

#include <algorithm>

#include "form/Transaction.h"
#include "ledger/PostVouchers.h"
#include "ledger/Statements.h"
#include "shell/CountryDefaults.h"
#include "shell/SampleCompany.h"
#include "store/schema/CreateCompany.h"
#include "support/LedgerFigures.h"
#include "support/SimProcess.h"

namespace quillon::ledger {
namespace {

using sim::auditText;
using sim::kHistory;
using sim::kTotals;
using sim::Rows;
using sim::rowsOf;
using store::Value;

class SampleLedger : public testing::Test {
 protected:
  SampleLedger() {
    disk_.process()->makeFolder(sim::kSharedFolder);
    sim::SimProcess process(disk_, clock_, {});
    process.open();
    store::createCompanyTables(process.database());
    shell::fillSampleCompany(process.database(), shell::countryDefaults("Canada"), Date(2026, 3, 5));
    store::Query posted(process.database(), "SELECT JVID FROM JV WHERE Posted = true");
    posted.open();
    for (; !posted.eof(); posted.next()) posted_.push_back(posted.value("JVID"));
  }
  using Deed = void (PostVouchers::*)(const Value&);
  void all(store::Database& database, Deed deed) {
    form::transact(database, kPostingTables, [&] {
      PostVouchers ledger(database);
      for (const Value& id : posted_) (ledger.*deed)(id);
    });
  }
  // As posting leaves it.
  static void unreconcile(store::Database& database) {
    store::Query(database, "UPDATE GLHist SET Reconciled = false, Reconciling = false").execute();
  }
  static std::pair<Rows, Rows> figures(store::Database& database) {
    return {rowsOf(database, kHistory), rowsOf(database, kTotals)};
  }

  sim::SimDisk disk_;
  sim::SimClock clock_;
  std::vector<Value> posted_;
};

TEST_F(SampleLedger, IsWhatPostingMakesOfItsVouchers) {
  sim::SimProcess process(disk_, clock_, {});
  process.open();
  unreconcile(process.database());
  const auto before = figures(process.database());
  ASSERT_GT(posted_.size(), 100u);
  all(process.database(), &PostVouchers::unpost);
  EXPECT_TRUE(rowsOf(process.database(), kHistory).empty());
  all(process.database(), &PostVouchers::post);
  EXPECT_EQ(figures(process.database()), before);
}

// Each is put right again, so that the next one is alone.
TEST_F(SampleLedger, EveryPlantedErrorIsFound) {
  sim::SimProcess process(disk_, clock_, {});
  process.open();
  store::Database& database = process.database();
  ASSERT_EQ(auditText(database), "");
  struct Planted {
    const char *statement, *undo, *finding;
  };
  const Planted cases[] = {
      {"UPDATE GLActual SET Amount3 = COALESCE(Amount3, 0) + 1 WHERE GLAccountID = 1 AND GLYear = 2025",
       "UPDATE GLActual SET Amount3 = Amount3 - 1 WHERE GLAccountID = 1 AND GLYear = 2025",
       "GLActual, 1;-;-;-;2025, Amount3"},
      {"UPDATE GLActual SET ActualBudget = 'B' WHERE GLAccountID = 1", "UPDATE GLActual SET ActualBudget = 'A'",
       "ActualBudget: B, A"},
      {"UPDATE GLHist SET Amount = Amount + 1 WHERE GLHistID = 7",
       "UPDATE GLHist SET Amount = Amount - 1 WHERE GLHistID = 7", "GLHist, JVID "},
      {"UPDATE GLHist SET JVNumber = JVNumber + 1 WHERE GLHistID = 7",
       "UPDATE GLHist SET JVNumber = JVNumber - 1 WHERE GLHistID = 7", "GLHist, JVID "},
      {"UPDATE GLHist SET JVID = JVID + 90000 WHERE GLHistID = 7",
       "UPDATE GLHist SET JVID = JVID - 90000 WHERE GLHistID = 7", "GLHist, GLHistID 7, JVID"},
      {"UPDATE GLHist SET Reconciled = true WHERE GLHistID = 7",
       "UPDATE GLHist SET Reconciled = false WHERE GLHistID = 7", "GLHist, GLHistID 7, Reconciling: False, True"},
      {"UPDATE GLHist SET Reconciling = NULL WHERE GLHistID = 7",
       "UPDATE GLHist SET Reconciling = false WHERE GLHistID = 7", "GLHist, GLHistID 7, Reconciling: nothing, True"},
      {"UPDATE JVDet SET GLAmount = GLAmount + 1 WHERE JVID = 5 AND Seq = 1",
       "UPDATE JVDet SET GLAmount = GLAmount - 1 WHERE JVID = 5 AND Seq = 1", "JV, JVID 5, debits plus credits: 1, 0"},
      {"UPDATE JVDet SET SubAccount3ID = 4 WHERE JVID = 5 AND Seq = 1",
       "UPDATE JVDet SET SubAccount3ID = NULL WHERE JVID = 5 AND Seq = 1",
       "JVDet, JVID 5, Seq 1, SubAccount3ID: 4, a subaccount"},
      {"UPDATE JV SET JVAmount = JVAmount + 1 WHERE JVID = 5", "UPDATE JV SET JVAmount = JVAmount - 1 WHERE JVID = 5",
       "JV, JVID 5, JVAmount"},
      {"UPDATE JV SET Posted = false WHERE JVID = 5", "UPDATE JV SET Posted = true WHERE JVID = 5",
       "GLHist, JVID 5, a row"},
      {"UPDATE JV SET GLPeriod = 9 WHERE JVID = 5", "UPDATE JV SET GLPeriod = 1 WHERE JVID = 5",
       "GLHist, JVID 5, a row"},
      {"UPDATE JV SET AutoReverse = true WHERE JVID = 5", "UPDATE JV SET AutoReverse = false WHERE JVID = 5", " JVR "},
      {"UPDATE JVDet SET JVID = 90000 WHERE JVID = 5", "UPDATE JVDet SET JVID = 5 WHERE JVID = 90000",
       "JVDet, JVID 90000, lines without a voucher"},
      {"UPDATE JVCtl SET NextJVID = NextJVID - 1", "UPDATE JVCtl SET NextJVID = NextJVID + 1",
       "JVCtl, the row, NextJVID"},
      {"UPDATE Currency SET GainLossExchangeGLAccntID = 900 WHERE CurrencyID = 2",
       "UPDATE Currency SET GainLossExchangeGLAccntID = 60",
       "CurrencyID 2, GainLossExchangeGLAccntID: 900, an account"},
      {"UPDATE Bank SET CurrencyID = NULL WHERE BankID = 1", "UPDATE Bank SET CurrencyID = 1 WHERE BankID = 1",
       "BankID 1, CurrencyID: nothing, a currency"},
      {"UPDATE Company SET DfltCOGSGLAccountID = 900", "UPDATE Company SET DfltCOGSGLAccountID = 32",
       "Company, the row, DfltCOGSGLAccountID: 900"},
      {"UPDATE GLAccnt SET GLAccountID = 900 WHERE GLAccountID = 1",
       "UPDATE GLAccnt SET GLAccountID = 1 WHERE GLAccountID = 900", "GLAccountID: 1, an account"},
  };
  for (const Planted& planted : cases) {
    EXPECT_GT(store::Query(database, planted.statement).execute(), 0u) << planted.statement;
    EXPECT_NE(auditText(database).find(planted.finding), std::string::npos) << planted.statement << "\n"
                                                                            << auditText(database);
    store::Query(database, planted.undo).execute();
    EXPECT_EQ(auditText(database), "") << planted.undo;
  }
}

// Whatever is asked of them: last year, the budget and the year to date have figures, and what has to balance does.
TEST_F(SampleLedger, FillsEveryColumnOfItsStatements) {
  sim::SimProcess process(disk_, clock_, {});
  process.open();
  for (const std::string_view format : kColumnFormats) {
    SCOPED_TRACE(format);
    const bool changes = showsChanges(format);
    const Statement statement(process.database(),
                              {.builtIn = changes ? StatementKind::incomeStatement : StatementKind::balanceSheet,
                               .format = std::string(format),
                               .year = 2025,
                               .period = 11});
    std::map<std::string, std::vector<Money>> lines;
    for (const Statement::Line& line : statement.lines())
      for (std::size_t column = 0; column < statement.columns().size(); ++column)
        lines[line.heading].push_back(line.values.at(column).asMoney());
    for (const Money amount : lines.at(changes ? "Net Income" : "Total Assets")) EXPECT_NE(amount, Money());
    if (!changes) {
      EXPECT_EQ(lines.at("Total Assets"), lines.at("Total Liabilities & Equity"));
    }
  }
}

// A power cut at some moments of a posting leaves all of it or nothing.
TEST_F(SampleLedger, IsPostedWhollyOrNotAtAll) {
  std::pair<Rows, Rows> full, none;
  std::uint64_t start = 0, end = 0;
  sim::SimDisk unposted = disk_.settled();
  {
    sim::SimProcess process(unposted, clock_, {});
    process.open();
    unreconcile(process.database());
    full = figures(process.database());
    all(process.database(), &PostVouchers::unpost);
    none = figures(process.database());
  }
  {
    sim::SimDisk disk = unposted.settled();
    sim::SimProcess process(disk, clock_, {});
    process.open();
    start = disk.events();
    all(process.database(), &PostVouchers::post);
    end = disk.events();
  }
  std::set<bool> seen;
  for (std::uint64_t at = start + 1; at <= end; at += std::max<std::uint64_t>(1, (end - start) / 20)) {
    sim::SimDisk disk = unposted.settled();
    sim::SimProcess process(disk, clock_, {});
    process.open();
    disk.stopAt(at);
    try {
      all(process.database(), &PostVouchers::post);
    } catch (const sim::ProcessKilled&) {
    }
    const sim::CutChooser cuts(disk, 2, at);
    for (std::size_t i = 0; i < cuts.count(); ++i) {
      sim::SimProcess after(disk.imageAfterCut(cuts.choice(i)), clock_, {});
      after.open();
      const auto found = figures(after.database());
      EXPECT_TRUE(found == full || found == none) << "cut at event " << at;
      seen.insert(found == full);
    }
  }
  EXPECT_EQ(seen.size(), 2u) << "the moments miss one of the two";
}

}  // namespace
}  // namespace quillon::ledger
