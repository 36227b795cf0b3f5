#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillon::store {
class Database;
}

namespace quillon::ledger {

// A stored value that is not what it follows from.
struct Disagreement {
  std::string table, key, what, stored, derived;
};

struct AuditReport {
  std::vector<Disagreement> wrong;
  // Entry that somebody did not bring to its end, or is at this moment: it has not reached the ledger.
  std::vector<Disagreement> interrupted;
  // The first year of which the history is there, where disagreements of earlier ones were left out.
  std::optional<int> historyFrom;
};

// Works the ledger out anew from its vouchers and history, all as of one moment; changes nothing, and others' saves
// wait meanwhile. A posted voucher balances and has exactly its rows in the history, and no other voucher has any; the
// amounts of GLActual are the sums of the history; accounts, subaccounts and vouchers that rows point to are there, and
// so is what currencies, banks and the company's defaults point to; the next voucher's id is above all that were used.
// Openings are taken as they stand. History may be purged, up to a year: those up to the last with a row that cancels a
// purged one, and from there to the next that has any, are not worked out; where there is none at all, nothing counts
// as purged. The vouchers of years before the one that was closed last may be purged, too.
AuditReport auditLedger(store::Database& database);

}  // namespace quillon::ledger
