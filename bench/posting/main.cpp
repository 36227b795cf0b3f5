// Measures posting through its screen, beside the bare rows of it on the other side: the rows of history, the totals
// and the flags of vouchers in one transaction, with the same indexes, made ready before the clock runs. And what is
// read of the totals: the list of all, and a trial balance.
#include <cmath>
#include <cstdio>
#include <filesystem>

#include "base/Errors.h"
#include "bench/Options.h"
#include "bench/PeakMemory.h"
#include "bench/Scratch.h"
#include "bench/Theirs.h"
#include "bench/forms/Office.h"
#include "bench/posting/Books.h"
#include "ledger/Audit.h"
#include "store/Query.h"
#include "store/schema/CompanySchema.h"

namespace quillon::bench {
namespace {

constexpr int kEntered = 1000;

struct Place {
  std::string folder, file;
};

// Their side of a posting.
class BareRows {
 public:
  explicit BareRows(Theirs& side) : side_(side) {
    for (int period = 1; period <= 12; ++period) {
      const std::string amount = "Amount" + std::to_string(period);
      add_.push_back(std::make_unique<Prepared>(
          side, "UPDATE GLActual SET " + amount + " = COALESCE(" + amount +
                    ", 0) + ? WHERE GLAccountID = ? AND SubAccount1ID IS ? AND SubAccount2ID IS ? AND "
                    "SubAccount3ID IS ? AND GLYear = ?"));
    }
  }
  void post(const Voucher& voucher) {
    flag_.bind(1, voucher.head[0]);
    flag_.once();
    for (const Row& row : voucher.history) insert(history_, row);
    for (const Row& row : voucher.history) addTotal(row);
  }

 private:
  void addTotal(const Row& row) {
    Prepared& add = *add_[static_cast<std::size_t>(row[6].asInt() - 1)];
    add.bind(1, row[11]);
    for (int part = 1; part <= 5; ++part) add.bind(part + 1, row[static_cast<std::size_t>(part)]);
    add.once();
    if (add.changed() > 0) return;
    for (int field = 1; field <= 19; ++field) total_.bind(field, store::Value());
    for (int part = 1; part <= 5; ++part) total_.bind(part, row[static_cast<std::size_t>(part)]);
    total_.bind(6, kActual);
    total_.bind(7 + row[6].asInt(), row[11]);
    total_.once();
  }

  const store::Value kActual{"A"};
  Theirs& side_;
  Prepared flag_{side_, "UPDATE JV SET Posted = 1 WHERE JVID = ?"};
  Prepared history_{side_, insertStatement(*store::companyTable("GLHist"))};
  Prepared total_{side_, insertStatement(*store::companyTable("GLActual"))};
  std::vector<std::unique_ptr<Prepared>> add_;
};

void copyOf(const Place& from, const Place& to) {
  std::filesystem::copy(from.folder, emptyFolder(to.folder));
  std::filesystem::copy_file(from.file, to.file, std::filesystem::copy_options::overwrite_existing);
}

class Posting {
 public:
  Posting(std::string scratch, Report& report) : scratch_(std::move(scratch)), report_(report) {}

  // Microseconds for each voucher.
  Pair measure(int vouchers) {
    const Place made = placeOf("made"), work = placeOf("work");
    emptyFolder(made.folder);
    std::filesystem::remove(made.file);
    makeVouchers(made.folder, made.file, vouchers);
    Pair memory;
    const Pair pair = alternate(
        3, vouchers,
        [&](int, Stopwatch& watch) {
          copyOf(made, work);
          return ours(work, watch, memory.ours);
        },
        [&](int, Stopwatch& watch) { return theirs(work, vouchers, watch, memory.theirs); });
    const std::string name = "post-" + std::to_string(vouchers);
    char note[64];
    std::snprintf(note, sizeof note, "%.0f vouchers a second, theirs %.0f", 1e6 / pair.ours, 1e6 / pair.theirs);
    report_.add({name, pair.ours, pair.theirs, "us a voucher", 1, note});
    report_.add({name + "-memory", memory.ours, memory.theirs, "MiB", 0, "the most beyond what there was before"});
    report_.add({name + "-audit", audit_, {}, "s", 0, "of the books that this leaves"});
    return pair;
  }

  void enter() {
    const Place work = placeOf("entry");
    makeVouchers(emptyFolder(work.folder), work.file, kEntered);
    Office office(work.folder, report_);
    office.app().open("TfrmJV", {.newRow = true});
    office.measure(
        "enter", kEntered,
        [&] {
          office.set("frmJV", "editTransDescription", "Rent");
          const char* const lines[kLinesOfVoucher][2] = {{"0001", "100"}, {"0020", "50"}, {"1900", "-150"}};
          for (int line = 0; line < kLinesOfVoucher; ++line) {
            office.click("frmJV", "btnNew");
            for (const auto& [column, text] : {std::pair("GLAccount", lines[line][0]), {"GLAmount", lines[line][1]}})
              if (!office.input
                       .setCell(*office.app().find("frmJV"), office.control("frmJV", "grdJVDet"),
                                static_cast<std::uint64_t>(line), column, text)
                       .ok)
                throw Error(office.person.takeHeard());
          }
          office.click("frmJV", "btnOKNew");
        },
        [] {}, "a voucher of 3 lines: a description, 3 accounts, 3 amounts, OK and New");
  }

