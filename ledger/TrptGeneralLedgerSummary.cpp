// The general ledger in short: of each account what it had before, what was debited and credited, and what it has.
#include <optional>

#include "ledger/AccountReport.h"
#include "ledger/MakeReports.h"

namespace quillon::ledger {
namespace {

using store::Value;

class TrptGeneralLedgerSummary final : public AccountReport {
 public:
  using AccountReport::AccountReport;
  void tell(reports::Bands& b, const form::Open& open) override {
    tellAccounts(b, open, "General Ledger Summary", 850, 2600);
    const auto totals = [year = year()](form::App& some, const AccountKey& ids) { openTotals(some, ids, year); };
    const auto lines = [year = year(), from = firstPeriod(), to = lastPeriod()](
                           form::App& some, const AccountKey& ids) { openLines(some, ids, year, from, to); };
    figureOpens(b.shownMoney("Opening Balance", 1150, [this] { return Value(account().opening); }).sum(), totals);
    figureOpens(b.shownMoney("Debits", 1050, [this] { return Value(debits_); }).sum(), lines);
    figureOpens(b.shownMoney("Credits", 1050, [this] { return Value(credits_); }).sum(), lines);
    figureOpens(b.shownMoney("Balance", 1050, [this] { return Value(account().closing()); }).sum(), totals);
  }

 private:
  LedgerLines* lines() override { return &lines_.emplace(database(), year(), period()); }
  bool isLeftOut() override {
    debits_ = credits_ = {};
    const bool any = lines_->enter(account().ids);
    for (bool more = any; more; more = lines_->next())
      if (const Money amount = lines_->amount(); amount >= Money{})
        debits_ += amount;
      else
        credits_ -= amount;
    lines_->requireAll(debits_ - credits_, account().change);
    return !any && account().opening == Money{} && account().change == Money{};
  }

  std::optional<LedgerLines> lines_;
  Money debits_, credits_;
};

}  // namespace

ReportPtr makeTrptGeneralLedgerSummary(shell::Session& session) {
  return std::make_unique<TrptGeneralLedgerSummary>(session);
}

}  // namespace quillon::ledger
