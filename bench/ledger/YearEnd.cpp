// Year end, over a year of so many rows of totals: the first run, which adds the rows of the next year, and one that
// sets them again. Theirs reads the same rows and writes the same openings in one transaction.
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
#include "store/Query.h"
#include "store/schema/CompanySchema.h"
#include "store/schema/CreateCompany.h"

namespace quillon::bench {
namespace {

constexpr int kYear = 2025, kSubaccounts = 50, kRetainedEarnings = 1;
constexpr std::size_t kFields = 19;  // of GLActual: five of the key, its kind, the opening, twelve amounts
constexpr std::int64_t kPerMillisecond = 1000;

// Half of the accounts are of revenue and expense; the first is that of retained earnings.
int typeOf(int account) { return account == kRetainedEarnings ? 5 : 1 + account % 4; }

Row totalOf(std::int64_t number) {
  Row row(kFields);
  row[0] = static_cast<int>(1 + number / kSubaccounts);
  row[1] = static_cast<int>(1 + number % kSubaccounts);
  row[4] = kYear;
  row[5] = "A";
  row[6] = Money::fromRaw(typeOf(row[0].asInt()) % 5 < 3 ? number * 137 % 1'000'003 : 0);
  for (std::size_t period = 1; period <= 12; ++period)
    row[6 + period] =
        Money::fromRaw((number * 7919 + static_cast<std::int64_t>(period) * 104729) % 1'000'003 - 500'000);
  return row;
}

void makeBooks(const std::string& folder, Theirs& theirs, std::int64_t rows) {
  Ours ours(folder);
  store::createCompanyTables(ours.database);
  store::Query(ours.database, "INSERT INTO Company (CompanyNo, FiscalYear) VALUES (1, 2025)").execute();
  const store::TableDef totals = *store::companyTable("GLActual");
  createTheirs(theirs, totals);
  theirs.run("CREATE TABLE GLAccnt (GLAccountID INTEGER PRIMARY KEY, AccountType INT, RetainedEarnings INT)");
  const store::Database::BulkScope bulk(ours.database);
  theirs.run("BEGIN");
  store::Cursor accounts(ours.database, "GLAccnt"), cursor(ours.database, "GLActual");
  accounts.open();
  cursor.open();
  Prepared account(theirs, "INSERT INTO GLAccnt VALUES (?, ?, ?)"), add(theirs, insertStatement(totals));
  for (int id = 1; id <= rows / kSubaccounts + 1; ++id) {
    const std::string text = std::to_string(id);
    accounts.append();
    accounts["GLAccountID"] = id;
    accounts["GLAccount"] = text;
    accounts["AccountName"] = text;
    accounts["AccountType"] = typeOf(id);
    accounts["RetainedEarnings"] = id == kRetainedEarnings;
    accounts.post();
    account.bind(1, id);
    account.bind(2, typeOf(id));
    account.bind(3, std::int64_t{id == kRetainedEarnings});
    account.once();
  }
  for (std::int64_t number = 0; number < rows; ++number) {
    const Row row = totalOf(number);
    insert(cursor, row);
    insert(add, row);
  }
  theirs.run("COMMIT");
}

// Their side of a year end.
class BareRows {
 public:
  explicit BareRows(Theirs& side) : side_(side) {}

  void run() {
    struct Total {
      std::int64_t account, subaccount, opening;
    };
    std::vector<Total> totals;
    std::int64_t result = 0;
    side_.run("BEGIN");
    while (read_.step()) {
      std::int64_t closing = 0;
      for (int amount = 4; amount < 17; ++amount) closing += read_.number(amount);
      const bool gathered = read_.number(2) == 3 || read_.number(2) == 4 || read_.number(3) != 0;
      if (gathered) result += closing;
      totals.push_back({read_.number(0), read_.number(1), gathered ? 0 : closing});
    }
    read_.reset();
    for (const Total& total : totals)
      set(total.account, store::Value(static_cast<int>(total.subaccount)), total.opening, false);
    set(kRetainedEarnings, {}, result, true);
    side_.run("COMMIT");
  }

 private:
  void set(std::int64_t account, const store::Value& subaccount, std::int64_t opening, bool always) {
    for (Prepared* statement : {&update_, &insert_}) {
      statement->bind(1, opening);
      statement->bind(2, account);
      statement->bind(3, subaccount);
      statement->once();
      if (statement->changed() > 0) return;
      if (opening == 0 && !always) return;
    }
  }

  Theirs& side_;
  Prepared read_{side_,
                 "SELECT A.GLAccountID, SubAccount1ID, AccountType, RetainedEarnings, OpeningBal, Amount1, Amount2, "
                 "Amount3, Amount4, Amount5, Amount6, Amount7, Amount8, Amount9, Amount10, Amount11, Amount12 FROM "
                 "GLActual A INNER JOIN GLAccnt G ON A.GLAccountID = G.GLAccountID WHERE GLYear = 2025"};
  Prepared update_{side_,
                   "UPDATE GLActual SET OpeningBal = ? WHERE GLAccountID = ? AND SubAccount1ID IS ? AND "
                   "SubAccount2ID IS NULL AND SubAccount3ID IS NULL AND GLYear = 2026"};
  Prepared insert_{side_,
                   "INSERT INTO GLActual (OpeningBal, GLAccountID, SubAccount1ID, GLYear, ActualBudget) VALUES (?, ?, "
                   "?, 2026, 'A')"};
};

// What the sides must agree in.
std::int64_t outcome(std::int64_t rows, Money sum) { return rows * 31 + sum.raw(); }

class YearEnd {
 public:
  YearEnd(Office& office, Theirs& theirs, std::int64_t rows, Report& report)
      : office_(office), theirs_(theirs), bare_(theirs), rows_(rows), report_(report) {}

  // `undo` takes the next year away again.
  Pair measure(const std::string& name, bool undo) {
    const char* remove = "DELETE FROM GLActual WHERE GLYear = 2026";
    double ourMemory = 0, theirMemory = 0;
    const Pair pair = alternate(
        3, kPerMillisecond,
        [&](int, Stopwatch& watch) {
          forgetPeak();
          const double before = peakMemory();
          office_.person.modals.push_back([&](form::Screen& screen) {
            watch.start();
            office_.input.click(screen, *screen.find("btnOK"));
            watch.stop();
          });
          if (!office_.app().runModal("TfrmYearEnd", {.values = {{"year", store::Value(kYear)}}}).confirmed)
            throw Error(office_.person.takeHeard());
          ourMemory = peakMemory() - before;
          const std::int64_t ours = ourOutcome();
          if (undo) store::Query(office_.session.database(), remove).execute();
          return ours;
        },
        [&](int, Stopwatch& watch) {
          forgetPeak();
          const double before = peakMemory();
          watch.start();
          bare_.run();
          watch.stop();
          theirMemory = peakMemory() - before;
          const std::int64_t theirs = theirOutcome();
          if (undo) theirs_.run(remove);
          return theirs;
        });
    const std::string sized = name + "-" + std::to_string(rows_);
    report_.add({.name = sized, .ours = pair.ours, .theirs = pair.theirs, .unit = "ms"});
    report_.add({.name = sized + "-memory", .ours = ourMemory, .theirs = theirMemory, .unit = "MiB"});
    return pair;
  }

 private:
  std::int64_t ourOutcome() {
    store::Query all(office_.session.database(), "SELECT OpeningBal FROM GLActual WHERE GLYear = 2026");
    all.open();
    Money sum;
    for (all.first(); !all.eof(); all.next()) sum += all.field(0).asMoney();
    return outcome(static_cast<std::int64_t>(all.recordCount()), sum);
  }
  std::int64_t theirOutcome() {
    Prepared all(theirs_, "SELECT COUNT(*), SUM(OpeningBal) FROM GLActual WHERE GLYear = 2026");
    all.step();
    return outcome(all.number(0), Money::fromRaw(all.number(1)));
  }

  Office& office_;
  Theirs& theirs_;
  BareRows bare_;
  std::int64_t rows_;
  Report& report_;
};

}  // namespace

void yearEnd(LedgerBench& bench) {
  std::vector<Pair> first, again;
  for (const std::int64_t rows : {bench.rows / 4, bench.rows / 2, bench.rows}) {
    const std::string folder = emptyFolder(bench.scratch + "/year"), file = bench.scratch + "/year.sqlite";
    for (const char* ending : {"", "-wal", "-shm"}) std::filesystem::remove(file + ending);
    Theirs theirs(file);
    makeBooks(folder, theirs, rows);
    Office office(folder, bench.report);
    YearEnd year(office, theirs, rows, bench.report);
    first.push_back(year.measure("year-end", true));
    again.push_back(year.measure("year-end-again", false));
  }
  for (const auto& [name, pairs] : {std::pair("year-end-growth", &first), {"year-end-again-growth", &again}})
    bench.report.add({.name = name,
                      .ours = pairs->back().ours / pairs->front().ours,
                      .theirs = pairs->back().theirs / pairs->front().theirs,
                      .unit = "times",
                      .note = "for four times the rows"});
}

}  // namespace quillon::bench
