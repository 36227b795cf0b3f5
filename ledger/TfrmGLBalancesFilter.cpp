// The conditions of the list of GL totals.
#include "ledger/MakeScreens.h"
#include "ledger/TotalsFilter.h"
#include "shell/Session.h"

namespace quillon::ledger {

ScreenPtr makeGLBalancesFilter(shell::Session& session) {
  return std::make_unique<TotalsFilter>(session.app(), "TfrmGLBalances", "GL Totals Filter", "a");
}

}  // namespace quillon::ledger
