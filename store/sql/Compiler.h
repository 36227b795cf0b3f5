#pragma once

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/Schema.h"
#include "store/Value.h"
#include "store/sql/Ast.h"

namespace quillon::store {
class Database;
class Table;
}  // namespace quillon::store

namespace quillon::store::sql {

// What a statement is bound to while it runs: its tables, its parameters, and tables made for it.
class Compiler {
 public:
  Compiler(Database& database, const std::map<std::string, Value, std::less<>>& parameters);
  ~Compiler();  // closes the tables, drops those it made
  Compiler(const Compiler&) = delete;
  Compiler& operator=(const Compiler&) = delete;

  Database& database() { return database_; }
  // The table of that name: of the folder, or of memory for "\Memory\Name". noSuchTable at the place.
  Table& table(const std::string& name, const Place& place);
  // A table in memory for a result inside the statement; it goes with the compiler.
  Table& makeTable(const TableDef& definition);
  // Position of a parameter's value (name without colon, any case); badStatement when it was not given.
  int parameter(const std::string& name, const Place& place);
  Date today() const;  // of the session's clock, local
  const std::deque<Value>& parameters() const { return values_; }
  const std::vector<Table*>& tables() const { return tables_; }  // of the folder, each once

 private:
  Database& database_;
  const std::map<std::string, Value, std::less<>>& given_;
  std::vector<std::string> names_;
  std::deque<Value> values_;  // stay in their place
  std::vector<Table*> tables_, memoryTables_;
  std::vector<std::string> made_;
};

// A name for a table in memory that no other table has.
std::string newMemoryName(Database& memory);

}  // namespace quillon::store::sql
