#include "store/sql/ChangePlan.h"

#include <algorithm>
#include <optional>
#include <set>

#include "base/Text.h"
#include "store/Cursor.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/sql/Compiler.h"
#include "store/sql/SelectCore.h"
#include "store/sql/Spool.h"
#include "store/sql/SteadyRead.h"
#include "store/sql/TableChange.h"
#include "store/table/Table.h"
#include "store/vfs/File.h"

namespace quillon::store::sql {
namespace {

// A value for a field: converted as far as its type is known before the rows are; otherwise refused.
ExpressionPtr valueFor(ExpressionPtr value, const FieldDef& field, const Place& place) {
  const Type wanted = typeOf(field.type);
  const auto* constant = dynamic_cast<const Constant*>(value.get());
  const bool adapts = constant && (constant->quoted || constant->amount);
  if (adapts && wanted != Type::text && wanted != Type::blob && wanted != Type::real)
    return convertTo(std::move(value), wanted);
  const Type type = value->type;
  const bool fits = type == wanted || type == Type::null || (isNumber(type) && isNumber(wanted)) ||
                    (type == Type::date && wanted == Type::dateTime) ||
                    (type == Type::dateTime && wanted == Type::date) || (type == Type::text && wanted == Type::blob) ||
                    (type == Type::text && value->fixed && wanted != Type::text);
  if (!fits)
    refuse(place, Code::typeMismatch, "field '" + field.name + "' cannot hold " + std::string(nameOf(type)) + ".");
  return type == Type::text && wanted != Type::text && wanted != Type::blob ? convertTo(std::move(value), wanted)
                                                                            : std::move(value);
}

int fieldOf(const Table& table, const std::string& name, const Place& place) {
  const int field = table.definition().fieldIndex(name);
  if (field < 0) refuse(place, Code::noSuchField, "table '" + table.name() + "' has no field '" + name + "'.");
  return field;
}

// Where the values of a row stand in the statement, so that one that its field cannot take is told by its place.
struct Places {
  const std::vector<int>& fields;
  std::vector<Place> values;  // of the fields
  Place row;                  // for a field that the statement does not name

  template <typename Action>
  void tell(const TableChange& change, Action&& action) const {
    try {
      action();
    } catch (const StoreError& error) {
      if (error.code() != Code::badValue && error.code() != Code::required) throw;
      const auto field = std::find(fields.begin(), fields.end(), change.refused());
      refuse(field == fields.end() ? row : values[static_cast<std::size_t>(field - fields.begin())], error.code(),
             error.what());
    }
  }
};

// The write lock of the target is taken before its other tables are held for reading, and those are let go before the
// publish: whoever waits for a lock of moments with another in hand can hold a commit up that waits for it.

// The tables that a statement reads beside the one that it changes.
std::vector<Table*> others(const Compiler& compiler, const Table& target) {
  std::vector<Table*> tables = compiler.tables();
  std::erase(tables, &target);
  return tables;
}

// The fields that an INSERT names, all when it names none.
std::vector<int> insertFields(const Table& table, const Statement& statement) {
  std::vector<int> fields;
  std::set<int> seen;
  for (std::size_t i = 0; i < statement.fields.size(); ++i) {
    fields.push_back(fieldOf(table, statement.fields[i], statement.fieldPlaces[i]));
    if (!seen.insert(fields.back()).second)
      refuse(statement.fieldPlaces[i], Code::badStatement, "field '" + statement.fields[i] + "' is named twice.");
  }
  if (!fields.empty()) return fields;
  for (int i = 0; i < table.layout().fieldCount(); ++i) fields.push_back(i);
  return fields;
}

std::uint64_t insertValues(Compiler& compiler, const Statement& statement) {
  Table& table = compiler.table(statement.table, statement.tablePlace);
  const std::vector<int> fields = insertFields(table, statement);
  Binder binder(compiler, nullptr);
  std::vector<std::vector<ExpressionPtr>> rows;
  std::vector<Places> places;
  for (const auto& written : statement.rows) {
    if (written.size() != fields.size())
      refuse(written.empty() ? statement.place : written[0]->place, Code::badStatement,
             std::to_string(written.size()) + " values for " + std::to_string(fields.size()) + " fields.");
    auto& row = rows.emplace_back();
    places.push_back({fields, {}, written[0]->place});
    for (std::size_t i = 0; i < fields.size(); ++i) {
      row.push_back(valueFor(binder.bind(*written[i]), table.layout().field(fields[i]), written[i]->place));
      places.back().values.push_back(written[i]->place);
    }
  }
  TableChange change(table);
  std::optional<Database::Snapshot> snapshot(std::in_place, compiler.database(), others(compiler, table));
  Frame frame;
  std::vector<Datum> values;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    values.clear();
    for (const ExpressionPtr& value : rows[i]) values.push_back(value->eval(frame));
    places[i].tell(change, [&] { change.insert(fields, values); });
    frame.texts.clear();
  }
  snapshot.reset();
  return change.done();
}

std::uint64_t insertSelect(Compiler& compiler, const Statement& statement) {
  Table& table = compiler.table(statement.table, statement.tablePlace);
  const std::vector<int> fields = insertFields(table, statement);
  const auto plan = SelectPlan::make(compiler, *statement.select, nullptr);
  if (plan->columns().size() != fields.size())
    refuse(statement.select->place, Code::badStatement,
           std::to_string(plan->columns().size()) + " columns for " + std::to_string(fields.size()) + " fields.");
  const auto& items = statement.select->items;
  Places places{fields, std::vector<Place>(fields.size(), statement.select->place), statement.tablePlace};
  for (std::size_t i = 0; i < fields.size() && items.size() == fields.size(); ++i)
    places.values[i] = items[i].expr->place;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Type from = plan->columns()[i].type;
    const FieldDef& field = table.layout().field(fields[i]);
    const Type to = typeOf(field.type);
    const auto calendar = [](Type type) { return type == Type::date || type == Type::dateTime; };
    if (from != to && from != Type::null && !(isNumber(from) && isNumber(to)) && !(calendar(from) && calendar(to)))
      refuse(places.values[i], Code::typeMismatch,
             "field '" + field.name + "' cannot hold " + std::string(nameOf(from)) + ".");
  }
  // All rows are read before the first is written: the SELECT may read the table that they go to.
  Spool rows([&] { return compiler.database().session().scratch(); });
  std::vector<Datum> values;
  std::string bytes;
  TableChange change(table);
  {
    Database::Snapshot snapshot(compiler.database(), others(compiler, table));
    plan->run(nullptr, [&](const std::vector<Datum>& row) {
      bytes.clear();
      appendRow(row, bytes);
      rows.add(bytes);
      return true;
    });
  }
  rows.forEach([&](std::string_view row) {
    readRow(row, values);
    places.tell(change, [&] { change.insert(fields, values); });
  });
  return change.done();
}

