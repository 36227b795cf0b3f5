// Which statement AutoCreate is to make, where the title does not say it.
#include "form/App.h"
#include "form/Screen.h"
#include "ledger/MakeScreens.h"
#include "ledger/StatementDefinition.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

using store::Value;

Value valueOf(StatementKind kind) { return static_cast<int>(kind); }

class TfrmFinancialStmtAuto final : public form::Screen {
 public:
  explicit TfrmFinancialStmtAuto(shell::Session& session) : Screen(session.app()) {}
  std::string title() override { return "AutoCreate Financial Statement"; }

 private:
  void build(form::Layout& layout) override;
  void btnOKClick();
  void btnCancelClick() { setResult(false); }

  form::Variable kind_{.value = valueOf(StatementKind::balanceSheet)};
};

void TfrmFinancialStmtAuto::build(form::Layout& l) {
  l.choice("radStatementType", "Statement Type", kind_,
           form::choicesConverter({{valueOf(StatementKind::balanceSheet), "Balance Sheet"},
                                   {valueOf(StatementKind::incomeStatement), "Income Statement"}}));
  l.row(l.button("btnOK", "OK", &TfrmFinancialStmtAuto::btnOKClick).standard(),
        l.button("btnCancel", "Cancel", &TfrmFinancialStmtAuto::btnCancelClick).abandons());
}

void TfrmFinancialStmtAuto::btnOKClick() {
  result().values["kind"] = kind_.value;
  setResult(true);
}

}  // namespace

ScreenPtr makeFinancialStmtAuto(shell::Session& session) { return std::make_unique<TfrmFinancialStmtAuto>(session); }

}  // namespace quillon::ledger
