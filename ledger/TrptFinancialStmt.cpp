// A financial statement: one of the company's own, or the balance sheet or income statement that the chart of accounts
// gives. A line of accounts opens their totals.
#include "form/App.h"
#include "form/Screen.h"
#include "ledger/AccountRange.h"
#include "ledger/MakeReports.h"
#include "ledger/Statements.h"
#include "ledger/Totals.h"
#include "reports/Report.h"

namespace quillon::ledger {
namespace {

using store::Value;

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
  static StatementRequest requestOf(const form::Open& open, int year);
  std::vector<std::string> totalsFilters(int year) const;
  reports::RowLook look() const;

  std::unique_ptr<Statement> statement_;
  std::vector<Statement::Line>::const_iterator line_;
};

StatementRequest TrptFinancialStmt::requestOf(const form::Open& open, int year) {
  StatementRequest request{.stmtId = numberOf(open, "StmtID"), .format = wordOf(open, "format"), .year = year};
  if (wordOf(open, "statement") == "Income Statement") request.builtIn = StatementKind::incomeStatement;
  request.period = periodOf(open) == 0 ? kPeriods : periodOf(open);
  request.upperPeriod = numberOf(open, "upperPeriod");
  for (int level = 1; level <= kSubaccountLevels; ++level)
    request.subaccounts[static_cast<std::size_t>(level - 1)] = numberOf(open, subaccountField(level));
  const auto forex = open.values.find("autoForex");
  request.autoForex =
      forex != open.values.end() && !forex->second.isNull() &&
      (forex->second.kind() == Value::Kind::boolean ? forex->second.asBool() : forex->second.toText() == "true");
  return request;
}

void TrptFinancialStmt::tell(reports::Bands& b, const form::Open& open) {
  const int year = yearOf(open);
  statement_ = std::make_unique<Statement>(database(), requestOf(open, year));
  reportTitle = statement_->title();
  lblAsOf = statement_->periodCaption();
  const bool wide = statement_->columns().size() > 4;
  b.landscape = wide;
  b.look = [this] { return look(); };
  b.shown("", 3000, [this] { return line_->heading; })
      .opens(
          [filters = totalsFilters(year)](form::App& some, std::int32_t place) {
            some.open("TfrmGLBalances", {.filter = filters.at(static_cast<std::size_t>(place))});
          },
          [this] {
            return line_->ranges.empty() ? -1 : static_cast<std::int32_t>(line_ - statement_->lines().begin());
          });
  for (std::size_t i = 0; i < statement_->columns().size(); ++i)
    b.shownMoney(statement_->columns()[i], 1150, [this, i] { return line_->values.at(i); });
}

// The totals of the year that a line is made of.
std::vector<std::string> TrptFinancialStmt::totalsFilters(int year) const {
  std::vector<std::string> all;
  for (const Statement::Line& line : statement_->lines()) {
    std::string accounts;
    for (const StatementRange& range : line.ranges)
      accounts += (accounts.empty() ? "" : " OR ") + std::string("(g.GLAccount >= ") + quoted(range.from) +
                  " AND g.GLAccount <= " + quoted(range.to) + ")";
    all.push_back("(a.GLYear = " + std::to_string(year) + ")" + (accounts.empty() ? "" : " AND (" + accounts + ")"));
  }
  return all;
}

reports::RowLook TrptFinancialStmt::look() const {
  constexpr int kIndent = 180, kSpace = 90;
  if (line_->type == LineType::heading) return {.face = reports::Face::bold, .spaceAbove = kSpace};
  if (isTotal(line_->type)) return {.face = reports::Face::bold, .ruleAbove = true};
  return {.indent = kIndent};
}

}  // namespace

ReportPtr makeTrptFinancialStmt(shell::Session& session) { return std::make_unique<TrptFinancialStmt>(session); }

}  // namespace quillon::ledger
