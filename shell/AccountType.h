#pragma once

namespace quillon::shell {

// What an account of the ledger is; stored as this number in GLAccnt.AccountType.
enum class AccountType { asset = 1, liability, revenue, expense, equity };

}  // namespace quillon::shell
