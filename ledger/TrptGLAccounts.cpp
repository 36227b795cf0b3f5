// The chart of accounts, as its list shows it.
#include "form/Screen.h"
#include "ledger/Accounts.h"
#include "ledger/MakeReports.h"
#include "reports/Report.h"

namespace quillon::ledger {
namespace {

class TrptGLAccounts final : public reports::Report {
 public:
  using Report::Report;
  void tell(reports::Bands& b, const form::Open& open) override {
    reportTitle = "GL Accounts";
    lblSelection = wordOf(open, "selection");
    select("SELECT GLAccount, AccountName, AccountType, Suspended FROM GLAccnt" + whereOf(open) +
           orderOf(open, "GLAccount"));
    b.text("Account no.", "GLAccount", 1200);
    b.text("Name", "AccountName", 4300);
    b.text("Type", "AccountType", 1200).format = accountTypes();
    b.shown("", 800, [this] { return value("Suspended").asBool() ? "Suspended" : ""; });
  }
};

}  // namespace

ReportPtr makeTrptGLAccounts(shell::Session& session) { return std::make_unique<TrptGLAccounts>(session); }

}  // namespace quillon::ledger
