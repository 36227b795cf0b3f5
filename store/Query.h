#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/Cursor.h"

namespace quillon::store {

namespace sql {
class Prepared;
struct Statement;
}  // namespace sql

// A statement of the query dialect, with named parameters.
//
// `open` runs a SELECT and makes this a cursor on its result: a snapshot, which is read again by closing and opening
// it, and cannot be changed; or, when it is live, the rows of the one table that it reads, in the order found, edited
// by the table's own rules. A row that no longer fits a live result stays in it until it is opened again. `execute`
// runs any other statement. A statement is all or nothing.
//
// Errors: StatementError with line and column, also for those of the tables that a statement meets, among them
// recordLocked when a row to be changed is locked, keyViolation, required, badValue, tableInUse. The text is parsed
// once; tables and types are looked up again, and the plan is made again, only when a table's definition or a
// parameter's type has changed. Between runs it has no table open.
class Query : public Cursor {
 public:
  Query(Database& database, std::string text = {}, std::string name = {});
  ~Query();

  void setStatement(std::string text);  // while closed; keeps the parameters
  const std::string& statement() const { return text_; }
  void setParameter(std::string_view name, Value value);  // with or without the colon, in any case
  void setLive(bool live);                                // while closed; badStatement at open when it cannot be live

  void open();
  void close();
  // Rows changed; of a SELECT ... INTO the rows written.
  std::uint64_t execute();
  // Whether the statement gives rows: a SELECT without INTO, or EXPLAIN.
  bool givesRows();
  // The ways in which a statement will be run, one line a step.
  std::vector<std::string> explain();

 private:
  template <typename Action>
  void atPlace(Action&& action);
  const sql::Statement& parsed();
  sql::Prepared& prepared();
  void openSnapshot();
  void openPlan();
  void dropResult();
  void openLive();

  Database& home_;  // that the statement's names belong to
  std::weak_ptr<const bool> homeLife_;
  std::string text_;
  std::unique_ptr<sql::Statement> statement_;
  std::unique_ptr<sql::Prepared> prepared_;  // of the statement
  std::map<std::string, Value, std::less<>> parameters_;
  // The table in memory that holds the result. A small one stays for the next run of the same plan.
  std::string result_;
  bool live_ = false;
};

}  // namespace quillon::store
