#include <charconv>

#include "store/sql/Printer.h"
#include "store/sql/PrinterParts.h"

namespace quillon::store::sql {
namespace {

// How strongly the parts of an expression bind, from the weakest.
enum Level { kEither = 1, kBoth, kNegation, kPredicate, kSum, kProduct, kSigned, kFactor, kEnclosed };

struct OpText {
  Op op;
  const char* text;
  Level level;
};

constexpr OpText kOperators[] = {
    {Op::add, " + ", kSum},
    {Op::subtract, " - ", kSum},
    {Op::concatenate, " || ", kSum},
    {Op::multiply, " * ", kProduct},
    {Op::divide, " / ", kProduct},
    {Op::equal, " = ", kPredicate},
    {Op::notEqual, " <> ", kPredicate},
    {Op::less, " < ", kPredicate},
    {Op::lessEqual, " <= ", kPredicate},
    {Op::greater, " > ", kPredicate},
    {Op::greaterEqual, " >= ", kPredicate},
    {Op::like, " LIKE ", kPredicate},
    {Op::both, " AND ", kBoth},
    {Op::either, " OR ", kEither},
    {Op::negate, "-", kSigned},
    {Op::notTrue, "NOT ", kNegation},
    {Op::isNull, " IS NULL", kPredicate},
    {Op::isNotNull, " IS NOT NULL", kPredicate},
};

const OpText& textOf(Op op) {
  for (const OpText& one : kOperators) {
    if (one.op == op) return one;
  }
  return kOperators[0];
}

std::string printExpr(const Expr& expr, Level least);

std::string printNumber(double number) {
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::scientific);
  return {buffer, result.ptr};  // with its exponent, or it would be money
}

std::string printLiteral(const Expr& expr) {
  switch (expr.value.kind()) {
    case Value::Kind::null:
      return "NULL";
    case Value::Kind::boolean:
      return expr.value.asBool() ? "TRUE" : "FALSE";
    case Value::Kind::real:
      return printNumber(expr.value.asDouble());
    case Value::Kind::money: {
      const std::string text = expr.value.asMoney().toText();
      return text.find('.') == std::string::npos ? text + ".0" : text;
    }
    case Value::Kind::text: {
      std::string text = "'";
      for (const char c : expr.value.asText()) {
        text += c;
        if (c == '\'') text += c;
      }
      return text + "'";
    }
    default:
      return expr.value.toText();
  }
}

std::string printList(const Expr& expr, std::size_t from) {
  std::string text;
  for (std::size_t i = from; i < expr.operands.size(); ++i) {
    if (i > from) text += ", ";
    text += print(*expr.operands[i]);
  }
  return text;
}

std::string printCall(const Expr& expr) {
  constexpr std::string_view kExtract = "EXTRACT_";
  if (expr.operands.empty()) return expr.name;
  if (expr.name.starts_with(kExtract)) {
    return "EXTRACT(" + expr.name.substr(kExtract.size()) + " FROM " + printList(expr, 0) + ")";
  }
  return expr.name + (expr.distinct ? "(DISTINCT " : "(") + printList(expr, 0) + ")";
}

std::string printCase(const Expr& expr) {
  std::string text = "CASE";
  std::size_t i = 0;
  for (; i + 1 < expr.operands.size(); i += 2) {
    text += " WHEN " + print(*expr.operands[i]) + " THEN " + print(*expr.operands[i + 1]);
  }
  if (i < expr.operands.size()) text += " ELSE " + print(*expr.operands[i]);
  return text + " END";
}

std::string printUnary(const Expr& expr) {
  const Expr& operand = *expr.operands[0];
  const OpText& op = textOf(expr.op);
  if (op.level == kPredicate) return printExpr(operand, kPredicate) + op.text;
  // Without parentheses a minus would join a number or a second minus, and NOT would join EXISTS.
  const bool joins = expr.op == Op::negate ? operand.kind == ExprKind::literal ||
                                                 (operand.kind == ExprKind::unary && operand.op == Op::negate)
                                           : operand.kind == ExprKind::exists && !operand.negated;
  return op.text + printExpr(operand, joins ? kEnclosed : op.level);
}

std::string printBinary(const Expr& expr) {
  const OpText& op = textOf(expr.op);
  const bool chain = expr.op == Op::both || expr.op == Op::either;
  const auto right = chain ? op.level : static_cast<Level>(op.level + 1);
  return printExpr(*expr.operands[0], op.level) + op.text + printExpr(*expr.operands[1], right);
}

std::string printBare(const Expr& expr) {
  const char* negation = expr.negated ? " NOT" : "";
  switch (expr.kind) {
    case ExprKind::literal:
      return printLiteral(expr);
    case ExprKind::parameter:
      return ":" + expr.name;
    case ExprKind::column:
      return expr.table.empty() ? printName(expr.name) : printName(expr.table) + "." + printName(expr.name);
    case ExprKind::star:
      return expr.table.empty() ? "*" : printName(expr.table) + ".*";
    case ExprKind::unary:
      return printUnary(expr);
    case ExprKind::binary:
      return printBinary(expr);
    case ExprKind::between:
      return printExpr(*expr.operands[0], kPredicate) + negation + " BETWEEN " + printExpr(*expr.operands[1], kSum) +
             " AND " + printExpr(*expr.operands[2], kSum);
    case ExprKind::inList:
      return printExpr(*expr.operands[0], kPredicate) + negation + " IN (" + printList(expr, 1) + ")";
    case ExprKind::inSelect:
      return printExpr(*expr.operands[0], kPredicate) + negation + " IN (" + print(*expr.select) + ")";
    case ExprKind::exists:
      return (expr.negated ? "NOT EXISTS (" : "EXISTS (") + print(*expr.select) + ")";
    case ExprKind::scalar:
      return "(" + print(*expr.select) + ")";
    case ExprKind::call:
      return printCall(expr);
    case ExprKind::cast:
      return "CAST(" + print(*expr.operands[0]) + " AS " + printType(expr.cast) + ")";
    case ExprKind::conditional:
      return printCase(expr);
  }
  return {};
}

Level levelOf(const Expr& expr) {
  switch (expr.kind) {
    case ExprKind::unary:
    case ExprKind::binary:
      return textOf(expr.op).level;
    case ExprKind::between:
    case ExprKind::inList:
    case ExprKind::inSelect:
      return kPredicate;
    case ExprKind::exists:
      return expr.negated ? kNegation : kFactor;
    default:
      return kFactor;
  }
}

std::string printExpr(const Expr& expr, Level least) {
  return levelOf(expr) < least ? "(" + printBare(expr) + ")" : printBare(expr);
}

}  // namespace

