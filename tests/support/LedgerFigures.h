#pragma once

#include <set>
#include <string>

#include "ledger/Audit.h"
#include "store/Query.h"

// The ledger's figures as text, to be compared.
namespace quillon::sim {

using Rows = std::multiset<std::string>;

// Every row of a statement, its values joined by blanks.
inline Rows rowsOf(store::Database& database, const std::string& statement) {
  store::Query rows(database, statement);
  rows.open();
  Rows all;
  for (rows.first(); !rows.eof(); rows.next()) {
    std::string row;
    for (int i = 0; i < rows.fieldCount(); ++i) row += rows.field(i).value().toText() + " ";
    all.insert(row);
  }
  return all;
}

inline constexpr const char* kHistory =
    "SELECT GLAccountID, SubAccount1ID, SubAccount2ID, SubAccount3ID, GLYear, GLPeriod, Source, TransType, JVNumber, "
    "TransDate, Amount, TransDescription, CustomerID, JVID, Reconciled FROM GLHist";
inline constexpr const char* kTotals =
    "SELECT GLAccountID, SubAccount1ID, SubAccount2ID, SubAccount3ID, GLYear, ActualBudget, OpeningBal, Amount1, "
    "Amount2, Amount3, Amount4, Amount5, Amount6, Amount7, Amount8, Amount9, Amount10, Amount11, Amount12 FROM "
    "GLActual";

// What the audit finds, a line for each; empty where all agrees.
inline std::string auditText(store::Database& database) {
  const ledger::AuditReport report = ledger::auditLedger(database);
  std::string text;
  for (const auto* found : {&report.wrong, &report.interrupted})
    for (const ledger::Disagreement& one : *found)
      text += one.table + ", " + one.key + ", " + one.what + ": " + one.stored + ", " + one.derived + "\n";
  return text;
}

}  // namespace quillon::sim
