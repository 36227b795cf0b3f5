// The list of budgets: of each account, and each combination with subaccounts that has one, what is planned for a year.
#include "form/RowKey.h"
#include "form/Table.h"
#include "ledger/Accounts.h"
#include "ledger/MakeScreens.h"
#include "ledger/Totals.h"
#include "ledger/TotalsList.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

using store::Value;

class TfrmGLBudget final : public TotalsList {
 public:
  explicit TfrmGLBudget(shell::Session& session)
      : TotalsList(
            session,
            {.title = "GL Budget", .record = "TfrmGLBudgetAccount", .key = {}, .filterScreen = "TfrmGLBudgetFilter"},
            {.table = "GLBudget", .alias = "b", .file = "GLBudget"}) {}

 private:
  void build(form::Layout& layout) override;
  void mnuEditClick() override;
  void mnuDeleteClick() override;
  void mnuTotalsClick();
  void mnuImportClick();
  bool hasBudget() const { return !value("GLYear").isNull(); }

  form::Table tblGLBudget{*this, "GLBudget"};
};

void TfrmGLBudget::build(form::Layout& l) {
  form::Control& edit = editMenu(l);
  form::Control& history = l.entry("mnuHistory", "&History", &TfrmGLBudget::mnuHistoryClick);
  form::Control& totals = l.entry("mnuTotals", "&Totals", &TfrmGLBudget::mnuTotalsClick);
  form::Control& print = l.entry("mnuPrint", "&Print...", [this] { printRows("TrptGLBudget", ""); });
  form::Control& save = l.entry("mnuExport", "&Export...", &TfrmGLBudget::mnuExportClick);
  form::Control& load = l.entry("mnuImport", "&Import...", &TfrmGLBudget::mnuImportClick);
  l.row(edit, l.menu("&View", history, totals, print, save, load), sortMenu(l));
  totalsGrid(l).opens([this] { mnuEditClick(); });
}

// An account without a budget gets one.
void TfrmGLBudget::mnuEditClick() {
  requireRow();
  if (!hasBudget())
    return void(app().open("TfrmGLBudgetAccount", {.newRow = true, .values = {{"account", value("GLAccountID")}}}));
  form::Open open;
  open.locate["GLAccountID"] = value("GLAccountID");
  open.locate["GLYear"] = value("GLYear");
  for (int level = 1; level <= kSubaccountLevels; ++level)
    open.locate[subaccountField(level)] = value(subaccountField(level).c_str());
  app().open("TfrmGLBudgetAccount", open);
}

void TfrmGLBudget::mnuDeleteClick() {
  requireRow();
  if (!hasBudget()) form::abort();
  const Value account = value("GLAccountID");
  const std::vector<Value> key = form::valuesOf(rows(), kTotalsKey);
  if (!app().person().confirm("Delete " + value("GLYear").toText() + " budget for " + value("GLAccount").asText() +
                              "?"))
    form::abort();
  tblGLBudget.refresh();
  if (!tblGLBudget.locate(kTotalsKey, key)) form::refuse("This record has been deleted by another user");
  tblGLBudget.remove();
  tblGLBudget.flush();
  reread();
  rows().locate("GLAccountID", {account});
}

void TfrmGLBudget::mnuTotalsClick() {
  requireRow();
  app().open("TfrmGLBalances", {.filter = totalsClause(value("GLAccountID"))});
}

// What was imported before an import ended is there, however it ended.
void TfrmGLBudget::mnuImportClick() {
  app().runModal("TfrmImportGLBudget");
  reread();
}

}  // namespace

ScreenPtr makeGLBudget(shell::Session& session) { return std::make_unique<TfrmGLBudget>(session); }

}  // namespace quillon::ledger
