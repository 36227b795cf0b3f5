#include "store/Query.h"

#include "base/Text.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/sql/ChangePlan.h"
#include "store/sql/Parser.h"
#include "store/sql/Prepared.h"
#include "store/sql/SteadyRead.h"
#include "store/sql/TableFill.h"
#include "store/table/Table.h"

namespace quillon::store {

Query::Query(Database& database, std::string text, std::string name)
    : Cursor(database, "", name.empty() ? "query" : std::move(name)),
      home_(database),
      homeLife_(database.life()),
      text_(std::move(text)) {}

Query::~Query() {
  try {
    close();
    dropResult();
  } catch (const StoreError&) {
    // Nothing of a result needs to be saved.
  }
}

void Query::setStatement(std::string text) {
  if (isOpen())
    throw StoreError(Code::badStatement, "'" + name() + "' is open; close it before its statement is changed.");
  text_ = std::move(text);
  dropResult();
  prepared_.reset();
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

sql::Prepared& Query::prepared() {
  if (!prepared_) prepared_ = std::make_unique<sql::Prepared>(home_, parsed(), parameters_);
  return *prepared_;
}

bool Query::givesRows() {
  const sql::Statement& statement = parsed();
  if (statement.kind == sql::StatementKind::explain) return true;
  return statement.kind == sql::StatementKind::select && statement.select->into.empty();
}

void Query::open() {
  if (isOpen()) return;
  if (!givesRows()) throw StoreError(Code::badStatement, "'" + name() + "' is no SELECT and gives no rows.");
  atPlace([&] { live_ ? openLive() : openSnapshot(); });
}

// An error of the tables is told at the place of the statement where it has none of its own.
template <typename Action>
void Query::atPlace(Action&& action) {
  try {
    action();
  } catch (const StoreError& error) {
    const sql::Statement& statement = parsed();
    sql::refuseAt(statement.table.empty() ? statement.place : statement.tablePlace, error);
    throw;
  }
}

void Query::close() {
  constexpr PageNo kKeptPages = 32;
  bool keeps = isOpen() && !result_.empty() && parsed().kind == sql::StatementKind::select;
  for (const Role role : {kDat, kBlb}) keeps = keeps && table().files().meta().space[role].pages <= kKeptPages;
  Cursor::close();
  if (!keeps) dropResult();
}

void Query::dropResult() {
  const std::string dropped = std::exchange(result_, {});
  if (!dropped.empty() && !homeLife_.expired()) home_.session().memory().dropTable(dropped);
}

// The lines of EXPLAIN as a result.
void Query::openPlan() {
  Database& memory = home_.session().memory();
  TableDef definition;
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
  Cursor::open();
}

void Query::openSnapshot() {
  if (parsed().kind == sql::StatementKind::explain) return openPlan();
  Database& memory = home_.session().memory();
  const int filler = 0;
  Table* table = nullptr;
  try {
    sql::SteadyRead::run(home_, [&](sql::SteadyRead& read) {
      sql::Prepared::Run run(prepared());
      if (run.boundAnew() || result_.empty()) {
        if (table) memory.closeTable(*std::exchange(table, nullptr), &filler);
        dropResult();
        TableDef definition;
        for (const sql::SelectColumn& column : run.select().columns()) definition.fields.push_back(column.field);
        definition.name = sql::newMemoryName(memory);  // the plan has taken some for its own tables
        memory.createTable(definition);
        result_ = definition.name;
      }
      if (!table) table = &memory.openTable(result_, &filler, false);
      const sql::SteadyRead::Scope scope(read, run.tables());
      sql::TableFill fill(*table);
      run.select().run(nullptr, [&](const std::vector<sql::Datum>& row) {
        fill.add(row);
        return true;
      });
      fill.finish();
      run.done();
    });
    setTarget(memory, result_, true);
    Cursor::open();
    memory.closeTable(*table, &filler);
  } catch (...) {
    if (table) memory.closeTable(*table, &filler);
    dropResult();
    throw;
  }
}

void Query::openLive() {
  std::vector<RowId> rows;
  std::string name;
  Database* database = nullptr;
  sql::SteadyRead::run(home_, [&](sql::SteadyRead& read) {
    sql::Prepared::Run run(prepared());
    Table* table = run.select().liveTable();
    if (!table)
      throw StoreError(Code::badStatement,
                       "'" + this->name() + "' cannot be live: it must read fields of the rows of one table.");
    name = table->name();
    database = &table->database();
    const sql::SteadyRead::Scope scope(read, run.tables());
    rows = run.select().liveRows();
    run.done();
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
  if (statement.kind == sql::StatementKind::select) return sql::selectInto(home_, statement, parameters_);
  if (statement.kind >= sql::StatementKind::createTable) {
    sql::runDefinition(home_, statement);
    return 0;
  }
  std::uint64_t rows = 0;
  atPlace([&] {
    sql::Prepared::Run run(prepared());
    rows = run.change().run();
    run.done();
  });
  return rows;
}

std::vector<std::string> Query::explain() {
  const sql::Statement* statement = &parsed();
  if (statement->kind == sql::StatementKind::explain) statement = statement->explained.get();
  return sql::explainStatement(home_, *statement, parameters_);
}

}  // namespace quillon::store