// The rows of a table that a condition chooses, with the access that finds them.
struct Target {
  Target(Compiler& compiler, const Statement& statement)
      : table(compiler.table(statement.table, statement.tablePlace)), binder(compiler, &scope) {
    scope.sources.push_back({statement.alias.empty() ? statement.table : statement.alias, &table});
    frame.rows.resize(1);
    frame.rows[0].table = &table;
    levels.resize(1);
    levels[0].table = &table;
    if (statement.where) {
      where = binder.bind(*statement.where);
      if (where->type != Type::boolean && where->type != Type::null)
        refuse(statement.where->place, Code::typeMismatch,
               "expected a condition, found " + std::string(nameOf(where->type)) + ".");
    }
    std::vector<ExpressionPtr> ons(1);
    placeConditions(levels, where.get(), ons, constants);
  }
  // Calls for every row that the condition chooses, in row-id order; frame.rows[0] is the row.
  void forEach(const std::function<void()>& row) {
    const auto holds = [&](const Expression* condition) { return condition->eval(frame).isTrue(); };
    if (!std::all_of(constants.begin(), constants.end(), holds)) return;
    levels[0].access->choose(1, frame);
    levels[0].access->forEach(frame, [&] {
      frame.texts.clear();
      if (std::all_of(levels[0].conditions.begin(), levels[0].conditions.end(), holds)) row();
      return true;
    });
  }

  Table& table;
  Scope scope;
  Binder binder;
  Frame frame;
  std::vector<Level> levels;
  ExpressionPtr where;
  std::vector<const Expression*> constants;
};

