// The conditions of the list of budgets.
#include "ledger/MakeScreens.h"
#include "ledger/TotalsFilter.h"
#include "shell/Session.h"

namespace quillon::ledger {

ScreenPtr makeGLBudgetFilter(shell::Session& session) {
  return std::make_unique<TotalsFilter>(session.app(), "TfrmGLBudget", "GL Budget Filter", "b");
}

}  // namespace quillon::ledger
