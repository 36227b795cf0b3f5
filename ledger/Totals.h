#pragma once

#include <array>
#include <string>

#include "base/Money.h"
#include "base/Period.h"
#include "ledger/Accounts.h"

namespace quillon::store {
class Cursor;
}

// The rows of GLActual and GLBudget: of an account, with or without subaccounts, in a year, the opening balance and the
// change in each period. A debit is positive.
namespace quillon::ledger {

inline constexpr int kPeriods = Period::kCount;
inline constexpr const char* kTotalsKey = "GLAccountID;SubAccount1ID;SubAccount2ID;SubAccount3ID;GLYear";

// "Amount1" to "Amount12".
inline std::string amountField(int period) { return "Amount" + std::to_string(period); }

// The fields of a table of totals, by their places.
class TotalsFields {
 public:
  explicit TotalsFields(store::Cursor& rows);

  int year() const;
  std::array<int, kSubaccountLevels> subaccounts() const;  // 0: none
  Money amount(int period) const;                          // 0: the opening balance

 private:
  store::Cursor* rows_;
  std::array<int, kSubaccountLevels> subaccounts_ = {};
  std::array<int, kPeriods + 1> amounts_ = {};
  int year_ = 0;
};

// What the periods of a row add up to, and with the opening balance the balance at the end of its year.
Money changeOf(store::Cursor& row);
Money closingBalance(store::Cursor& row);

}  // namespace quillon::ledger
