#include <algorithm>

#include "base/Text.h"
#include "store/sql/ParserParts.h"

namespace quillon::store::sql {
namespace {

constexpr std::size_t kAnyNumber = ~std::size_t{0};

struct Function {
  std::string_view name;
  std::size_t least, most;  // arguments
};

constexpr Function kFunctions[] = {
    {"SUM", 1, 1},       {"COUNT", 1, 1},        {"MIN", 1, 1},    {"MAX", 1, 1},
    {"AVG", 1, 1},       {"UPPER", 1, 1},        {"LOWER", 1, 1},  {"TRUNC", 1, 1},
    {"ABS", 1, 1},       {"ROUND", 1, 2},        {"LENGTH", 1, 1}, {"COALESCE", 1, kAnyNumber},
    {"SUBSTRING", 2, 3}, {"CURRENT_DATE", 0, 0},
};

// What EXTRACT takes from a date.
constexpr std::string_view kDateParts[] = {"YEAR", "MONTH", "DAY"};

}  // namespace

ExprPtr Parser::call() {
  if (at("EXTRACT")) return extract();
  if (at("SUBSTRING")) return substring();
  const std::size_t first = position_;
  ExprPtr result = make(ExprKind::call);
  result->name = upper(token().text);
  const auto* function = std::ranges::find(kFunctions, result->name, &Function::name);
  if (function == std::ranges::end(kFunctions)) {
    fail(token().place, "there is no function '" + std::string(firstCharacters(token().text, 40)) + "'.");
  }
  advance();
  if (function->most == 0) {
    if (accept("(")) expect(")");
    return finish(std::move(result), first);
  }
  expect("(");
  const bool counts = result->name == "COUNT";
  if (counts && at("*")) {
    result->operands.push_back(star());
  } else {
    result->distinct = counts && accept("DISTINCT");
    if (!result->distinct) accept("ALL");
    result->operands = expressions();
  }
  if (const std::size_t given = result->operands.size(); given < function->least || given > function->most) {
    fail(tokens_[first].place, result->name + " does not take " + std::to_string(given) + " values.");
  }
  expect(")");
  return finish(std::move(result), first);
}

// SUBSTRING(text FROM start FOR count) or SUBSTRING(text, start, count); the count may be left out.
ExprPtr Parser::substring() {
  const std::size_t first = position_;
  ExprPtr result = make(ExprKind::call);
  result->name = "SUBSTRING";
  advance();
  expect("(");
  result->operands.push_back(expression());
  const bool words = accept("FROM");
  if (!words && !accept(",")) expected("FROM or ','");
  result->operands.push_back(expression());
  if (accept(words ? "FOR" : ",")) result->operands.push_back(expression());
  expect(")");
  return finish(std::move(result), first);
}

ExprPtr Parser::extract() {
  const std::size_t first = position_;
  ExprPtr result = make(ExprKind::call);
  advance();
  expect("(");
  const std::string part = upper(token().text);
  if (token().kind != TokenKind::word || std::ranges::find(kDateParts, part) == std::ranges::end(kDateParts)) {
    expected("YEAR, MONTH or DAY");
  }
  advance();
  result->name = "EXTRACT_" + part;
  expect("FROM");
  result->operands.push_back(expression());
  expect(")");
  return finish(std::move(result), first);
}

ExprPtr Parser::cast() {
  const std::size_t first = position_;
  ExprPtr result = make(ExprKind::cast);
  expect("CAST");
  expect("(");
  result->operands.push_back(expression());
  expect("AS");
  result->cast = type(false);
  expect(")");
  return finish(std::move(result), first);
}

// IF (condition THEN value ELSE value), where ELSE may be left out, or IF (condition, value, value).
ExprPtr Parser::ifElse() {
  const std::size_t first = position_;
  ExprPtr result = make(ExprKind::conditional);
  expect("IF");
  expect("(");
  result->operands.push_back(expression());
  const bool words = accept("THEN");
  if (!words && !accept(",")) expected("THEN");
  result->operands.push_back(expression());
  if (!words) expect(",");
  if (!words || accept("ELSE")) result->operands.push_back(expression());
  expect(")");
  return finish(std::move(result), first);
}

ExprPtr Parser::caseWhen() {
  const std::size_t first = position_;
  ExprPtr result = make(ExprKind::conditional);
  expect("CASE");
  const std::size_t operand = position_;
  const bool compares = !at("WHEN");
  if (compares) expression();  // read again for each WHEN
  do {
    expect("WHEN");
    if (compares) {
      result->operands.push_back(equalTo(operand));
    } else {
      result->operands.push_back(expression());
    }
    expect("THEN");
    result->operands.push_back(expression());
  } while (at("WHEN"));
  if (accept("ELSE")) result->operands.push_back(expression());
  expect("END");
  return finish(std::move(result), first);
}

// The condition that the expression at `operand` is equal to the one here.
ExprPtr Parser::equalTo(std::size_t operand) {
  const std::size_t first = position_;
  ExprPtr value = expression();
  const std::size_t end = position_;
  position_ = operand;
  ExprPtr left = expression();
  position_ = end;
  return finish(make(ExprKind::binary, Op::equal, std::move(left), std::move(value)), first);
}

}  // namespace quillon::store::sql
