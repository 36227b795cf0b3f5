#pragma once

#include <array>
#include <string>
#include <vector>

#include "base/Money.h"
#include "ledger/Accounts.h"
#include "ledger/LedgerLines.h"

namespace quillon::ledger {

// An account, or a combination of it with subaccounts, as the ledger's reports show it for a year or a period of it.
struct LedgerAccount {
  AccountKey ids = {};
  std::string number, name;                                     // the name with those of the subaccounts
  std::array<std::string, kSubaccountLevels> subaccounts = {};  // their codes
  Money opening, change;                                        // a debit is positive
  Money budget;                                                 // the balance that was planned for the end
  Money closing() const { return opening + change; }
};

// What the ledger has of each account for the year, or for one period of it (0: all), by account number and then by the
// codes of subaccounts; those that have neither totals nor a budget of the year are left out. As of one
// moment, which `lines` hold, too.
std::vector<LedgerAccount> ledgerAccounts(store::Database& database, int year, int period,
                                          LedgerLines* lines = nullptr);

}  // namespace quillon::ledger
