#pragma once

#include <string>

#include "support/LedgerFigures.h"

// The figures of a year end by statements alone.
namespace quillon::sim {

// What is wrong with the openings of the year behind `year`; empty where it carries forward what `year` closed with.
inline std::string carryFaults(store::Database& database, int year) {
  const std::string ofYear = std::to_string(year), ofNext = std::to_string(year + 1);
  std::string closing = "(COALESCE(OpeningBal, 0)";
  for (int period = 1; period <= 12; ++period) closing += " + COALESCE(Amount" + std::to_string(period) + ", 0)";
  closing += ")";
  const std::string kept = "(AccountType = 5 AND RetainedEarnings = true)";
  const auto all = [&](const std::string& what, const std::string& where) {
    return rowsOf(database,
                  "SELECT " + what +
                      " FROM GLActual A INNER JOIN GLAccnt G ON A.GLAccountID = G.GLAccountID WHERE GLYear = " + where);
  };
  const std::string combination = "A.GLAccountID, SubAccount1ID, SubAccount2ID, SubAccount3ID, ";
  const std::string carried = " AND AccountType IN (1, 2, 5) AND NOT " + kept + " AND ";
  std::string faults;
  const Rows closed = all(combination + closing, ofYear + carried + closing + " <> 0");
  const Rows opened = all(combination + "OpeningBal", ofNext + carried + "COALESCE(OpeningBal, 0) <> 0");
  for (const std::string& row : closed)
    if (!opened.contains(row)) faults += row + "is not carried forward; ";
  for (const std::string& row : opened)
    if (!closed.contains(row)) faults += row + "is opened; ";
  const std::string bare = "(SubAccount1ID IS NULL AND SubAccount2ID IS NULL AND SubAccount3ID IS NULL)";
  if (!all("A.GLAccountID", ofNext + " AND COALESCE(OpeningBal, 0) <> 0 AND (AccountType IN (3, 4) OR (" + kept +
                                " AND NOT " + bare + "))")
           .empty())
    faults += "an opening should be zero; ";
  if (all("SUM(" + closing + ")", ofYear + " AND (AccountType IN (3, 4) OR " + kept + ")") !=
      all("SUM(OpeningBal)", ofNext + " AND " + kept + " AND " + bare))
    faults += "retained earnings are wrong; ";
  return faults;
}

}  // namespace quillon::sim
