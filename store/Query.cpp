#include "store/Query.h"

#include "base/Text.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/sql/ChangePlan.h"
#include "store/sql/Compiler.h"
#include "store/sql/Parser.h"
#include "store/sql/SelectPlan.h"
#include "store/sql/SteadyRead.h"
#include "store/sql/TableFill.h"
#include "store/table/Table.h"

namespace quillon::store {

Query::Query(Database& database, std::string text, std::string name)
    : Cursor(database, "", name.empty() ? "query" : std::move(name)), home_(database), text_(std::move(text)) {}

Query::~Query() {
  try {
    close();
  } catch (const StoreError&) {
    // Nothing of a result needs to be saved.
  }
}

void Query::setStatement(std::string text) {
  if (isOpen())
    throw StoreError(Code::badStatement, "'" + name() + "' is open; close it before its statement is changed.");
  text_ = std::move(text);
  statement_.reset();
}

void Query::setParameter(std::string_view name, Value value) {
  if (name.starts_with(':')) name.remove_prefix(1);
  parameters_[foldCase(name)] = std::move(value);
}

void Query::setLive(bool live) {
  if (isOpen()) throw StoreError(Code::badStatement, "'" + name() + "' is open; close it before it is made live.");
  live_ = live;
}

const sql::Statement& Query::parsed() {
  if (!statement_) statement_ = sql::parse(text_);
  return *statement_;
}

bool Query::givesRows() {
  const sql::Statement& statement = parsed();
  if (statement.kind == sql::StatementKind::explain) return true;
  return statement.kind == sql::StatementKind::select && statement.select->into.empty();
}

void Query::open() {
  if (isOpen()) return;
  if (!givesRows()) throw StoreError(Code::badStatement, "'" + name() + "' is no SELECT and gives no rows.");
  live_ ? openLive() : openSnapshot();
}

void Query::close() {
  Cursor::close();
  if (result_.empty()) return;
  home_.session().memory().dropTable(std::exchange(result_, {}));
}

void Query::openSnapshot() {
  Database& memory = home_.session().memory();
  TableDef definition;
  if (parsed().kind == sql::StatementKind::explain) {
    definition.fields.push_back({"Plan", FieldType::memo, 0, false});
    const std::vector<std::string> lines = explain();
    definition.name = sql::newMemoryName(memory);
    memory.createTable(definition);
    result_ = definition.name;
    Table& table = memory.openTable(result_, this, false);
    sql::TableFill fill(table);
    for (const std::string& line : lines) fill.add({sql::Datum::ofText(line)});
    fill.finish();
    setTarget(memory, result_, true);
    memory.closeTable(table, this);
    return Cursor::open();
  }
  sql::SteadyRead::run(home_, [&](sql::SteadyRead& read) {
    sql::Compiler compiler(home_, parameters_);
    const auto plan = sql::SelectPlan::make(compiler, *parsed().select, nullptr);
    definition.fields.clear();
    for (const sql::SelectColumn& column : plan->columns()) definition.fields.push_back(column.field);
    definition.name = sql::newMemoryName(memory);  // the plan has taken some for its own tables
    memory.createTable(definition);
    result_ = definition.name;
    Table& table = memory.openTable(result_, this, false);
    try {
      read.begin(compiler.tables());
      sql::TableFill fill(table);
      plan->run(nullptr, [&](const std::vector<sql::Datum>& row) {
        fill.add(row);
        return true;
      });
      fill.finish();
    } catch (...) {
      read.end();
      memory.closeTable(table, this);
      memory.dropTable(std::exchange(result_, {}));
      throw;
    }
    read.end();
    memory.closeTable(table, this);
  });
  setTarget(memory, result_, true);
  Cursor::open();
}

void Query::openLive() {
  std::vector<RowId> rows;
  std::string name;
  Database* database = nullptr;
  sql::SteadyRead::run(home_, [&](sql::SteadyRead& read) {
    sql::Compiler compiler(home_, parameters_);
    const auto plan = sql::SelectPlan::make(compiler, *parsed().select, nullptr);
    Table* table = plan->liveTable();
    if (!table)
      throw StoreError(Code::badStatement,
                       "'" + this->name() + "' cannot be live: it must read fields of the rows of one table.");
    name = table->name();
    database = &table->database();
    read.begin(compiler.tables());
    rows = plan->liveRows();
    read.end();
  });
  setTarget(*database, name, false);
  setRows(rows);
  Cursor::open();
}

std::uint64_t Query::execute() {
  const sql::Statement& statement = parsed();
  if (givesRows()) {
    open();
    const std::uint64_t rows = recordCount();
    close();
    return rows;
  }
  return sql::runChange(home_, statement, parameters_);
}

std::vector<std::string> Query::explain() {
  const sql::Statement* statement = &parsed();
  if (statement->kind == sql::StatementKind::explain) statement = statement->explained.get();
  return sql::explainStatement(home_, *statement, parameters_);
}

}  // namespace quillon::store
