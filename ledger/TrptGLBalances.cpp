// GL totals by period: of each account and combination of subaccounts, the changes of a year's periods, or its balance
// at the end of each. Of itself, balances of what has one (assets, liabilities, equity) and changes of the rest.
#include "form/App.h"
#include "form/Screen.h"
#include "ledger/Accounts.h"
#include "ledger/MakeReports.h"
#include "ledger/TotalsFile.h"
#include "reports/Report.h"

namespace quillon::ledger {
namespace {

using store::Value;

class TrptGLBalances final : public reports::Report {
 public:
  using Report::Report;
  void tell(reports::Bands& b, const form::Open& open) override;

 private:
  bool showsBalance();
  Value opening();
  Value amount(int period);
  Value change();

  std::string data_;
};

void TrptGLBalances::tell(reports::Bands& b, const form::Open& open) {
  reportTitle = "GL Totals";
  data_ = wordOf(open, "data").empty() ? "Auto" : wordOf(open, "data");
  lblAsOf = data_ == "Balance"     ? "Data: Balance"
            : data_ == "NetChange" ? "Data: Net Change"
                                   : "Data: Auto (Balance or Net Change)";
  lblSelection = wordOf(open, "selection");
  std::string text =
      "SELECT g.GLAccountID, g.GLAccount, g.AccountName, g.AccountType, a.GLYear, a.OpeningBal, a.SubAccount1ID, "
      "a.SubAccount2ID, a.SubAccount3ID";
  for (int period = 1; period <= kPeriods; ++period) text += ", a.Amount" + std::to_string(period);
  std::string joins = " FROM GLAccnt g INNER JOIN GLActual a ON a.GLAccountID = g.GLAccountID";
  for (int level = 1; level <= kSubaccountLevels; ++level) {
    const std::string s = "s" + std::to_string(level);
    joins += " LEFT OUTER JOIN " + subaccountTable(level) + " " + s + " ON " + s + ".SubAccountID = a." +
             subaccountField(level);
  }
  select(text + joins + whereOf(open) +
         orderOf(open, "g.GLAccount, s1.SubAccount, s2.SubAccount, s3.SubAccount, a.GLYear"));
  b.landscape = true;
  b.size = 75;
  b.look = [] { return reports::RowLook{.spaceAbove = 40}; };
  b.text("Account no.", "GLAccount", 850);
  b.shown("Name", 1900, [this] {
    return accountNames(app(), value("GLAccountID"),
                        {value("SubAccount1ID"), value("SubAccount2ID"), value("SubAccount3ID")});
  });
  b.whole("Year", "GLYear", 400);
  b.shownMoney("Opening Balance", 1050, [this] { return opening(); });
  constexpr int kAbove = kPeriods / 2;
  std::vector<const reports::Column*> above;
  for (int period = 1; period <= kAbove; ++period)
    above.push_back(&b.shownMoney("Period " + std::to_string(period), 970, [this, period] { return amount(period); }));
  for (int period = kAbove + 1; period <= kPeriods; ++period)
    b.shownMoney("Period " + std::to_string(period), 970, [this, period] {
       return amount(period);
     }).under(*above[static_cast<std::size_t>(period - kAbove - 1)]);
  b.shownMoney("Total Change", 1050, [this] { return change(); }).under(b.columns[3]);
}

bool TrptGLBalances::showsBalance() {
  if (data_ != "Auto") return data_ == "Balance";
  const auto type = static_cast<AccountType>(value("AccountType").asInt());
  return type != AccountType::revenue && type != AccountType::expense;
}

Value TrptGLBalances::opening() {
  return showsBalance() || data_ == "Auto" ? Value(value("OpeningBal").asMoney()) : Value();
}

Value TrptGLBalances::amount(int period) {
  if (!showsBalance()) return Value(value("Amount" + std::to_string(period)).asMoney());
  Money balance = value("OpeningBal").asMoney();
  for (int some = 1; some <= period; ++some) balance += value("Amount" + std::to_string(some)).asMoney();
  return Value(balance);
}

Value TrptGLBalances::change() {
  Money sum;
  for (int period = 1; period <= kPeriods; ++period) sum += value("Amount" + std::to_string(period)).asMoney();
  return Value(sum);
}

}  // namespace

ReportPtr makeTrptGLBalances(shell::Session& session) { return std::make_unique<TrptGLBalances>(session); }

}  // namespace quillon::ledger
