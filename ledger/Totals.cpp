#include "ledger/Totals.h"

#include "store/Cursor.h"

namespace quillon::ledger {

TotalsFields::TotalsFields(store::Cursor& rows) : rows_(&rows), year_(rows.fieldPosition("GLYear")) {
  for (int level = 1; level <= kSubaccountLevels; ++level)
    subaccounts_[static_cast<std::size_t>(level - 1)] = rows.fieldPosition(subaccountField(level));
  amounts_[0] = rows.fieldPosition("OpeningBal");
  for (int period = 1; period <= kPeriods; ++period)
    amounts_[static_cast<std::size_t>(period)] = rows.fieldPosition(amountField(period));
}

int TotalsFields::year() const { return rows_->field(year_).asInt(); }

std::array<int, kSubaccountLevels> TotalsFields::subaccounts() const {
  std::array<int, kSubaccountLevels> ids;
  for (std::size_t i = 0; i < ids.size(); ++i) ids[i] = rows_->field(subaccounts_[i]).asInt();
  return ids;
}

Money TotalsFields::amount(int period) const {
  return rows_->field(amounts_[static_cast<std::size_t>(period)]).asMoney();
}

Money changeOf(store::Cursor& row) {
  const int first = row.fieldPosition(amountField(1));  // the others stand behind it
  Money sum;
  for (int period = 1; period <= kPeriods; ++period) sum += row.field(first + period - 1).asMoney();
  return sum;
}

Money closingBalance(store::Cursor& row) { return row["OpeningBal"].asMoney() + changeOf(row); }

}  // namespace quillon::ledger
