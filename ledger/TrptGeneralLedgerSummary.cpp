// The general ledger in short: of each account what it had before, what was debited and credited, and what it has.
#include <map>

#include "ledger/AccountReport.h"
#include "ledger/MakeReports.h"

namespace quillon::ledger {
namespace {

using store::Value;

class TrptGeneralLedgerSummary final : public AccountReport {
 public:
  using AccountReport::AccountReport;
  void tell(reports::Bands& b, const form::Open& open) override {
    tellAccounts(b, open, "General Ledger Summary", 950, 2250);
    b.shownMoney("Opening Balance", 1200, [this] { return Value(account().opening); }).sum();
    b.shownMoney("Debits", 1050, [this] { return Value(sides_[account().ids].first); }).sum();
    b.shownMoney("Credits", 1050, [this] { return Value(sides_[account().ids].second); }).sum();
    b.shownMoney("Balance", 1050, [this] { return Value(account().closing()); }).sum();
    b.total = "Report Totals:";
  }
  bool first() override {
    for (const auto& [ids, lines] : ledgerLines(app(), year(), period()))
      for (const LedgerLine& line : lines)
        (line.amount >= Money{} ? sides_[ids].first : sides_[ids].second) +=
            line.amount >= Money{} ? line.amount : -line.amount;
    return AccountReport::first();
  }

 private:
  bool isLeftOut(const LedgerAccount& some) const override {
    return some.opening == Money{} && some.change == Money{} && !sides_.contains(some.ids);
  }

  std::map<std::array<int, 1 + kSubaccountLevels>, std::pair<Money, Money>> sides_;  // debits, credits
};

}  // namespace

ReportPtr makeTrptGeneralLedgerSummary(shell::Session& session) {
  return std::make_unique<TrptGeneralLedgerSummary>(session);
}

}  // namespace quillon::ledger
