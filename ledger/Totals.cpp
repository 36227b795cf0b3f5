#include "ledger/Totals.h"

#include "store/Cursor.h"

namespace quillon::ledger {

Money changeOf(store::Cursor& row) {
  const int first = row.fieldPosition(amountField(1));  // the others stand behind it
  Money sum;
  for (int period = 1; period <= kPeriods; ++period) sum += row.field(first + period - 1).asMoney();
  return sum;
}

Money closingBalance(store::Cursor& row) { return row["OpeningBal"].asMoney() + changeOf(row); }

}  // namespace quillon::ledger
