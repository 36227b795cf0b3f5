#include "ledger/AccountReport.h"

#include "form/App.h"
#include "form/Screen.h"
#include "reports/LauncherScreen.h"

namespace quillon::ledger {

using store::Value;

void AccountReport::tellAccounts(reports::Bands& b, const form::Open& open, std::string title, int numberWidth,
                                 int nameWidth) {
  reportTitle = std::move(title);
  year_ = yearOf(open), period_ = periodOf(open);
  lblSelection = reports::periodWords(Value(year_), period_ == 0 ? Value() : Value(period_));
  b.shown("Account no.", numberWidth, [this] { return account_->number; });
  b.shown("Name", nameWidth, [this] { return account_->name; })
      .opens(
          [year = year_](form::App& some, std::int32_t id) {
            some.open("TfrmGLHistory",
                      {.filter = accountClause(Value(id)) + " AND (GLYear = " + std::to_string(year) + ")"});
          },
          [this] { return account_->ids.front(); });
}

bool AccountReport::first() {
  accounts_ = ledgerAccounts(app(), year_, period_);
  std::erase_if(accounts_, [this](const LedgerAccount& some) { return isLeftOut(some); });
  account_ = accounts_.begin();
  return account_ != accounts_.end();
}

}  // namespace quillon::ledger
