#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/Date.h"
#include "base/Money.h"
#include "ledger/Accounts.h"
#include "ledger/Totals.h"

namespace quillon::form {
class App;
}

namespace quillon::ledger {

// An account, or a combination of it with subaccounts, as the ledger's reports show it for a year or a period of it.
struct LedgerAccount {
  std::array<int, 1 + kSubaccountLevels> ids = {};  // the account's, then those of subaccounts; 0: none
  std::string number, name;                         // with the names of the subaccounts
  Money opening, change;                            // a debit is positive
  Money budget;                                     // the balance that was planned for the end
  Money closing() const { return opening + change; }
};

// A line of a posted voucher.
struct LedgerLine {
  int period = 0, number = 0, voucher = 0;
  std::optional<Date> date;
  std::string source, description;
  Money amount;
};

// What the ledger has of each account for the year, or for one period of it (0: all), by account number; those that
// have nothing are left out. As of one moment.
std::vector<LedgerAccount> ledgerAccounts(form::App& app, int year, int period);
// The lines behind them, by account, in the order of their vouchers.
std::map<std::array<int, 1 + kSubaccountLevels>, std::vector<LedgerLine>> ledgerLines(form::App& app, int year,
                                                                                      int period);

}  // namespace quillon::ledger
