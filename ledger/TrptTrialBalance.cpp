// The trial balance at the end of a period or a year: of each account its balance as a debit or a credit, and what was
// planned, also where nothing was posted. The two columns add up to the same.
#include "ledger/AccountReport.h"
#include "ledger/MakeReports.h"

namespace quillon::ledger {
namespace {

using store::Value;

class TrptTrialBalance final : public AccountReport {
 public:
  using AccountReport::AccountReport;
  void tell(reports::Bands& b, const form::Open& open) override {
    tellAccounts(b, open, "Trial Balance", 1000, 3000);
    const auto lines = [year = year(), last = lastPeriod()](form::App& some, const AccountKey& ids) {
      openLines(some, ids, year, 1, last);
    };
    figureOpens(b.shownMoney("Debit", 1150, [this] { return part(true); }).sum(), lines);
    figureOpens(b.shownMoney("Credit", 1150, [this] { return part(false); }).sum(), lines);
    figureOpens(b.shownMoney("Budget", 1150,
                             [this] { return account().budget == Money{} ? Value() : Value(account().budget); }),
                [year = year()](form::App& some, const AccountKey& ids) { openBudget(some, ids, year); });
  }

 private:
  bool isLeftOut() override {
    return account().closing() == Money{} && account().change == Money{} && account().budget == Money{};
  }
  // A balance of nothing stands among the debits, but not where there is only a budget.
  Value part(bool debit) const {
    const Money balance = account().closing();
    if (balance == Money{} && account().change == Money{}) return {};
    if (balance == Money{} ? !debit : (balance > Money{}) != debit) return {};
    return Value(debit ? balance : -balance);
  }
};

}  // namespace

ReportPtr makeTrptTrialBalance(shell::Session& session) { return std::make_unique<TrptTrialBalance>(session); }

}  // namespace quillon::ledger
