#pragma once

#include "base/Money.h"
#include "store/Value.h"

namespace quillon::store {
class Database;
}

namespace quillon::ledger {

// What the ledger says of an account at the end of the last year that it has totals of, over all combinations of
// subaccounts; periods to come count as far as they are posted. The year is that of the account without subaccounts,
// or where it has no such totals the last of any combination.
Money ledgerBalance(store::Database& database, const store::Value& account);

// The sum of the account's history that was not reconciled and is not ticked.
Money outstandingAmount(store::Database& database, const store::Value& account);

}  // namespace quillon::ledger
