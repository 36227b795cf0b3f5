#pragma once

#include <string>
#include <vector>

#include "ledger/Accounts.h"

namespace quillon::form {
class App;
}
namespace quillon::store {
class Database;
}

namespace quillon::ledger {

// An account that a statement does not show as it should: once, and in a statement of changes revenue and expenses
// only, in one of balances all.
struct StatementFault {
  enum class What { missing, repeated, wrongType };

  What what;
  std::string account, name;
  AccountType type;
};

// Those of a stored statement, by account number; an account may be both repeated and of a wrong type.
std::vector<StatementFault> checkStatement(store::Database& database, int stmtId);

// Before a statement is printed: true without a word where nothing is wrong; otherwise the person sees what is, and
// says whether to print anyway.
bool mayPrintStatement(form::App& app, int stmtId);

}  // namespace quillon::ledger
