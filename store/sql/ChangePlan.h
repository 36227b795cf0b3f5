#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "store/Value.h"
#include "store/sql/Ast.h"

namespace quillon::store {
class Database;
class StoreError;
}  // namespace quillon::store

namespace quillon::store::sql {

using Parameters = std::map<std::string, Value, std::less<>>;

// Runs a statement that gives no rows: INSERT, UPDATE, DELETE, SELECT ... INTO, and those of definitions. All of it or
// nothing. Returns how many rows were changed.
std::uint64_t runChange(Database& database, const Statement& statement, const Parameters& parameters);
// The statements of definitions (Definitions.cpp).
void runDefinition(Database& database, const Statement& statement);
// Raises the error again at the place of the table's name, where the text is to blame for it.
void refuseDefinition(const Place& place, const StoreError& error);
std::vector<std::string> explainStatement(Database& database, const Statement& statement, const Parameters& parameters);

}  // namespace quillon::store::sql