 private:
  Place placeOf(const std::string& name) const { return {scratch_ + "/" + name, scratch_ + "/" + name + ".db"}; }

  std::int64_t ours(const Place& work, Stopwatch& watch, double& memory) {
    Office office(work.folder, report_);
    forgetPeak();
    const double before = peakMemory();
    office.person.modals.push_back([&](form::Screen& screen) {
      watch.start();
      office.input.click(screen, *screen.find("btnOK"));
      watch.stop();
    });
    if (!office.app().runModal("TfrmJVsPost").confirmed) throw Error(office.person.takeHeard());
    memory = peakMemory() - before;
    std::int64_t rows = 0;
    for (const char* table : {"GLHist", "GLActual"}) {
      store::Cursor cursor(office.session.database(), table);
      cursor.open();
      rows = rows * 1'000'000 + static_cast<std::int64_t>(cursor.recordCount());
    }
    Stopwatch audit;
    audit.start();
    if (!ledger::auditLedger(office.session.database()).wrong.empty()) throw Error("The books are not sound");
    audit.stop();
    audit_ = audit.seconds();
    return rows;
  }

  static std::int64_t theirs(const Place& work, int vouchers, Stopwatch& watch, double& memory) {
    Theirs side(work.file);
    BareRows rows(side);
    std::vector<Voucher> batch;
    forgetPeak();
    const double before = peakMemory();
    side.run("BEGIN");
    for (int id = 1; id <= vouchers;) {
      for (batch.clear(); id <= vouchers && batch.size() < 1000; ++id) batch.push_back(voucherOf(id));
      watch.start();
      for (const Voucher& voucher : batch) rows.post(voucher);
      watch.stop();
    }
    watch.start();
    side.run("COMMIT");
    watch.stop();
    memory = peakMemory() - before;
    Prepared count(side, "SELECT (SELECT COUNT(*) FROM GLHist) * 1000000 + (SELECT COUNT(*) FROM GLActual)");
    count.step();
    return count.number(0);
  }

  std::string scratch_;
  Report& report_;
  double audit_ = 0;  // seconds of the last
};

void totals(const std::string& scratch, Report& report) {
  constexpr int kRounds = 11;
  const std::string file = scratch + "/totals.db";
  const std::string folder = emptyFolder(scratch + "/totals");
  makeTotals(folder, file);
  const std::string rows = std::to_string(kAccounts * kYears * kSubaccounts) + " rows of totals";
  Office office(folder, report);
  office.measure(
      "gl-totals", kRounds,
      [&] {
        office.app().open("TfrmGLBalances");
        office.look("frmGLBalances", "grdGLActual");
      },
      [&] { office.app().dismiss(*office.app().find("frmGLBalances")); }, rows);
  std::string balance = "COALESCE(a.OpeningBal, 0)";
  for (int period = 1; period <= 6; ++period) balance += " + COALESCE(a.Amount" + std::to_string(period) + ", 0)";
  const std::string statement =
      "SELECT g.GLAccount, g.AccountName, s.SubAccountName, " + balance +
      " AS Balance FROM GLAccnt g INNER JOIN GLActual a ON a.GLAccountID = g.GLAccountID LEFT OUTER JOIN GLAcSub1 s ON "
      "s.SubAccountID = a.SubAccount1ID WHERE a.GLYear = 2024 ORDER BY g.GLAccount, s.SubAccount";
  store::Query query(office.session.database(), statement);
  Theirs side(file);
  Prepared prepared(side, statement);
  const Pair pair = alternate(
      kRounds, 1000,  // milliseconds
      [&](int, Stopwatch& watch) {
        std::int64_t sum = 0;
        watch.start();
        query.open();
        for (query.first(); !query.eof(); query.next()) sum += query.field(3).asMoney().raw();
        query.close();
        watch.stop();
        return sum;
      },
      [&](int, Stopwatch& watch) {
        std::int64_t sum = 0;
        watch.start();
        while (prepared.step()) sum += prepared.number(3);
        prepared.reset();
        watch.stop();
        return sum;
      });
  report.add({"trial-balance", pair.ours, pair.theirs, "ms", 0, "one year of " + rows});
}

void runAll(int count, char** words) {
  const Options options = readOptions(count, words, "bench_posting", {"post", "enter", "totals"});
  const auto wanted = [&](const char* name) { return options.only.empty() || options.only == name; };
  const Scratch scratch;
  Report report(options.tabs);
  Posting posting(scratch.path(), report);
  report.heading("Posting and what is read of it; ! is above the aim");
  if (wanted("post")) {
    const int most = static_cast<int>(options.rows / 10);
    const Pair first = posting.measure(most / 10);
    posting.measure(most / 5);
    const Pair last = posting.measure(most);
    char log[64];
    std::snprintf(log, sizeof log, "for ten times the vouchers; log n grows %.2f times",
                  std::log(most) / std::log(most / 10));
    report.add({"post-growth", last.ours / first.ours, last.theirs / first.theirs, "times", 0, log});
  }
  if (wanted("enter")) posting.enter();
  if (wanted("totals")) totals(scratch.path(), report);
}

}  // namespace
}  // namespace quillon::bench

int main(int count, char** words) { return quillon::bench::exitStatus(count, words, quillon::bench::runAll); }
