#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "store/Schema.h"
#include "store/Value.h"

// A statement as it was written: names not resolved, types not known. Every node knows its place for error messages.
namespace quillon::store::sql {

struct Place {
  int line = 1;
  int column = 1;  // in characters, from 1
};

struct Select;

inline constexpr int kMaxHeight = 1000;  // of an expression: how deep work on a tree may have to call itself

enum class Op : std::uint8_t {
  // two operands
  add,
  subtract,
  multiply,
  divide,
  concatenate,
  equal,
  notEqual,
  less,
  lessEqual,
  greater,
  greaterEqual,
  both,
  either,
  like,
  // one operand
  negate,
  notTrue,
  isNull,
  isNotNull,
};

enum class ExprKind : std::uint8_t {
  literal,      // value
  parameter,    // name
  column,       // table (may be empty), name
  star,         // table (may be empty): in a select list and COUNT(*)
  unary,        // op, operands[0]
  binary,       // op, operands[0], operands[1]
  between,      // operands[0] BETWEEN operands[1] AND operands[2]; negated
  inList,       // operands[0] IN (operands[1..]); negated
  inSelect,     // operands[0] IN (select); negated
  exists,       // EXISTS (select); negated
  scalar,       // (select) as a value
  call,         // name in upper case: SUM COUNT MIN MAX AVG COALESCE UPPER LOWER TRUNC ABS ROUND SUBSTRING LENGTH
                // CURRENT_DATE EXTRACT_YEAR EXTRACT_MONTH EXTRACT_DAY; distinct for COUNT(DISTINCT x)
  cast,         // operands[0] AS type
  conditional,  // CASE and IF: operands = condition, value, condition, value, ... and an else value when the number is
                // odd
};

struct CastType {
  FieldType type = FieldType::string;
  int size = 0;    // of Char(n)
  int scale = -1;  // of NUMERIC(p,s)
};

struct Expr {
  ExprKind kind = ExprKind::literal;
  Place place;
  std::string text;  // its source, spaces as written, the first 255 bytes: the name of an unnamed column
  int height = 1;    // of the tree below it, sub-selects included; at most kMaxHeight
  Value value;
  std::string table, name;
  bool quoted = false;  // of a literal: text in quotes, which takes the type of the other side
  Op op = Op::add;
  bool negated = false;
  bool distinct = false;
  CastType cast;
  std::vector<std::unique_ptr<Expr>> operands;
  std::unique_ptr<Select> select;
};

using ExprPtr = std::unique_ptr<Expr>;

enum class JoinKind : std::uint8_t { first, cross, inner, left };

struct Source {
  JoinKind join = JoinKind::first;  // to the sources before it; `cross` for commas too
  Place place;
  std::string table;               // as written, without quotes: `GLHist` or `\Memory\Name`
  std::unique_ptr<Select> select;  // instead of a table
  std::string alias;               // empty: the table's name
  ExprPtr on;
};

struct SelectItem {
  ExprPtr expr;
  std::string alias;
};

struct OrderItem {
  ExprPtr expr;  // a whole literal is a position in the select list
  bool descending = false;
};

// One SELECT, or a chain of them: `first UNION second UNION ALL third`. ORDER BY, TOP and INTO belong to the whole
// chain.
struct Select {
  Place place;
  bool distinct = false;
  std::vector<SelectItem> items;
  std::vector<Source> from;  // may be empty
  ExprPtr where;
  std::vector<ExprPtr> groupBy;
  ExprPtr having;
  std::unique_ptr<Select> unionWith;  // the next of the chain
  bool unionAll = false;              // how `unionWith` is joined to what stands before it
  int height = 0;                     // of the highest expression in it and in the rest of the chain
  // Of the head of a chain only:
  std::vector<OrderItem> orderBy;
  bool nocase = false;
  ExprPtr top;  // literal or parameter
  std::string into;
  Place intoPlace;
};

struct Assignment {
  std::string field;
  Place place;
  ExprPtr value;
};

struct ColumnDef {
  FieldDef field;
  Place place;
  bool unique = false, primary = false;
};

struct IndexColumn {
  std::string field;
  bool descending = false;
  Place place;
};

struct AlterItem {
  enum class Kind : std::uint8_t { add, drop, change } kind = Kind::add;
  ColumnDef column;  // for drop only the name
};

enum class StatementKind : std::uint8_t {
  select,
  insertValues,
  insertSelect,
  update,
  remove,
  createTable,
  createIndex,
  alterTable,
  dropTable,
  dropIndex,
  explain,
};

struct Statement {
  StatementKind kind = StatementKind::select;
  Place place;
  std::string table;  // the target
  Place tablePlace;
  std::string alias;                // of the target of UPDATE and DELETE
  std::unique_ptr<Select> select;   // select, insertSelect
  std::vector<std::string> fields;  // INSERT (a, b)
  std::vector<Place> fieldPlaces;
  std::vector<std::vector<ExprPtr>> rows;  // VALUES (...), (...)
  std::vector<Assignment> assignments;
  ExprPtr where;
  std::vector<ColumnDef> columns;
  std::vector<std::string> primaryKey;  // PRIMARY KEY (a, b)
  std::vector<std::vector<std::string>> uniqueKeys;
  bool ifExists = false;     // DROP TABLE IF EXISTS
  bool ifNotExists = false;  // CREATE TABLE IF NOT EXISTS
  std::string index;         // CREATE INDEX, DROP INDEX
  bool unique = false, nocase = false;
  std::vector<IndexColumn> indexColumns;
  std::vector<AlterItem> alterations;
  std::unique_ptr<Statement> explained;
  std::vector<std::string> parameters;  // as first written, without the colon, each once whatever its case
};

}  // namespace quillon::store::sql
