#include "ledger/Totals.h"

#include "store/Cursor.h"

namespace quillon::ledger {

Money changeOf(store::Cursor& row) {
  Money sum;
  for (int period = 1; period <= kPeriods; ++period) sum += row[amountField(period)].asMoney();
  return sum;
}

Money closingBalance(store::Cursor& row) { return row["OpeningBal"].asMoney() + changeOf(row); }

}  // namespace quillon::ledger
