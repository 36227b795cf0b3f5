// Financial statements over random ledgers: what a model works out from the entries alone, in every format, for every
// limit and range of periods; and what must hold of the two statements that are made of the chart.
//
// Method: entries of two lines within one combination of subaccounts, so that the books balance in each; openings only
// of what is carried forward. The model keeps a list of entries and adds up, for each figure, those that belong to it.
#include "ledger/Statements.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "ledger/ComposeStatement.h"
#include "ledger/Totals.h"
#include "store/Database.h"
#include "store/Query.h"
#include "store/schema/CreateCompany.h"
#include "support/LedgerFigures.h"
#include "support/PostedBooks.h"
#include "support/Refusal.h"
#include "support/SimProcess.h"
#include "support/Trials.h"

namespace quillon::ledger {
namespace {

using store::Value;
using Subaccounts = std::array<int, kSubaccountLevels>;

constexpr int kYear = 2026;

struct Entry {
  int account = 0;  // place in the list of accounts
  Subaccounts subaccounts = {};
  int year = 0, period = 0;  // 0: opening
  Money amount;
  bool budget = false;
};

struct ModelAccount {
  std::string number;
  AccountType type;
};

// Which entries a column adds up; `minus` is that of the one that it is compared with.
struct ModelColumn {
  int yearsBack, from, to;
  bool budget = false;
};

class Statements : public testing::Test {
 protected:
  Statements() {
    disk_.process()->makeFolder(sim::kSharedFolder);
    process_.open();
    store::createCompanyTables(database());
  }
  store::Database& database() { return process_.database(); }
  int below(std::size_t limit) { return static_cast<int>(random_.below(limit)); }
  void run(const std::string& statement) { sim::runOn(database(), statement); }

  void makeLedger() {
    std::vector<std::string> numbers;
    for (const char* first : {"1", "2", "3", "9"})
      for (const char* rest : {"", "0", "00", "05", "1", "A", "a"}) numbers.push_back(std::string(first) + rest);
    for (const std::string& number : numbers) {
      accounts_.push_back({number, static_cast<AccountType>(1 + below(5))});
      const std::string id = std::to_string(1000 - accounts_.size());
      run("INSERT INTO GLAccnt (GLAccountID, GLAccount, AccountName, AccountType) VALUES (" + id + ", '" + number +
          "', 'Account " + id + "', " + std::to_string(static_cast<int>(accounts_.back().type)) + ")");
    }
    for (int i = 0; i < 150; ++i) addEntries();
    write();
  }

  void addEntries() {
    Entry entry{
        .account = below(accounts_.size()), .year = kYear - 2 + below(4), .amount = Money::fromRaw(below(9'000'000))};
    for (int& id : entry.subaccounts) id = below(3);
    Entry other = entry;
    other.account = below(accounts_.size());
    other.amount = -entry.amount;
    const auto carried = [&](int account) {
      return isCarriedForward(accounts_[static_cast<std::size_t>(account)].type);
    };
    entry.period = other.period = carried(entry.account) && carried(other.account) ? below(13) : 1 + below(12);
    entry.budget = other.budget = random_.oneIn(3);
    entries_.insert(entries_.end(), {entry, other});
  }

  void write() {
    std::map<std::pair<bool, std::vector<int>>, std::array<Money, kPeriods + 1>> rows;
    for (const Entry& e : entries_)
      rows[{e.budget, {1000 - e.account - 1, e.subaccounts[0], e.subaccounts[1], e.subaccounts[2], e.year}}]
          [static_cast<std::size_t>(e.period)] += e.amount;
    for (const auto& [key, amounts] : rows) {
      store::Cursor table(database(), key.first ? "GLBudget" : "GLActual");
      table.open();
      table.append();
      table["GLAccountID"] = key.second[0];
      for (int level = 1; level <= kSubaccountLevels; ++level)
        if (const int id = key.second[static_cast<std::size_t>(level)]; id != 0) table[subaccountField(level)] = id;
      table["GLYear"] = key.second[4];
      table["ActualBudget"] = key.first ? "B" : "A";
      if (amounts[0] != Money()) table["OpeningBal"] = amounts[0];
      for (int period = 1; period <= kPeriods; ++period)
        if (const Money amount = amounts[static_cast<std::size_t>(period)]; amount != Money())
          table[amountField(period)] = amount;
      table.post();
    }
  }

  StatementDefinition randomDefinition() {
    StatementDefinition statement{.title = "Random", .format = {}};
    for (int seq = 1; seq <= 25; ++seq) {
      StatementLine line{.seq = seq, .heading = "Line", .type = static_cast<LineType>(below(kLineTypes.size()))};
      if (isDetail(line.type))
        for (int ranges = below(4); ranges > 0; --ranges) addRange(line);
      if (isTotal(line.type))
        for (int member = 1; member <= 25; ++member)
          if (random_.oneIn(3)) line.members.push_back(member);
      statement.lines.push_back(line);
    }
    return statement;
  }
  void addRange(StatementLine& line) {
    const auto number = [&] { return accounts_[random_.below(accounts_.size())].number; };
    StatementRange range{.from = number(), .to = {}};
    range.to = random_.oneIn(3) ? range.from : number() + (random_.oneIn(2) ? "" : "5");
    for (int& id : range.subaccounts) id = random_.oneIn(4) ? below(3) : 0;
    if (std::ranges::find(line.ranges, range.from, &StatementRange::from) == line.ranges.end())
      line.ranges.push_back(range);
  }

