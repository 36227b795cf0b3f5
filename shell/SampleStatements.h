#pragma once

#include <map>
#include <string>

namespace quillon::store {
class Database;
}

namespace quillon::shell {

// Writes the sample company's financial statements, and a budget of its revenue and expenses for `year` and the next;
// `accounts` has the ids by numbers. In a transaction of the caller over the tables named.
inline constexpr const char* kSampleStatementTables[] = {"FStmt",    "FStmtLin", "FStmtLAc",
                                                         "FStmtLTo", "FStmtCtl", "GLBudget"};
void writeSampleStatements(store::Database& database, const std::map<std::string, int>& accounts, int year);

}  // namespace quillon::shell