std::uint64_t update(Compiler& compiler, const Statement& statement) {
  Target target(compiler, statement);
  std::vector<int> fields;
  std::vector<ExpressionPtr> values;
  Places places{fields, {}, statement.tablePlace};
  for (const Assignment& assignment : statement.assignments) {
    fields.push_back(fieldOf(target.table, assignment.field, assignment.place));
    if (std::count(fields.begin(), fields.end(), fields.back()) > 1)
      refuse(assignment.place, Code::badStatement, "field '" + assignment.field + "' is set twice.");
    values.push_back(
        valueFor(target.binder.bind(*assignment.value), target.table.layout().field(fields.back()), assignment.place));
    places.values.push_back(assignment.value->place);
  }
  TableChange change(target.table);
  std::optional<Database::Snapshot> snapshot(std::in_place, compiler.database(), others(compiler, target.table));
  change.startUpdate(fields);
  std::vector<Datum> row;
  target.forEach([&] {
    row.clear();
    for (const ExpressionPtr& value : values) row.push_back(value->eval(target.frame));
    const auto bytes = target.frame.rows[0].view->bytes();
    const std::string_view before(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    places.tell(change, [&] { change.planUpdate(target.frame.rows[0].row, before, row); });
  });
  change.update();
  snapshot.reset();
  return change.done();
}

std::uint64_t remove(Compiler& compiler, const Statement& statement) {
  Target target(compiler, statement);
  TableChange change(target.table);
  std::vector<RowId> ids;
  {
    Database::Snapshot snapshot(compiler.database(), others(compiler, target.table));
    target.forEach([&] { ids.push_back(target.frame.rows[0].row); });
  }
  change.remove(ids);
  return change.done();
}

// SELECT ... INTO: a new table without indexes; one of that name is replaced, unless it is open.
std::uint64_t selectInto(Database& database, const Statement& statement, const Parameters& parameters) {
  const Select& select = *statement.select;
  const bool inMemory = foldCase(select.into).starts_with("\\memory\\");
  Database& home = inMemory ? database.session().memory() : database;
  TableDef definition;
  definition.name = Database::plainName(select.into);
  Spool rows([&] { return database.session().scratch(); });
  std::string bytes;
  SteadyRead::run(database, [&](SteadyRead& read) {
    Compiler compiler(database, parameters);
    const auto plan = SelectPlan::make(compiler, select, nullptr);
    definition.fields.clear();
    rows.clear();
    for (const SelectColumn& column : plan->columns()) definition.fields.push_back(column.field);
    read.begin(compiler.tables());
    plan->run(nullptr, [&](const std::vector<Datum>& row) {
      bytes.clear();
      appendRow(row, bytes);
      rows.add(bytes);
      return true;
    });
    read.end();
  });
  try {
    definition.validate();
  } catch (const StoreError& error) {
    refuseDefinition(select.intoPlace, error);
    throw;
  }
  if (home.exists(definition.name)) home.dropTable(definition.name);
  home.createTable(definition);
  const int marker = 0;
  Table& table = home.openTable(definition.name, &marker, false);
  try {
    TableChange change(table);
    const std::vector<int> fields = insertFields(table, statement);
    std::vector<Datum> values;
    rows.forEach([&](std::string_view row) {
      readRow(row, values);
      change.insert(fields, values);
    });
    const std::uint64_t written = change.done();
    home.closeTable(table, &marker);
    return written;
  } catch (...) {
    home.closeTable(table, &marker);
    home.dropTable(definition.name);
    throw;
  }
}

}  // namespace

std::uint64_t runChange(Database& database, const Statement& statement, const Parameters& parameters) {
  if (statement.kind == StatementKind::select) return selectInto(database, statement, parameters);
  if (statement.kind >= StatementKind::createTable) {
    runDefinition(database, statement);
    return 0;
  }
  Compiler compiler(database, parameters);
  switch (statement.kind) {
    case StatementKind::insertValues:
      return insertValues(compiler, statement);
    case StatementKind::insertSelect:
      return insertSelect(compiler, statement);
    case StatementKind::update:
      return update(compiler, statement);
    default:
      return remove(compiler, statement);
  }
}

std::vector<std::string> explainStatement(Database& database, const Statement& statement,
                                          const Parameters& parameters) {
  std::vector<std::string> lines;
  Compiler compiler(database, parameters);
  if (statement.select) {
    const auto plan = SelectPlan::make(compiler, *statement.select, nullptr);
    Database::Snapshot snapshot(database, compiler.tables());
    plan->explain(lines, 0);
    if (statement.kind == StatementKind::insertSelect) lines.push_back("insert into " + statement.table);
  } else if (statement.kind == StatementKind::update || statement.kind == StatementKind::remove) {
    Target target(compiler, statement);
    Database::Snapshot snapshot(database, compiler.tables());
    target.levels[0].access->choose(1, target.frame);
    lines.push_back(target.levels[0].access->explain());
    lines.push_back(statement.kind == StatementKind::update ? "update" : "delete");
  } else {
    lines.push_back("change " + statement.table);
  }
  return lines;
}

}  // namespace quillon::store::sql
