#include "ledger/TotalsFile.h"

#include <vector>

#include "base/Money.h"
#include "ledger/Totals.h"
#include "reports/TableFile.h"
#include "store/Cursor.h"
#include "store/Glance.h"

namespace quillon::ledger {
namespace {

std::vector<std::string> fields() {
  std::vector<std::string> names = {"GLAccount", "Sub1",     "Sub2",        "Sub3",   "AccountName", "Sub1Name",
                                    "Sub2Name",  "Sub3Name", "AccountType", "GLYear", "OpeningBal"};
  for (int period = 1; period <= kPeriods; ++period) names.push_back("Period" + std::to_string(period));
  return names;
}

}  // namespace

void writeTotalsFile(store::Cursor& rows, const std::string& title, const std::string& path) {
  const std::vector<std::string> names = fields();
  std::vector<std::string> columns = names;
  columns.emplace_back("Total Change");
  reports::TableFile file(path, title, columns);
  std::vector<store::Value> row;
  store::Glance glance(rows);
  for (bool there = glance.first(); there; there = glance.next()) {
    row.clear();
    Money change;
    for (const std::string& name : names) {
      row.push_back(rows.value(name));
      if (name.starts_with("Period")) change += row.back().asMoney();
    }
    row.emplace_back(change);
    file.add(row);
  }
  file.finish();
}

}  // namespace quillon::ledger
