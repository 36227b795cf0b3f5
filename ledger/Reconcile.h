#pragma once

#include "store/Value.h"

namespace quillon::store {
class Database;
}

// What a bank statement has shown of an account's history. A row is ticked (Reconciling) while a reconciliation is in
// work, and reconciled (Reconciled) when that is finished; a reconciled row stays ticked. A payment is reconciled with
// its row.
//
// Each changes all of its rows or none, and none of the others. Payments come first: what is cut off between the two is
// finished by doing it again. StoreError recordLocked where somebody has one of the rows.
namespace quillon::ledger {

// All that are not reconciled.
void tickAll(store::Database& database, const store::Value& account);
void untickAll(store::Database& database, const store::Value& account);
void reconcileTicked(store::Database& database, const store::Value& account);
// Takes the ticks off as well.
void unreconcileAll(store::Database& database, const store::Value& account);

}  // namespace quillon::ledger
