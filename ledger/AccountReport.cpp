#include "ledger/AccountReport.h"

#include "ledger/Totals.h"
#include "reports/LauncherScreen.h"

namespace quillon::ledger {

using store::Value;

int AccountReport::lastPeriod() const { return period_ == 0 ? kPeriods : period_; }

void AccountReport::tellPeriod(reports::Bands& b, const form::Open& open, std::string title) {
  reportTitle = std::move(title);
  year_ = yearOf(open), period_ = periodOf(open);
  lblSelection = reports::periodWords(Value(year_), period_ == 0 ? Value() : Value(period_));
  b.total = "Report Totals:";
  b.totalJump = [year = year_](form::App& some, std::int32_t) { openTotalsOfYear(some, year); };
}

void AccountReport::tellAccounts(reports::Bands& b, const form::Open& open, std::string title, int numberWidth,
                                 int nameWidth) {
  tellPeriod(b, open, std::move(title));
  b.shown("Account no.", numberWidth, [this] { return account().number; });
  figureOpens(b.shown("Name", nameWidth, [this] { return account().name; }),
              [year = year_](form::App& some, const AccountKey& ids) { openLines(some, ids, year, 1, kPeriods); });
}

reports::PreparedPages::Jump AccountReport::opensOf(Breakdown breakdown) const {
  return [accounts = accounts_, breakdown = std::move(breakdown)](form::App& some, std::int32_t place) {
    breakdown(some, accounts->at(static_cast<std::size_t>(place)).ids);
  };
}

void AccountReport::figureOpens(reports::Column& column, Breakdown breakdown) const {
  column.opens(opensOf(std::move(breakdown)), [this] { return place(); });
}

bool AccountReport::first() {
  read();
  return goOn(0);
}

void AccountReport::read() { *accounts_ = ledgerAccounts(database(), year_, period_, lines()); }

bool AccountReport::goOn(std::size_t place) {
  for (place_ = place; place_ < accounts_->size(); ++place_)
    if (!isLeftOut()) return true;
  return false;
}

}  // namespace quillon::ledger
