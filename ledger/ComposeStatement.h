#pragma once

#include <optional>
#include <string_view>

#include "ledger/StatementDefinition.h"

namespace quillon::ledger {

// What a title says that the statement is, in any case: "Income" or "Profit", or "Balance".
bool saysIncome(std::string_view title);
bool saysBalance(std::string_view title);
// Null where it says neither.
std::optional<StatementKind> kindOfTitle(std::string_view title);

// A statement of every account that there is now, a line each, in the order of their numbers; with the title and the
// columns that its kind begins with.
StatementDefinition composeStatement(store::Database& database, StatementKind kind);

// Makes these the lines of a stored statement, instead of those that it has.
void writeStatementLines(store::Database& database, int stmtId, const StatementDefinition& statement);

}  // namespace quillon::ledger
