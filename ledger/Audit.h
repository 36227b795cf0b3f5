#pragma once

#include <map>
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
  // What a purge of history leaves: by year, how many posted vouchers have none of their rows in it.
  std::map<int, int> withoutHistory;
};

// Works the ledger out anew from its vouchers and history, all as of one moment; changes nothing, and others' saves
// wait meanwhile.
//
// Keeps an eye on: a posted voucher balances and has exactly its rows in the history, and no other voucher has any; a
// voucher can be posted; the amounts of GLActual are the sums of the posted vouchers and, of vouchers that are gone, of
// their history; rows of history without a voucher balance document by document; the openings of a year come to
// nothing in all, and behind a closed year they are what it carried forward (auditOpenings); accounts, subaccounts,
// currencies and vouchers that rows point to are there; the next voucher's id is above all that were used; what is
// reconciled with a bank's statement was ticked.
//
// What was purged is no disagreement, as far as only a purge can have taken it: of years before the one that was closed
// last, or before all others, vouchers may be gone with their lines, and so may all rows that a voucher has in such a
// year's history. A year of which both may be gone has nothing that its totals could follow from.
//
// What follows from nothing else is taken as it stands: numbers that only have to be unique or to ascend, what was
// typed into a voucher that waits to be posted as far as it balances, a single opening where no year was closed, ticks
// of the bank's statements.
AuditReport auditLedger(store::Database& database);

}  // namespace quillon::ledger
