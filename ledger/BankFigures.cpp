#include "ledger/BankFigures.h"

#include <string>

#include "base/Period.h"
#include "store/Query.h"

namespace quillon::ledger {

using store::Query;
using store::Value;

namespace {

// Null where the account has no totals that the condition passes.
Value lastYear(store::Database& database, const Value& account, const std::string& condition) {
  Query year(database,
             "SELECT MAX(GLYear) AS LastYear FROM GLActual WHERE GLAccountID = :id AND ActualBudget = 'A'" + condition);
  year.setParameter("id", account);
  year.open();
  return year.value("LastYear");
}

}  // namespace

Money ledgerBalance(store::Database& database, const Value& account) {
  Value year =
      lastYear(database, account, " AND SubAccount1ID = null AND SubAccount2ID = null AND SubAccount3ID = null");
  if (year.isNull()) year = lastYear(database, account, "");
  if (year.isNull()) return {};
  Query totals(database, "SELECT * FROM GLActual WHERE GLAccountID = :id AND ActualBudget = 'A' AND GLYear >= :year");
  totals.setParameter("id", account);
  totals.setParameter("year", year);
  totals.open();
  Money sum;
  for (; !totals.eof(); totals.next()) {
    sum += totals["OpeningBal"].asMoney();
    for (int period = 1; period <= Period::kCount; ++period) sum += totals["Amount" + std::to_string(period)].asMoney();
  }
  return sum;
}

Money outstandingAmount(store::Database& database, const Value& account) {
  Query sum(database,
            "SELECT SUM(Amount) AS Total FROM GLHist WHERE GLAccountID = :id AND Reconciled <> true AND Reconciling <> "
            "true");
  sum.setParameter("id", account);
  sum.open();
  return sum["Total"].asMoney();
}

}  // namespace quillon::ledger
