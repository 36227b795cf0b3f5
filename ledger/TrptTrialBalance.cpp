// The trial balance at the end of a period or a year: of each account its balance as a debit or a credit, and what was
// planned. The two columns add up to the same. A line opens the account's history.
#include "form/App.h"
#include "form/Screen.h"
#include "ledger/LedgerAccounts.h"
#include "ledger/MakeReports.h"
#include "reports/LauncherScreen.h"
#include "reports/Report.h"

namespace quillon::ledger {
namespace {

using store::Value;

class TrptTrialBalance final : public reports::Report {
 public:
  using Report::Report;
  void tell(reports::Bands& b, const form::Open& open) override {
    reportTitle = "Trial Balance";
    year_ = yearOf(open), period_ = periodOf(open);
    lblSelection = reports::periodWords(Value(year_), period_ == 0 ? Value() : Value(period_));
    b.shown("Account no.", 1000, [this] { return account_->number; });
    b.shown("Name", 3000, [this] { return account_->name; })
        .opens(
            [year = year_](form::App& some, std::int32_t id) {
              some.open("TfrmGLHistory",
                        {.filter = accountClause(Value(id)) + " AND (GLYear = " + std::to_string(year) + ")"});
            },
            [this] { return account_->ids.front(); });
    b.shownMoney("Debit", 1150, [this] { return part(true); }).sum();
    b.shownMoney("Credit", 1150, [this] { return part(false); }).sum();
    b.shownMoney("Budget", 1150, [this] { return account_->budget == Money{} ? Value() : Value(account_->budget); });
    b.total = "Report Totals:";
  }
  bool first() override {
    accounts_ = ledgerAccounts(app(), year_, period_);
    std::erase_if(accounts_, [](const LedgerAccount& some) {
      return some.closing() == Money{} && some.change == Money{} && some.budget == Money{};
    });
    account_ = accounts_.begin();
    return account_ != accounts_.end();
  }
  bool next() override { return ++account_ != accounts_.end(); }
  int positionOf(std::string_view /*field*/) override { return -1; }

 private:
  Value part(bool debit) const {
    const Money balance = account_->closing();
    if (balance == Money{} ? !debit : (balance > Money{}) != debit) return {};
    return Value(debit ? balance : -balance);
  }

  int year_ = 0, period_ = 0;
  std::vector<LedgerAccount> accounts_;
  std::vector<LedgerAccount>::const_iterator account_;
};

}  // namespace

ReportPtr makeTrptTrialBalance(shell::Session& session) { return std::make_unique<TrptTrialBalance>(session); }

}  // namespace quillon::ledger
