#pragma once

#include <vector>

#include "ledger/Audit.h"

namespace quillon::store {
class Database;
}

namespace quillon::ledger {

// The openings that year end would not write: of each year up to the current fiscal year they are what the year before
// carried forward, by the accounts as they are now. Those of the first year that has totals are taken as they stand,
// and so are those of later years: they may have been carried forward, or not, and vouchers still come.
std::vector<Disagreement> auditOpenings(store::Database& database, int fiscalYear);

}  // namespace quillon::ledger
