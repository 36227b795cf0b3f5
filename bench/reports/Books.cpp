#include "bench/reports/Books.h"

#include <cstdio>

#include "bench/Ours.h"
#include "bench/Scratch.h"
#include "bench/Shapes.h"
#include "bench/Theirs.h"
#include "bench/Timing.h"
#include "bench/forms/Office.h"
#include "form/Screen.h"
#include "reports/Pages.h"
#include "reports/Preview.h"
#include "store/Query.h"
#include "store/schema/CompanySchema.h"
#include "store/schema/CreateCompany.h"
#include "support/SeededRandom.h"

namespace quillon::bench {
namespace {

using store::Value;

constexpr int kYear = 2026, kYears = 10, kSubaccounts = 4, kStatementLines = 200, kLinesOfAccount = 50, kRounds = 5;
constexpr int kPeriod = 6, kRowsOfPage = 60;
constexpr std::int64_t kPerMillisecond = 1000;

Money amountOf(sim::SeededRandom& random) {
  return Money::fromRaw((static_cast<std::int64_t>(random.below(2'000'000)) - 1'000'000) * 100);
}

std::string numberOf(std::int64_t account) {
  char text[24];
  std::snprintf(text, sizeof text, "%06lld", static_cast<long long>(account));
  return text;
}

// The same rows on both sides, table by table.
class Books {
 public:
  Books(store::Database& ours, Theirs& theirs, std::int64_t lines)
      : ours_(ours), theirs_(theirs), accounts_(static_cast<int>(lines / kLinesOfAccount)), lines_(lines) {}

  void fill() {
    const store::Database::BulkScope bulk(ours_);
    theirs_.run("BEGIN");
    table("GLAccnt", [&](auto add) {
      for (int id = 1; id <= accounts_; ++id)
        add({{"GLAccountID", id},
             {"GLAccount", numberOf(id)},
             {"AccountName", "Account " + numberOf(id)},
             {"AccountType", 1 + id % 5}});
    });
    table("GLAcSub1", [&](auto add) {
      for (int id = 1; id <= kSubaccounts; ++id)
        add({{"SubAccountID", id},
             {"SubAccount", std::to_string(id)},
             {"SubAccountName", "North " + std::to_string(id)}});
    });
    table("GLActual", [&](auto add) { fillTotals(add); });
    table("GLHist", [&](auto add) { fillLines(add); });
    theirs_.run("COMMIT");
    fillStatement();
  }

 private:
  using Named = std::vector<std::pair<std::string, Value>>;

  template <typename Rows>
  void table(const char* name, const Rows& rows) {
    const store::TableDef definition = *store::companyTable(name);
    createTheirs(theirs_, definition);
    store::Cursor cursor(ours_, name);
    cursor.open();
    Prepared statement(theirs_, insertStatement(definition));
    rows([&](const Named& named) {
      Row row(definition.fields.size());
      for (const auto& [field, value] : named) row[static_cast<std::size_t>(cursor.fieldPosition(field))] = value;
      insert(cursor, row);
      insert(statement, row);
    });
  }

  template <typename Add>
  void fillTotals(const Add& add) {
    for (int account = 1; account <= accounts_; ++account)
      for (int subaccount = 1; subaccount <= kSubaccounts; ++subaccount)
        for (int year = kYear - kYears + 1; year <= kYear; ++year) {
          Named row = {{"GLAccountID", account},
                       {"SubAccount1ID", subaccount},
                       {"GLYear", year},
                       {"ActualBudget", "A"},
                       {"OpeningBal", amountOf(random_)}};
          for (int period = 1; period <= 12; ++period)
            row.emplace_back("Amount" + std::to_string(period), amountOf(random_));
          add(row);
        }
  }

