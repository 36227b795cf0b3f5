#include "support/StatementShape.h"

#include <array>
#include <cstdio>

namespace quillon::sim {
namespace {

using store::Value;
using store::sql::ColumnDef;
using store::sql::Expr;
using store::sql::ExprKind;
using store::sql::ExprPtr;
using store::sql::Op;
using store::sql::Select;
using store::sql::Statement;

constexpr std::array kOps = {
    "+", "-", "*", "/", "||", "=", "<>", "<", "<=", ">", ">=", "and", "or", "like", "neg", "not", "null?", "some?"};
constexpr std::array kKinds = {"literal", "parameter", "column", "star",   "unary", "binary", "between",
                               "in",      "inSelect",  "exists", "scalar", "call",  "cast",   "if"};
constexpr std::array kValueKinds = {"", "", "", "r", "m", "", "d", "t", "dt", "b"};
constexpr std::array kJoins = {"first", "cross", "inner", "left"};
constexpr std::array kStatements = {"select",      "insert",     "insertSelect", "update",    "delete", "createTable",
                                    "createIndex", "alterTable", "dropTable",    "dropIndex", "explain"};

template <typename Names, typename Kind>
std::string nameOf(const Names& names, Kind kind) {
  return names.at(static_cast<std::size_t>(kind));
}

std::string literal(const Expr& expr) {
  if (expr.quoted) return "'" + expr.value.asText() + "'";
  if (expr.value.kind() == Value::Kind::real) {
    char text[32];
    std::snprintf(text, sizeof text, "r%.17g", expr.value.asDouble());
    return text;
  }
  return nameOf(kValueKinds, expr.value.kind()) + expr.value.toText();
}

void chain(const Expr& expr, Op op, std::string& out) {
  if (expr.kind != ExprKind::binary || expr.op != op) {
    out += " " + shapeOf(expr);
    return;
  }
  chain(*expr.operands[0], op, out);
  chain(*expr.operands[1], op, out);
}

std::string column(const ColumnDef& column) {
  return " [" + column.field.name + " " + std::to_string(static_cast<int>(column.field.type)) + " " +
         std::to_string(column.field.size) + (column.field.required ? " required" : "") +
         (column.unique ? " unique" : "") + "]";
}

std::string names(const std::vector<std::string>& list) {
  std::string out = " (";
  for (const std::string& name : list) out += name + ",";
  return out + ")";
}

std::string part(const char* name, const ExprPtr& expr) {
  return expr ? std::string(" ") + name + "=" + shapeOf(*expr) : "";
}

}  // namespace

std::string shapeOf(const Expr& expr) {
  switch (expr.kind) {
    case ExprKind::literal:
      return literal(expr);
    case ExprKind::parameter:
      return ":" + expr.name;
    case ExprKind::column:
      return expr.table.empty() ? expr.name : expr.table + "." + expr.name;
    default:
      break;
  }
  std::string out = "(";
  if (expr.negated) out += "!";
  if (expr.kind == ExprKind::unary || expr.kind == ExprKind::binary) {
    out += nameOf(kOps, expr.op);
    if (expr.op == Op::both || expr.op == Op::either) {
      chain(expr, expr.op, out);
      return out + ")";
    }
  } else {
    out += expr.kind == ExprKind::call ? expr.name : nameOf(kKinds, expr.kind);
  }
  if (expr.distinct) out += " distinct";
  if (!expr.table.empty()) out += " " + expr.table;
  if (expr.kind == ExprKind::cast) {
    out += " " + std::to_string(static_cast<int>(expr.cast.type)) + "/" + std::to_string(expr.cast.size) + "/" +
           std::to_string(expr.cast.scale);
  }
  for (const ExprPtr& operand : expr.operands) out += " " + shapeOf(*operand);
  if (expr.select) out += " " + shapeOf(*expr.select);
  return out + ")";
}

std::string shapeOf(const Select& select) {
  std::string out = select.distinct ? "{distinct" : "{";
  for (const auto& item : select.items) out += " " + shapeOf(*item.expr) + (item.alias.empty() ? "" : "~" + item.alias);
  if (!select.into.empty()) out += " into=" + select.into;
  for (const auto& source : select.from) {
    out += " " + nameOf(kJoins, source.join) + ":" + (source.select ? shapeOf(*source.select) : source.table);
    if (!source.alias.empty()) out += "~" + source.alias;
    out += part("on", source.on);
  }
  out += part("where", select.where);
  for (const ExprPtr& expr : select.groupBy) out += part("group", expr);
  out += part("having", select.having);
  if (select.unionWith) out += (select.unionAll ? " all" : " union") + shapeOf(*select.unionWith);
  for (const auto& item : select.orderBy) out += part(item.descending ? "down" : "up", item.expr);
  if (select.nocase) out += " nocase";
  return out + part("top", select.top) + "}";
}

std::string shapeOf(const Statement& statement) {
  std::string out = nameOf(kStatements, statement.kind) + " " + statement.table + "~" + statement.alias;
  if (statement.explained) out += " <" + shapeOf(*statement.explained) + ">";
  if (statement.select) out += " " + shapeOf(*statement.select);
  if (!statement.fields.empty()) out += names(statement.fields);
  for (const auto& row : statement.rows) {
    out += " row";
    for (const ExprPtr& value : row) out += " " + shapeOf(*value);
  }
  for (const auto& one : statement.assignments) out += part(one.field.c_str(), one.value);
  out += part("where", statement.where);
  for (const ColumnDef& one : statement.columns) out += column(one);
  if (!statement.primaryKey.empty()) out += " primary" + names(statement.primaryKey);
  for (const auto& key : statement.uniqueKeys) out += " unique" + names(key);
  if (statement.ifExists || statement.ifNotExists) out += statement.ifExists ? " ifExists" : " ifNotExists";
  if (!statement.index.empty()) out += " index=" + statement.index;
  if (statement.unique) out += " unique";
  if (statement.nocase) out += " nocase";
  for (const auto& one : statement.indexColumns) out += " " + one.field + (one.descending ? "-" : "+");
  for (const auto& item : statement.alterations) {
    out += " " + std::to_string(static_cast<int>(item.kind)) + column(item.column);
  }
  return out;
}

}  // namespace quillon::sim
