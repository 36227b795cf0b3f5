#pragma once

#include "store/Session.h"

namespace quillon::store {
class Database;
}

namespace quillon::ledger {

// Of the sample company nothing is restated.
inline constexpr const char* kSampleNotRestated =
    "AutoForex cannot be selected with the sample data...\rBecause it has JVs to illustrate the JV method of "
    "converting "
    "foreign currency accounts to domestic currency";

// A copy in memory of the ledger's totals of a year and the one before, in which the accounts that are kept in units of
// a foreign currency (its banks, its payables and its receivables) stand in home currency, at the rates of the periods'
// ends. What this changes goes against the currency's account for gain and loss, so that the ledger still sums to zero.
// The stored totals stay as they are.
//
// Each account is restated once, by the first currency that names it; a currency whose exchange rate is 0 is left
// alone. Only totals without subaccounts are restated. A period without a rate counts as one at 0.
//
// One at a time. Error "This report (with Auto-Forex) is already running.\rMultiple instances are not allowed" while
// another lives, and where a currency that is to be restated has no account for gain and loss.
class RestatedLedger {
 public:
  static constexpr const char* kTable = "\\Memory\\GLActual";

  RestatedLedger(store::Database& database, int year);
  ~RestatedLedger();
  RestatedLedger(const RestatedLedger&) = delete;
  RestatedLedger& operator=(const RestatedLedger&) = delete;

 private:
  store::Database& memory_;
};

}  // namespace quillon::ledger