  template <typename Add>
  void fillLines(const Add& add) {
    for (int at = 0; at < lines_; ++at) {
      const int voucher = 1 + at / 4, period = 1 + voucher % 12;
      add({{"GLHistID", at + 1},
           {"GLAccountID", 1 + static_cast<int>(random_.below(static_cast<unsigned>(accounts_)))},
           {"SubAccount1ID", 1 + static_cast<int>(random_.below(kSubaccounts))},
           {"GLYear", kYear},
           {"GLPeriod", period},
           {"Source", "GL"},
           {"TransType", "JV"},
           {"JVNumber", 1000 + voucher},
           {"TransDate", Date(kYear, static_cast<unsigned>(period), 1 + static_cast<unsigned>(voucher % 28))},
           {"Amount", amountOf(random_)},
           {"TransDescription", "Line " + std::to_string(at)},
           {"JVID", voucher}});
    }
  }

  // Each line has as many accounts as all others.
  void fillStatement() {
    store::Query(ours_,
                 "INSERT INTO FStmt (StmtID, StmtTitle, ColumnFormat) VALUES (1, 'All', "
                 "'Net Change: Compare year')")
        .execute();
    store::Query line(ours_,
                      "INSERT INTO FStmtLin (StmtID, Seq, LineNo, LineHeading, LineType) VALUES (1, :seq, :seq, "
                      "'Line', 'Detail')"),
        range(ours_, "INSERT INTO FStmtLAc (StmtID, Seq, AccountFrom, AccountTo) VALUES (1, :seq, :from, :to)");
    for (int seq = 0; seq < kStatementLines; ++seq) {
      for (store::Query* query : {&line, &range}) query->setParameter("seq", seq);
      range.setParameter("from", numberOf(1 + std::int64_t{seq} * accounts_ / kStatementLines));
      range.setParameter("to", numberOf(std::int64_t{seq + 1} * accounts_ / kStatementLines));
      line.execute();
      range.execute();
    }
  }

  store::Database& ours_;
  Theirs& theirs_;
  int accounts_;
  std::int64_t lines_;
  sim::SeededRandom random_{1};
};

// What the figures of a part of the pages add up to.
std::int64_t sumOf(const form::PageSource& source, reports::Part part) {
  const auto& pages = static_cast<const reports::PreparedPages&>(source);
  std::int64_t sum = 0;
  for (const reports::Page& page : pages.pages)
    for (const reports::Element& element : page.elements)
      if (const Value value = page.valueOf(element); element.part == part && value.kind() == Value::Kind::money)
        sum += value.asMoney().raw();
  return sum;
}

std::string amounts(int to) {
  std::string all = "a.Amount1";
  for (int period = 2; period <= to; ++period) all += " + a.Amount" + std::to_string(period);
  return all;
}

class Peer {
 public:
  Peer(Theirs& side, std::int64_t lines) : accounts_(lines / kLinesOfAccount), side_(side) {}

  // Its columns: this year, last year and their difference, twice.
  std::int64_t statement() {
    std::int64_t sum = 0;
    for (int line = 0; line < kStatementLines; ++line) {
      from_ = numberOf(1 + line * accounts_ / kStatementLines);
      to_ = numberOf((line + 1) * accounts_ / kStatementLines);
      const Value from(from_), to(to_);
      statement_.bind(1, from);
      statement_.bind(2, to);
      while (statement_.step())
        if (statement_.number(0) == kYear) sum += 2 * (statement_.number(1) + statement_.number(2));
      statement_.reset();
    }
    return sum;
  }
  std::int64_t trialBalance() { return sides(trialBalance_, 4, -1); }
  std::int64_t ledger() { return sides(ledger_, 4, -1); }
  std::int64_t firstPage() { return sides(ledger_, 4, kRowsOfPage); }

 private:
  // Debits and credits together.
  static std::int64_t sides(Prepared& rows, int amount, int most) {
    std::int64_t sum = 0;
    std::size_t texts = 0;
    for (int row = 0; row != most && rows.step(); ++row) {
      sum += std::abs(rows.number(amount));
      for (int column = 0; column < amount; ++column) texts += rows.text(column).size();
    }
    rows.reset();
    if (texts == 0) std::abort();
    return sum;
  }

