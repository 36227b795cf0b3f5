#include "ledger/Breakdown.h"

#include "form/App.h"
#include "form/Screen.h"
#include "ledger/HistoryOrigin.h"
#include "ledger/Totals.h"
#include "store/Query.h"

namespace quillon::ledger {
namespace {

using store::Value;

std::string equals(const std::string& field, int number) {
  return "(" + field + (number == 0 ? " IS NULL)" : " = " + std::to_string(number) + ")");
}

// `row`: how the list calls its rows, "a.", where it is a query's.
std::string subaccountsClause(const std::string& row, const AccountKey& account) {
  std::string all;
  for (int level = 1; level <= kSubaccountLevels; ++level)
    all += " AND " + equals(row + subaccountField(level), account[static_cast<std::size_t>(level)]);
  return all;
}

std::string totalsOf(const std::string& row, const AccountKey& account, int year) {
  return totalsClause(Value(account[0])) + subaccountsClause(row, account) + " AND " + equals(row + "GLYear", year);
}

}  // namespace

void openLines(form::App& app, const AccountKey& account, int year, int firstPeriod, int lastPeriod) {
  std::string periods;
  if (firstPeriod > 1) periods += " AND (GLPeriod >= " + std::to_string(firstPeriod) + ")";
  if (lastPeriod < kPeriods) periods += " AND (GLPeriod <= " + std::to_string(lastPeriod) + ")";
  app.open("TfrmGLHistory", {.filter = accountClause(Value(account[0])) + subaccountsClause("", account) + " AND " +
                                       equals("GLYear", year) + periods});
}

void openTotals(form::App& app, const AccountKey& account, int year) {
  app.open("TfrmGLBalances", {.filter = totalsOf("a.", account, year)});
}

void openBudget(form::App& app, const AccountKey& account, int year) {
  app.open("TfrmGLBudget", {.filter = totalsOf("b.", account, year)});
}

void openTotalsOfYear(form::App& app, int year) { app.open("TfrmGLBalances", {.filter = equals("a.GLYear", year)}); }

void openVoucherOfLine(form::App& app, int line) {
  store::Query row(app.database(), "SELECT * FROM GLHist WHERE GLHistID = " + std::to_string(line));
  row.open();
  if (row.isEmpty()) form::refuse("This line was unposted by another user");
  openVoucherRecord(app, row, "It may have been deleted or purged.");
}

}  // namespace quillon::ledger
