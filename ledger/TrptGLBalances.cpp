// GL totals and GL budget: of each account and combination of subaccounts, the changes of a year's periods, or its
// balance at the end of each. Of themselves, totals are balances of what has one (assets, liabilities, equity) and
// changes of the rest; budgets print as they were entered.
#include "base/Errors.h"
#include "form/App.h"
#include "form/Screen.h"
#include "ledger/Accounts.h"
#include "ledger/MakeReports.h"
#include "ledger/Totals.h"
#include "reports/Report.h"

namespace quillon::ledger {
namespace {

using store::Value;

struct DataChoice {
  const char* data;
  const char* words;
};
constexpr DataChoice kChoices[] = {
    {"Auto", "Data: Auto (Balance or Net Change)"}, {"NetChange", "Data: Net Change"}, {"Balance", "Data: Balance"}};

class TrptTotals final : public reports::Report {
 public:
  // `alias` as the list's conditions name the table.
  TrptTotals(shell::Session& session, const char* title, std::string table, std::string alias, const char* standard)
      : Report(session), table_(std::move(table)), alias_(std::move(alias)), standard_(standard) {
    reportTitle = title;
  }
  void tell(reports::Bands& b, const form::Open& open) override;

 private:
  void columns(reports::Bands& b);
  std::string statement(const form::Open& open);
  bool showsBalance();
  Value amount(int period);
  Value change();

  std::string table_, alias_, standard_, data_;
};

void TrptTotals::tell(reports::Bands& b, const form::Open& open) {
  data_ = wordOf(open, "data").empty() ? standard_ : wordOf(open, "data");
  for (const DataChoice& choice : kChoices)
    if (data_ == choice.data) lblAsOf = choice.words;
  if (!data_.empty() && lblAsOf.empty()) throw Error("'" + data_ + "' is none of Auto, NetChange and Balance");
  lblSelection = wordOf(open, "selection");
  select(statement(open));
  columns(b);
}

std::string TrptTotals::statement(const form::Open& open) {
  std::string text =
      "SELECT g.GLAccountID, g.GLAccount, g.AccountType, " + alias_ + ".GLYear, " + alias_ + ".OpeningBal";
  std::string joins =
      " FROM GLAccnt g INNER JOIN " + table_ + " " + alias_ + " ON " + alias_ + ".GLAccountID = g.GLAccountID";
  std::string order = "g.GLAccount";
  for (int level = 1; level <= kSubaccountLevels; ++level) {
    const std::string s = "s" + std::to_string(level), id = alias_ + "." + subaccountField(level);
    text += ", " + id;
    joins += " LEFT OUTER JOIN " + subaccountTable(level) + " " + s + " ON " + s + ".SubAccountID = " + id;
    order += ", " + s + ".SubAccount";
  }
  for (int period = 1; period <= kPeriods; ++period) text += ", " + alias_ + "." + amountField(period);
  return text + joins + whereOf(open) + orderOf(open, order + ", " + alias_ + ".GLYear");
}

void TrptTotals::columns(reports::Bands& b) {
  constexpr int kAbove = kPeriods / 2, kAmount = 970;
  b.landscape = true;
  b.size = 75;
  b.look = [] { return reports::RowLook{.spaceAbove = 40}; };
  b.text("Account no.", "GLAccount", 850);
  b.shown("Name", 1900, [this] {
    return accountNames(app(), value("GLAccountID"),
                        {value(subaccountField(1)), value(subaccountField(2)), value(subaccountField(3))});
  });
  b.whole("Year", "GLYear", 400);
  const reports::Column& opening =
      b.shownMoney("Opening Balance", 1050, [this] { return Value(value("OpeningBal").asMoney()); });
  std::vector<const reports::Column*> upper;
  for (int period = 1; period <= kPeriods; ++period) {
    reports::Column& column =
        b.shownMoney("Period " + std::to_string(period), kAmount, [this, period] { return amount(period); });
    if (period > kAbove) column.under(*upper[static_cast<std::size_t>(period - kAbove - 1)]);
    upper.push_back(&column);
  }
  b.shownMoney("Total Change", kAmount, [this] { return change(); }).under(opening);
}

bool TrptTotals::showsBalance() {
  if (data_ != "Auto") return data_ == "Balance";
  const auto type = static_cast<AccountType>(value("AccountType").asInt());
  return type != AccountType::revenue && type != AccountType::expense;
}

Value TrptTotals::amount(int period) {
  if (!showsBalance()) return Value(value(amountField(period)).asMoney());
  Money balance = value("OpeningBal").asMoney();
  for (int some = 1; some <= period; ++some) balance += value(amountField(some)).asMoney();
  return Value(balance);
}

Value TrptTotals::change() {
  Money sum;
  for (int period = 1; period <= kPeriods; ++period) sum += value(amountField(period)).asMoney();
  return Value(sum);
}

}  // namespace

ReportPtr makeTrptGLBalances(shell::Session& session) {
  return std::make_unique<TrptTotals>(session, "GL Totals", "GLActual", "a", "Auto");
}

ReportPtr makeTrptGLBudget(shell::Session& session) {
  return std::make_unique<TrptTotals>(session, "GL Budget", "GLBudget", "b", "");
}

}  // namespace quillon::ledger
