#pragma once

#include <set>
#include <vector>

#include "ledger/Audit.h"
#include "store/Cursor.h"

namespace quillon::ledger {

// The audit of what was set up once and leads documents to accounts: currencies, banks, the company's defaults.
class AuditKeys {
 public:
  explicit AuditKeys(store::Database& database);

  void addTables(std::vector<store::Table*>& tables);
  // Every key that points to no row, and those that are missing where one is needed. `accounts`: the ids that there
  // are.
  std::vector<Disagreement> faults(const std::set<int>& accounts);

 private:
  store::Cursor currencies_, banks_, company_;
};

}  // namespace quillon::ledger
