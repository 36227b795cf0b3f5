#pragma once

#include <functional>

#include "base/Money.h"
#include "ledger/Accounts.h"

namespace quillon::store {
class Cursor;
}

namespace quillon::ledger {

// What the next year opens with. Balances are carried forward as they are; revenue and expense begin with nothing, and
// their net result goes to retained earnings, all of which comes to stand in the one row of that account without
// subaccounts. A debit is positive, so a profit adds to the credit of retained earnings without any sign to be turned.
class CarryForward {
 public:
  // Takes a row of the year; gives the next opening of the same account and subaccounts.
  Money next(AccountType type, bool retainedEarnings, Money closing);
  // When every row was taken: the next opening of the retained earnings account without subaccounts.
  Money retained() const { return result_ + retained_; }

 private:
  Money result_, retained_;
};

// Sets the openings of the year behind `year`, in every row that is there, and adds rows for those that are not zero.
// Openings are set and not added to, so what a run that was cut off left is put right by the next.
//
// `tblGLActual` is a cursor on GLActual whose table the caller has locked. A year without rows changes nothing.
// `progress` hears of rows.
void carryForward(store::Cursor& tblGLActual, int year, const store::Value& retainedEarningsId,
                  const std::function<void(long done, long total)>& progress);

}  // namespace quillon::ledger
