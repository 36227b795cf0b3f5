#include "store/sql/Printer.h"

#include "store/sql/Lexer.h"
#include "store/sql/PrinterParts.h"

namespace quillon::store::sql {
namespace {

std::string nameList(const std::vector<std::string>& names) {
  std::string text = "(";
  for (const std::string& name : names) {
    if (text.size() > 1) text += ", ";
    text += printName(name);
  }
  return text + ")";
}

std::string expressionList(const std::vector<ExprPtr>& list) {
  std::string text;
  for (const ExprPtr& expr : list) text += (text.empty() ? "" : ", ") + print(*expr);
  return text;
}

std::string printSource(const Source& source) {
  std::string text;
  switch (source.join) {
    case JoinKind::first:
      break;
    case JoinKind::cross:
      text = " CROSS JOIN ";
      break;
    case JoinKind::inner:
      text = " INNER JOIN ";
      break;
    case JoinKind::left:
      text = " LEFT OUTER JOIN ";
      break;
  }
  text += source.select ? "(" + print(*source.select) + ")" : printName(source.table);
  if (!source.alias.empty()) text += " AS " + printName(source.alias);
  if (source.on) text += " ON " + print(*source.on);
  return text;
}

std::string printCore(const Select& select) {
  std::string text = select.distinct ? "SELECT DISTINCT " : "SELECT ";
  for (const SelectItem& item : select.items) {
    if (&item != &select.items.front()) text += ", ";
    text += print(*item.expr);
    if (!item.alias.empty()) text += " AS " + printName(item.alias);
  }
  if (!select.into.empty()) text += " INTO " + printName(select.into);
  if (!select.from.empty()) text += " FROM ";
  for (const Source& source : select.from) text += printSource(source);
  if (select.where) text += " WHERE " + print(*select.where);
  if (!select.groupBy.empty()) text += " GROUP BY " + expressionList(select.groupBy);
  if (select.having) text += " HAVING " + print(*select.having);
  return text;
}

std::string printInsert(const Statement& statement) {
  std::string text = "INSERT INTO " + printName(statement.table);
  if (!statement.fields.empty()) text += " " + nameList(statement.fields);
  if (statement.select) return text + " " + print(*statement.select);
  const char* before = " VALUES ";
  for (const std::vector<ExprPtr>& row : statement.rows) {
    text += before + ("(" + expressionList(row) + ")");
    before = ", ";
  }
  return text;
}

std::string printTarget(const Statement& statement) {
  return printName(statement.table) + (statement.alias.empty() ? "" : " AS " + printName(statement.alias));
}

std::string printCondition(const Statement& statement) {
  return statement.where ? " WHERE " + print(*statement.where) : "";
}

std::string printUpdate(const Statement& statement) {
  std::string text = "UPDATE " + printTarget(statement);
  const char* before = " SET ";
  for (const Assignment& assignment : statement.assignments) {
    text += before + printName(assignment.field) + " = " + print(*assignment.value);
    before = ", ";
  }
  return text + printCondition(statement);
}

std::string printColumn(const ColumnDef& column) {
  const CastType type{.type = column.field.type, .size = column.field.size};
  std::string text = printName(column.field.name) + " " + printType(type);
  if (column.field.required) text += " NOT NULL";
  if (column.unique) text += " UNIQUE";
  return text;
}

std::string printCreateTable(const Statement& statement) {
  std::string text = statement.ifNotExists ? "CREATE TABLE IF NOT EXISTS " : "CREATE TABLE ";
  text += printName(statement.table);
  const char* before = " (";
  for (const ColumnDef& column : statement.columns) {
    text += before + printColumn(column);
    before = ", ";
  }
  if (!statement.primaryKey.empty()) {
    text += before + ("PRIMARY KEY " + nameList(statement.primaryKey));
    before = ", ";
  }
  for (const std::vector<std::string>& key : statement.uniqueKeys) {
    text += before + ("UNIQUE " + nameList(key));
    before = ", ";
  }
  return text + ")";
}

std::string printCreateIndex(const Statement& statement) {
  std::string text = statement.unique ? "CREATE UNIQUE " : "CREATE ";
  if (statement.nocase) text += "NOCASE ";
  text += "INDEX " + printName(statement.index) + " ON " + printName(statement.table);
  const char* before = " (";
  for (const IndexColumn& column : statement.indexColumns) {
    text += before + printName(column.field) + (column.descending ? " DESC" : "");
    before = ", ";
  }
  return text + ")";
}

std::string printAlterTable(const Statement& statement) {
  std::string text = "ALTER TABLE " + printName(statement.table);
  for (const AlterItem& item : statement.alterations) {
    if (&item != &statement.alterations.front()) text += ",";
    switch (item.kind) {
      case AlterItem::Kind::add:
        text += " ADD COLUMN " + printColumn(item.column);
        break;
      case AlterItem::Kind::change:
        text += " ALTER COLUMN " + printColumn(item.column);
        break;
      case AlterItem::Kind::drop:
        text += " DROP COLUMN " + printName(item.column.field.name);
        break;
    }
  }
  return text;
}

}  // namespace

std::string printName(const std::string& name) {
  if (isPlainName(name)) return name;
  std::string text = "\"";
  for (const char c : name) {
    text += c;
    if (c == '"') text += c;
  }
  return text + "\"";
}

std::string print(const Select& select) {
  std::string text = printCore(select);
  for (const Select* one = &select; one->unionWith; one = one->unionWith.get()) {
    text += (one->unionAll ? " UNION ALL " : " UNION ") + printCore(*one->unionWith);
  }
  const char* before = " ORDER BY ";
  for (const OrderItem& item : select.orderBy) {
    text += before + print(*item.expr) + (item.descending ? " DESC" : "");
    before = ", ";
  }
  if (select.nocase) text += " NOCASE";
  if (select.top) text += " TOP " + print(*select.top);
  return text;
}

std::string print(const Statement& statement) {
  switch (statement.kind) {
    case StatementKind::select:
      return print(*statement.select);
    case StatementKind::insertValues:
    case StatementKind::insertSelect:
      return printInsert(statement);
    case StatementKind::update:
      return printUpdate(statement);
    case StatementKind::remove:
      return "DELETE FROM " + printTarget(statement) + printCondition(statement);
    case StatementKind::createTable:
      return printCreateTable(statement);
    case StatementKind::createIndex:
      return printCreateIndex(statement);
    case StatementKind::alterTable:
      return printAlterTable(statement);
    case StatementKind::dropTable:
      return (statement.ifExists ? "DROP TABLE IF EXISTS " : "DROP TABLE ") + printName(statement.table);
    case StatementKind::dropIndex:
      return "DROP INDEX " + printName(statement.index) + " ON " + printName(statement.table);
    case StatementKind::explain:
      return "EXPLAIN " + print(*statement.explained);
  }
  return {};
}

}  // namespace quillon::store::sql
