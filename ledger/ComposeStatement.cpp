#include "ledger/ComposeStatement.h"

#include <map>
#include <memory>

#include "base/Text.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Query.h"

namespace quillon::ledger {
namespace {

using store::Cursor;

class Compose {
 public:
  explicit Compose(store::Database& database) {
    Cursor accounts(database, "GLAccnt");
    accounts.setIndex("GLAccount");
    accounts.open();
    for (accounts.first(); !accounts.eof(); accounts.next())
      accounts_[static_cast<AccountType>(accounts["AccountType"].asInt())].push_back(
          {accounts["GLAccount"].asText(), accounts["AccountName"].asText()});
  }

  StatementDefinition incomeStatement() {
    heading("Revenue");
    const std::vector<int> revenue = details(AccountType::revenue, LineType::detailRevenue);
    total("Total Revenue", LineType::totalRevenue, revenue);
    heading("Expenses");
    const std::vector<int> expenses = details(AccountType::expense, LineType::detail);
    total("Total Expenses", LineType::total, expenses);
    total("Net Income", LineType::totalRevenue, joined(revenue, expenses));
    return {.title = "Income Statement", .format = "Net Change: Simple", .lines = std::move(lines_)};
  }

  StatementDefinition balanceSheet() {
    heading("ASSETS");
    total("Total Assets", LineType::total, details(AccountType::asset, LineType::detail));
    heading("LIABILITIES & EQUITY");
    heading("Liabilities");
    const std::vector<int> liabilities = details(AccountType::liability, LineType::detailLiEq);
    total("Total Liabilities", LineType::totalLiEq, liabilities);
    heading("Equity");
    std::vector<int> equity = {yearsResult()};
    equity = joined(equity, details(AccountType::equity, LineType::detailLiEq));
    total("Total Equity", LineType::totalLiEq, equity);
    total("Total Liabilities & Equity", LineType::totalLiEq, joined(liabilities, equity));
    return {.title = "Balance Sheet", .format = "Balance: Simple", .lines = std::move(lines_)};
  }

 private:
  struct Account {
    std::string number, name;
  };

  StatementLine& add(std::string heading, LineType type) {
    const int seq = static_cast<int>(lines_.size()) + 1;
    return lines_.emplace_back(StatementLine{.seq = seq, .heading = std::move(heading), .type = type});
  }
  void heading(const char* text) { add(text, LineType::heading); }
  void total(const char* text, LineType type, std::vector<int> members) {
    add(text, type).members = std::move(members);
  }

  // Their numbers.
  std::vector<int> details(AccountType of, LineType type) {
    std::vector<int> seqs;
    for (const Account& account : accounts_[of]) {
      StatementLine& line = add(account.name, type);
      line.ranges = {alone(account)};
      seqs.push_back(line.seq);
    }
    return seqs;
  }

  // What revenue and expenses of a year that is not closed yet have made of the equity.
  int yearsResult() {
    std::map<std::string, StatementRange> byNumber;
    for (const AccountType type : {AccountType::revenue, AccountType::expense})
      for (const Account& account : accounts_[type]) byNumber[account.number] = alone(account);
    StatementLine& line = add("Retained Earnings Current Year", LineType::detailLiEq);
    for (auto& [number, range] : byNumber) line.ranges.push_back(std::move(range));
    return line.seq;
  }

  static StatementRange alone(const Account& account) { return {.from = account.number, .to = account.number}; }
  static std::vector<int> joined(std::vector<int> some, const std::vector<int>& more) {
    some.insert(some.end(), more.begin(), more.end());
    return some;
  }

  std::map<AccountType, std::vector<Account>> accounts_;  // by number
  std::vector<StatementLine> lines_;
};

bool says(std::string_view title, std::string_view word) {
  return foldCase(title).find(foldCase(word)) != std::string::npos;
}

// One row a call.
class Lines {
 public:
  Lines(store::Database& database, int stmtId) : stmtId_(stmtId) {
    for (const char* table : {"FStmtLin", "FStmtLAc", "FStmtLTo"}) {
      store::Query old(database, std::string("DELETE FROM ") + table + " WHERE StmtID = :id");
      old.setParameter("id", stmtId);
      old.execute();
      Cursor& rows = *rows_.emplace_back(std::make_unique<Cursor>(database, table));
      rows.open();
    }
  }

  void add(const StatementLine& line, int lineNo) {
    Cursor& row = begin(0, line.seq);
    row["LineNo"] = lineNo;
    row["LineHeading"] = firstCharacters(line.heading, static_cast<std::size_t>(row["LineHeading"].definition().size));
    row["LineType"] = nameOf(line.type);
    row.post();
    for (const StatementRange& range : line.ranges) addRange(line.seq, range);
    for (const int member : line.members) {
      Cursor& entry = begin(2, member);
      entry["TotalLineSeq"] = line.seq;
      entry.post();
    }
  }

 private:
  Cursor& begin(std::size_t table, int seq) {
    Cursor& row = *rows_[table];
    row.append();
    row["StmtID"] = stmtId_;
    row["Seq"] = seq;
    return row;
  }

  void addRange(int seq, const StatementRange& range) {
    Cursor& row = begin(1, seq);
    row["AccountFrom"] = range.from;
    if (range.to != range.from) row["AccountTo"] = range.to;
    for (int level = 1; level <= kSubaccountLevels; ++level)
      if (const int id = range.subaccounts[static_cast<std::size_t>(level - 1)]; id != 0)
        row[subaccountField(level)] = id;
    row.post();
  }

  int stmtId_;
  std::vector<std::unique_ptr<Cursor>> rows_;
};

}  // namespace

bool saysIncome(std::string_view title) { return says(title, "Income") || says(title, "Profit"); }
bool saysBalance(std::string_view title) { return says(title, "Balance"); }

std::optional<StatementKind> kindOfTitle(std::string_view title) {
  if (saysIncome(title)) return StatementKind::incomeStatement;
  if (saysBalance(title)) return StatementKind::balanceSheet;
  return std::nullopt;
}

StatementDefinition composeStatement(store::Database& database, StatementKind kind) {
  return kind == StatementKind::incomeStatement ? Compose(database).incomeStatement()
                                                : Compose(database).balanceSheet();
}

void writeStatementLines(store::Database& database, int stmtId, const StatementDefinition& statement) {
  const store::Database::BulkScope bulk(database);
  Lines lines(database, stmtId);
  int lineNo = 0;
  for (const StatementLine& line : statement.lines) lines.add(line, ++lineNo);
}

}  // namespace quillon::ledger
