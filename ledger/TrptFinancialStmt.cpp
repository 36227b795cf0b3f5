// A financial statement: one of the company's own, or the balance sheet or income statement that the chart of accounts
// gives. A figure opens the totals or the budgets that it adds up.
#include <algorithm>
#include <set>

#include "base/Errors.h"
#include "base/Text.h"
#include "form/App.h"
#include "form/Screen.h"
#include "ledger/AccountRange.h"
#include "ledger/MakeReports.h"
#include "ledger/RestatedLedger.h"
#include "ledger/Statements.h"
#include "ledger/Totals.h"
#include "reports/Report.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

using store::Value;

// Which totals and which budgets, of any year, a line is made of.
struct Conditions {
  std::string totals, budgets;
};

// `row`: how the list calls its rows.
std::string subaccountsClause(const std::string& row, const std::array<int, kSubaccountLevels>& ids) {
  std::string all;
  for (int level = 1; level <= kSubaccountLevels; ++level)
    if (const int id = ids[static_cast<std::size_t>(level - 1)]; id != 0)
      all += " AND (" + row + subaccountField(level) + " = " + std::to_string(id) + ")";
  return all;
}

// Single accounts stand in one list, for a line may have as many as there are accounts.
std::string accountsClause(const std::string& row, const std::vector<StatementRange>& ranges) {
  std::string alone, all;
  for (const StatementRange& range : ranges) {
    const std::string subaccounts = subaccountsClause(row, range.subaccounts);
    if (range.from == range.to && subaccounts.empty())
      alone += (alone.empty() ? "" : ", ") + quoted(range.from);
    else
      all += std::string(all.empty() ? "" : " OR ") + "((g.GLAccount >= " + quoted(range.from) +
             ") AND (g.GLAccount <= " + quoted(range.to) + ")" + subaccounts + ")";
  }
  if (!alone.empty()) all = "(g.GLAccount IN (" + alone + "))" + (all.empty() ? "" : " OR " + all);
  return " AND (" + all + ")";
}

void openSource(form::App& app, const Statement::Source& source, int year, const Conditions& its) {
  const auto years = [](const std::string& row, int from, int to) {
    return "(" + row + "GLYear >= " + std::to_string(from) + ") AND (" + row + "GLYear <= " + std::to_string(to) + ")";
  };
  if (source.budget) app.open("TfrmGLBudget", {.filter = years("b.", year, year) + its.budgets});
  if (!source.thisYear && !source.lastYear) return;
  app.open("TfrmGLBalances",
           {.filter = years("a.", source.lastYear ? year - 1 : year, source.thisYear ? year : year - 1) + its.totals});
}

class TrptFinancialStmt final : public reports::Report {
 public:
  using Report::Report;
  void tell(reports::Bands& b, const form::Open& open) override;
  bool first() override {
    line_ = statement_->lines().begin();
    return line_ != statement_->lines().end();
  }
  bool next() override { return ++line_ != statement_->lines().end(); }
  int positionOf(std::string_view /*field*/) override { return -1; }

 private:
  StatementRequest requestOf(const form::Open& open, int year);
  void choose(const form::Open& open, StatementRequest& request);
  bool restates(const form::Open& open);
  std::shared_ptr<const std::vector<Conditions>> conditions(const StatementRequest& request) const;
  std::string words(const StatementRequest& request) const;
  reports::RowLook look() const;
  bool isLast(const Statement::Line& total) const;

  std::unique_ptr<Statement> statement_;
  std::vector<Statement::Line>::const_iterator line_;
};

StatementRequest TrptFinancialStmt::requestOf(const form::Open& open, int year) {
  StatementRequest request{.format = wordOf(open, "format"), .year = year};
  choose(open, request);
  request.period = periodOf(open) == 0 ? kPeriods : periodOf(open);
  request.upperPeriod = numberOf(open, "upperPeriod");
  for (int level = 1; level <= kSubaccountLevels; ++level)
    request.subaccounts[static_cast<std::size_t>(level - 1)] = numberOf(open, subaccountField(level));
  request.autoForex = restates(open);
  if (request.autoForex && session().sampleDataOpen) throw Error(kSampleNotRestated);
  return request;
}

