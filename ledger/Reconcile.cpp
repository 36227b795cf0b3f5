#include "ledger/Reconcile.h"

#include <string>

#include "store/Query.h"

namespace quillon::ledger {

using store::Value;

namespace {

struct Payments {
  const char *table, *key, *source, *transType;
};
constexpr Payments kPayments[] = {{"APCheq", "ChequeID", "AP", "Chq"}, {"ARPmt", "PaymentID", "AR", "Pmt"}};

void run(store::Database& database, const std::string& statement, const Value& account) {
  store::Query query(database, statement);
  query.setParameter("id", account);
  query.execute();
}

void changeHistory(store::Database& database, const Value& account, const std::string& set, const std::string& which) {
  run(database, "UPDATE GLHist SET " + set + " WHERE GLAccountID = :id AND " + which, account);
}

void changePayments(store::Database& database, const Value& account, const std::string& set, const std::string& which) {
  for (const Payments& some : kPayments)
    run(database,
        std::string("UPDATE ") + some.table + " SET " + set + " WHERE " + some.key + " IN (SELECT " + some.key +
            " FROM GLHist WHERE GLAccountID = :id AND Source = '" + some.source + "' AND TransType = '" +
            some.transType + "' AND " + which + ")",
        account);
}

}  // namespace

void tickAll(store::Database& database, const Value& account) {
  changeHistory(database, account, "Reconciling = true", "Reconciled <> true AND Reconciling <> true");
}

void untickAll(store::Database& database, const Value& account) {
  changeHistory(database, account, "Reconciling = false", "Reconciled <> true AND Reconciling = true");
}

void reconcileTicked(store::Database& database, const Value& account) {
  const std::string ticked = "Reconciled <> true AND Reconciling = true";
  changePayments(database, account, "Reconciled = true", ticked);
  changeHistory(database, account, "Reconciled = true", ticked);
}

void unreconcileAll(store::Database& database, const Value& account) {
  changePayments(database, account, "Reconciled = false", "Reconciled = true");
  changeHistory(database, account, "Reconciled = false, Reconciling = false", "Reconciled = true");
}

}  // namespace quillon::ledger
