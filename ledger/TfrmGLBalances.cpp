// GL totals: what posting added up, and the openings that the year end carried forward. Nothing is changed here.
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "ledger/TotalsList.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

class TfrmGLBalances final : public TotalsList {
 public:
  explicit TfrmGLBalances(shell::Session& session)
      : TotalsList(session, {.title = "GL Totals", .record = {}, .key = {}, .filterScreen = "TfrmGLBalancesFilter"},
                   {.table = "GLActual", .alias = "a", .file = "GLTotals"}) {}

 private:
  void build(form::Layout& layout) override;
  void mnuBudgetClick();
};

void TfrmGLBalances::build(form::Layout& l) {
  form::Control& edit = editMenu(l);
  form::Control& history = l.entry("mnuHistory", "&History", &TfrmGLBalances::mnuHistoryClick);
  form::Control& budget = l.entry("mnuBudget", "&Budget", &TfrmGLBalances::mnuBudgetClick);
  const auto data = [&](const char* name, const char* caption, const char* choice) -> form::Control& {
    return l.entry(name, caption, [this, choice] { printRows("TrptGLBalances", choice); });
  };
  form::Control& print = l.menu("&Print", data("mnuPrintAuto", "Data: &Auto (Balance or Net Change)", "Auto"),
                                data("mnuPrintNetChange", "Data: &Net Change", "NetChange"),
                                data("mnuPrintBalance", "Data: &Balance", "Balance"));
  form::Control& save = l.entry("mnuExport", "&Export...", &TfrmGLBalances::mnuExportClick);
  l.row(edit, l.menu("&View", history, budget, print, save), sortMenu(l));
  totalsGrid(l).opens([this] { mnuHistoryClick(); });
}

void TfrmGLBalances::mnuBudgetClick() {
  requireRow();
  app().open("TfrmGLBudget", {.filter = totalsClause(value("GLAccountID"))});
}

}  // namespace

ScreenPtr makeGLBalances(shell::Session& session) { return std::make_unique<TfrmGLBalances>(session); }

}  // namespace quillon::ledger
