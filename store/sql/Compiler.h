#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/Schema.h"
#include "store/Value.h"
#include "store/sql/Ast.h"
#include "store/sql/Datum.h"

namespace quillon::store {
class Database;
class Table;
}  // namespace quillon::store

namespace quillon::store::sql {

// What a statement is bound to: its tables, its parameters, and tables made for it. Between runs it rests: the tables
// are closed, and `resume` tells whether all is still as it was bound.
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
  // The value of a parameter (name without colon, any case), which stays in its place from run to run; badStatement
  // when it was not given.
  struct Parameter {
    Value given;
    Datum value;
    int size = 0;  // of a text: its characters when it was bound, at least 1
    Texts texts;
  };
  const Parameter& parameter(const std::string& name, const Place& place);
  Date today();                                                  // of the session's clock, local
  const std::vector<Table*>& tables() const { return tables_; }  // of the folder, each once

  // What is worked out during a run and must not outlive it is let go by what is said here, as long as what is returned
  // lives.
  using LetGo = std::shared_ptr<std::function<void()>>;
  LetGo atRest(std::function<void()> letGo);
  void rest() noexcept;
  bool canRest() const { return made_.empty(); }  // false: what was bound serves one run only
  // Opens the tables again and takes the parameters' present values. False: a table is another one or has another
  // definition, or a value has another type; all must be bound anew.
  bool resume();

 private:
  struct Opened {
    Database& database;
    std::string name;
    std::uint64_t number;
  };
  void closeTables() noexcept;
  bool takeParameters();
  Date now() const;
  void set(Parameter& parameter, const Value& value);

  Database& database_;
  const std::map<std::string, Value, std::less<>>& given_;
  std::vector<std::string> names_;
  std::deque<Parameter> values_;  // stay in their place
  std::vector<Table*> tables_, memoryTables_;
  std::vector<Opened> opened_;
  std::vector<std::string> made_;
  std::vector<std::weak_ptr<std::function<void()>>> atRest_;
  std::optional<Date> today_;
};

// A name for a table in memory that no other table has.
std::string newMemoryName(Database& memory);

}  // namespace quillon::store::sql