  std::int64_t accounts_;
  Theirs& side_;
  std::string from_, to_;
  std::string year_ = std::to_string(kYear);
  Prepared statement_{side_, "SELECT a.GLYear, SUM(a.Amount" + std::to_string(kPeriod) + "), SUM(" + amounts(kPeriod) +
                                 ") FROM GLAccnt g INNER JOIN GLActual a ON a.GLAccountID = g.GLAccountID AND a.GLYear "
                                 "BETWEEN " +
                                 std::to_string(kYear - 1) + " AND " + year_ +
                                 " WHERE g.GLAccount BETWEEN ? AND ? GROUP BY a.GLYear"};
  std::string names_ = "SELECT g.GLAccount, g.AccountName, s.SubAccount, s.SubAccountName, ";
  std::string joins_ =
      " INNER JOIN GLAccnt g ON g.GLAccountID = a.GLAccountID LEFT JOIN GLAcSub1 s ON s.SubAccountID = a.SubAccount1ID "
      "WHERE a.GLYear = " +
      year_ + " ORDER BY g.GLAccount, s.SubAccount";
  Prepared trialBalance_{side_, names_ + "a.OpeningBal + " + amounts(12) + " FROM GLActual a" + joins_};
  Prepared ledger_{side_, names_ +
                              "a.Amount, a.GLHistID, a.GLPeriod, a.Source, a.TransType, a.JVNumber, a.TransDate, "
                              "a.TransDescription FROM GLHist a" +
                              joins_ + ", a.GLPeriod, a.TransDate, a.JVNumber, a.GLHistID"};
};

}  // namespace

BooksCosts measureBooks(const std::string& scratch, std::int64_t lines, Report& report) {
  const std::string folder = emptyFolder(scratch + "/books"), file = emptyFolder(scratch + "/theirs") + "/books.sqlite";
  Theirs theirs(file);
  {
    Ours ours(folder);
    store::createCompanyTables(ours.database);
    store::Query(ours.database, "INSERT INTO Company (CompanyNo, CompanyName, FiscalYear) VALUES (1, 'Many', 2026)")
        .execute();
    Books(ours.database, theirs, lines).fill();
  }
  Office office(folder, report);
  Peer peer(theirs, lines);
  const auto measured = [&](const char* name, const form::Open& open, bool all, reports::Part part,
                            const std::function<std::int64_t()>& peers) {
    return alternate(
        kRounds, kPerMillisecond,
        [&](int, Stopwatch& watch) {
          watch.start();
          const std::unique_ptr<form::PageRun> run = reports::startReport(office.session, name, open);
          while (run->step() && all) {
          }
          watch.stop();
          return all ? sumOf(*run->pages(), part) : 0;
        },
        [&](int, Stopwatch& watch) {
          watch.start();
          const std::int64_t sum = peers();
          watch.stop();
          return all ? sum : 0;
        });
  };
  const form::Open year{.values = {{"year", Value(kYear)}}},
      statement{.values = {{"year", Value(kYear)}, {"period", Value(kPeriod)}, {"StmtID", Value(1)}}};
  const std::string of = "." + std::to_string(lines);
  const auto add = [&](const std::string& name, const Pair& pair) {
    report.add({name + of, pair.ours, pair.theirs, "ms"});
    return pair.ours;
  };
  BooksCosts costs;
  costs.statement = add("statement", measured("TrptFinancialStmt", statement, true, reports::Part::detail,
                                              [&] { return peer.statement(); }));
  costs.trialBalance = add("trial balance", measured("TrptTrialBalance", year, true, reports::Part::summary,
                                                     [&] { return peer.trialBalance(); }));
  add("trial balance first page",
      measured("TrptTrialBalance", year, false, reports::Part::summary, [&] { return peer.trialBalance(); }));
  add("general ledger first page",
      measured("TrptGeneralLedger", year, false, reports::Part::summary, [&] { return peer.firstPage(); }));
  costs.ledger = add("general ledger",
                     measured("TrptGeneralLedger", year, true, reports::Part::summary, [&] { return peer.ledger(); }));
  return costs;
}

}  // namespace quillon::bench