  static bool fits(const Subaccounts& wanted, const Subaccounts& has) {
    return std::ranges::equal(wanted, has, [](int some, int other) { return some == 0 || some == other; });
  }

  Money model(const StatementDefinition& statement, const StatementLine& line, const StatementRequest& request,
              const ModelColumn& column) const {
    Money sum;
    for (const StatementRange& range : line.ranges)
      for (const Entry& e : entries_) {
        const std::string& number = accounts_[static_cast<std::size_t>(e.account)].number;
        if (e.budget == column.budget && e.year == kYear - column.yearsBack && e.period >= column.from &&
            e.period <= column.to && number >= range.from && number <= range.to &&
            fits(range.subaccounts, e.subaccounts) && fits(request.subaccounts, e.subaccounts))
          sum += e.amount;
      }
    if (isTotal(line.type))
      for (const int member : line.members)
        if (const StatementLine& one = statement.lines[static_cast<std::size_t>(member - 1)]; isDetail(one.type))
          sum += model(statement, one, request, column);
    return sum;
  }

  // Each column, and of a variance the two that it is the difference of.
  static std::vector<std::vector<ModelColumn>> columnsOf(const std::string& format, int p, int upper) {
    const int q = std::max(p, upper);
    const ModelColumn now{0, p, q}, toDate{0, 1, q}, balance{0, 0, p};
    const ModelColumn then{1, p, q}, thenToDate{1, 1, q}, thenBalance{1, 0, p};
    const ModelColumn planned{0, p, q, true}, plannedToDate{0, 1, q, true}, plannedBalance{0, 0, p, true};
    const ModelColumn before = p == 1 ? ModelColumn{1, 12, 12} : ModelColumn{0, p - 1, p - 1};
    if (format == "Net Change: Simple") return {{now}, {toDate}};
    if (format == "Net Change: Compare period" || format == "Net Change: Compare month")
      return {{now}, {before}, {now, before}, {toDate}};
    if (format == "Net Change: Compare year")
      return {{now}, {then}, {now, then}, {toDate}, {thenToDate}, {toDate, thenToDate}};
    if (format == "Net Change: Compare budget")
      return {{now}, {planned}, {now, planned}, {toDate}, {plannedToDate}, {toDate, plannedToDate}};
    if (format == "Balance: Simple") return {{balance}};
    if (format == "Balance: Compare year") return {{balance}, {thenBalance}, {balance, thenBalance}};
    return {{balance}, {plannedBalance}, {balance, plannedBalance}};
  }

  static bool isNegated(LineType type, const std::string& format) {
    const std::string_view name = nameOf(type);
    return (name.ends_with("Revenue") && format.starts_with("Net")) ||
           (name.ends_with("Li Eq") && format.starts_with("Bal"));
  }

  StatementRequest randomRequest() {
    StatementRequest request{.year = kYear, .period = 1 + below(12)};
    if (random_.oneIn(2)) request.upperPeriod = request.period + below(static_cast<std::size_t>(13 - request.period));
    for (int& id : request.subaccounts) id = random_.oneIn(3) ? below(3) : 0;
    return request;
  }

  static const Statement::Line& lineOf(const Statement& statement, const std::string& heading) {
    const auto found = std::ranges::find(statement.lines(), heading, &Statement::Line::heading);
    if (found == statement.lines().end()) throw std::runtime_error(heading);
    return *found;
  }

