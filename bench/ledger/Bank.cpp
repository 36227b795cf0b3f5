// A bank book and a reconciliation, of one account that half of the history is of.
#include <filesystem>

#include "base/Errors.h"
#include "bench/Ours.h"
#include "bench/PeakMemory.h"
#include "bench/Scratch.h"
#include "bench/Shapes.h"
#include "bench/Theirs.h"
#include "bench/Timing.h"
#include "bench/forms/Office.h"
#include "bench/ledger/Measurements.h"
#include "form/Grid.h"
#include "store/Query.h"
#include "store/schema/CompanySchema.h"
#include "store/schema/CreateCompany.h"

namespace quillon::bench {
namespace {

constexpr int kBank = 1;
constexpr std::int64_t kOnView = 41;
const std::string kListed = " FROM GLHist WHERE GLAccountID = 1 AND Reconciled = 0";

void makeBooks(const std::string& folder, Theirs& theirs, std::int64_t rows) {
  Ours ours(folder);
  store::createCompanyTables(ours.database);
  for (const char* row :
       {"INSERT INTO Company (CompanyNo, FiscalYear, DefaultCurrencyID) VALUES (1, 2026, 1)",
        "INSERT INTO Bank (BankID, BankName, BankGLAccountID, CurrencyID) VALUES (1, 'Main', 1, 1)",
        "INSERT INTO GLActual (GLAccountID, GLYear, ActualBudget, OpeningBal) VALUES (1, 2026, 'A', 1000)"})
    store::Query(ours.database, row).execute();
  const store::TableDef table = *store::companyTable("GLHist");
  createTheirs(theirs, table);
  const store::Database::BulkScope bulk(ours.database);
  theirs.run("BEGIN");
  store::Cursor history(ours.database, "GLHist");
  history.open();
  Prepared add(theirs, insertStatement(table));
  bool ofBank = false;
  for (Row row : glHistRows(2 * rows)) {
    if (ofBank = !ofBank; ofBank) row[1] = kBank;
    insert(history, row);
    insert(add, row);
  }
  theirs.run("COMMIT");
}

class Bank {
 public:
  Bank(Office& office, Theirs& theirs, std::int64_t rows, Report& report)
      : office_(office), theirs_(theirs), rows_(rows), report_(report) {}

  void book() {
    measure(
        "book-open", 5,
        [&] {
          office_.app().open("TfrmBankBook");
          return looked("frmBankBook");
        },
        [&] { office_.app().dismiss(*office_.app().find("frmBankBook")); },
        [&] {
          Prepared all(theirs_,
                       "SELECT GLHistID, GLAccountID, TransDate, Source, Amount, TransDescription, VendorID, "
                       "CustomerID, ChequeID FROM GLHist WHERE GLAccountID = 1 ORDER BY TransDate, GLHistID");
          std::vector<std::int64_t> balances;
          for (std::int64_t sum = 0; all.step();) balances.push_back(sum += all.number(4));
          return std::min(kOnView / 2 + 1, static_cast<std::int64_t>(balances.size()));
        },
        [] {});
  }

