#include <algorithm>

#include "base/Text.h"
#include "store/sql/ParserParts.h"

namespace quillon::store::sql {
namespace {

constexpr int kMaxCastSize = 32767;
constexpr int kMaxPrecision = 38;
constexpr int kDigitsOfInteger = 9;  // that 32 bits always hold
constexpr int kDigitsOfLargeInt = 18;

enum class Arguments : std::uint8_t { none, characters, digits };

struct TypeName {
  std::string_view name;
  FieldType type;
  Arguments arguments = Arguments::none;
};

constexpr TypeName kTypes[] = {
    {"STRING", FieldType::string, Arguments::characters},
    {"CHAR", FieldType::string, Arguments::characters},
    {"VARCHAR", FieldType::string, Arguments::characters},
    {"SMALLINT", FieldType::smallint},
    {"INTEGER", FieldType::integer},
    {"INT", FieldType::integer},
    {"BIGINT", FieldType::largeInt},
    {"LARGEINT", FieldType::largeInt},
    {"AUTOINC", FieldType::autoInc},
    {"FLOAT", FieldType::floating},
    {"REAL", FieldType::floating},
    {"DOUBLE", FieldType::floating},
    {"MONEY", FieldType::currency},
    {"CURRENCY", FieldType::currency},
    {"NUMERIC", FieldType::currency, Arguments::digits},
    {"DECIMAL", FieldType::currency, Arguments::digits},
    {"BOOLEAN", FieldType::boolean},
    {"DATE", FieldType::date},
    {"TIME", FieldType::time},
    {"TIMESTAMP", FieldType::dateTime},
    {"DATETIME", FieldType::dateTime},
    {"MEMO", FieldType::memo},
    {"TEXT", FieldType::memo},
    {"CLOB", FieldType::memo},
    {"BLOB", FieldType::blob},
    {"GRAPHIC", FieldType::graphic},
};

// Up to four decimals are money. Without decimals a number is whole as far as 64 bits reach.
FieldType numericType(int precision, int scale) {
  if (scale > Money::kDecimals) return FieldType::floating;
  if (scale > 0) return FieldType::currency;
  if (precision <= kDigitsOfInteger) return FieldType::integer;
  return precision <= kDigitsOfLargeInt ? FieldType::largeInt : FieldType::floating;
}

}  // namespace

CastType Parser::type(bool sized) {
  const std::string name = upper(token().text);
  const auto* known = std::ranges::find(kTypes, name, &TypeName::name);
  if (token().kind != TokenKind::word || known == std::ranges::end(kTypes)) expected("a type");
  advance();
  CastType result;
  result.type = known->type;
  if (name == "DOUBLE") accept("PRECISION");
  if (known->arguments == Arguments::characters) {
    if (sized) expect("(");
    if (sized || accept("(")) {
      result.size = number("a size", 1, sized ? kMaxTextSize : kMaxCastSize);
      expect(")");
    }
  } else if (known->arguments == Arguments::digits && accept("(")) {
    const int precision = number("a number of digits", 1, kMaxPrecision);
    result.scale = accept(",") ? number("a number of decimals", 0, precision) : 0;
    result.type = numericType(precision, result.scale);
    expect(")");
  }
  return result;
}

void Parser::create(Statement& statement) {
  if (accept("TABLE")) return createTable(statement);
  statement.unique = accept("UNIQUE");
  statement.nocase = accept("NOCASE");
  if (!accept("INDEX")) expected(statement.unique || statement.nocase ? "INDEX" : "TABLE or INDEX");
  createIndex(statement);
}

void Parser::createTable(Statement& statement) {
  statement.kind = StatementKind::createTable;
  if (accept("IF")) {
    expect("NOT");
    expect("EXISTS");
    statement.ifNotExists = true;
  }
  target(statement);
  expect("(");
  do {
    tableItem(statement);
  } while (accept(","));
  expect(")");
}

void Parser::tableItem(Statement& statement) {
  const Place place = token().place;
  const auto markPrimary = [&](std::vector<std::string> fields) {
    if (!statement.primaryKey.empty()) fail(place, "a table has one primary key.");
    statement.primaryKey = std::move(fields);
  };
  if (at("PRIMARY") && at("KEY", 1)) {
    advance();
    advance();
    markPrimary(fieldList());
  } else if (at("UNIQUE") && at("(", 1)) {
    advance();
    statement.uniqueKeys.push_back(fieldList());
  } else {
    statement.columns.push_back(columnDef(true));
    if (statement.columns.back().primary) markPrimary({statement.columns.back().field.name});
  }
}

ColumnDef Parser::columnDef(bool withKeys) {
  ColumnDef column;
  column.place = token().place;
  column.field.name = name("a field");
  const CastType fieldType = type(true);
  column.field.type = fieldType.type;
  column.field.size = fieldType.size;
  while (true) {
    if (accept("NOT")) {
      expect("NULL");
      column.field.required = true;
    } else if (withKeys && accept("UNIQUE")) {
      column.unique = true;
    } else if (withKeys && accept("PRIMARY")) {
      expect("KEY");
      column.primary = true;
    } else if (!accept("NULL")) {
      return column;
    }
  }
}

std::vector<std::string> Parser::fieldList() {
  std::vector<std::string> fields;
  expect("(");
  do {
    fields.push_back(name("a field"));
  } while (accept(","));
  expect(")");
  return fields;
}

void Parser::createIndex(Statement& statement) {
  statement.kind = StatementKind::createIndex;
  statement.index = name("a name for the index");
  expect("ON");
  target(statement);
  expect("(");
  do {
    IndexColumn column;
    column.place = token().place;
    column.field = name("a field");
    column.descending = accept("DESC");
    if (!column.descending) accept("ASC");
    statement.indexColumns.push_back(std::move(column));
  } while (accept(","));
  expect(")");
  if (accept("NOCASE")) statement.nocase = true;
}

void Parser::alterTable(Statement& statement) {
  statement.kind = StatementKind::alterTable;
  expect("TABLE");
  target(statement);
  do {
    AlterItem item;
    if (accept("DROP")) {
      item.kind = AlterItem::Kind::drop;
    } else if (accept("ALTER") || accept("MODIFY")) {
      item.kind = AlterItem::Kind::change;
    } else if (!accept("ADD")) {
      expected("ADD, ALTER or DROP");
    }
    // COLUMN may be left out; a field of that name is followed by its type, or by nothing.
    if (at("COLUMN") && atName(1) && (item.kind == AlterItem::Kind::drop || atName(2))) advance();
    if (item.kind == AlterItem::Kind::drop) {
      item.column.place = token().place;
      item.column.field.name = name("a field");
    } else {
      item.column = columnDef(false);
    }
    statement.alterations.push_back(std::move(item));
  } while (accept(","));
}

void Parser::drop(Statement& statement) {
  if (accept("INDEX")) return dropIndex(statement);
  if (!accept("TABLE")) expected("TABLE or INDEX");
  statement.kind = StatementKind::dropTable;
  if (accept("IF")) {
    expect("EXISTS");
    statement.ifExists = true;
  }
  target(statement);
}

// DROP INDEX Name ON Table, or DROP INDEX Table.Name.
void Parser::dropIndex(Statement& statement) {
  statement.kind = StatementKind::dropIndex;
  target(statement);
  statement.index = statement.table;
  if (accept(".")) {
    statement.index = nameAfterDot();
  } else {
    expect("ON");
    target(statement);
  }
}

}  // namespace quillon::store::sql
