// Banks, with the account and the currency of each.
#include "form/Screen.h"
#include "ledger/MakeReports.h"
#include "reports/Report.h"

namespace quillon::ledger {
namespace {

class TrptBanks final : public reports::Report {
 public:
  using Report::Report;
  void tell(reports::Bands& b, const form::Open& open) override {
    reportTitle = "Banks";
    select(
        "SELECT B.BankName, A.GLAccount, A.AccountName, C.CurrencyName FROM Bank B LEFT OUTER JOIN GLAccnt A ON "
        "A.GLAccountID = B.BankGLAccountID LEFT OUTER JOIN Currency C ON C.CurrencyID = B.CurrencyID" +
        whereOf(open) + " ORDER BY B.BankName NOCASE");
    b.text("Bank Name", "BankName", 2600);
    b.text("Account no.", "GLAccount", 1000);
    b.text("Name", "AccountName", 2600);
    b.text("Currency", "CurrencyName", 1300);
  }
};

}  // namespace

ReportPtr makeTrptBanks(shell::Session& session) { return std::make_unique<TrptBanks>(session); }

}  // namespace quillon::ledger
