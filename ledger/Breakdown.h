#pragma once

#include <string>

#include "ledger/LedgerAccounts.h"

namespace quillon::form {
class App;
}

// What a figure of the ledger's reports is made of: each opens the list that shows it. A year's totals consist of lines
// in the history, and a line comes from a voucher.
namespace quillon::ledger {

// The lines of an account and its subaccounts in the periods of a year, both included.
void openLines(form::App& app, const AccountKey& account, int year, int firstPeriod, int lastPeriod);
// What stands behind its balance: the year's opening and periods.
void openTotals(form::App& app, const AccountKey& account, int year);
void openBudget(form::App& app, const AccountKey& account, int year);
void openTotalsOfYear(form::App& app, int year);
// The voucher of a line. Tells where it is not there any more.
void openVoucherOfLine(form::App& app, int line);

}  // namespace quillon::ledger
