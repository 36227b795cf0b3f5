// The trial balance at the end of a period or a year: of each account its balance as a debit or a credit, and what was
// planned. The two columns add up to the same.
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
    b.shownMoney("Debit", 1150, [this] { return part(true); }).sum();
    b.shownMoney("Credit", 1150, [this] { return part(false); }).sum();
    b.shownMoney("Budget", 1150, [this] { return account().budget == Money{} ? Value() : Value(account().budget); });
    b.total = "Report Totals:";
  }

 private:
  bool isLeftOut(const LedgerAccount& some) const override {
    return some.closing() == Money{} && some.change == Money{} && some.budget == Money{};
  }
  Value part(bool debit) const {
    const Money balance = account().closing();
    if (balance == Money{} ? !debit : (balance > Money{}) != debit) return {};
    return Value(debit ? balance : -balance);
  }
};

}  // namespace

ReportPtr makeTrptTrialBalance(shell::Session& session) { return std::make_unique<TrptTrialBalance>(session); }

}  // namespace quillon::ledger
