// Year-End: carries the balances of a year forward into the openings of the next one.
//
// Keeps: nothing but openings of the next year is written, and they are set, not added to, so that a run may be
// repeated at any time: after late vouchers, and after a run that was cut off.
#include <array>

#include "form/App.h"
#include "form/RunLocks.h"
#include "form/Screen.h"
#include "ledger/CarryForward.h"
#include "ledger/MakeScreens.h"
#include "ledger/PostVouchers.h"
#include "shell/Session.h"
#include "store/Query.h"

namespace quillon::ledger {
namespace {

using form::refuse;
using store::Value;

// In the order in which they are asked.
constexpr std::array<std::array<const char*, 2>, 6> kDocuments = {{{"JV", "JVs"},
                                                                   {"APInv", "AP invoices"},
                                                                   {"APCheq", "AP payments"},
                                                                   {"ARInv", "AR invoices"},
                                                                   {"ARPmt", "AR payments"},
                                                                   {"IAdjust", "inventory adjustments"}}};

class TfrmYearEnd final : public form::Screen {
 public:
  explicit TfrmYearEnd(shell::Session& session) : Screen(session.app()) {}
  std::string title() override { return "Year-End"; }

 private:
  void build(form::Layout& layout) override;
  void shown(const form::Open& open) override;
  void btnOKClick();
  void btnCancelClick() { setResult(false); }
  void show(const std::string& process);
  void requireAllPosted();
  Value retainedEarningsAccount();

  int year_ = 0;  // to be closed
  std::string process_;
};

void TfrmYearEnd::build(form::Layout& l) {
  l.label("lblYear", [this] {
    return "Carries the balances of " + std::to_string(year_) + " forward to " + std::to_string(year_ + 1) + ".";
  });
  l.label("lblProcess", [this] { return process_; });
  l.progress("ProgressBar");
  l.row(l.button("btnOK", "OK", &TfrmYearEnd::btnOKClick).standard(),
        l.button("btnCancel", "Cancel", &TfrmYearEnd::btnCancelClick).abandons());
}

void TfrmYearEnd::shown(const form::Open& open) {
  year_ = open.values.at("year").asInt();
  process_.clear();
}

void TfrmYearEnd::show(const std::string& process) {
  process_ = process;
  app().person().progress({.text = process_});
}

void TfrmYearEnd::btnOKClick() {
  setResult(false);
  form::RunLocks locks(app());
  locks.take({"GLActual", form::RunLock::table, kTotalsAreLocked});
  show("Checking data...");
  requireAllPosted();
  const Value retainedEarnings = retainedEarningsAccount();
  show("GL: Carry forward balances, etc.");
  app().person().hourglass(true);
  carryForward(locks.of("GLActual"), year_, retainedEarnings, [this](long done, long total) {
    app().person().progress({.text = process_, .done = done, .total = total});
  });
  locks.of("GLActual").flush();
  setResult(true);
}

void TfrmYearEnd::requireAllPosted() {
  for (const auto& [table, documents] : kDocuments) {
    store::Query count(database(),
                       std::string("SELECT COUNT(*) FROM ") + table + " WHERE (Posted = false) and (GLYear=:GLYear)");
    count.setParameter("GLYear", Value(year_));
    count.open();
    if (count.field(0).asInt64() > 0)
      refuse("Unable to run year-end...\rUnposted " + std::string(documents) + " exist for year to be closed");
  }
}

Value TfrmYearEnd::retainedEarningsAccount() {
  store::Query qryRetEarnings(database(),
                              "SELECT GLAccountID FROM GLAccnt WHERE (AccountType = 5) AND (RetainedEarnings = True)");
  qryRetEarnings.open();
  if (qryRetEarnings.isEmpty())
    refuse(
        "Unable to run year-end...\rNo retained earnings account found.\r\rPlease set up a GL Account of type "
        "\"Equity\" with \"Retained Earnings\" selected");
  if (qryRetEarnings.recordCount() > 1)
    refuse(
        "Unable to run year-end...\rMultiple retained earnings accounts found.\r\rThere must be only one GL Account "
        "of type \"Equity\" with \"Retained Earnings\" selected");
  return qryRetEarnings.value("GLAccountID");
}

}  // namespace

ScreenPtr makeYearEnd(shell::Session& session) { return std::make_unique<TfrmYearEnd>(session); }

}  // namespace quillon::ledger