std::string print(const Expr& expr) { return printBare(expr); }

std::string printType(const CastType& type) {
  if (type.scale == 0) {  // the precision is known by the type that it led to
    if (type.type == FieldType::integer) return "NUMERIC(9, 0)";
    return type.type == FieldType::largeInt ? "NUMERIC(18, 0)" : "NUMERIC(38, 0)";
  }
  if (type.scale > 0) return "NUMERIC(38, " + std::to_string(type.scale) + ")";
  switch (type.type) {
    case FieldType::string:
      return type.size == 0 ? "VARCHAR" : "VARCHAR(" + std::to_string(type.size) + ")";
    case FieldType::smallint:
      return "SMALLINT";
    case FieldType::integer:
      return "INTEGER";
    case FieldType::largeInt:
      return "LARGEINT";
    case FieldType::autoInc:
      return "AUTOINC";
    case FieldType::floating:
      return "FLOAT";
    case FieldType::currency:
      return "MONEY";
    case FieldType::boolean:
      return "BOOLEAN";
    case FieldType::date:
      return "DATE";
    case FieldType::time:
      return "TIME";
    case FieldType::dateTime:
      return "TIMESTAMP";
    case FieldType::memo:
      return "MEMO";
    case FieldType::blob:
      return "BLOB";
    case FieldType::graphic:
      return "GRAPHIC";
  }
  return {};
}

}  // namespace quillon::store::sql
