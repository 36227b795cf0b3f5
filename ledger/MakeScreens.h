#pragma once

#include <memory>

namespace quillon::form {
class Screen;
}
namespace quillon::shell {
class Session;
}

// The makers of this folder's screens; each stands in the file of that name.
namespace quillon::ledger {

using ScreenPtr = std::unique_ptr<form::Screen>;

ScreenPtr makeGLAccounts(shell::Session& session);
ScreenPtr makeGLAccountsFilter(shell::Session& session);
ScreenPtr makeGLAccount(shell::Session& session);
ScreenPtr makeGLAccountSub(shell::Session& session);
ScreenPtr makeGLAccountSearch(shell::Session& session);
ScreenPtr makeGLAccountSubSearch(shell::Session& session);
ScreenPtr makeJVs(shell::Session& session);
ScreenPtr makeJVsFilter(shell::Session& session);
ScreenPtr makeJVsFind(shell::Session& session);
ScreenPtr makeJVsPost(shell::Session& session);
ScreenPtr makeJV(shell::Session& session);
ScreenPtr makeImportJVData(shell::Session& session);
ScreenPtr makeGLBalances(shell::Session& session);
ScreenPtr makeGLBalancesFilter(shell::Session& session);
ScreenPtr makeGLBudget(shell::Session& session);
ScreenPtr makeGLBudgetFilter(shell::Session& session);
ScreenPtr makeGLBudgetAccount(shell::Session& session);
ScreenPtr makeImportGLBudget(shell::Session& session);
ScreenPtr makeGLHistory(shell::Session& session);
ScreenPtr makeGLHistoryFilter(shell::Session& session);
ScreenPtr makeYearEnd(shell::Session& session);
ScreenPtr makeCurrencies(shell::Session& session);
ScreenPtr makeCurrency(shell::Session& session);
ScreenPtr makeGLReports(shell::Session& session);
ScreenPtr makeBanks(shell::Session& session);
ScreenPtr makeBank(shell::Session& session);
ScreenPtr makeBankBook(shell::Session& session);
ScreenPtr makeBankRec(shell::Session& session);
ScreenPtr makeFinancialStmt(shell::Session& session);
ScreenPtr makeFinancialStmtAuto(shell::Session& session);
ScreenPtr makeFStmtValidation(shell::Session& session);

}  // namespace quillon::ledger
