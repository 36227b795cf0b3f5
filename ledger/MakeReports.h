#pragma once

#include <memory>

namespace quillon::reports {
class Report;
}
namespace quillon::shell {
class Session;
}

// The makers of this folder's reports; each stands in the file of that name.
namespace quillon::ledger {

using ReportPtr = std::unique_ptr<reports::Report>;

ReportPtr makeTrptGLAccounts(shell::Session& session);
ReportPtr makeTrptJVs(shell::Session& session);
ReportPtr makeTrptJV(shell::Session& session);
ReportPtr makeTrptGLBalances(shell::Session& session);
ReportPtr makeTrptGLBudget(shell::Session& session);
ReportPtr makeTrptGeneralLedger(shell::Session& session);
ReportPtr makeTrptGeneralLedgerSummary(shell::Session& session);
ReportPtr makeTrptFinancialStmt(shell::Session& session);
ReportPtr makeTrptTrialBalance(shell::Session& session);
ReportPtr makeTrptGLHistory(shell::Session& session);
ReportPtr makeTrptBanks(shell::Session& session);
ReportPtr makeTrptCurrencies(shell::Session& session);

}  // namespace quillon::ledger
