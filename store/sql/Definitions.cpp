// CREATE TABLE, CREATE INDEX, ALTER TABLE, DROP TABLE, DROP INDEX.
#include <algorithm>

#include "base/Text.h"
#include "store/Database.h"
#include "store/Errors.h"
#include "store/InUse.h"
#include "store/sql/ChangePlan.h"
#include "store/sql/Expression.h"
#include "store/table/Table.h"

namespace quillon::store::sql {
namespace {

Database& homeOf(Database& database, const std::string& table) {
  return foldCase(table).starts_with("\\memory\\") ? database.session().memory() : database;
}

IndexDef indexOver(const TableDef& table, const std::string& name, const std::vector<std::string>& fields,
                   bool unique) {
  IndexDef index;
  index.name = name;
  index.unique = unique;
  for (const std::string& field : fields) {
    const int position = table.fieldIndex(field);
    if (position < 0) throw StoreError(Code::noSuchField, "Table '" + table.name + "' has no field '" + field + "'.");
    index.parts.push_back({position, false});
  }
  return index;
}

void createTable(Database& database, const Statement& statement) {
  Database& home = homeOf(database, statement.table);
  TableDef definition;
  definition.name = Database::plainName(statement.table);
  if (statement.ifNotExists && home.exists(definition.name)) return;
  const std::vector<std::string>& primary = statement.primaryKey;
  for (const ColumnDef& column : statement.columns) {
    if (definition.fieldIndex(column.field.name) >= 0)
      refuse(column.place, Code::badDefinition, "field '" + column.field.name + "' stands there twice.");
    definition.fields.push_back(column.field);
  }
  if (!primary.empty()) definition.indexes.push_back(indexOver(definition, "", primary, true));
  int number = 0;
  for (const ColumnDef& column : statement.columns)
    if (column.unique)
      definition.indexes.push_back(
          indexOver(definition, "Unique" + std::to_string(++number), {column.field.name}, true));
  for (const auto& key : statement.uniqueKeys)
    definition.indexes.push_back(indexOver(definition, "Unique" + std::to_string(++number), key, true));
  home.createTable(definition);
}

// The definition of a table and the positions of its fields in it, so that a new one can be told from it.
struct Redefinition {
  TableDef definition;
  std::vector<int> from;  // of each new field: the old one, or -1
};

Redefinition current(Database& home, const Statement& statement) {
  const int marker = 0;
  try {
    Table& table = home.openTable(statement.table, &marker, false);
    Redefinition result{table.definition(), {}};
    home.closeTable(table, &marker);
    for (std::size_t i = 0; i < result.definition.fields.size(); ++i) result.from.push_back(static_cast<int>(i));
    return result;
  } catch (const StoreError& error) {
    if (error.code() != Code::noSuchTable) throw;
    refuse(statement.tablePlace, Code::noSuchTable, "there is no table '" + statement.table + "'.");
  }
}

void createIndex(Database& database, const Statement& statement) {
  Database& home = homeOf(database, statement.table);
  Redefinition wanted = current(home, statement);
  IndexDef index;
  index.name = statement.index;
  index.unique = statement.unique;
  index.caseInsensitive = statement.nocase;
  for (const IndexColumn& column : statement.indexColumns) {
    const int field = wanted.definition.fieldIndex(column.field);
    if (field < 0)
      refuse(column.place, Code::noSuchField,
             "table '" + wanted.definition.name + "' has no field '" + column.field + "'.");
    index.parts.push_back({field, column.descending});
  }
  if (wanted.definition.indexPosition(index.name) >= 0)
    refuse(statement.place, Code::badDefinition,
           "table '" + wanted.definition.name + "' has an index '" + index.name + "' already.");
  wanted.definition.indexes.push_back(std::move(index));
  home.redefineTable(wanted.definition, wanted.from);
}

void dropIndex(Database& database, const Statement& statement) {
  Database& home = homeOf(database, statement.table);
  Redefinition wanted = current(home, statement);
  const int index = wanted.definition.indexPosition(statement.index);
  if (index < 0)
    refuse(statement.place, Code::noSuchIndex,
           "table '" + wanted.definition.name + "' has no index '" + statement.index + "'.");
  wanted.definition.indexes.erase(wanted.definition.indexes.begin() + index);
  home.redefineTable(wanted.definition, wanted.from);
}

void dropColumn(Redefinition& wanted, int field, const Place& place) {
  TableDef& definition = wanted.definition;
  for (const IndexDef& index : definition.indexes)
    for (const IndexPart& part : index.parts)
      if (part.field == field)
        refuse(place, Code::badDefinition,
               "field '" + definition.fields[static_cast<std::size_t>(field)].name + "' is part of the index '" +
                   index.name + "'; drop the index first.");
  definition.fields.erase(definition.fields.begin() + field);
  wanted.from.erase(wanted.from.begin() + field);
  for (IndexDef& index : definition.indexes)
    for (IndexPart& part : index.parts)
      if (part.field > field) --part.field;
}

void alterTable(Database& database, const Statement& statement) {
  Database& home = homeOf(database, statement.table);
  Redefinition wanted = current(home, statement);
  TableDef& definition = wanted.definition;
  for (const AlterItem& item : statement.alterations) {
    const int field = definition.fieldIndex(item.column.field.name);
    if (item.kind == AlterItem::Kind::add) {
      if (field >= 0)
        refuse(item.column.place, Code::badDefinition, "field '" + item.column.field.name + "' exists already.");
      definition.fields.push_back(item.column.field);
      wanted.from.push_back(-1);
      continue;
    }
    if (field < 0)
      refuse(item.column.place, Code::noSuchField,
             "table '" + definition.name + "' has no field '" + item.column.field.name + "'.");
    if (item.kind == AlterItem::Kind::drop) {
      dropColumn(wanted, field, item.column.place);
    } else {
      const std::string name = definition.fields[static_cast<std::size_t>(field)].name;
      definition.fields[static_cast<std::size_t>(field)] = item.column.field;
      definition.fields[static_cast<std::size_t>(field)].name = name;
    }
  }
  home.redefineTable(definition, wanted.from);
}

void define(Database& database, const Statement& statement) {
  Database& home = homeOf(database, statement.table);
  switch (statement.kind) {
    case StatementKind::createTable:
      return createTable(database, statement);
    case StatementKind::createIndex:
      return createIndex(database, statement);
    case StatementKind::dropIndex:
      return dropIndex(database, statement);
    case StatementKind::alterTable:
      return alterTable(database, statement);
    case StatementKind::dropTable:
      if (!home.exists(statement.table)) {
        if (statement.ifExists) return;
        refuse(statement.tablePlace, Code::noSuchTable, "there is no table '" + statement.table + "'.");
      }
      return home.dropTable(statement.table);
    default:
      refuse(statement.place, Code::badStatement, "this statement gives rows.");
  }
}

}  // namespace

void refuseAt(const Place& place, const StoreError& error) {
  constexpr Code kOfStatement[] = {Code::badDefinition, Code::tableExists,   Code::noSuchField,   Code::limitReached,
                                   Code::badValue,      Code::required,      Code::keyViolation,  Code::tableInUse,
                                   Code::recordLocked,  Code::recordChanged, Code::badTransaction};
  // Nothing is wrong with the text where somebody is in the way.
  if (dynamic_cast<const StatementError*>(&error) || dynamic_cast<const InUseError*>(&error)) return;
  if (std::find(std::begin(kOfStatement), std::end(kOfStatement), error.code()) != std::end(kOfStatement))
    refuse(place, error.code(), error.what());
}

void runDefinition(Database& database, const Statement& statement) {
  try {
    define(database, statement);
  } catch (const StoreError& error) {
    refuseAt(statement.tablePlace, error);
    throw;
  }
}

}  // namespace quillon::store::sql
