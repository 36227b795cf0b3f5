#pragma once

#include <map>
#include <string>

namespace quillon::store {
class Database;
}

namespace quillon::shell {

// Writes the sample company's budget for `year` and the next: revenue and expenses by departments and products, and
// what they leave in the balance sheet, from the balances at the start of `year`. A budget balances as the ledger does.
// `accounts` has the ids by numbers. In a transaction of the caller over GLBudget.
void writeSampleBudget(store::Database& database, const std::map<std::string, int>& accounts, int year);

}  // namespace quillon::shell
