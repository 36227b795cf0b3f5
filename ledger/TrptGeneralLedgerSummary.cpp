// The general ledger in short: of each account what it had before, what was debited and credited, and what it has.
#include <vector>

#include "ledger/AccountReport.h"
#include "ledger/MakeReports.h"
#include "store/OneMoment.h"

namespace quillon::ledger {
namespace {

using store::Value;

class TrptGeneralLedgerSummary final : public AccountReport {
 public:
  using AccountReport::AccountReport;
  void tell(reports::Bands& b, const form::Open& open) override {
    tellAccounts(b, open, "General Ledger Summary", 850, 2850);
    const auto totals = [year = year()](form::App& some, const AccountKey& ids) { openTotals(some, ids, year); };
    const auto lines = [year = year(), from = firstPeriod(), to = lastPeriod()](
                           form::App& some, const AccountKey& ids) { openLines(some, ids, year, from, to); };
    figureOpens(b.shownMoney("Opening Balance", 1150, [this] { return Value(account().opening); }).sum(), totals);
    figureOpens(b.shownMoney("Debits", 1000, [this] { return Value(sides().debits); }).sum(), lines);
    figureOpens(b.shownMoney("Credits", 1000, [this] { return Value(sides().credits); }).sum(), lines);
    figureOpens(b.shownMoney("Balance", 1000, [this] { return Value(account().closing()); }).sum(), totals);
  }

 private:
  struct Sides {
    Money debits, credits;
    bool any = false;
  };

  void read() override {
    store::atOneMoment(database(), {"GLAccnt", "GLActual", "GLBudget", "GLHist"}, [this] {
      AccountReport::read();
      LedgerLines lines(database(), year(), period());
      sides_.clear();
      for (const LedgerAccount& account : *accounts()) {
        Sides& sides = sides_.emplace_back();
        sides.any = lines.enter(account.ids);
        for (bool more = sides.any; more; more = lines.next()) {
          const Money amount = lines.amount();
          (amount >= Money{} ? sides.debits : sides.credits) += amount >= Money{} ? amount : -amount;
        }
      }
    });
  }
  const Sides& sides() const { return sides_[static_cast<std::size_t>(place())]; }
  bool isLeftOut() override { return !sides().any && account().opening == Money{} && account().change == Money{}; }

  std::vector<Sides> sides_;  // of each account
};

}  // namespace

ReportPtr makeTrptGeneralLedgerSummary(shell::Session& session) {
  return std::make_unique<TrptGeneralLedgerSummary>(session);
}

}  // namespace quillon::ledger
