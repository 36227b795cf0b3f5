#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "store/Value.h"
#include "store/sql/Ast.h"

namespace quillon::store {
class Database;
class StoreError;
}  // namespace quillon::store

namespace quillon::store::sql {

class Compiler;

using Parameters = std::map<std::string, Value, std::less<>>;

// An INSERT, UPDATE or DELETE, bound to its tables.
class ChangePlan {
 public:
  static std::unique_ptr<ChangePlan> make(Compiler& compiler, const Statement& statement);
  virtual ~ChangePlan() = default;
  virtual std::uint64_t run() = 0;  // all of it or nothing; returns how many rows were changed
  virtual void explain(std::vector<std::string>& lines) = 0;
};

// SELECT ... INTO: a new table without indexes; one of that name is replaced, unless it is open.
std::uint64_t selectInto(Database& database, const Statement& statement, const Parameters& parameters);
// The statements of definitions (Definitions.cpp).
void runDefinition(Database& database, const Statement& statement);
// Raises the error again at a place, unless it has one or no statement is to blame: the disk is, or damage.
void refuseAt(const Place& place, const StoreError& error);
std::vector<std::string> explainStatement(Database& database, const Statement& statement, const Parameters& parameters);

}  // namespace quillon::store::sql