  void reconciliation() {
    measure(
        "rec-open", 5,
        [&] {
          office_.app().open("TfrmBankRec");
          return looked("frmBankRec") * 0 + kOnView;
        },
        [&] { office_.app().dismiss(*office_.app().find("frmBankRec")); },
        [&] {
          once("SELECT SUM(Amount)" + kListed + " AND Reconciling = 0");
          return once("SELECT *" + kListed + " ORDER BY TransDate, GLHistID LIMIT " + std::to_string(kOnView));
        },
        [] {});
    office_.app().open("TfrmBankRec");
    const auto nothing = [] {};
    const auto tick = [&] {
      office_.input.key(screen(), "Space");
      return looked("frmBankRec") * 0 + 1;
    };
    Prepared theirTick(theirs_, "UPDATE GLHist SET Reconciling = NOT Reconciling WHERE GLHistID = 1");
    measure(
        "rec-tick", 21, tick, nothing,
        [&] {
          theirTick.once();
          return theirTick.changed();
        },
        nothing);
    office_.click("frmBankRec", "btnSelectNone");
    theirs_.run("UPDATE GLHist SET Reconciling = 0 WHERE Reconciling <> 0");
    all(
        "rec-select-all", "btnSelectAll", "Reconciling = 1", " AND Reconciling = 0",
        [&] { office_.click("frmBankRec", "btnSelectNone"); },
        "UPDATE GLHist SET Reconciling = 0 WHERE GLAccountID = 1");
    office_.click("frmBankRec", "btnSelectAll");
    theirs_.run("UPDATE GLHist SET Reconciling = 1 WHERE GLAccountID = 1");
    all(
        "rec-reconcile", "btnReconcile", "Reconciled = 1", " AND Reconciling = 1",
        [&] {
          store::Query(office_.session.database(), "UPDATE GLHist SET Reconciled = false").execute();
          office_.click("frmBankRec", "mnuRefresh");
        },
        "UPDATE GLHist SET Reconciled = 0");
    office_.app().dismiss(screen());
  }

 private:
  form::Screen& screen() { return *office_.app().find("frmBankRec"); }
  std::int64_t looked(const char* name) { return static_cast<std::int64_t>(office_.look(name, "grdGLHist")); }
  std::int64_t once(const std::string& statement) {
    Prepared prepared(theirs_, statement);
    std::int64_t rows = 0;
    while (prepared.step()) ++rows;
    return rows;
  }

  void all(const std::string& name, const char* button, const std::string& set, const std::string& where,
           const std::function<void()>& undo, const std::string& theirUndo) {
    measure(
        name, 3,
        [&] {
          office_.click("frmBankRec", button);
          looked("frmBankRec");
          return rows_;
        },
        undo,
        [&] {
          Prepared update(theirs_, "UPDATE GLHist SET " + set + " WHERE GLAccountID = 1 AND Reconciled = 0" + where);
          update.once();
          return update.changed();
        },
        [&] { theirs_.run(theirUndo); });
  }

  void measure(const std::string& name, int rounds, const std::function<std::int64_t()>& ours,
               const std::function<void()>& ourUndo, const std::function<std::int64_t()>& theirs,
               const std::function<void()>& theirUndo) {
    const auto side = [](const auto& action, const auto& undo) {
      return [&](int, Stopwatch& watch) {
        watch.start();
        const std::int64_t seen = action();
        watch.stop();
        undo();
        return seen;
      };
    };
    const Pair pair = alternate(rounds, 1, side(ours, ourUndo), side(theirs, theirUndo));
    report_.add({.name = name + "-" + std::to_string(rows_),
                 .ours = pair.ours / 1000,
                 .theirs = pair.theirs / 1000,
                 .unit = "ms"});
  }

  Office& office_;
  Theirs& theirs_;
  std::int64_t rows_;
  Report& report_;
};

}  // namespace

void bank(LedgerBench& bench) {
  for (const std::int64_t rows : {bench.rows / 4, bench.rows / 2, bench.rows}) {
    const std::string folder = emptyFolder(bench.scratch + "/bank"), file = bench.scratch + "/bank.sqlite";
    for (const char* ending : {"", "-wal", "-shm"}) std::filesystem::remove(file + ending);
    Theirs theirs(file);
    makeBooks(folder, theirs, rows);
    Office office(folder, bench.report);
    forgetPeak();
    const double before = peakMemory();
    Bank bank(office, theirs, rows, bench.report);
    bank.book();
    bank.reconciliation();
    bench.report.add({.name = "bank-memory-" + std::to_string(rows),
                      .ours = peakMemory() - before,
                      .unit = "MiB",
                      .note = "of both sides, more than when the company was opened"});
  }
}

}  // namespace quillon::bench