// By its name in the launcher, which for all those of the company's own is one, or by its number.
void TrptFinancialStmt::choose(const form::Open& open, StatementRequest& request) {
  request.stmtId = numberOf(open, "StmtID");
  const std::string name = wordOf(open, "statement");
  const bool isIncome = equalFolded(name, "Income Statement");
  const bool isBuiltIn = isIncome || equalFolded(name, "Balance Sheet");
  const bool isOwn = equalFolded(name, "Custom Financial Statements");
  if (!name.empty() && !isBuiltIn && !isOwn)
    throw Error("There is no statement '" + name +
                "'; there are Balance Sheet and Income Statement, and by StmtID the company's own");
  if (isOwn && request.stmtId == 0) throw Error("'" + name + "' are chosen by StmtID, which says none");
  if (isBuiltIn && request.stmtId != 0) throw Error("'" + name + "' has no StmtID: that is of the company's own");
  if (isIncome) request.builtIn = StatementKind::incomeStatement;
}

bool TrptFinancialStmt::restates(const form::Open& open) {
  const std::string text = wordOf(open, "autoForex");
  if (!text.empty() && !equalFolded(text, "true") && !equalFolded(text, "false"))
    throw Error("autoForex is true or false, not '" + text + "'");
  return equalFolded(text, "true");
}

void TrptFinancialStmt::tell(reports::Bands& b, const form::Open& open) {
  const StatementRequest request = requestOf(open, yearOf(open));
  statement_ = std::make_unique<Statement>(database(), request);
  reportTitle = statement_->title();
  lblAsOf = statement_->periodCaption();
  lblSelection = words(request);
  b.landscape = statement_->columns().size() > 4;
  b.look = [this] { return look(); };
  const auto opens = [this, its = conditions(request), year = request.year](reports::Column& column,
                                                                            Statement::Source source) {
    column.opens(
        [its, year, source](form::App& some, std::int32_t line) {
          openSource(some, source, year, its->at(static_cast<std::size_t>(line)));
        },
        [this] { return line_->ranges.empty() ? -1 : static_cast<std::int32_t>(line_ - statement_->lines().begin()); });
  };
  opens(b.shown("", 3000, [this] { return line_->heading; }), {.thisYear = true});
  for (std::size_t i = 0; i < statement_->columns().size(); ++i)
    opens(b.shownMoney(statement_->columns()[i], 1150, [this, i] { return line_->values.at(i); }),
          statement_->sources()[i]);
}

std::shared_ptr<const std::vector<Conditions>> TrptFinancialStmt::conditions(const StatementRequest& request) const {
  auto all = std::make_shared<std::vector<Conditions>>();
  const auto of = [&](const std::string& row, const Statement::Line& line) {
    return line.ranges.empty() ? "" : accountsClause(row, line.ranges) + subaccountsClause(row, request.subaccounts);
  };
  for (const Statement::Line& line : statement_->lines()) all->push_back({of("a.", line), of("b.", line)});
  return all;
}

// What limits it, and what its figures are restated by.
std::string TrptFinancialStmt::words(const StatementRequest& request) const {
  std::string all;
  for (int level = 1; level <= kSubaccountLevels; ++level) {
    const int id = request.subaccounts[static_cast<std::size_t>(level - 1)];
    if (id == 0) continue;
    const Value name = app().lookUp(subaccountTable(level)).lookup("SubAccountID", {Value(id)}, "SubAccountName");
    all += "     Subaccount " + std::to_string(level) + ": " + (name.isNull() ? std::to_string(id) : name.asText());
  }
  return all + (request.autoForex ? "     AutoForex" : "");
}

reports::RowLook TrptFinancialStmt::look() const {
  constexpr int kIndent = 180, kSpace = 90;
  if (line_->type == LineType::heading) return {.face = reports::Face::bold, .spaceAbove = kSpace, .withNext = true};
  if (isTotal(line_->type))
    return {.face = reports::Face::bold, .ruleAbove = true, .ruleBelow = isLast(*line_), .withPrevious = true};
  return {.indent = kIndent};
}

// Whether what it adds up goes into no further total: assets, liabilities with equity, net income.
bool TrptFinancialStmt::isLast(const Statement::Line& total) const {
  const auto accounts = [](const Statement::Line& line) {
    std::set<std::pair<std::string, std::string>> all;
    for (const StatementRange& range : line.ranges) all.emplace(range.from, range.to);
    return all;
  };
  const auto own = accounts(total);
  return !own.empty() && std::none_of(line_ + 1, statement_->lines().end(), [&](const Statement::Line& line) {
    return isTotal(line.type) && std::ranges::includes(accounts(line), own);
  });
}

}  // namespace

ReportPtr makeTrptFinancialStmt(shell::Session& session) { return std::make_unique<TrptFinancialStmt>(session); }

}  // namespace quillon::ledger
