#include "ledger/Screens.h"

#include "ledger/MakeReports.h"
#include "ledger/MakeScreens.h"
#include "reports/ReportRun.h"
#include "shell/Session.h"

namespace quillon::ledger {
namespace {

using form::Lifetime;
using form::Opening;

struct Row {
  const char* className;
  ScreenPtr (*make)(shell::Session&);
  Opening opening = Opening::companion;
  Lifetime lifetime = Lifetime::freed;
  bool many = false;
  int help = 200;
};

constexpr Row kScreens[] = {
    {"TfrmGLAccounts", makeGLAccounts, Opening::list},
    {"TfrmGLAccountsFilter", makeGLAccountsFilter, Opening::companion, Lifetime::hidden},
    {"TfrmGLAccount", makeGLAccount},
    {"TfrmGLAccountSub", makeGLAccountSub},
    // A picker leads to its list, and that to the picker again.
    {"TfrmGLAccountSearch", makeGLAccountSearch, Opening::companion, Lifetime::freed, true},
    {"TfrmGLAccountSubSearch", makeGLAccountSubSearch, Opening::companion, Lifetime::freed, true},
    {.className = "TfrmJVs", .make = makeJVs, .opening = Opening::list, .help = 210},
    {"TfrmJVsFilter", makeJVsFilter, Opening::companion, Lifetime::hidden, false, 210},
    {"TfrmJVsFind", makeJVsFind, Opening::companion, Lifetime::hidden, false, 210},
    {.className = "TfrmJVsPost", .make = makeJVsPost, .help = 210},
    {.className = "TfrmJV", .make = makeJV, .help = 210},
    {.className = "TfrmImportJVData", .make = makeImportJVData, .help = 210},
    {"TfrmGLBudget", makeGLBudget, Opening::list, Lifetime::freed, false, 220},
    {"TfrmGLBudgetFilter", makeGLBudgetFilter, Opening::companion, Lifetime::hidden, false, 220},
    {.className = "TfrmGLBudgetAccount", .make = makeGLBudgetAccount, .help = 220},
    {.className = "TfrmImportGLBudget", .make = makeImportGLBudget, .help = 220},
    {"TfrmGLBalances", makeGLBalances, Opening::list, Lifetime::freed, false, 230},
    {"TfrmGLBalancesFilter", makeGLBalancesFilter, Opening::companion, Lifetime::hidden, false, 230},
    {"TfrmGLHistory", makeGLHistory, Opening::list, Lifetime::freed, false, 240},
    {"TfrmGLHistoryFilter", makeGLHistoryFilter, Opening::companion, Lifetime::hidden, false, 240},
    {.className = "TfrmYearEnd", .make = makeYearEnd, .help = 225},
    {.className = "TfrmCurrencies", .make = makeCurrencies, .opening = Opening::plain, .help = 250},
    {.className = "TfrmCurrency", .make = makeCurrency, .help = 250},
    {.className = "TfrmBanks", .make = makeBanks, .opening = Opening::plain, .help = 260},
    {.className = "TfrmGLReports", .make = makeGLReports, .opening = Opening::plain, .help = 280},
    {.className = "TfrmBank", .make = makeBank, .help = 260},
    {.className = "TfrmBankBook", .make = makeBankBook, .opening = Opening::plain, .help = 261},
    {.className = "TfrmBankRec", .make = makeBankRec, .opening = Opening::plain, .help = 262},
    {.className = "TfrmFinancialStmt", .make = makeFinancialStmt, .help = 281},
    {.className = "TfrmFinancialStmtAuto", .make = makeFinancialStmtAuto, .help = 281},
    {.className = "TfrmFStmtValidation", .make = makeFStmtValidation, .help = 281},
};

struct ReportRow {
  const char* className;
  const char* screen;
  ReportPtr (*make)(shell::Session&);
};

constexpr ReportRow kReports[] = {
    {"TrptGLAccounts", "TfrmGLAccounts", makeTrptGLAccounts},
    {"TrptJVs", "TfrmJVs", makeTrptJVs},
    {"TrptJV", "TfrmJVs", makeTrptJV},
    {"TrptGLBalances", "TfrmGLBalances", makeTrptGLBalances},
    {"TrptGLBudget", "TfrmGLBudget", makeTrptGLBudget},
    {"TrptGeneralLedger", "TfrmGLReports", makeTrptGeneralLedger},
    {"TrptGeneralLedgerSummary", "TfrmGLReports", makeTrptGeneralLedgerSummary},
    {"TrptFinancialStmt", "TfrmGLReports", makeTrptFinancialStmt},
    {"TrptTrialBalance", "TfrmGLReports", makeTrptTrialBalance},
    {"TrptGLHistory", "TfrmGLHistory", makeTrptGLHistory},
    {"TrptBanks", "TfrmBanks", makeTrptBanks},
    {"TrptCurrencies", "TfrmCurrencies", makeTrptCurrencies},
};

}  // namespace

void registerScreens(shell::Session& session) {
  for (const Row& row : kScreens)
    session.registry().add({.className = row.className,
                            .opening = row.opening,
                            .lifetime = row.lifetime,
                            .many = row.many,
                            .help = row.help,
                            .make = [&session, make = row.make](form::App&) { return make(session); }});
  for (const ReportRow& row : kReports)
    session.registry().addReport({row.className, row.screen, [&session, make = row.make](const form::Open& open) {
                                    return std::make_unique<reports::ReportRun>(session, make(session), open);
                                  }});
}

}  // namespace quillon::ledger