  sim::SimDisk disk_;
  sim::SimClock clock_;
  sim::SimProcess process_{disk_, clock_, {}};
  sim::SeededRandom random_{0};
  std::vector<ModelAccount> accounts_;
  std::vector<Entry> entries_;
};

class RandomStatements : public Statements, public testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(Seeds, RandomStatements, testing::Range(1, 7));

TEST_P(RandomStatements, AddUpWhatTheEntriesSay) {
  const std::uint64_t seed = sim::Trials::fromEnvironment().seed.value_or(static_cast<std::uint64_t>(GetParam()));
  SCOPED_TRACE(sim::Trials::repeating(seed, "test_ledger", "*AddUpWhat*/0"));
  random_ = sim::SeededRandom(seed);
  makeLedger();
  run("INSERT INTO FStmt (StmtID, StmtTitle, ColumnFormat) VALUES (7, 'Random', 'Balance: Simple')");
  const StatementDefinition definition = randomDefinition();
  writeStatementLines(database(), 7, definition);
  std::vector<std::string> formats(kColumnFormats.begin(), kColumnFormats.end());
  formats.emplace_back("Net Change: Compare month");
  for (const std::string& format : formats) {
    StatementRequest request = randomRequest();
    request.stmtId = 7;
    request.format = format;
    const Statement statement(database(), request);
    const auto columns = columnsOf(format, request.period, request.upperPeriod);
    ASSERT_EQ(statement.columns().size(), columns.size());
    ASSERT_EQ(statement.lines().size(), definition.lines.size());
    for (std::size_t i = 0; i < definition.lines.size(); ++i) {
      const StatementLine& line = definition.lines[i];
      for (std::size_t column = 0; column < columns.size(); ++column) {
        Value expected;
        if (line.type != LineType::heading) {
          Money amount = model(definition, line, request, columns[column].front());
          if (columns[column].size() == 2) amount -= model(definition, line, request, columns[column].back());
          expected = isNegated(line.type, format) ? -amount : amount;
        }
        EXPECT_EQ(statement.lines()[i].values[column], expected)
            << format << ", " << statement.periodCaption() << ", line " << line.seq << ", column " << column;
      }
    }
  }
}

TEST_P(RandomStatements, BalanceAndAgreeOnNetIncome) {
  random_ = sim::SeededRandom(static_cast<std::uint64_t>(GetParam()));
  makeLedger();
  for (const std::string compare : {"Simple", "Compare year", "Compare budget"}) {
    StatementRequest request = randomRequest();
    request.upperPeriod = 0;
    request.format = "Balance: " + compare;
    const Statement sheet(database(), request);
    request.builtIn = StatementKind::incomeStatement;
    request.format = "Net Change: " + compare;
    const Statement income(database(), request);
    const std::size_t toDate = compare == "Simple" ? 1 : 3;  // the first column of the year to date
    for (std::size_t column = 0; column < sheet.columns().size(); ++column) {
      EXPECT_EQ(lineOf(sheet, "Total Assets").values[column],
                lineOf(sheet, "Total Liabilities & Equity").values[column]);
      EXPECT_EQ(lineOf(sheet, "Retained Earnings Current Year").values[column],
                lineOf(income, "Net Income").values[toDate + column]);
    }
  }
}

// The values of a subaccount take a statement apart: what is shown of each of them, and of what has none, comes to what
// is shown of all. A statement cannot be asked for what has none, so that is given a value of its own.
TEST_P(RandomStatements, AreTheSumOverAnySubaccount) {
  random_ = sim::SeededRandom(static_cast<std::uint64_t>(GetParam()));
  makeLedger();
  run("INSERT INTO FStmt (StmtID, StmtTitle, ColumnFormat) VALUES (7, 'Random', 'Balance: Simple')");
  writeStatementLines(database(), 7, randomDefinition());
  for (const std::string_view format : kColumnFormats) {
    StatementRequest request = randomRequest();
    const std::size_t level = random_.below(kSubaccountLevels);
    request.stmtId = random_.oneIn(2) ? 7 : 0;
    request.builtIn = random_.oneIn(2) ? StatementKind::incomeStatement : StatementKind::balanceSheet;
    request.format = format;
    request.subaccounts.at(level) = 0;
    const Statement whole(database(), request);
    const std::string field = subaccountField(static_cast<int>(level) + 1);
    for (const std::string table : {"GLActual", "GLBudget"})
      run("UPDATE " + table + " SET " + field + " = 3 WHERE " + field + " IS NULL");
    std::vector<std::array<Money, Statement::kMostColumns>> sums(whole.lines().size());
    for (request.subaccounts.at(level) = 1; request.subaccounts.at(level) <= 3; ++request.subaccounts.at(level)) {
      const Statement part(database(), request);
      for (std::size_t line = 0; line < sums.size(); ++line)
        for (std::size_t column = 0; column < part.columns().size(); ++column)
          sums[line][column] += part.lines()[line].values[column].asMoney();
    }
    for (std::size_t line = 0; line < sums.size(); ++line)
      for (std::size_t column = 0; column < whole.columns().size(); ++column)
        EXPECT_EQ(whole.lines()[line].values[column].asMoney(), sums[line][column]) << format << ", line " << line;
    for (const std::string table : {"GLActual", "GLBudget"})
      run("UPDATE " + table + " SET " + field + " = null WHERE " + field + " = 3");
  }
}

TEST_F(Statements, SayWhatCannotBeWorkedOut) {
  run("INSERT INTO FStmt (StmtID, StmtTitle, ColumnFormat) VALUES (1, 'Random', 'Balance: Simple')");
  const auto refusal = [&](StatementRequest request) {
    if (request.year == 0) request.year = kYear;
    return sim::refusalOf([&] { const Statement statement(database(), request); });
  };
  EXPECT_EQ(refusal({.stmtId = 9}), "There is no statement 9 (any more)");
  EXPECT_EQ(refusal({.stmtId = 1, .format = "Actual"}), "'Actual' is no column format of a statement");
  EXPECT_EQ(refusal({.stmtId = 1, .year = 10000}), "Year must be between 1 and 9999");
  EXPECT_EQ(refusal({.stmtId = 1, .period = 13}), "Period must be between 1 and 12");
  EXPECT_EQ(refusal({.stmtId = 1, .period = 5, .upperPeriod = 4}), "The last period must be between 5 and 12");
}

}  // namespace
}  // namespace quillon::ledger
